// Bytes of an IMAP server to whole answers: a line with the literals in it. What an answer says: response_words.h.
#pragma once
#include <QByteArray>
#include <QByteArrayView>
#include <functional>
#include <vector>

namespace imap {

struct literal_place {
    qsizetype at = 0, size = 0; // within the answer's bytes
};

struct response {
    QByteArrayView bytes;                       // without the last line end; literals stand behind their "{size}" CR LF
    const std::vector<literal_place> *literals; // in their order
};

class response_reader {
public:
    // Gives at least one byte, or throws.
    using source = std::function<qsizetype(char *buffer, qsizetype size)>;
    explicit response_reader(source bytes);

    // The next answer, good until the next call. Throws what the source throws, and not_understood for what no mail
    // server sends: a line without end, or literals without number. Of the literals of one answer only the first
    // 32 MiB are kept.
    response next();
    qint64 literal_to_come() const { return literal_left; } // while the source is asked

private:
    void more(qsizetype at_least);
    void take_literal(qint64 announced);
    void begin_anew();

    source receive;
    QByteArray buffer;
    qsizetype begin = 0, filled = 0; // of the bytes not used yet
    qsizetype end = 0;               // of the answer so far, from begin
    qsizetype kept_of_literals = 0;
    qsizetype used = 0; // of the last answer, with its line end
    qint64 announced_in_all = 0;
    qint64 literal_left = 0;
    std::vector<literal_place> literals;
};

constexpr qsizetype most_literal_bytes = 32 * 1024 * 1024; // of one answer
constexpr qint64 most_announced_bytes = 256 * 1024 * 1024; // of one answer; more is a lie, of big mails we ask a part
constexpr qsizetype longest_line = 8 * 1024 * 1024;        // of one answer, without its literals
constexpr size_t most_literals = 2000;

}
