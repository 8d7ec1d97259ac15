// The command "Restore from Backup" in the console, and the offer to restore where a damaged store keeps it shut.
#include "frame/session.h"
#include "platform/ado.h"
#include "platform/settings.h"
#include "screens/desktop_dialogs.h"
#include "screens/frame/closing.h"
#include "screens/frame/menuFrm.h"
#include "support/screens_driver.h"
#include "support/screens_program_end.h"
#include "support/screens_site.h"
#include "support/scripted_dialogs.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QTest>

class restore_command_test : public QObject {
    Q_OBJECT

    int ends = 0;

private slots:
    void init() { count_program_ends(ends); }
    void cleanup() { set_program_end({}); }

    void a_restored_store_ends_the_program_without_the_back_up_question()
    {
        screens_site site;
        scripted_dialogs dialogs;
        site.store.add_account("former", "former@shop.example");
        session.store_connection->copy_store(site.file("copy.mdb"));
        site.store.run("delete from email_tbl");
        site.store.connection().Close(); // the test's own view of it
        dialogs.choices = {site.file("copy.mdb")};
        site.boxes.will_say_yes();
        menuFrm console;
        console.show();
        control<QAction>(console, "rst_bkp").trigger();
        QCOMPARE(site.boxes.shown,
                 (QStringList{"Are you sure to restore this database?",
                              "Database will be restored once you restart the application. Click here to close the "
                              "application."}));
        QCOMPARE(ends, 1);
        console.close();
        QCOMPARE(site.boxes.shown.size(), 2);
        site.store.connection().Open();
        QCOMPARE(site.store.cell("select query from email_tbl"), "former");
    }

    void cancel_leaves_the_console_as_it_is()
    {
        screens_site site;
        scripted_dialogs dialogs;
        dialogs.choices = {std::nullopt};
        menuFrm console;
        console.show();
        control<QAction>(console, "rst_bkp").trigger();
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(ends, 0);
    }

    void a_failure_is_told_and_logged_and_the_store_is_open_again()
    {
        screens_site site;
        scripted_dialogs dialogs;
        session.store_connection->copy_store(site.file("copy.mdb"));
        QVERIFY(QDir().mkpath(site.file("mailapp.mdb.new/in the way")));
        dialogs.choices = {site.file("copy.mdb")};
        site.boxes.will_say_yes();
        menuFrm console;
        console.show();
        control<QAction>(console, "rst_bkp").trigger();
        QCOMPARE(site.boxes.shown.size(), 2);
        QVERIFY2(site.boxes.shown[1].startsWith("The back-up was not restored. Permission denied: "),
                 qPrintable(site.boxes.shown[1]));
        QCOMPARE(session.err_form, "menuFrm.frm");
        QCOMPARE(session.err_routine, "rst_bkp");
        QCOMPARE(session.store_connection->State(), 1);
        QCOMPARE(ends, 0);
    }

    void a_filter_with_words_is_one_for_the_desktop_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("desktops");
        QTest::newRow("a bare pattern") << "*.mdb"
                                        << "*.mdb";
        QTest::newRow("patterns joined by blanks") << "*.pem *.crt"
                                                   << "*.pem *.crt";
        QTest::newRow("words and a pattern") << "*.mdb|*.mdb"
                                             << "*.mdb (*.mdb)";
        QTest::newRow("two patterns behind the last words") << "htm(*.htm)|*.htm|both|*.htm;*.html"
                                                            << "htm(*.htm) (*.htm);;both (*.htm *.html)";
    }

    void a_filter_with_words_is_one_for_the_desktop()
    {
        QFETCH(QString, filter);
        QTEST(qt_filter(filter), "desktops");
    }
};

QTEST_MAIN(restore_command_test)
#include "restore_command_test.moc"
