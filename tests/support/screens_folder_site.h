// The screen of the back-up folder in tests: a folder "safe" to choose, files in it, and its buttons pressed.
#pragma once
#include "screens/frame/backup_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

struct folder_site : screens_site {
    folder_site() { QDir().mkpath(file("safe")); }

    void click(const char *button)
    {
        QTest::mouseClick(&control<QPushButton>(the<backup_frm>(), button), Qt::LeftButton);
    }
    // Opens the screen, types the path, and presses next_b.
    void choose(const QString &path)
    {
        the<backup_frm>().show();
        control<QLineEdit>(the<backup_frm>(), "Folder_t").setText(path);
        click("next_b");
    }
    void write(const QString &name, const QByteArray &text) const
    {
        QDir().mkpath(QFileInfo(file(name)).path());
        QFile made(file(name));
        if (!made.open(QIODevice::WriteOnly) || made.write(text) != text.size())
            qFatal("cannot write %s", qPrintable(name));
    }
    QByteArray read(const QString &name) const
    {
        QFile found(file(name));
        return found.open(QIODevice::ReadOnly) ? found.readAll() : QByteArray("(none)");
    }
    QStringList names(const QString &name) const
    {
        return QDir(file(name))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }
    QString make_it(const QString &path) const { return "Do you want to create a new folder called " + path + " ?"; }
    QString emptied(const QString &strangers) const
    {
        return "The folders \"data\" and \"html\" in " + file("safe") +
               " are emptied for the back-up, and they hold something else:\n\n" + strangers +
               "\n\nDo you want to delete all that is in them?";
    }
};
