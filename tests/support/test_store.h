// A fresh store for a test, made from the delivered texts in a temporary folder that goes with it, and the rows that
// tests need in it, written as the program writes them.
#pragma once
#include "platform/ado.h"
#include <QList>
#include <QTemporaryDir>
#include <QVariant>

class test_store {
public:
    enum class setup { not_done, done };
    explicit test_store(setup first_run = setup::done);

    QString folder() const { return files.path(); }
    QString path() const { return files.filePath("mailapp.mdb"); }
    ado::Connection &connection() { return opened; } // open from the start
    void open(ado::Connection &another) const;       // a further one on the same file

    void run(const QString &sql) { opened.Execute(sql); }
    QVariantList column(const QString &sql); // the first column of every row, as texts; Null is invalid
    QString cell(const QString &sql);        // the first value of the first row; "" for Null or no row

    qint64 add_account(const QString &name, const QString &address); // the account's id; its table has its name
    struct map_field {
        QString name;
        int piece = 1;
        bool label_left_out = true; // "finclude": no label stands before the value
        QString supporting = {};    // joined by "@@@"
    };
    // A map of the account with its table; gives its table_id.
    qint64 add_map(const QString &name, qint64 account, const QString &subject, const QList<map_field> &fields,
                   const QString &separator = "Line");

private:
    QTemporaryDir files;
    ado::Connection opened;
};

// The error number that the work fails with, 0 when it does not.
template <typename Work>
quint32 error_number_of(Work work)
{
    try {
        work();
    } catch (const run_time_error &failure) {
        return failure.number;
    }
    return 0;
}
