#include "intake/mail_lines.h"
#include "frame/account_list.h"
#include "frame/error_log.h"
#include "frame/store.h"
#include "frame/text.h"

namespace intake {

namespace {

// A date column gives its date; the sent list's is a text in the program's own form, or no date at all.
QDateTime moment_of(const ado::Value &value)
{
    if (const auto *date = std::get_if<QDateTime>(&value.held))
        return *date;
    QDateTime date = QDateTime::fromString(value.text_or_empty(), QStringLiteral("M/d/yyyy h:mm:ss AP"));
    if (!date.isValid())
        date = QDateTime(QDate::fromString(value.text_or_empty(), QStringLiteral("M/d/yyyy")), QTime(0, 0));
    date.setTimeSpec(Qt::UTC);
    return date;
}

QString date_text(const ado::Value &value)
{
    const QDateTime moment = moment_of(value);
    return moment.isValid() ? us_date_time(moment) : value.text_or_empty();
}

void add_lines_of(const QString &table, std::vector<mail_line> &lines)
{
    ado::Recordset mails;
    mails.Open("select * from " + table, *session.store_connection);
    for (; !mails.EOF_(); mails.MoveNext()) {
        lines.push_back({table, mails["message_id"].to_number(), mails["tsl_Email"].text_or_empty(),
                         mails["tsl_subject"].text_or_empty(), moment_of(mails["tsl_recdate"])});
    }
    mails.Close();
}

mail_text text_in(ado::Recordset &row, const QString &who, const QString &date)
{
    return {row[who].text_or_empty(), row["tsl_subject"].text_or_empty(), date_text(row[date]),
            row["tsl_body"].text_or_empty()};
}

}

std::vector<mail_line> stored_mail_lines(int &left_out)
{
    std::vector<mail_line> lines;
    left_out = 0;
    for (int account = 1; account < account_upper_bound(); ++account) {
        const QString table = session.account_ids[size_t(account)].table_name;
        if (!guarded("Mailfrm.frm", "showmails_from_database", [&] { add_lines_of(table, lines); }))
            ++left_out;
    }
    return lines;
}

mail_text stored_mail_text(const mail_line &line)
{
    mail_text text;
    ado::Recordset row;
    row.Open("select * from " + line.table + " where message_id=" + QString::number(line.id),
             *session.store_connection);
    if (!row.EOF_()) {
        text = text_in(row, "tsl_Email", "tsl_recdate");
        text.unprocessed = !row["tsl_processed"].to_flag();
    }
    row.Close();
    return text;
}

mail_line sent_mail_line(ado::Recordset &row)
{
    return {{},
            row["sentid"].to_number(),
            row["tsl_to"].text_or_empty(),
            row["tsl_subject"].text_or_empty(),
            moment_of(row["tsl_sentdate"])};
}

std::vector<mail_line> sent_mail_lines()
{
    std::vector<mail_line> lines;
    ado::Recordset sent;
    sent.Open("select * from sentitems_tbl", *session.store_connection);
    for (; !sent.EOF_(); sent.MoveNext())
        lines.push_back(sent_mail_line(sent));
    sent.Close();
    return lines;
}

mail_text sent_mail_text(const mail_line &line)
{
    mail_text text;
    ado::Recordset row;
    row.Open("select * from sentitems_tbl where sentid=" + QString::number(line.id), *session.store_connection);
    if (!row.EOF_())
        text = text_in(row, "tsl_to", "tsl_sentdate");
    row.Close();
    return text;
}

}
