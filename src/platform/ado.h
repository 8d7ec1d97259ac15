// The store's interface: connections, recordsets, values. Behind it: SQLite under a translator of the Jet dialect
// (platform/real/jet). Every call may throw run_time_error with the numbers listed at the end.
#pragma once
#include "platform/run_time_error.h"
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <variant>

namespace ado {

// One value of a row. Null is a value of its own, not the empty text.
class Value {
public:
    Value() = default; // Null
    Value(const QString &text) : held(text) {}
    Value(const char16_t *text) : held(QString::fromUtf16(text)) {}
    Value(const char *) = delete; // would be taken for a flag
    Value(int number) : held(qint64(number)) {}
    Value(qint64 number) : held(number) {}
    Value(double number) : held(number) {}
    Value(bool flag) : held(flag) {}
    Value(const QDateTime &date) : held(date) {} // wall clock, see platform/clock.h

    bool is_null() const { return held.index() == 0; }
    QString to_text() const;       // US dates, "True"/"False"; Null throws 94 "Invalid use of Null"
    QString text_or_empty() const; // the same, Null gives ""
    qint64 to_number() const;      // whole; a text is read as a number, else 13 "Type mismatch"
    bool to_flag() const;
    QDateTime to_date() const;
    bool operator==(const Value &other) const = default;

    std::variant<std::monostate, QString, qint64, double, bool, QDateTime> held;
};

enum class field_type { text, memo, number, date, flag, autonumber };
enum class cursor_type { forward_only, static_, keyset };
enum class lock_type { read_only, optimistic };

class Connection {
public:
    Connection();
    ~Connection(); // closes
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    QString Provider;         // "microsoft.jet.oledb.4.0"
    QString ConnectionString; // the file's path

    void Open();       // two connections to one file share one handle
    void Close();      // commits first
    int State() const; // 0 closed, 1 open
    void Execute(const QString &sql, qint64 *affected = nullptr);

    void need_sound(); // throws when the file is damaged; reads all of it
    void barrier();    // what was written so far is on disk when this returns
    // A consistent copy, also in the middle of writing; durable. It tells how many of how many pages are done.
    using told_pages = std::function<void(qint64 done, qint64 total)>;
    void copy_store(const QString &target, const told_pages &told = {});

    struct shared_handle;
    std::shared_ptr<shared_handle> handle; // the layer's own
};

class Recordset;

// One field of the current row; valid as long as its recordset is open.
class Field {
public:
    QString Name() const; // in the table's own spelling
    field_type Type() const;
    Value value() const;                // 3021 without a current row
    void set_value(const Value &value); // kept until Update; 3251 on a read-only recordset

private:
    friend class Recordset;
    Field(Recordset *owner, int column) : rows(owner), index(column) {}
    Recordset *rows;
    int index;
};

class Recordset {
public:
    Recordset();
    ~Recordset();
    Recordset(const Recordset &) = delete;
    Recordset &operator=(const Recordset &) = delete;

    // Holds no statement afterwards: later writes, ALTER and DROP neither disturb it nor are blocked by it.
    void Open(const QString &sql, Connection &connection, cursor_type cursor = cursor_type::static_,
              lock_type lock = lock_type::read_only);
    void Close();      // of a closed one: 3704
    int State() const; // 0 closed, 1 open

    bool EOF_() const; // the plain name is a macro of the C library
    bool BOF() const;
    qint64 RecordCount(); // the true number; -1 for forward_only
    void MoveFirst();
    void MoveNext();
    void MovePrevious();
    void MoveLast();

    int field_count() const;
    Field Fields(int index);           // from 0
    Field Fields(const QString &name); // any case; 3265 when there is none
    Value operator[](const QString &name) { return Fields(name).value(); }
    Value operator[](int index) { return Fields(index).value(); }

    void AddNew();
    void Update();
    void CancelUpdate();
    void Delete();

    struct state;
    std::unique_ptr<state> held; // the layer's own
};

// The error numbers that callers may meet.
enum error : quint32 {
    syntax_error = 0x80040E14,  // also: table exists, value count, reserved name, bad pattern
    type_mismatch = 0x80040E07, // also: bad date, number or flag text
    unknown_table = 0x80040E37,
    value_too_long = 0x80040E57,
    unknown_column = 0x80040E10,
    column_exists = 0x80040E21,
    duplicate_key = 0x80040E2F, // two rows of a table would have one key
    store_failure = 0x80004005, // cannot open, disk full, locked, read-only, anything else
    no_current_record = 0x800A0BCD,
    no_such_field = 0x800A0CC1,
    object_closed = 0x800A0E78,
    object_open = 0x800A0E79,
    recordset_read_only = 0x800A0CB3,
    invalid_use_of_null = 94,
};

}
