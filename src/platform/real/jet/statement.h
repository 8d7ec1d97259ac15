// A prepared SQLite statement and its parameters.
#pragma once
#include "platform/ado.h"
#include <QByteArray>
#include <memory>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace jet {

struct finalizer {
    void operator()(sqlite3_stmt *which) const;
};
using prepared_statement = std::unique_ptr<sqlite3_stmt, finalizer>;

// Whatever happens, the statement ends up reset: one that stays open would hold a lock.
struct reset_after {
    sqlite3_stmt *which;
    explicit reset_after(sqlite3_stmt *of) : which(of) {}
    reset_after(const reset_after &) = delete;
    reset_after &operator=(const reset_after &) = delete;
    ~reset_after();
};

// Fails with what SQLite says. lasting: it will be used again and again.
prepared_statement prepare(sqlite3 *db, const QByteArray &sql, bool lasting);

// Puts values into a statement's parameters. The texts' UTF-8 lies in one buffer that is kept from call to call, so a
// binder must outlive the steps of what it bound, and one statement is bound at a time.
class binder {
public:
    // longest: an upper limit of UTF-16 units over all texts to come.
    void start(sqlite3_stmt *to, qsizetype longest);
    void start(sqlite3_stmt *to, const std::vector<ado::Value> &values_to_come);
    void null(int place);
    void number(int place, qint64 value);
    void number(int place, double value);
    void text(int place, QStringView value);
    void date(int place, const QDateTime &value);
    void value(int place, const ado::Value &value);

private:
    char *room(qsizetype bytes);

    sqlite3_stmt *bound = nullptr;
    std::vector<char> buffer;
    size_t used = 0;
};

// SQLite's text as it is: a leading U+FEFF is a letter of the text here, which Qt's own reading would drop.
QString kept_utf8(const unsigned char *text, int length);

// A text of SQLite's as a value of a column of the type.
ado::Value text_value(const char *text, int length, ado::field_type type);

}
