// The About screen.
#include "platform/winopen.h"
#include "screens/frame/TechSupport.h"
#include "screens/frame/frmAbout.h"
#include "screens/frame/rolling_list.h"
#include "screens/screen.h"
#include "support/failing_messages.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QUrlQuery>

namespace {

// A desktop that moves its windows for so long; 0: one that wants no motion.
class moving_style : public QProxyStyle {
public:
    explicit moving_style(int duration) : duration_ms(duration) {}
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration ? duration_ms : QProxyStyle::styleHint(hint, option, widget, data);
    }

private:
    int duration_ms;
};

}

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

    void tell_a_friend_begins_a_mail_in_the_desktops_program()
    {
        screens_site site;
        QStringList opened;
        set_winopen([&opened](const QString &address) {
            opened += address;
            return true;
        });
        the<frmAbout>().show();
        control<QPushButton>(the<frmAbout>(), "tellfriend_b").click();
        set_winopen({});
        QCOMPARE(opened.size(), 1);
        const QUrl mail = QUrl::fromEncoded(opened[0].toUtf8(), QUrl::StrictMode);
        QVERIFY(mail.isValid());
        QCOMPARE(mail.scheme(), "mailto");
        QCOMPARE(mail.path(), "friends email-id");
        const QUrlQuery parts(mail);
        QCOMPARE(parts.queryItemValue("subject", QUrl::FullyDecoded), "Your friend has recommended");
        const QString body = parts.queryItemValue("body", QUrl::FullyDecoded);
        QCOMPARE(body.count("\r\n"), 1); // two lines
        QVERIFY(body.contains("Tessaly"));
        QVERIFY(site.boxes.shown.isEmpty());
    }

    void without_a_mail_program_it_says_so()
    {
        screens_site site;
        the<frmAbout>().show();
        control<QPushButton>(the<frmAbout>(), "tellfriend_b").click();
        QCOMPARE(site.boxes.shown, QStringList{"This desktop has no mail program that could write the mail."});
        const failing_messages no_box(site.boxes);
        control<QPushButton>(the<frmAbout>(), "tellfriend_b").click();
        QCOMPARE(site.last_logged(), "frmAbout.frm|tellfriend_b");
    }

    void the_credits_roll_round_and_round_where_the_desktop_moves()
    {
        screens_site site;
        moving_style style(200);
        QListWidget list;
        list.setStyle(&style);
        list.resize(200, 60);
        for (int line = 0; line < 30; ++line)
            list.addItem("Thank you");
        list.show();
        rolling_list roll(list);
        roll.begin();
        QVERIFY(roll.rolls());
        roll.roll();
        roll.roll();
        QCOMPARE(list.verticalScrollBar()->value(), 2);
        list.verticalScrollBar()->setValue(list.verticalScrollBar()->maximum());
        for (int step = 0; step < 200 && list.verticalScrollBar()->value() != 0; ++step)
            roll.roll();
        QCOMPARE(list.verticalScrollBar()->value(), 0);
    }

    void the_credits_stand_still_on_a_desktop_without_motion()
    {
        screens_site site;
        moving_style style(0);
        QListWidget list;
        list.setStyle(&style);
        rolling_list roll(list);
        roll.begin();
        QVERIFY(!roll.rolls());
    }

    void the_credits_stop_when_the_user_takes_them_up()
    {
        screens_site site;
        moving_style style(200);
        QListWidget list;
        list.setStyle(&style);
        list.addItem("Thank you");
        list.show();
        rolling_list roll(list);
        roll.begin();
        QTest::keyClick(&list, Qt::Key_Down);
        QVERIFY(!roll.rolls());
    }

    void the_credits_are_reached_by_the_keyboard()
    {
        screens_site site;
        the<frmAbout>().show();
        auto &credits = control<QListWidget>(the<frmAbout>(), "credits_li");
        QVERIFY(credits.focusPolicy() & Qt::TabFocus);
        QTest::keyClick(&credits, Qt::Key_Down); // to the first line
        QTest::keyClick(&credits, Qt::Key_End);
        QCOMPARE(credits.currentRow(), credits.count() - 1);
    }

    void technical_support_opens_over_it()
    {
        screens_site site;
        the<frmAbout>().show();
        bool was_open = false;
        QTimer::singleShot(0, [&was_open] {
            was_open = is_visible<TechSupport>();
            the<TechSupport>().unload();
        });
        control<QPushButton>(the<frmAbout>(), "techsupport_b").click();
        QVERIFY(was_open);
        QVERIFY(is_visible<frmAbout>());
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
