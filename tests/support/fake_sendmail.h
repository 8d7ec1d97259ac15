// A program that stands for sendmail: keeps its arguments and what it was fed, says something, and ends as told.
#pragma once
#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QTemporaryDir>

class fake_sendmail {
public:
    struct call {
        QStringList arguments;
        QByteArray bytes;
    };

    // What it says goes to its stderr.
    explicit fake_sendmail(int exit_status = 0, const QString &says = {});
    QString program() const { return folder.filePath(QStringLiteral("sendmail")); }
    QList<call> calls() const;                                 // in their order
    void ends_with(int exit_status, const QString &says = {}); // from now on

private:
    QTemporaryDir folder;
};
