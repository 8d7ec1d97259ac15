#include "intake/mail_deletion.h"
#include "frame/store.h"

namespace intake {

QString stored_mail_delete(const mail_line &line)
{
    return "delete from " + line.table + " where message_id=" + QString::number(line.id);
}

QString sent_mail_delete(const mail_line &line)
{
    return "delete from sentitems_tbl where sentid=" + QString::number(line.id);
}

void delete_stored_mail(const mail_line &line)
{
    run_sql(stored_mail_delete(line));
}

void delete_sent_mail(const mail_line &line)
{
    run_sql(sent_mail_delete(line));
}

}
