// Another program's view of a store, for tests that look at what the program would not show, or that leave a store as
// a crash leaves it.
#pragma once
#include <QString>

struct sqlite3;

class raw_store {
public:
    explicit raw_store(const QString &path);
    ~raw_store();
    raw_store(const raw_store &) = delete;
    raw_store &operator=(const raw_store &) = delete;

    void run(const char *sql) const;     // ends the test program when it fails
    QString text(const char *sql) const; // the first column of all rows, blanks between them

private:
    sqlite3 *db = nullptr;
};

QString accounts_in(const QString &store);

// The moment of a crash, as a second file with its journal: the change is half in the file, and what was there before
// in the journal. The first file gets a table "filler" of 3000 rows.
void leave_crashed(const QString &store, const QString &crashed, const char *change);

constexpr auto half_done = "update filler set t='after' || t; update email_tbl set query='after'";
