#include "platform/real/smtp/answer_reader.h"
#include <algorithm>
#include <utility>

namespace smtp {

namespace {

constexpr qsizetype longest_answer = 64 * 1024;
constexpr qsizetype longest_words = 300;

bool is_digit(char letter)
{
    return letter >= '0' && letter <= '9';
}

// 0: no line of an answer.
int code_of(QByteArrayView line)
{
    const bool has_code =
        line.size() >= 3 && line[0] >= '2' && line[0] <= '5' && is_digit(line[1]) && is_digit(line[2]);
    if (!has_code || (line.size() > 3 && line[3] != ' ' && line[3] != '-'))
        return 0;
    return (line[0] - '0') * 100 + (line[1] - '0') * 10 + (line[2] - '0');
}

}

QString words_of(const answer &said)
{
    QString words;
    for (const QByteArray &line : said.lines) {
        const bool goes_on = !words.isEmpty() && said.code != 0;
        const QString text = QString::fromUtf8(goes_on ? line.mid(4) : line);
        words += (words.isEmpty() ? QString() : QStringLiteral(" ")) + text;
        if (words.size() > longest_words)
            break;
    }
    for (QChar &letter : words)
        if (!letter.isPrint() && !letter.isSurrogate())
            letter = u' ';
    words = words.simplified().left(longest_words);
    if (!words.isEmpty() && words.back().isHighSurrogate())
        words.chop(1);
    // The code takes the place of the first line's mark that more lines follow.
    if (said.code != 0 && words.size() > 3 && words.at(3) == u'-')
        words[3] = u' ';
    return words;
}

void answer_reader::add(QByteArrayView bytes)
{
    come.append(bytes);
}

std::optional<answer> answer_reader::spoil()
{
    spoiled = true;
    growing.code = 0;
    return growing;
}

bool answer_reader::take_line(QByteArrayView line)
{
    const int code = code_of(line);
    const bool fits = code != 0 && (growing.code == 0 || growing.code == code);
    growing.code = code;
    growing.lines.append(line.toByteArray());
    return fits;
}

std::optional<answer> answer_reader::next()
{
    if (spoiled)
        return growing;
    while (true) {
        const qsizetype end = come.indexOf('\n', searched);
        if (end < 0 || grown + end > longest_answer) {
            searched = come.size();
            return grown + come.size() > longest_answer ? spoil() : std::nullopt;
        }
        QByteArrayView line = QByteArrayView(come).first(end);
        if (line.endsWith('\r'))
            line.chop(1);
        const bool goes_on = line.size() > 3 && line[3] == '-';
        if (!take_line(line))
            return spoil();
        grown += end + 1;
        come.remove(0, end + 1);
        searched = 0;
        if (!goes_on) {
            grown = 0;
            return std::exchange(growing, {});
        }
    }
}

}
