#include "intake/unprocessed_count.h"
#include "frame/store.h"

namespace intake {

qint64 count_unprocessed_mails()
{
    open_store_if_closed();
    qint64 mails = 0;
    ado::Recordset accounts;
    accounts.Open("select table_name from email_tbl", *session.store_connection);
    for (; !accounts.EOF_(); accounts.MoveNext()) {
        ado::Recordset count;
        count.Open("select count(*) from " + accounts[0].text_or_empty() + " where tsl_processed=no",
                   *session.store_connection);
        mails += count[0].to_number();
    }
    return mails;
}

}
