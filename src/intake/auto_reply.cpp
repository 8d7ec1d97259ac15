#include "intake/auto_reply.h"
#include "frame/store.h"
#include "frame/text.h"

#include <cmath>

namespace intake {

namespace {

const QString line_end = QStringLiteral("\r\n");

// Every map has them: they say nothing to a visitor.
bool is_own_column(const QString &column)
{
    static const QStringList own{"MESSAGE_ID", "TSL_STATUS", "TSL_RECDATE", "TSL_SUBJECT", "TSL_EMAIL"};
    return own.contains(upper_case(column));
}

// "" also for a number that is too large for the store.
QString plain_token(const QString &token)
{
    const QString plain = plain_number(token);
    return std::isfinite(plain.toDouble()) ? plain : QString();
}

// What fits whole numbers even when it is raised.
std::optional<qint64> whole_token(const QString &plain)
{
    constexpr qint64 room_for_one_more = 999999999999999998;
    bool is_whole = false;
    const qint64 whole = plain.toLongLong(&is_whole);
    return is_whole && qAbs(whole) < room_for_one_more ? std::optional(whole) : std::nullopt;
}

// A number with more digits than are kept would go out the same for ever.
bool can_be_raised(const QString &token)
{
    const QString plain = plain_token(token);
    constexpr double nearly_one = 0.5;
    return !plain.isEmpty() && (whole_token(plain) || next_token(token).toDouble() - plain.toDouble() > nearly_one);
}

QString quoted_values(const QString &map, const auto_reply &typed)
{
    QStringList values;
    for (const QString &value :
         {map, QString::number(typed.SubjectType), typed.Subject, typed.SubjectPrefix, typed.SubjectDynamic,
          typed.SubjectSuffix, typed.GreetText, typed.GreetField, typed.LastToken, typed.autocontent,
          typed.enable ? QStringLiteral("True") : QStringLiteral("False")})
        values += quote_sql(value);
    return values.join(u',');
}

}

auto_reply reply_in(ado::Recordset &row)
{
    const auto text = [&row](const char *column) { return row[column].text_or_empty(); };
    return {leading_number(text("SubjectType")),
            text("Subject"),
            text("SubjectPrefix"),
            text("SubjectDynamic"),
            text("SubjectSuffix"),
            text("GreetText"),
            text("GreetField"),
            text("LastToken"),
            text("autocontent"),
            row["enable"].to_flag()};
}

std::optional<auto_reply> stored_auto_reply(const QString &map)
{
    ado::Recordset row;
    row.Open("select * from autocontent where mapname=" + quote_sql(map), *session.store_connection);
    return row.EOF_() ? std::nullopt : std::optional(reply_in(row));
}

QStringList answer_fields(const QString &map)
{
    QStringList fields = column_names(map);
    fields.removeIf(is_own_column);
    return fields;
}

std::optional<QString> newest_value(const QString &map, const QString &column)
{
    if (column.isEmpty())
        return std::nullopt;
    ado::Recordset row;
    row.Open("SELECT " + column + " FROM " + map + " where message_id=(select max(message_id) from " + map + ")",
             *session.store_connection);
    return row.EOF_() ? std::nullopt : std::optional(row[0].text_or_empty());
}

QString subject_of(const auto_reply &reply, const QString &value)
{
    switch (reply.SubjectType) {
    case standard_subject:
        return reply.Subject;
    case dynamic_subject:
        return reply.SubjectPrefix + u' ' + value + u' ' + reply.SubjectSuffix;
    case support_token:
        return reply.SubjectPrefix + u' ' + reply.LastToken + u' ' + reply.SubjectSuffix;
    default:
        return {};
    }
}

QString text_of(const auto_reply &reply, const QString &greeted)
{
    if (reply.GreetText.isEmpty())
        return reply.autocontent;
    return reply.GreetText + u' ' + greeted + line_end + line_end + reply.autocontent;
}

QString next_token(const QString &token)
{
    const QString plain = plain_token(token);
    if (const auto whole = whole_token(plain))
        return QString::number(*whole + 1);
    return QString::number(plain.toDouble() + 1, 'g', 15);
}

auto_reply as_stored(const auto_reply &typed)
{
    auto_reply kept = typed;
    for (QString *part :
         {&kept.Subject, &kept.SubjectPrefix, &kept.SubjectSuffix, &kept.GreetText, &kept.LastToken, &kept.autocontent})
        *part = trim(*part);
    return kept;
}

std::optional<auto_reply_fault> why_not_saveable(const QString &map, const auto_reply &typed)
{
    if (map.isEmpty())
        return auto_reply_fault{"Please select map", reply_part::map};
    if (typed.autocontent.isEmpty())
        return auto_reply_fault{"Please enter mail text", reply_part::text};
    if (typed.SubjectType == standard_subject && typed.Subject.isEmpty())
        return auto_reply_fault{"Please enter subject text.", reply_part::subject};
    const bool has_prefix = typed.SubjectType == dynamic_subject || typed.SubjectType == support_token;
    if (has_prefix && typed.SubjectPrefix.isEmpty())
        return auto_reply_fault{"Please enter subject prefix.", reply_part::prefix};
    if (typed.SubjectType == support_token && !can_be_raised(typed.LastToken))
        return auto_reply_fault{"Please enter numeric value.", reply_part::token};
    return std::nullopt;
}

void save_auto_reply(const QString &map, const auto_reply &typed)
{
    ado::Recordset rows;
    rows.Open("select * from  autocontent", *session.store_connection);
    for (; !rows.EOF_(); rows.MoveNext())
        if (same_text(rows["mapname"].text_or_empty(), map))
            run_sql("delete * from autocontent where mapname=" + quote_sql(map));
    rows.Close();
    run_sql("INSERT INTO autocontent(Mapname,SubjectType,Subject,SubjectPrefix,SubjectDynamic,SubjectSuffix,GreetText,"
            "GreetField,LastToken,autocontent,enable) values (" +
            quoted_values(map, typed) + ") ");
}

}
