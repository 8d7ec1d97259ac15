// A program folder whose Outbox a test looks into, mails for it, and runs that are killed.
#pragma once
#include "platform/app_folder.h"
#include "platform/outbox.h"
#include "support/fault_points.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <sys/wait.h>
#include <unistd.h>

struct program_folder {
    program_folder() { set_app_folder(folder.path()); }
    ~program_folder() { set_app_folder({}); }
    void begin_a_new_run() const
    {
        set_app_folder(QStringLiteral("/nowhere"));
        outbox::count();
        set_app_folder(folder.path());
    }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("a test's file cannot be written");
    }
    QStringList outbox_files() const
    {
        return QDir(folder.filePath(QStringLiteral("outbox"))).entryList(QDir::Files, QDir::Name);
    }
    QTemporaryDir folder;
};

inline outbox::outgoing_mail mail_to(const QString &address, const QString &subject = QStringLiteral("Hello"))
{
    outbox::outgoing_mail mail;
    mail.Kind = outbox::mail_kind::mailing;
    mail.SendingAccount = QStringLiteral("orders@example.org");
    mail.To = {address};
    mail.Subject = subject;
    mail.body = QStringLiteral("A line of text.\n").repeated(100);
    return mail;
}

inline outbox::outgoing_mail answer_to(const QString &address)
{
    outbox::outgoing_mail mail = mail_to(address, QStringLiteral("Re: Hello"));
    mail.Kind = outbox::mail_kind::answer;
    return mail;
}

// Runs work in a child that dies before its n-th disk call; true when it lived to its end.
template <typename work>
bool lives_through(int die_before, const work &child_work)
{
    const pid_t child = fork();
    if (child == 0) {
        die_before_disk_call(die_before);
        child_work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
