// What the server says, put together from bytes as they come. Trusts nothing: see tests/fuzz/smtp_fuzz.cpp.
#pragma once
#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <optional>

namespace smtp {

struct answer {
    int code = 0;         // 200 to 599; 0: what came is no answer, and nothing that follows can be trusted
    QByteArrayList lines; // as they came, with their codes, without line ends

    bool is_yes() const { return code / 100 == 2; }
    bool is_no() const { return code / 100 == 4 || code / 100 == 5; }
    bool is_no_for_good() const { return code / 100 == 5; }
};

QString words_of(const answer &said); // code and text as one line for the user, bounded

class answer_reader {
public:
    void add(QByteArrayView bytes);
    std::optional<answer> next();                    // nothing: the answer is not whole yet
    bool is_empty() const { return come.isEmpty(); } // nothing came beyond the answers that were taken

private:
    bool take_line(QByteArrayView line);
    std::optional<answer> spoil();

    QByteArray come;
    qsizetype searched = 0; // so far no line end
    answer growing;
    qsizetype grown = 0; // bytes of it
    bool spoiled = false;
};

}
