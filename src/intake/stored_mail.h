// A mail on its way into an account table: is it there already, and adding its row.
#pragma once
#include <QDateTime>
#include <QString>

namespace intake {

struct arrived_mail {
    QString subject;
    QDateTime received;
    QString sender;
    QString body; // as the client gives it, LF line ends
};

// The test that makes a fetch safe to repeat: same subject, second, sender and body, case-blind.
QString duplicate_test(const QString &table, const arrived_mail &mail);
bool is_duplicate(const QString &table, const arrived_mail &mail);

// The row, with tsl_Status "new" and every LF of the body made CR LF.
void store_mail(const QString &table, const arrived_mail &mail);

}
