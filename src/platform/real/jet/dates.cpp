#include "platform/real/jet/dates.h"
#include <cmath>

namespace jet {

namespace {

const QDate day_zero(1899, 12, 30);

// Takes numbers and signs off the front of a text.
class date_reader {
public:
    explicit date_reader(QStringView whole) : text(whole) {}

    bool number(int &value, int &digits)
    {
        value = 0;
        digits = 0;
        while (at < text.size() && text[at] >= u'0' && text[at] <= u'9' && digits < 5) {
            value = value * 10 + (text[at++].unicode() - u'0');
            ++digits;
        }
        return digits > 0;
    }

    bool number(int &value)
    {
        int digits = 0;
        return number(value, digits) && digits <= 2;
    }

    bool sign(char16_t wanted)
    {
        if (at >= text.size() || text[at] != QChar(wanted))
            return false;
        ++at;
        return true;
    }

    bool blanks()
    {
        const qsizetype before = at;
        while (sign(u' '))
            ;
        return at > before;
    }

    bool word(QStringView wanted)
    {
        if (text.mid(at, wanted.size()).compare(wanted, Qt::CaseInsensitive) != 0)
            return false;
        at += wanted.size();
        return true;
    }

    bool at_end() const { return at == text.size(); }
    qsizetype place() const { return at; }
    void go_to(qsizetype where) { at = where; }

private:
    QStringView text;
    qsizetype at = 0;
};

QDate valid_date(int year, int digits, int month, int day)
{
    if (digits <= 2)
        year += year < 30 ? 2000 : 1900;
    if (month > 12)
        std::swap(month, day);
    return year >= 100 && year <= 9999 ? QDate(year, month, day) : QDate();
}

// M/D/YYYY or YYYY-MM-DD. Leaves the reader alone when there is none.
bool take_date(date_reader &in, QDate &date)
{
    const qsizetype start = in.place();
    int first = 0, second = 0, third = 0, digits = 0, last_digits = 0;
    if (in.number(first, digits)) {
        if (digits <= 2 && in.sign(u'/') && in.number(second) && in.sign(u'/') && in.number(third, last_digits) &&
            (last_digits == 1 || last_digits == 2 || last_digits == 4)) {
            date = valid_date(third, last_digits, first, second);
            return true;
        }
        if (digits == 4 && in.sign(u'-') && in.number(second) && in.sign(u'-') && in.number(third)) {
            date = QDate(first, second, third);
            return true;
        }
    }
    in.go_to(start);
    return false;
}

bool take_time(date_reader &in, QTime &time)
{
    int hour = 0, minute = 0, second = 0;
    if (!in.number(hour) || !in.sign(u':') || !in.number(minute))
        return false;
    if (in.sign(u':') && !in.number(second))
        return false;
    in.blanks();
    const bool morning = in.word(u"AM");
    const bool evening = !morning && in.word(u"PM");
    if (morning || evening) {
        if (hour < 1 || hour > 12)
            return false;
        hour = hour % 12 + (evening ? 12 : 0);
    }
    time = QTime(hour, minute, second);
    return time.isValid();
}

void put_digits(char *to, int value, int count)
{
    for (int i = count - 1; i >= 0; --i) {
        to[i] = char('0' + value % 10);
        value /= 10;
    }
}

int read_digits(const char *from, int count)
{
    int value = 0;
    for (int i = 0; i < count; ++i) {
        if (from[i] < '0' || from[i] > '9')
            return -100000;
        value = value * 10 + (from[i] - '0');
    }
    return value;
}

}

QString us_text(const QDateTime &date)
{
    const QDate day = date.date();
    const QTime time = date.time();
    QString text;
    if (day != day_zero)
        text = QString::number(day.month()) + u'/' + QString::number(day.day()) + u'/' +
               QString::number(day.year()).rightJustified(4, u'0');
    if (time == QTime(0, 0) && day != day_zero)
        return text;
    if (!text.isEmpty())
        text += u' ';
    const int hour = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
    text += QString::number(hour) + u':' + QString::number(time.minute()).rightJustified(2, u'0') + u':' +
            QString::number(time.second()).rightJustified(2, u'0');
    return text + (time.hour() < 12 ? " AM" : " PM");
}

std::optional<QDateTime> read_date(QStringView text)
{
    date_reader in(text);
    in.blanks();
    QDate date = day_zero;
    QTime time(0, 0);
    const bool dated = take_date(in, date);
    if (!date.isValid())
        return std::nullopt;
    const bool parted = in.blanks();
    if (!in.at_end() && ((dated && !parted) || !take_time(in, time)))
        return std::nullopt;
    if (!dated && in.place() == 0)
        return std::nullopt;
    in.blanks();
    if (!in.at_end() || (!dated && text.trimmed().isEmpty()))
        return std::nullopt;
    return QDateTime(date, time, Qt::UTC);
}

void write_kept(const QDateTime &date, char *to)
{
    int year = 0, month = 0, day = 0;
    date.date().getDate(&year, &month, &day);
    const QTime time = date.time();
    put_digits(to, year, 4);
    put_digits(to + 5, month, 2);
    put_digits(to + 8, day, 2);
    put_digits(to + 11, time.hour(), 2);
    put_digits(to + 14, time.minute(), 2);
    put_digits(to + 17, time.second(), 2);
    to[4] = to[7] = '-';
    to[10] = ' ';
    to[13] = to[16] = ':';
}

QString kept_text(const QDateTime &date)
{
    char text[19];
    write_kept(date, text);
    return QString::fromLatin1(text, 19);
}

QDateTime read_kept(const char *text, int length)
{
    if (length != 19 || text[4] != '-' || text[7] != '-' || text[10] != ' ' || text[13] != ':' || text[16] != ':')
        return {};
    const QDate date(read_digits(text, 4), read_digits(text + 5, 2), read_digits(text + 8, 2));
    const QTime time(read_digits(text + 11, 2), read_digits(text + 14, 2), read_digits(text + 17, 2));
    return date.isValid() && time.isValid() ? QDateTime(date, time, Qt::UTC) : QDateTime();
}

double day_number(const QDateTime &date)
{
    const double fraction = date.time().msecsSinceStartOfDay() / 86400000.0;
    const double days = double(day_zero.daysTo(date.date()));
    return days < 0 ? days - fraction : days + fraction;
}

QDateTime from_day_number(double number)
{
    if (!(number > -657435.0 && number < 2958466.0))
        return {};
    const double days = std::trunc(number);
    const qint64 seconds = std::llround(std::fabs(number - days) * 86400.0);
    return QDateTime(day_zero.addDays(qint64(days)), QTime(0, 0), Qt::UTC).addSecs(seconds);
}

}
