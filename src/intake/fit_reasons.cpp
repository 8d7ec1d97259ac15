#include "intake/fit_reasons.h"
#include "frame/store.h"
#include "frame/text.h"
#include "intake/map_reading.h"

namespace intake {

namespace {

struct mail_to_test {
    QString subject;
    QString body;
};

mail_to_test mail_at(const QString &account_table, qint64 message_id)
{
    ado::Recordset row;
    row.Open("select * from " + account_table + " where message_id=" + QString::number(message_id),
             *session.store_connection);
    return {row["tsl_subject"].text_or_empty(), row["tsl_body"].text_or_empty()};
}

QString why_not(const mail_map &map, const mail_to_test &mail)
{
    if (const auto failed = subject_misfit(map, mail.subject))
        return reason_words(*failed, 0);
    const QStringList mail_pieces = pieces(mail.body, map.separator);
    if (const auto failed = pieces_misfit(map, mail_pieces))
        return reason_words(*failed, mail_pieces.size());
    const QString field = field_without_column(map);
    if (field.isEmpty())
        return {};
    return QStringLiteral("The map was not saved whole: the field %1 has no column of its own.").arg(field);
}

void add_reasons(const QString &account_id, const mail_to_test &mail, std::vector<fit_reason> &reasons)
{
    ado::Recordset maps;
    maps.Open("select * from table_list_tbl where query_id=" + account_id, *session.store_connection);
    for (; !maps.EOF_(); maps.MoveNext()) {
        const mail_map map = read_mail_map(maps);
        reasons.push_back({map.table_name, why_not(map, mail)});
    }
    maps.Close();
}

}

QString reason_words(const misfit &failed, qsizetype piece_count)
{
    const QString piece = QString::number(failed.piece);
    switch (failed.failed) {
    case misfit::condition::no_fields:
        return QStringLiteral("The map has no fields.");
    case misfit::condition::subject:
        return QStringLiteral("The subject is not \"") + trim(failed.text) + QStringLiteral("\".");
    case misfit::condition::piece_count:
        return QStringLiteral("There is no piece ") + piece + QStringLiteral(": the number of pieces is ") +
               QString::number(piece_count) + u'.';
    case misfit::condition::label:
        return QStringLiteral("Piece ") + piece + QStringLiteral(" does not start with the label \"") + failed.text +
               QStringLiteral("\".");
    case misfit::condition::supporting_text:
        return QStringLiteral("Piece ") + piece + QStringLiteral(" lacks the text \"") + failed.text +
               QStringLiteral("\".");
    }
    return {};
}

std::vector<fit_reason> fit_reasons(const QString &account_table, qint64 message_id)
{
    std::vector<fit_reason> reasons;
    const mail_to_test mail = mail_at(account_table, message_id);
    ado::Recordset accounts; // two accounts may share a table
    accounts.Open("select * from email_tbl where table_name=" + quote_sql(account_table), *session.store_connection);
    for (; !accounts.EOF_(); accounts.MoveNext())
        add_reasons(accounts["id"].to_text(), mail, reasons);
    accounts.Close();
    return reasons;
}

}
