// What a POP3 server says, put together from bytes as they come: one reader for answers of one line and of many. Trusts
// nothing: tests/fuzz/pop3_fuzz.cpp.
#pragma once
#include <QByteArray>
#include <QString>
#include <optional>

namespace pop3 {

enum class fate { yes, no, not_understood };

struct answer {
    fate said = fate::yes;
    QByteArray words; // behind +OK or -ERR; of what is not understood, the line
    QByteArray lines; // of a yes of many lines: as they were sent, dots undone, LF behind each; cut at what one keeps
};

QString words_for_user(const answer &said); // one bounded line of printable letters

enum class form { one_line, many_lines };

class answer_reader {
public:
    void add(QByteArrayView bytes) { come.append(bytes); }
    // Nothing: the answer is not whole yet; ask again with the same form and keep. A no has one line in either form.
    // Behind an answer that was not understood there are no others.
    std::optional<answer> next(form wanted, qsizetype keep);
    bool is_empty() const { return come.isEmpty() && !in_lines; }

private:
    bool take_first_line(form wanted);
    bool take_lines(qsizetype keep);
    void keep_line(QByteArrayView piece, bool is_whole, qsizetype keep);

    QByteArray come;
    answer growing;
    bool in_lines = false, in_mid_line = false;
};

}
