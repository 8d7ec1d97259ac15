// The console's menu: every menu and command with its name and caption in the order shown, and which ones work.
#include "frame/session.h"
#include "frame/status.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_frm.h"
#include "screens/intake/mailfrm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTest>

namespace {

// Name and caption, two blanks deeper for each level.
void add_outline(const QList<QAction *> &actions, const QString &indent, QStringList &outline)
{
    for (const QAction *action : actions) {
        const QString name = action->menu() ? action->menu()->objectName() : action->objectName();
        outline += indent + name + " \"" + action->text() + "\"";
        if (action->menu())
            add_outline(action->menu()->actions(), indent + "  ", outline);
    }
}

const QStringList whole_menu{
    "file \"&File\"",
    "  da \"&Database\"",
    "    import1 \"&Import\"",
    "    export \"&Export\"",
    "    dma \"&Manager\"",
    "  bkp_folder_mnu \"&Back-up Folder\"",
    "  rst_bkp \"Restore from Backup\"",
    "  exit \"E&xit\"",
    "mail \"&Mail\"",
    "  fetchmail \"&Fetch Mail\"",
    "  direct_mail \"M&ail Wizard\"",
    "  mmw \"&Mail Mapping Wizard\"",
    "  menu \"Mail &Template Wizard\"",
    "    nt \"New Template\"",
    "    ot \"Open Existing Template\"",
    "  mauditor_mnu \"Mail A&uditor\"",
    "  unsubopt_mnu \"&Subscription Manager\"",
    "  outbox_mnu \"&Outbox\"",
    "label \"&Labels\"",
    "  label1 \"Label &Formatter\"",
    "  gen_lab \"Label &Wizard\"",
    "  lprint \"&Print\"",
    "webform_mnu \"&Web Form\"",
    "  frmBuild_mnu \"Form &Building Wizard\"",
    "  amendEx_mnu \"&Amend Existing Form\"",
    "  ftp \"&FTP Wizard\"",
    "preferences \"&Preferences\"",
    "  general \"General\"",
    "  account \"Accounts\"",
    "  mail_client_mnu \"&Mail Client\"",
    "help \"&Help\"",
    "  contents \"&Contents              F1\"",
    "  showtips \"&Show Tips\"",
    "  about \"&About\"",
    "openprev \"&Open\"",
    "  openex_mnu \"Open Tessaly Form\"",
    "  openmy_mnu \"Open My Own Form\"",
    "composer_mnu \"&Composer\"",
    "  edit_composer \"Edit\"",
    "  view_composer \"View\"",
    "  ins_c \"Insert\"",
    "  format_composer \"Format\"",
    "  table \"Table\"",
};

}

class console_menu_test : public QObject {
    Q_OBJECT
private slots:
    void the_menu_is_whole_and_in_order()
    {
        screens_site site;
        menuFrm console;
        QStringList outline;
        add_outline(console.menuBar()->actions(), "", outline);
        QCOMPARE(outline, whole_menu);
    }

    void commands_without_a_screen_are_disabled_not_missing()
    {
        screens_site site;
        menuFrm console;
        QStringList enabled;
        for (const QAction *action : console.findChildren<QAction *>()) {
            if (!action->menu() && !action->objectName().isEmpty() && action->isEnabled())
                enabled += action->objectName();
        }
        enabled.sort();
        QCOMPARE(enabled, (QStringList{"about", "account", "bkp_folder_mnu", "contents", "exit", "fetchmail", "general",
                                       "lprint", "mail_client_mnu", "mauditor_mnu", "mmw", "openex_mnu", "openmy_mnu",
                                       "outbox_mnu", "rst_bkp", "showtips"}));
    }

    void composer_menus_are_hidden()
    {
        screens_site site;
        menuFrm console;
        QVERIFY(!control<QMenu>(console, "composer_mnu").menuAction()->isVisible());
    }

