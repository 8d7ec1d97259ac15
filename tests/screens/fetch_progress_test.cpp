// Fetch Mail: the page that is written, the progress screen over it, and what stands there afterwards.
#include "frame/session.h"
#include "frame/status.h"
#include "platform/widgets/picture_page.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/mailfrm.h"
#include "screens/intake/mapinprogress_frm.h"
#include "screens/intake/mfetchinprogress_frm.h"
#include "screens/maps/mapWizardStep3_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QTest>
#include <QTimer>

namespace {

QByteArray whole_file(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}

class fetch_progress_test : public QObject {
    Q_OBJECT
private slots:
    void fetch_mail_fetches_behind_its_screen_and_shows_the_auditor()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        site.deliver_mail("orders@shop.example");
        menuFrm console;
        console.show();
        session.no_fetch = true;
        const Responder dialogs({"Tessaly"});
        control<QAction>(console, "fetchmail").trigger();
        QCOMPARE(dialogs.seen, QStringList{"Tessaly"});
        QVERIFY(!session.no_fetch);
        QCOMPARE(site.rows_of("orders"), 1);
        QVERIFY(is_visible<mailfrm>());
        QVERIFY(!is_loaded<mfetchinprogress_frm>());
        QVERIFY(console.cursor().shape() != Qt::WaitCursor);
    }

    void the_page_has_the_windows_colour()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        menuFrm console;
        QPalette colours = console.palette();
        colours.setColor(QPalette::Window, QColor(0x12, 0xab, 0xef));
        console.setPalette(colours);
        control<QAction>(console, "fetchmail").trigger();
        QCOMPARE(session.animation_file, site.file("fetchmailanimation.html"));
        QCOMPARE(whole_file(site.file("fetchmailanimation.html")),
                 QByteArray("<html> <body bgcolor=12ABEF leftmargin=0 topmargin=0 marginwidth=0 marginheight=0> "
                            "<img src=otl-to-tsl.gif></body></html>"));
    }

    void fetch_mail_with_the_auditor_open_fetches_too()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        menuFrm console;
        console.show();
        session.no_fetch = true;
        the<mailfrm>().show();
        site.deliver_mail("orders@shop.example");
        control<QAction>(console, "fetchmail").trigger();
        QCOMPARE(site.rows_of("orders"), 1);
        QVERIFY(is_visible<mailfrm>());
    }

    void for_the_wizard_the_auditor_is_not_shown()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        site.deliver_mail("orders@shop.example");
        session.fetch_then_wizard = true;
        the<mfetchinprogress_frm>().show_modal();
        QCOMPARE(site.rows_of("orders"), 1);
        QVERIFY(!is_visible<mailfrm>());
        QVERIFY(is_visible<mapWizardStep3_frm>());
        QVERIFY(!session.fetch_then_wizard);
    }

    void the_work_begins_once_after_the_screen_has_painted()
    {
        screens_site site;
        int runs = 0;
        auto &wait = the<mapinprogress_frm>();
        wait.set_work([&runs] { ++runs; });
        wait.load();
        QVERIFY(!control<QTimer>(wait, "Timer1").isActive());
        wait.show_modal();
        QCOMPARE(runs, 1);
        QVERIFY(!is_loaded<mapinprogress_frm>());
    }

    void progress_is_on_the_screen_while_the_work_runs()
    {
        screens_site site;
        QString line;
        int done = -1;
        int total = -1;
        auto &wait = the<mapinprogress_frm>();
        wait.set_work([&] {
            report_progress("Mapping mails", 40, 40); // the last count is never left out
            line = control<QLabel>(wait, "what_l").text();
            done = control<QProgressBar>(wait, "progress_bar").value();
            total = control<QProgressBar>(wait, "progress_bar").maximum();
        });
        wait.show_modal();
        QCOMPARE(line, "Mapping mails: 40 of 40");
        QCOMPARE(done, 40);
        QCOMPARE(total, 40);
        report_progress("Nobody", 1, 2); // nothing listens any more
    }

    void escape_does_not_end_a_wait_screen()
    {
        screens_site site;
        auto &wait = the<mapinprogress_frm>();
        bool still_there = false;
        wait.set_work([&] {
            QTest::keyClick(&wait, Qt::Key_Escape);
            still_there = is_visible<mapinprogress_frm>();
        });
        wait.show_modal();
        QVERIFY(still_there);
    }

    void the_picture_page_reads_colour_and_picture()
    {
        screens_site site;
        QFile page(site.file("page.html"));
        QVERIFY(page.open(QIODevice::WriteOnly));
        page.write("<html> <body bgcolor=0A0B0C leftmargin=0> <img src=otl-to-tsl.gif></body></html>");
        page.close();
        picture_page shown;
        shown.Navigate(site.file("page.html"));
        QCOMPARE(shown.background(), QColor(0x0a, 0x0b, 0x0c));
        QCOMPARE(shown.picture(), site.file("otl-to-tsl.gif"));
    }
};

QTEST_MAIN(fetch_progress_test)
#include "fetch_progress_test.moc"
