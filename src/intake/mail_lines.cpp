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
    const QString text = value.text_or_empty();
    const QDateTime moment = us_date_time_in(text);
    return moment.isValid() ? moment : QDateTime(us_date_in(text), QTime(0, 0), Qt::UTC);
}

// Nothing where the moment says it all. A day alone has no hour to show.
QString odd_date_text(const ado::Value &value, const QDateTime &moment)
{
    const bool is_moment =
        std::holds_alternative<QDateTime>(value.held) || (moment.isValid() && moment.time() != QTime(0, 0));
    return is_moment ? QString() : value.text_or_empty();
}

QString words_of_date(const QDateTime &moment, const QString &odd_text)
{
    return moment.isValid() && odd_text.isEmpty() ? us_date_time(moment) : odd_text;
}

// The fields are looked for once, not once a mail.
void add_lines_of(ado::Recordset &mails, const QString &table, std::vector<mail_line> &lines)
{
    const ado::Field id = mails.Fields("message_id"), who = mails.Fields("tsl_Email"),
                     subject = mails.Fields("tsl_subject"), date = mails.Fields("tsl_recdate");
    lines.reserve(lines.size() + size_t(mails.RecordCount()));
    for (; !mails.EOF_(); mails.MoveNext())
        lines.push_back({table, id.value().to_number(), who.value().text_or_empty(), subject.value().text_or_empty(),
                         moment_of(date.value())});
}

void add_lines_of(const QString &table, std::vector<mail_line> &lines)
{
    ado::Recordset mails;
    mails.Open("select * from " + table, *session.store_connection);
    if (!mails.EOF_())
        add_lines_of(mails, table, lines);
    mails.Close();
}

mail_text text_in(ado::Recordset &row, const QString &who, const QString &date)
{
    const QDateTime moment = moment_of(row[date]);
    return {row[who].text_or_empty(), row["tsl_subject"].text_or_empty(),
            words_of_date(moment, odd_date_text(row[date], moment)), row["tsl_body"].text_or_empty()};
}

}

QString date_shown(const mail_line &line)
{
    return words_of_date(line.date, line.date_text);
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

mail_line sent_mail_line(ado::Recordset &sent_mails)
{
    const QDateTime moment = moment_of(sent_mails["tsl_sentdate"]);
    return {{},
            sent_mails["sentid"].to_number(),
            sent_mails["tsl_to"].text_or_empty(),
            sent_mails["tsl_subject"].text_or_empty(),
            moment,
            odd_date_text(sent_mails["tsl_sentdate"], moment)};
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

QString text_to_show(const QString &body)
{
    constexpr qsizetype most_shown = 300000;
    if (body.size() <= most_shown)
        return body;
    return left(body, most_shown) + "\n\n(The text is longer than what is shown here.)";
}

}
