#include "intake/map_parser.h"
#include "frame/account_list.h"
#include "frame/error_log.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "intake/auto_responder.h"
#include "intake/map_reading.h"
#include "platform/outside_effects.h"

namespace intake {

namespace {

constexpr int highest_markable_id = 32767;

const QString progress_words = QStringLiteral("Filling the tables");
const auto unfilled_words =
    QStringLiteral("Not all mails could be put into their tables, the next fetch tries again: ");

// A map in use. Whether it is whole, and answers, is asked once, at the first mail that fits it.
struct map_in_use {
    mail_map map;
    std::optional<bool> whole = {};
    std::optional<bool> answered = {};

    bool is_whole()
    {
        if (!whole)
            whole = field_without_column(map).isEmpty();
        return *whole;
    }
    bool is_answered()
    {
        if (!answered)
            answered = answers_by_itself(map.table_name);
        return *answered;
    }
};

void store_in_map(const mail_map &map, ado::Recordset &mail, const QStringList &mail_pieces)
{
    auto &rows = *session.map_rs;
    rows.Open("select * from " + map.table_name, *session.store_connection, ado::cursor_type::keyset,
              ado::lock_type::optimistic);
    rows.AddNew();
    for (const char *column : {"tsl_subject", "tsl_recdate", "tsl_Email"})
        rows.Fields(column).set_value(mail[column]);
    rows.Fields("tsl_Status").set_value(u"new");
    rows.Update();
    rows.Close();
    const QString newest_row = " where message_id=(select max(message_id) from " + map.table_name + ")";
    for (const map_field &field : map.fields) {
        run_sql("update " + map.table_name + " set " + field.name + "=" + quote_sql(field_value(field, mail_pieces)) +
                newest_row);
    }
}

// The pieces of the mail at the recordset's current row, when it fits the map.
std::optional<QStringList> fitting_pieces(map_in_use &used, ado::Recordset &mail)
{
    const mail_map &map = used.map;
    if (!subject_fits(map, mail["tsl_subject"].text_or_empty()))
        return std::nullopt;
    const QStringList mail_pieces = pieces(mail["tsl_body"].text_or_empty(), map.separator);
    return pieces_fit(map, mail_pieces) && used.is_whole() ? std::optional(mail_pieces) : std::nullopt;
}

// Row, token and reply are one: a kill before the reply is handed over leaves none of them, and the next pass begins
// with the same number. The reply comes before the next mail's row, as it reads the newest one.
void store_and_answer(const mail_map &map, ado::Recordset &mail, const QStringList &mail_pieces)
{
    {
        const held_commits together;
        store_in_map(map, mail, mail_pieces);
        send_auto_reply(map.table_name, mail["tsl_Email"].text_or_empty());
    }
    before_outside_effect();
}

void take_mails(map_in_use used, QStringList &done_ids)
{
    auto &mails = *session.mail_rs;
    const qint64 count = mails.RecordCount();
    for (qint64 at = 1; !mails.EOF_(); mails.MoveNext(), ++at) {
        if (const auto fitting = fitting_pieces(used, mails)) {
            done_ids += mails["message_id"].to_text();
            (used.is_answered() ? store_and_answer : store_in_map)(used.map, mails, *fitting);
        }
        report_progress(progress_words, at, count);
    }
    if (count > 0)
        mails.MoveFirst();
}

// full_words: what the user is told of an account that can hold no more.
QString marking_statement(const QString &table, const QStringList &done_ids, QString &full_words)
{
    QString sql = "update " + table + " set tsl_processed=-1 where 1=2 ";
    for (const QString &id : done_ids) {
        if (id.toLongLong() > highest_markable_id)
            full_words = "The mails of " + table + " can no longer be marked: number " + id + " is above 32767.";
        sql += " or message_id=" + QString::number(to_int16(id)); // the ceiling of an account, on purpose
    }
    return sql;
}

void parse_account(const account &each, QString &full_words)
{
    auto &mails = *session.mail_rs;
    mails.Open("select * from " + each.table_name + " where tsl_processed=no", *session.store_connection);
    ado::Recordset maps;
    maps.Open("select * from table_list_tbl where query_id=" + each.id, *session.store_connection);
    QStringList done_ids;
    for (; !maps.EOF_(); maps.MoveNext())
        take_mails({read_mail_map(maps)}, done_ids);
    maps.Close();
    mails.Close();
    if (!done_ids.isEmpty())
        run_sql(marking_statement(each.table_name, done_ids, full_words));
}

}

bool parse_unprocessed_mails()
{
    QString full_words;
    const bool all_parsed = guarded("mail_module.bas", "parse_unprocessed_mails", [&full_words] {
        load_accounts();
        for (int column = 1; column < account_upper_bound(); ++column)
            parse_account(session.account_ids[size_t(column)], full_words);
    });
    if (!all_parsed)
        status_line(full_words.isEmpty() ? unfilled_words + session.err_description : full_words);
    mails_changed();
    return all_parsed;
}

bool remap_account_mails(const QString &account_table, const QString &map_table)
{
    const bool all_mapped = guarded("mail_module.bas", "remap_account_mails", [&] {
        auto &mails = *session.mail_rs;
        mails.Open("select * from " + account_table, *session.store_connection, ado::cursor_type::keyset,
                   ado::lock_type::optimistic);
        map_in_use used{mail_map_named(map_table)};
        const qint64 count = mails.RecordCount();
        for (qint64 at = 1; !mails.EOF_(); mails.MoveNext(), ++at) {
            if (const auto fitting = fitting_pieces(used, mails)) {
                store_in_map(used.map, mails, *fitting);
                mails.Fields("tsl_processed").set_value(true);
                mails.Update();
            }
            report_progress(progress_words, at, count);
        }
        mails.Close();
    });
    mails_changed();
    return all_mapped;
}

}
