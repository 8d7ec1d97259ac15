// The About screen.
#include "screens/frame/frmAbout.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>

class about_test : public QObject {
    Q_OBJECT
private slots:
    void it_tells_the_version_and_whom_to_thank()
    {
        screens_site site;
        the<frmAbout>().show();
        QCOMPARE(control<QLabel>(the<frmAbout>(), "lblVersion").text(), "Version " TESSALY_VERSION);
        QVERIFY(control<QListWidget>(the<frmAbout>(), "credits_li").count() > 0);
    }

    void without_a_tool_system_information_is_unavailable()
    {
        screens_site site;
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", site.store.folder().toLocal8Bit());
        the<frmAbout>().show();
        control<QPushButton>(the<frmAbout>(), "cmdSysInfo").click();
        qputenv("PATH", path);
        QCOMPARE(site.boxes.shown, QStringList{"System Information Is Unavailable At This Time"});
    }

    void with_a_tool_it_is_started()
    {
        screens_site site;
        QFile tool(site.file("hardinfo"));
        QVERIFY(tool.open(QIODevice::WriteOnly));
        tool.write("#!/bin/sh\n: >'" + site.file("started").toLocal8Bit() + "'\n");
        tool.close();
        QVERIFY(tool.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", site.store.folder().toLocal8Bit());
        the<frmAbout>().show();
        control<QPushButton>(the<frmAbout>(), "cmdSysInfo").click();
        qputenv("PATH", path);
        QTRY_VERIFY(QFile::exists(site.file("started")));
        QVERIFY(site.boxes.shown.isEmpty());
    }

    void enter_is_ok()
    {
        screens_site site;
        bool ended = false;
        QTimer::singleShot(50, [&ended] {
            QWidget *dialog = QApplication::activeModalWidget();
            QTest::keyClick(dialog, Qt::Key_Return);
            ended = !is_loaded<frmAbout>();
            if (!ended)
                dialog->close();
        });
        the<frmAbout>().show_modal();
        QVERIFY(ended);
        QVERIFY(site.boxes.shown.isEmpty());
    }

    void ok_ends_it()
    {
        screens_site site;
        the<frmAbout>().show();
        control<QPushButton>(the<frmAbout>(), "cmdOK").click();
        QVERIFY(!is_loaded<frmAbout>());
    }
};

QTEST_MAIN(about_test)
#include "about_test.moc"
