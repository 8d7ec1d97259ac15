#include "intake/mail_deletion.h"
#include "frame/store.h"

namespace intake {

void delete_stored_mail(const mail_line &line)
{
    run_sql("delete from " + line.table + " where message_id=" + QString::number(line.id));
}

void delete_sent_mail(const mail_line &line)
{
    run_sql("delete from sentitems_tbl where sentid=" + QString::number(line.id));
}

}
