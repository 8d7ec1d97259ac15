// How many answers were handed over for an address within the last hour: two machines that answer each other must not
// go on for ever. Lies beside the Outbox, in lines that are only ever added, and survives a kill.
#pragma once
#include <QHash>
#include <QList>
#include <QString>

namespace outbox {

class answer_ledger {
public:
    explicit answer_ledger(const QString &folder); // reads what an earlier run has left
    // Of an address in any letter case. seconds is the present moment.
    bool is_full(const QString &address, qint64 seconds) const;
    void note(const QString &address, qint64 seconds); // throws 61 or 70, and has counted it all the same

private:
    void clean(qint64 seconds);

    QString folder;
    QHash<QString, QList<qint64>> answers;
    qsizetype lines = 0, clean_at;
};

}
