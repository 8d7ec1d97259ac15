#include "intake/sent_report.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "platform/clock.h"

#include <algorithm>

namespace intake {

namespace {

const auto not_in_use = QStringLiteral("None");
const auto never_made = QStringLiteral("8/13/1976");

// What is kept of a mail between reading and writing: no body, so that many thousands stay small.
struct reported_mail {
    mail_line line;
    QString date; // as it is stored
};

struct mail_kinds {
    int mailings = 0, single_mails = 0, replies = 0;
};

bool uses_filters(const report_request &request)
{
    return std::any_of(request.filters.begin(), request.filters.end(),
                       [](const report_filter &one) { return !one.field.isEmpty(); });
}

// Only a reply is stored with neither a mailing's number nor a format.
void count_kind(ado::Recordset &row, mail_kinds &kinds)
{
    const ado::Value mailing = row["matchid"];
    if (mailing.is_null() && row["tsl_sentformat"].is_null())
        ++kinds.replies;
    else if (!mailing.is_null() && mailing.to_number() == 0)
        ++kinds.single_mails;
    else
        ++kinds.mailings;
}

QString kinds_text(const mail_kinds &kinds)
{
    QStringList parts;
    const auto add = [&parts](const QString &kind, int count) {
        if (count > 0)
            parts += kind + " " + QString::number(count);
    };
    add("mailings", kinds.mailings);
    add("single mails", kinds.single_mails);
    add("replies", kinds.replies);
    return parts.isEmpty() ? not_in_use : parts.join(QStringLiteral(", "));
}

QString or_none(const QString &text)
{
    const QString trimmed = trim(text);
    return trimmed.isEmpty() ? not_in_use : trimmed;
}

QStringList shared_values(const report_request &request, qsizetype mails, const mail_kinds &kinds)
{
    return {request.account,
            us_date(request.from) + " and " + us_date(request.to),
            or_none(filters_text(request)),
            or_none(request.subject_field),
            or_none(request.subject_words),
            QString::number(mails),
            kinds_text(kinds)};
}

// Nothing: the user gave up.
std::optional<std::vector<reported_mail>> mails_of(const QString &select, mail_kinds &kinds,
                                                   const std::function<bool()> &give_up)
{
    std::vector<reported_mail> mails;
    ado::Recordset sent;
    sent.Open(select, *session.store_connection);
    const qint64 total = sent.RecordCount();
    for (; !sent.EOF_(); sent.MoveNext()) {
        if (give_up())
            return std::nullopt;
        count_kind(sent, kinds);
        mails.push_back({sent_mail_line(sent), sent["tsl_sentdate"].text_or_empty()});
        report_progress(QStringLiteral("Looking at the sent mails"), qint64(mails.size()), total);
    }
    sent.Close();
    return mails;
}

bool write_rows(const std::vector<reported_mail> &mails, const QStringList &shared,
                const std::function<bool()> &give_up)
{
    const QString day = us_date(today());
    qint64 written = 0;
    for (const reported_mail &mail : mails) {
        if (give_up())
            return false;
        run_sql(report_insert(shared + QStringList{mail.line.who, mail.line.subject, mail.date, day}));
        report_progress(QStringLiteral("Writing the report"), ++written, qint64(mails.size()));
    }
    return true;
}

QString ids_of(const QString &select)
{
    QStringList ids;
    ado::Recordset mailings;
    mailings.Open(select, *session.store_connection);
    for (; !mailings.EOF_(); mailings.MoveNext())
        ids += mailings["matchid"].to_text();
    mailings.Close();
    return ids.join(u',');
}

}

void empty_report()
{
    run_sql(QStringLiteral("delete from printreport_tbl"));
}

std::optional<report_gap> why_no_report(const report_request &request)
{
    if (request.account.isEmpty())
        return report_gap{QStringLiteral("Please select the account"), 0};
    for (int number = 1; number <= 4; ++number) {
        const report_filter &filter = request.filters[size_t(number - 1)];
        if (!filter.field.isEmpty() && trim(filter.value).isEmpty())
            return report_gap{QStringLiteral("Please enter value"), number};
    }
    return std::nullopt;
}

// All four filters, as a mailing is kept with the empty text for each that it did without.
QString mailings_select(const report_request &request)
{
    QString select = "select matchid from match_tbl where ac_name=" + quote_sql(request.account) +
                     " and sub_contains=" + quote_sql(request.subject_field);
    for (int number = 1; number <= 4; ++number) {
        const report_filter &filter = request.filters[size_t(number - 1)];
        const QString value = filter.field.isEmpty() ? QString() : filter.value;
        select += " and filter" + QString::number(number) + "=" + quote_sql(filter.field) + " and fval" +
                  QString::number(number) + "=" + quote_sql(value);
    }
    return select;
}

QString filters_text(const report_request &request)
{
    QString text;
    for (int number = 1; number <= 4; ++number) {
        const report_filter &filter = request.filters[size_t(number - 1)];
        if (!filter.field.isEmpty())
            text += ",Filter" + QString::number(number) + ":" + filter.field + "=" + trim(filter.value);
    }
    return text;
}

QString report_insert(const QStringList &values)
{
    QStringList quoted;
    for (const QString &value : values)
        quoted += quote_sql(value);
    return "insert into printreport_tbl (sentaccount,between1,filtersused,dynsubjectfield,subjectcontains,mailgen,"
           "matching,sentto,sentsubject,sentdate,gendate) values(" +
           quoted.join(u',') + ")";
}

std::optional<QString> report_select(const report_request &request)
{
    QString select = "select * from sentitems_tbl where tsl_sentaccount=" + quote_sql(request.account) +
                     " and datevalue(tsl_sentdate)>=datevalue(" + quote_sql(us_date(request.from)) +
                     ") and datevalue(tsl_sentdate)<=datevalue(" + quote_sql(us_date(request.to)) + ")";
    const QString words = trim(request.subject_words);
    if (!words.isEmpty())
        select += " and tsl_subject like " + quote_sql("%" + words + "%");
    if (!request.subject_field.isEmpty())
        select += " and tsl_sentformat=" + quote_sql(request.subject_field);
    if (uses_filters(request)) {
        const QString mailings = ids_of(mailings_select(request));
        if (mailings.isEmpty())
            return std::nullopt;
        select += " and matchid in (" + mailings + ")";
    }
    return select + " order by tsl_sentdate desc";
}

QString undated_mail_words(const QString &account)
{
    ado::Recordset sent;
    sent.Open("select * from sentitems_tbl where tsl_sentaccount=" + quote_sql(account), *session.store_connection);
    for (; !sent.EOF_(); sent.MoveNext()) {
        const mail_line line = sent_mail_line(sent);
        if (!line.date.isValid() && !sent["tsl_sentdate"].is_null())
            return "the mail to " + left(line.who, 80) + ", \"" + left(line.subject, 80) +
                   "\", is stored with a date that is none: \"" + left(line.date_text, 80) +
                   "\". Delete it under Sent Item.";
    }
    return {};
}

std::optional<std::vector<mail_line>> write_report(const report_request &request, const QString &select,
                                                   const std::function<bool()> &give_up)
{
    mail_kinds kinds;
    const auto mails = mails_of(select, kinds, give_up);
    if (!mails)
        return std::nullopt;
    if (!write_rows(*mails, shared_values(request, qsizetype(mails->size()), kinds), give_up)) {
        empty_report();
        return std::nullopt;
    }
    std::vector<mail_line> lines;
    lines.reserve(mails->size());
    for (const reported_mail &mail : *mails)
        lines.push_back(mail.line);
    return lines;
}

void record_report_date(const QDate &date)
{
    run_sql("update lastdate set gendate=" + quote_sql(us_date(date)) + " where id=3");
}

QDate last_report_date()
{
    QString stored;
    ado::Recordset row;
    row.Open(QStringLiteral("select * from lastdate where id=3"), *session.store_connection);
    if (!row.EOF_())
        stored = row["gendate"].text_or_empty();
    row.Close();
    return stored == never_made ? QDate() : us_date_in(stored);
}

std::vector<report_account> report_accounts()
{
    std::vector<report_account> found;
    ado::Recordset rows;
    rows.Open(QStringLiteral("select * from email_tbl"), *session.store_connection);
    for (; !rows.EOF_(); rows.MoveNext())
        found.push_back({rows["id"].to_text(), rows["query"].text_or_empty()});
    rows.Close();
    return found;
}

QStringList report_fields(const QString &account_id)
{
    QStringList fields;
    ado::Recordset map;
    map.Open("select table_name from table_list_tbl where query_id=" + account_id + " and lastformat=yes",
             *session.store_connection);
    if (!map.EOF_()) {
        for (const QString &name : column_names(map["table_name"].text_or_empty())) {
            const QString upper = upper_case(name);
            if (upper != u"TSL_RECDATE" && upper != u"MESSAGE_ID" && upper != u"TSL_STATUS")
                fields += name;
        }
    }
    map.Close();
    return fields;
}

}
