// The screen of technical support.
#include "frame/error_log.h"
#include "platform/settings.h"
#include "platform/winopen.h"
#include "screens/frame/TechSupport.h"
#include "screens/screen.h"
#include "support/failing_messages.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

namespace {

QString facts()
{
    return control<QPlainTextEdit>(the<TechSupport>(), "facts_t").toPlainText();
}

QPushButton &command(const char *name)
{
    return control<QPushButton>(the<TechSupport>(), name);
}

}

class TechSupport_test : public QObject {
    Q_OBJECT
private slots:
    void it_tells_versions_places_and_the_mail_client()
    {
        screens_site site;
        the<TechSupport>().show();
        QVERIFY(facts().startsWith("Tessaly " TESSALY_VERSION "\n"));
        QVERIFY(facts().contains(QString("\nQt ") + qVersion() + "\n"));
        QVERIFY(facts().contains("\nFolder: " + site.store.folder() + "\n"));
        QVERIFY(facts().contains("mail is read from the local folder " + site.maildir()));
    }

    void it_tells_no_password()
    {
        screens_site site;
        SaveSetting("mail_client", "password", "tea-and-roses");
        SaveSetting("mail_client", "smtp_password", "more-roses");
        the<TechSupport>().show();
        QVERIFY(!facts().contains("roses"));
    }

    void copy_puts_the_facts_on_the_clipboard()
    {
        screens_site site;
        the<TechSupport>().show();
        command("copy_b").click();
        QCOMPARE(QGuiApplication::clipboard()->text(), facts());
        QVERIFY(control<QLabel>(the<TechSupport>(), "copied_l").isVisible());
    }

    void before_it_is_copied_nothing_keeps_a_place_for_the_word()
    {
        screens_site site;
        the<TechSupport>().show();
        QVERIFY(!control<QLabel>(the<TechSupport>(), "copied_l").isVisible());
    }

    void the_error_log_is_shown_once_there_is_one()
    {
        screens_site site;
        QStringList opened;
        set_winopen([&opened](const QString &path) {
            opened += path;
            return true;
        });
        the<TechSupport>().show();
        QVERIFY(!command("log_b").isEnabled());
        QVERIFY(!command("log_b").toolTip().isEmpty());
        the<TechSupport>().unload();
        guarded("a.frm", "b", [] { throw run_time_error{5, "Something"}; });
        the<TechSupport>().show();
        command("log_b").click();
        set_winopen({});
        QCOMPARE(opened, QStringList{site.file("errorlog.txt")});
    }

    void without_a_tool_system_information_is_unavailable()
    {
        screens_site site;
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", site.store.folder().toLocal8Bit());
        the<TechSupport>().show();
        command("cmdSysInfo").click();
        qputenv("PATH", path);
        QCOMPARE(site.boxes.shown, QStringList{"System Information Is Unavailable At This Time"});
    }

    void a_log_that_no_program_shows_is_told_and_a_failing_box_is_logged()
    {
        screens_site site;
        guarded("a.frm", "b", [] { throw run_time_error{5, "Something"}; });
        set_winopen([](const QString &) { return false; });
        the<TechSupport>().show();
        command("log_b").click();
        QCOMPARE(site.boxes.shown,
                 QStringList{"No program on this desktop shows the file " + site.file("errorlog.txt") + "."});
        {
            const failing_messages no_box(site.boxes);
            command("log_b").click();
        }
        set_winopen({});
        QCOMPARE(site.last_logged(), "TechSupport.frm|log_b");
    }

    void escape_and_ok_end_it()
    {
        screens_site site;
        the<TechSupport>().show();
        QTest::keyClick(&the<TechSupport>(), Qt::Key_Escape);
        QVERIFY(!is_loaded<TechSupport>());
        the<TechSupport>().show();
        command("cmdOK").click();
        QVERIFY(!is_loaded<TechSupport>());
    }
};

QTEST_MAIN(TechSupport_test)
#include "TechSupport_test.moc"