    void mail_auditor_shows_and_does_not_fetch()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        site.deliver_mail("orders@shop.example");
        menuFrm console;
        control<QAction>(console, "mauditor_mnu").trigger();
        QVERIFY(is_visible<mailfrm>());
        QVERIFY(session.no_fetch);
        QCOMPARE(site.rows_of("orders"), 0);
    }

    void control_tab_goes_to_the_next_window()
    {
        screens_site site;
        menuFrm console;
        console.show();
        QVERIFY(QTest::qWaitForWindowActive(&console));
        control<QAction>(console, "mauditor_mnu").trigger();
        control<QAction>(console, "outbox_mnu").trigger();
        const auto &area = control<QMdiArea>(console, "area");
        QCOMPARE(area.activeSubWindow()->widget(), &the<outbox_frm>());
        QTest::keyPress(QApplication::focusWidget(), Qt::Key_Control);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
        QTest::keyRelease(QApplication::focusWidget(), Qt::Key_Control);
        QCOMPARE(area.activeSubWindow()->widget(), &the<mailfrm>());
    }

    void print_without_labels_asks_whether_to_generate_them_and_yes_is_not_there_yet()
    {
        screens_site site;
        menuFrm console;
        site.boxes.will_say_no();
        control<QAction>(console, "lprint").trigger();
        QCOMPARE(site.boxes.shown,
                 QStringList{"You have not generated the labels yet. Would you like to generate labels now?"});
        const message_box &asked = site.boxes.boxes.front();
        QCOMPARE(asked.title, "Label Printing");
        QVERIFY(asked.kind == message_kind::yes_no);
        QVERIFY(!asked.yes_works);
        QCOMPARE(asked.beside, "The screens that make labels are not there yet.");
    }

    void print_with_labels_says_that_it_cannot_yet()
    {
        screens_site site;
        site.store.run("insert into formula_tbl(formula1) values('Ann')");
        menuFrm console;
        control<QAction>(console, "lprint").trigger();
        QCOMPARE(site.boxes.shown.size(), 1);
        QVERIFY(site.boxes.shown[0].startsWith("Labels cannot be printed yet"));
        QVERIFY(site.boxes.boxes[0].kind == message_kind::say);
    }

    void status_lines_go_to_the_status_bar()
    {
        screens_site site;
        menuFrm console;
        console.show();
        const auto &line = control<QLabel>(console, "status_l");
        QVERIFY(!line.isVisible());
        status_line("Something to know");
        QCOMPARE(line.text(), "Something to know");
        QVERIFY(line.isVisible());
        status_line({});
        QVERIFY(!line.isVisible());
    }

    void a_status_line_stays_beside_the_tips_of_the_menu()
    {
        screens_site site;
        menuFrm console;
        console.show();
        status_line("Something to know");
        control<QAction>(console, "fetchmail").showStatusText(&console);
        QCOMPARE(console.statusBar()->currentMessage(), control<QAction>(console, "fetchmail").statusTip());
        QCOMPARE(control<QLabel>(console, "status_l").text(), "Something to know");
        QVERIFY(control<QLabel>(console, "status_l").isVisible());
        console.statusBar()->clearMessage();
        QCOMPARE(control<QLabel>(console, "status_l").text(), "Something to know");
    }

    void a_long_status_line_is_cut_and_told_whole_in_its_tool_tip()
    {
        screens_site site;
        menuFrm console;
        console.show();
        const int width = console.width();
        status_line("<b>" + QString(500, 'W'));
        QCoreApplication::processEvents();
        const auto &line = control<QLabel>(console, "status_l");
        QVERIFY(line.text().startsWith("<b>WW"));
        QVERIFY(line.text().endsWith(u'\u2026'));
        QCOMPARE(line.textFormat(), Qt::PlainText);
        QCOMPARE(line.toolTip(), "<qt>&lt;b&gt;" + QString(500, 'W') + "</qt>");
        QCOMPARE(console.width(), width);
        QVERIFY(line.width() <= width * 2 / 3);
    }
};

QTEST_MAIN(console_menu_test)
#include "console_menu_test.moc"
