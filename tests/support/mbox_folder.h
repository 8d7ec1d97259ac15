// An mbox file in a folder of a test's own, read by the mail client that reads and leaves.
#pragma once
#include "support/open_mailbox.h"
#include <QFile>
#include <QTest>
#include <fcntl.h>
#include <sys/stat.h>

inline const QByteArray from_ann = "From ann@example.net Thu Jan  1 13:00:05 2026\n";

inline QByteArray mbox_mail(const QByteArray &subject, const QByteArray &body = "Hello\n")
{
    return from_ann + "To: orders@example.org\nFrom: Ann <ann@example.net>\nSubject: " + subject + "\n\n" + body + "\n";
}

struct mbox_folder : open_mailbox_folder {
    mbox_folder() { set_mbox(path("inbox")); }
    void write(const QByteArray &bytes)
    {
        QFile file(path("inbox"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    void append(const QByteArray &bytes)
    {
        QFile file(path("inbox"));
        QVERIFY(file.open(QIODevice::Append));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    void make_old()
    {
        const timespec times[2] = {{1767268800, 0}, {1767268800, 0}};
        QCOMPARE(utimensat(AT_FDCWD, QFile::encodeName(path("inbox")).constData(), times, 0), 0);
    }
    QStringList subjects_of(const QByteArray &bytes)
    {
        write(bytes);
        sign_on();
        return subjects();
    }
};
