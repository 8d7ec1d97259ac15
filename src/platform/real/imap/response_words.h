// What an answer of an IMAP server says: its kind, and its words read one after the other, in place. Any bytes will
// do: nothing here fails or descends by recursion; what is not as it should be ends the reading.
#pragma once
#include "platform/real/imap/response_reader.h"
#include <QString>
#include <deque>
#include <optional>

namespace imap {

class words {
public:
    words(const response &answer, qsizetype from) : bytes(answer.bytes), literals(answer.literals), at(from) {}
    explicit words(QByteArrayView text) : bytes(text) {}

    bool at_end();
    bool opens();  // takes a "("
    bool closes(); // takes a ")"
    // Up to a blank or bracket; "BODY[HEADER.FIELDS (TO)]<0>" is one. "" where there is none.
    QByteArrayView atom();
    std::optional<quint64> number();
    // A quoted string, literal or atom; nothing for NIL. Good as long as this object and the answer are.
    std::optional<QByteArrayView> text();
    void skip(); // one value, a list with all that is in it
    std::deque<QByteArray> take_unescaped()
    {
        return std::move(unescaped);
    } // what quoted texts were made of, to be kept as long
    QByteArrayView rest() const { return bytes.sliced(qMin(at, bytes.size())); }

private:
    void pass_blanks();
    QByteArrayView quoted();
    std::optional<QByteArrayView> literal();

    QByteArrayView bytes;
    const std::vector<literal_place> *literals = nullptr;
    size_t next_literal = 0;
    qsizetype at = 0;
    std::deque<QByteArray> unescaped;
};

enum class answer_kind { status, tagged, continuation, numbered, named };
enum class status { ok, no, bad, bye, preauth, none };

struct answer {
    answer_kind kind = answer_kind::named;
    quint64 number = 0;           // numbered: "* 12 EXISTS"
    QByteArrayView tag;           // tagged
    QByteArrayView name;          // numbered, named: "EXISTS"; compare with is()
    status said = status::none;   // status, tagged
    QByteArrayView code, details; // of "[COPYUID 1 2 3]": the first word and the others
    QByteArrayView human;         // the text behind it
    qsizetype rest_at = 0;        // where the words behind the name begin
};

answer read_answer(const response &from);
bool is(QByteArrayView word, QByteArrayView capitals); // without regard to case
QString plain_words(QByteArrayView human);             // for the user: one line, bounded

}
