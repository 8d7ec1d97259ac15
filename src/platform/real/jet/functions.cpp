#include "platform/real/jet/functions.h"
#include "platform/letter_case.h"
#include "platform/real/jet/conversion.h"
#include "platform/real/jet/dates.h"
#include "platform/real/jet/expression_writer.h"
#include "platform/real/jet/failures.h"
#include "platform/real/jet/like.h"
#include "platform/real/jet/statement.h"
#include <sqlite3.h>

namespace jet {

namespace {

// --- the collation

char32_t decoded(const unsigned char *text, int length, int &at)
{
    const unsigned char first = text[at++];
    if (first < 0x80)
        return first;
    const int more = first >= 0xf0 ? 3 : first >= 0xe0 ? 2 : 1;
    char32_t letter = first & (0x3f >> more);
    for (int i = 0; i < more && at < length; ++i)
        letter = (letter << 6) | (text[at++] & 0x3f);
    return letter;
}

int compare_folded(void *, int length_a, const void *a, int length_b, const void *b)
{
    const auto *text_a = static_cast<const unsigned char *>(a);
    const auto *text_b = static_cast<const unsigned char *>(b);
    int at_a = 0, at_b = 0;
    while (at_a < length_a && at_b < length_b) {
        if (text_a[at_a] == text_b[at_b] && text_a[at_a] < 0x80) {
            ++at_a;
            ++at_b;
            continue;
        }
        const char32_t letter_a = fold_letter(decoded(text_a, length_a, at_a));
        const char32_t letter_b = fold_letter(decoded(text_b, length_b, at_b));
        if (letter_a != letter_b)
            return letter_a < letter_b ? -1 : 1;
    }
    return (length_a - at_a > 0) - (length_b - at_b > 0);
}

// --- the functions

QString text_argument(sqlite3_value *of)
{
    const unsigned char *text = sqlite3_value_text(of);
    return kept_utf8(text, sqlite3_value_bytes(of));
}

void give_text(sqlite3_context *context, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    sqlite3_result_text64(context, bytes.constData(), sqlite3_uint64(bytes.size()), SQLITE_TRANSIENT, SQLITE_UTF8);
}

// What goes wrong inside a function must not cross SQLite: it waits where the statement's caller finds it.
template <typename Work>
void shielded(sqlite3_context *context, Work work)
{
    try {
        work();
    } catch (const run_time_error &failure) {
        *static_cast<std::optional<run_time_error> *>(sqlite3_user_data(context)) = failure;
        sqlite3_result_error(context, failure.description.toUtf8().constData(), -1);
    }
}

QDateTime date_argument(sqlite3_value *of)
{
    if (sqlite3_value_type(of) != SQLITE_TEXT)
        return from_day_number(sqlite3_value_double(of));
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(of));
    QDateTime date = read_kept(text, sqlite3_value_bytes(of));
    if (!date.isValid())
        date = read_date(text_argument(of)).value_or(QDateTime());
    return date;
}

template <typename Give>
void with_date(sqlite3_context *context, sqlite3_value *of, Give give)
{
    if (sqlite3_value_type(of) == SQLITE_NULL)
        return sqlite3_result_null(context);
    shielded(context, [&] {
        const QDateTime date = date_argument(of);
        if (!date.isValid())
            fail_criteria();
        give(date);
    });
}

template <int (*Part)(const QDateTime &)>
void date_part(sqlite3_context *context, int, sqlite3_value **arguments)
{
    with_date(context, arguments[0], [&](const QDateTime &date) { sqlite3_result_int(context, Part(date)); });
}

int year_of(const QDateTime &date)
{
    return date.date().year();
}
int month_of(const QDateTime &date)
{
    return date.date().month();
}
int day_of(const QDateTime &date)
{
    return date.date().day();
}
int hour_of(const QDateTime &date)
{
    return date.time().hour();
}
int minute_of(const QDateTime &date)
{
    return date.time().minute();
}
int second_of(const QDateTime &date)
{
    return date.time().second();
}

void date_value(sqlite3_context *context, int, sqlite3_value **arguments)
{
    with_date(context, arguments[0], [&](const QDateTime &date) {
        give_text(context, kept_text(QDateTime(date.date(), QTime(0, 0), Qt::UTC)));
    });
}

void upper(sqlite3_context *context, int, sqlite3_value **arguments)
{
    if (sqlite3_value_type(arguments[0]) != SQLITE_NULL)
        give_text(context, upper_case(text_argument(arguments[0])));
}

// like(pattern, text), which stands for "text LIKE pattern".
void like_function(sqlite3_context *context, int, sqlite3_value **arguments)
{
    if (sqlite3_value_type(arguments[0]) == SQLITE_NULL || sqlite3_value_type(arguments[1]) == SQLITE_NULL)
        return;
    shielded(context, [&] {
        const QString pattern = text_argument(arguments[0]);
        if (!pattern_is_whole(pattern))
            fail(ado::syntax_error, QStringLiteral("Invalid pattern string."));
        sqlite3_result_int(context, is_like(text_argument(arguments[1]), pattern));
    });
}

ado::Value argument_value(sqlite3_value *of, value_kind kind)
{
    switch (sqlite3_value_type(of)) {
    case SQLITE_NULL:
        return {};
    case SQLITE_INTEGER:
        return ado::Value(qint64(sqlite3_value_int64(of)));
    case SQLITE_FLOAT:
        return ado::Value(sqlite3_value_double(of));
    default:
        break;
    }
    if (kind == value_kind::date)
        if (const QDateTime date = date_argument(of); date.isValid())
            return ado::Value(date);
    return ado::Value(text_argument(of));
}

void give_value(sqlite3_context *context, const ado::Value &value)
{
    if (const auto *number = std::get_if<qint64>(&value.held))
        sqlite3_result_int64(context, *number);
    else if (const auto *fraction = std::get_if<double>(&value.held))
        sqlite3_result_double(context, *fraction);
    else if (const auto *flag = std::get_if<bool>(&value.held))
        sqlite3_result_int(context, *flag ? -1 : 0);
    else if (const auto *date = std::get_if<QDateTime>(&value.held))
        give_text(context, kept_text(*date));
    else if (!value.is_null())
        give_text(context, std::get<QString>(value.held));
}

// jet_text(value, kind): a number or date as the text that a pattern is held against.
void as_text(sqlite3_context *context, int, sqlite3_value **arguments)
{
    const ado::Value value = argument_value(arguments[0], value_kind(sqlite3_value_int(arguments[1])));
    if (!value.is_null())
        give_text(context, value.to_text());
}

// jet_convert(value, kind, type, width, whole): a computed value on its way into a column.
void converted(sqlite3_context *context, int, sqlite3_value **arguments)
{
    shielded(context, [&] {
        const target to{ado::field_type(sqlite3_value_int(arguments[2])), sqlite3_value_int(arguments[3]),
                        sqlite3_value_int(arguments[4]) != 0};
        give_value(context, convert(argument_value(arguments[0], value_kind(sqlite3_value_int(arguments[1]))), to));
    });
}

}

void add_functions(sqlite3 *db, std::optional<run_time_error> *failure)
{
    const auto add = [&](const char *name, int arguments, void (*call)(sqlite3_context *, int, sqlite3_value **)) {
        sqlite3_create_function_v2(db, name, arguments, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, failure,
                                   call, nullptr, nullptr, nullptr);
    };
    sqlite3_create_collation_v2(db, "JET", SQLITE_UTF8, nullptr, compare_folded, nullptr);
    add("like", 2, like_function);
    add("jet_ucase", 1, upper);
    add("jet_datevalue", 1, date_value);
    add("jet_year", 1, date_part<year_of>);
    add("jet_month", 1, date_part<month_of>);
    add("jet_day", 1, date_part<day_of>);
    add("jet_hour", 1, date_part<hour_of>);
    add("jet_minute", 1, date_part<minute_of>);
    add("jet_second", 1, date_part<second_of>);
    add("jet_text", 2, as_text);
    add("jet_convert", 5, converted);
}

}
