#include "platform/real/mail_session/pop3_reader.h"
#include <utility>

namespace pop3 {

namespace {

constexpr qsizetype longest_first_line = 4096;
constexpr qsizetype longest_waiting = 64 * 1024; // of a line whose end has not come
constexpr qsizetype longest_words = 300;

QByteArrayView without_cr(QByteArrayView line)
{
    return line.endsWith('\r') ? line.chopped(1) : line;
}

bool is_word(QByteArrayView line, QByteArrayView word)
{
    return line.startsWith(word) && (line.size() == word.size() || line[word.size()] == ' ');
}

}

QString words_for_user(const answer &said)
{
    QString words = QString::fromUtf8(said.words.left(longest_words));
    for (QChar &letter : words)
        if (!letter.isPrint())
            letter = u' ';
    return words.simplified();
}

bool answer_reader::take_first_line(form wanted)
{
    const qsizetype end = come.indexOf('\n');
    if (end < 0 && come.size() <= longest_first_line)
        return false;
    const QByteArrayView line = without_cr(QByteArrayView(come).first(end < 0 ? longest_first_line : end));
    growing = {};
    if (end < 0 || end > longest_first_line || !(is_word(line, "+OK") || is_word(line, "-ERR"))) {
        growing.said = fate::not_understood;
        growing.words = line.toByteArray();
        return true; // and come stays as it is, so that the next answer is none either
    }
    growing.said = line.startsWith('+') ? fate::yes : fate::no;
    growing.words = line.sliced(line.startsWith('+') ? 3 : 4).trimmed().toByteArray();
    in_lines = growing.said == fate::yes && wanted == form::many_lines;
    in_mid_line = false;
    come.remove(0, end + 1);
    return true;
}

void answer_reader::keep_line(QByteArrayView piece, bool is_whole, qsizetype keep)
{
    if (!in_mid_line && piece.startsWith('.'))
        piece = piece.sliced(1);
    const qsizetype room = qMax<qsizetype>(0, keep - growing.lines.size());
    growing.lines.append(piece.first(qMin(room, piece.size())));
    if (is_whole && growing.lines.size() < keep)
        growing.lines.append('\n');
    in_mid_line = !is_whole;
}

// True: the last line was there.
bool answer_reader::take_lines(qsizetype keep)
{
    qsizetype at = 0;
    while (true) {
        const qsizetype end = come.indexOf('\n', at);
        if (end < 0)
            break;
        const QByteArrayView line = without_cr(QByteArrayView(come).sliced(at, end - at));
        at = end + 1;
        if (!in_mid_line && line == QByteArrayView(".")) {
            come.remove(0, at);
            return true;
        }
        keep_line(line, true, keep);
    }
    come.remove(0, at);
    if (come.size() > longest_waiting) {
        const qsizetype sure = come.size() - 1; // the last one may be the CR of the line's end
        keep_line(QByteArrayView(come).first(sure), false, keep);
        come.remove(0, sure);
    }
    return false;
}

std::optional<answer> answer_reader::next(form wanted, qsizetype keep)
{
    if (!in_lines && !take_first_line(wanted))
        return std::nullopt;
    if (in_lines && !take_lines(keep))
        return std::nullopt;
    in_lines = false;
    return std::exchange(growing, {});
}

}
