#include "intake/stored_mail.h"
#include "frame/store.h"
#include "frame/text.h"

namespace intake {

QString duplicate_test(const QString &table, const arrived_mail &mail)
{
    const QDate day = mail.received.date();
    const QTime time = mail.received.time();
    return "select * from " + table + " where ucase(tsl_subject)=" + quote_sql(upper_case(mail.subject)) +
           " and month(tsl_recdate)=" + QString::number(day.month()) +
           " and day(tsl_recdate)=" + QString::number(day.day()) +
           " and year(tsl_recdate)=" + QString::number(day.year()) +
           " and hour(tsl_recdate)=" + QString::number(time.hour()) +
           " and minute(tsl_recdate)=" + QString::number(time.minute()) +
           " and second(tsl_recdate)=" + QString::number(time.second()) +
           " and ucase(tsl_Email) =" + upper_case(quote_sql(mail.sender)) +
           " and ucase(tsl_body) =" + quote_sql(upper_case(crlf_line_ends(mail.body)));
}

bool is_duplicate(const QString &table, const arrived_mail &mail)
{
    ado::Recordset found;
    found.Open(duplicate_test(table, mail), *session.store_connection);
    return !found.EOF_();
}

void store_mail(const QString &table, const arrived_mail &mail)
{
    ado::Recordset rows;
    rows.Open("select * from " + table, *session.store_connection, ado::cursor_type::keyset,
              ado::lock_type::optimistic);
    rows.AddNew();
    rows.Fields("tsl_subject").set_value(mail.subject);
    rows.Fields("tsl_recdate").set_value(mail.received);
    rows.Fields("tsl_Email").set_value(mail.sender);
    rows.Fields("tsl_Status").set_value(u"new");
    rows.Fields("tsl_body").set_value(crlf_line_ends(mail.body));
    rows.Update();
}

}
