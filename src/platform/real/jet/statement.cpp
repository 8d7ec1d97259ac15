#include "platform/real/jet/statement.h"
#include "platform/real/jet/dates.h"
#include "platform/real/jet/failures.h"
#include <QStringConverter>
#include <cstring>
#include <sqlite3.h>

namespace jet {

void finalizer::operator()(sqlite3_stmt *which) const
{
    sqlite3_finalize(which);
}

reset_after::~reset_after()
{
    sqlite3_reset(which);
}

prepared_statement prepare(sqlite3 *db, const QByteArray &sql, bool lasting)
{
    sqlite3_stmt *made = nullptr;
    const int result = sqlite3_prepare_v3(db, sql.constData(), int(sql.size()) + 1,
                                          lasting ? SQLITE_PREPARE_PERSISTENT : 0, &made, nullptr);
    if (result != SQLITE_OK)
        throw run_time_error(failure_of(db, result));
    return prepared_statement(made);
}

void binder::start(sqlite3_stmt *to, qsizetype longest)
{
    constexpr size_t for_dates = 4096;
    bound = to;
    used = 0;
    const size_t wanted = size_t(longest) * 3 + for_dates;
    constexpr size_t kept = 1 << 20;
    if (buffer.size() < wanted || (buffer.size() > kept && wanted <= kept))
        std::vector<char>(std::max(wanted, size_t(65536))).swap(buffer);
}

void binder::start(sqlite3_stmt *to, const std::vector<ado::Value> &values_to_come)
{
    qsizetype longest = 0;
    for (const ado::Value &value : values_to_come)
        if (const auto *text = std::get_if<QString>(&value.held))
            longest += text->size();
    start(to, longest);
}

char *binder::room(qsizetype bytes)
{
    Q_ASSERT(used + size_t(bytes) <= buffer.size());
    return buffer.data() + used;
}

void binder::null(int place)
{
    sqlite3_bind_null(bound, place);
}

void binder::number(int place, qint64 value)
{
    sqlite3_bind_int64(bound, place, value);
}

void binder::number(int place, double value)
{
    sqlite3_bind_double(bound, place, value);
}

void binder::text(int place, QStringView value)
{
    char *start = room(value.size() * 3);
    QStringEncoder encode(QStringConverter::Utf8);
    const qsizetype length = encode.appendToBuffer(start, value) - start;
    used += size_t(length);
    sqlite3_bind_text(bound, place, start, int(length), SQLITE_STATIC);
}

void binder::date(int place, const QDateTime &value)
{
    char text[19];
    write_kept(value, text);
    sqlite3_bind_text(bound, place, text, 19, SQLITE_TRANSIENT);
}

void binder::value(int place, const ado::Value &value)
{
    if (const auto *text_held = std::get_if<QString>(&value.held))
        text(place, *text_held);
    else if (const auto *whole = std::get_if<qint64>(&value.held))
        number(place, *whole);
    else if (const auto *fraction = std::get_if<double>(&value.held))
        number(place, *fraction);
    else if (const auto *flag = std::get_if<bool>(&value.held))
        number(place, qint64(*flag ? -1 : 0));
    else if (const auto *moment = std::get_if<QDateTime>(&value.held))
        date(place, *moment);
    else
        null(place);
}

QString kept_utf8(const unsigned char *text, int length)
{
    const auto *bytes = reinterpret_cast<const char *>(text);
    const QString read = QString::fromUtf8(bytes, length);
    return length >= 3 && std::memcmp(bytes, "\xEF\xBB\xBF", 3) == 0 ? QChar(0xFEFF) + read : read;
}

ado::Value text_value(const char *text, int length, ado::field_type type)
{
    if (type == ado::field_type::date)
        if (const QDateTime date = read_kept(text, length); date.isValid())
            return ado::Value(date);
    return ado::Value(kept_utf8(reinterpret_cast<const unsigned char *>(text), length));
}

}
