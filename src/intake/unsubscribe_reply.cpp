#include "intake/unsubscribe_reply.h"
#include "frame/store.h"
#include "frame/text.h"

namespace intake {

namespace {

QString signature_text(const QString &title)
{
    if (trim(title) == "-1")
        return " ";
    ado::Recordset row;
    row.Open("select * from sign where signtitle=" + quote_sql(title), *session.store_connection);
    return row.EOF_() ? QString() : row["signtext"].text_or_empty();
}

}

confirmation unsubscribe_confirmation(const QString &table_name)
{
    ado::Recordset row;
    row.Open("select * from unsubconfirm_tbl", *session.store_connection);
    const QString subject = row["mailsubject"].text_or_empty();
    return {subject, confirmation_body(row["mailcontent"].text_or_empty(), row["addquery"].to_flag(), table_name,
                                       signature_text(row["signature"].text_or_empty()))};
}

QString confirmation_body(const QString &content, bool add_query, const QString &table_name, const QString &signature)
{
    const QString middle = add_query ? "\r\n" + table_name + "\r\n\r\n" : QString("\r\n\r\n");
    return content + middle + signature;
}

}
