// A back-up folder that holds something already: what goes unasked, what is asked for, and what comes back.
#include "frame/session.h"
#include "platform/app_folder.h"
#include "platform/outside_effects.h"
#include "platform/run_time_error.h"
#include "platform/settings.h"
#include "support/screens_folder_site.h"

#include <QLabel>

class backup_frm_former_test : public QObject {
    Q_OBJECT

private slots:
    void a_former_back_up_goes_without_a_question_and_is_told_of_before();
    void anything_else_is_named_and_no_leaves_all();
    void anything_else_goes_with_yes();
    void what_is_no_back_up_of_ours_data();
    void what_is_no_back_up_of_ours();
    void many_strangers_are_not_all_named();
    void links_go_and_what_they_lead_to_stays();
    void a_folder_that_is_a_link_itself_works();
    void enter_in_the_question_deletes_nothing();
    void a_failure_on_the_way_puts_all_back();
    void what_a_kill_left_comes_back_before_anything_is_asked();
    void what_cannot_come_back_is_told_and_stays();
};

void backup_frm_former_test::a_former_back_up_goes_without_a_question_and_is_told_of_before()
{
    folder_site site;
    site.write("program/forms/contact/page.htm", "page");
    site.write("safe/html/contact/page.htm", "an older page");
    site.write("safe/data/Tessaly.mdb.tmp", "of a copy that was broken off");
    site.write("safe/data/Tessaly.mdb.tmp-journal", "of a copy that was broken off");
    session.store_connection->copy_store(site.file("copy.mdb"));
    QVERIFY(QFile::rename(site.file("copy.mdb"), site.file("safe/data/Tessaly.mdb")));
    set_app_folder(site.file("program"));
    the<backup_frm>().show();
    auto &told = control<QLabel>(the<backup_frm>(), "former_l");
    QVERIFY(!told.isVisible());
    control<QLineEdit>(the<backup_frm>(), "Folder_t").setText(site.file("safe"));
    QVERIFY(told.isVisible());
    QVERIFY2(told.text().startsWith("This folder holds a back-up of "), qPrintable(told.text()));
    site.click("next_b");
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(site.names("safe/data"), QStringList());
    QCOMPARE(site.names("safe/html"), QStringList());
}

void backup_frm_former_test::anything_else_is_named_and_no_leaves_all()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/html/index.html", "my site");
    site.write("safe/data/figures.csv", "1,2");
    site.boxes.will_say_no();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown, QStringList{site.emptied("data/figures.csv\nhtml/index.html")});
    QCOMPARE(site.read("safe/html/index.html"), "my site");
    QCOMPARE(site.read("safe/data/figures.csv"), "1,2");
    QCOMPARE(GetSetting("main", "backup"), QString());
    QVERIFY(is_visible<backup_frm>());
}

void backup_frm_former_test::anything_else_goes_with_yes()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/html/deep/index.html", "my site");
    site.boxes.will_say_yes();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown, QStringList{site.emptied("html/deep")});
    QCOMPARE(site.names("safe/html"), QStringList());
    QCOMPARE(GetSetting("main", "backup"), site.file("safe"));
}

void backup_frm_former_test::what_is_no_back_up_of_ours_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("named");
    QTest::newRow("a file of the copy's name that is no store") << "data/Tessaly.mdb"
                                                                << "data/Tessaly.mdb";
    QTest::newRow("a folder of the copy's name") << "data/Tessaly.mdb/x"
                                                 << "data/Tessaly.mdb";
    QTest::newRow("a file beside a form's copy") << "html/contact/letter"
                                                 << "html/contact/letter";
    QTest::newRow("a folder where the form has a file") << "html/contact/page.htm/x"
                                                        << "html/contact/page.htm";
    QTest::newRow("a file where there is a form") << "html/contact"
                                                  << "html/contact";
    QTest::newRow("a form that is gone") << "html/older/page.htm"
                                         << "html/older";
    QTest::newRow("a file beside the forms") << "html/letter"
                                             << "html/letter";
    QTest::newRow("a file beside the forms that the program has too") << "html/beside.htm"
                                                                      << "html/beside.htm";
    QTest::newRow("a folder of a broken off copy's name") << "data/Tessaly.mdb.tmp/x"
                                                          << "data/Tessaly.mdb.tmp";
    QTest::newRow("a name that only begins like a broken off copy") << "data/Tessaly.mdb.tmp2"
                                                                    << "data/Tessaly.mdb.tmp2";
    QTest::newRow("a file called data") << "data"
                                        << "data";
    QTest::newRow("a file called html") << "html"
                                        << "html";
}

void backup_frm_former_test::what_is_no_back_up_of_ours()
{
    QFETCH(QString, file);
    QFETCH(QString, named);
    folder_site site;
    site.write("program/forms/contact/page.htm", "page");
    site.write("program/forms/beside.htm", "not copied");
    set_app_folder(site.file("program"));
    site.write("safe/" + file, "not ours");
    site.boxes.will_say_no();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown, QStringList{site.emptied(named)});
    QCOMPARE(site.read("safe/" + file), "not ours");
    site.boxes.will_say_yes();
    site.click("next_b");
    QCOMPARE(site.names("safe"), (QStringList{"data", "html"}));
    QCOMPARE(site.names("safe/data") + site.names("safe/html"), QStringList());
}

void backup_frm_former_test::many_strangers_are_not_all_named()
{
    folder_site site;
    set_app_folder("/no/such/program");
    for (int number = 1; number <= 20; ++number)
        site.write(QString("safe/html/%1").arg(number, 2, 10, QChar('0')), "x");
    site.boxes.will_say_no();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown,
             QStringList{site.emptied("html/01\nhtml/02\nhtml/03\nhtml/04\nhtml/05\nhtml/06\nhtml/07\n"
                                      "html/08\n...")});
}

void backup_frm_former_test::links_go_and_what_they_lead_to_stays()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("precious/letter", "dear");
    QVERIFY(QFile::link(site.file("precious"), site.file("safe/data")));
    QDir().mkpath(site.file("safe/html"));
    QVERIFY(QFile::link(site.file("precious"), site.file("safe/html/link")));
    site.boxes.will_say_yes();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown, QStringList{site.emptied("data\nhtml/link")});
    QCOMPARE(site.read("precious/letter"), "dear");
    QVERIFY(!QFileInfo(site.file("safe/data")).isSymLink());
    QCOMPARE(site.names("safe/data") + site.names("safe/html"), QStringList());
}

void backup_frm_former_test::a_folder_that_is_a_link_itself_works()
{
    folder_site site;
    set_app_folder("/no/such/program");
    QVERIFY(QFile::link(site.file("safe"), site.file("link")));
    site.choose(site.file("link"));
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(site.names("safe"), (QStringList{"data", "html"}));
    QCOMPARE(GetSetting("main", "backup"), site.file("link"));
}

void backup_frm_former_test::enter_in_the_question_deletes_nothing()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/html/index.html", "my site");
    site.boxes.will_say_no();
    site.choose(site.file("safe"));
    QVERIFY(site.boxes.boxes[0].no_is_default);
    QVERIFY(site.boxes.boxes[0].icon == message_icon::exclamation);
}

// Both are put aside, both are made, and the setting is saved; then the folder is ready, whatever cannot be deleted.
void backup_frm_former_test::a_failure_on_the_way_puts_all_back()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/data/figures.csv", "1,2");
    site.write("safe/html/index.html", "my site");
    site.write("safe/html.former/mine", "stays");
    for (int failing = 1; failing <= 6; ++failing) {
        QCOMPARE(site.names("safe"), (QStringList{"data", "html", "html.former"}));
        QCOMPARE(site.read("safe/data/figures.csv"), "1,2");
        QCOMPARE(site.read("safe/html/index.html"), "my site");
        QCOMPARE(GetSetting("main", "backup"), QString());
        int effects = 0;
        site.boxes.shown.clear();
        site.boxes.will_say_yes();
        const int refusing = on_outside_effect([&] {
            if (site.boxes.shown.size() == 1 && ++effects == failing)
                throw run_time_error{61, "Disk full"};
        });
        site.choose(site.file("safe"));
        forget_outside_effect(refusing);
        QCOMPARE(site.boxes.shown.size(), 2);
        if (failing < 6)
            QCOMPARE(site.boxes.shown[1], "The folder could not be made ready: Disk full");
    }
    QVERIFY2(site.boxes.shown[1].endsWith("is now here:\n\n" + site.file("safe/data.former")),
             qPrintable(site.boxes.shown[1]));
    QCOMPARE(GetSetting("main", "backup"), site.file("safe"));
    QCOMPARE(site.names("safe"), (QStringList{"data", "data.former", "html", "html.former"}));
    QCOMPARE(site.names("safe/data") + site.names("safe/html"), QStringList());
    QCOMPARE(site.read("safe/data.former/figures.csv"), "1,2");
    QCOMPARE(site.read("safe/html.former/mine"), "stays");
}

void backup_frm_former_test::what_a_kill_left_comes_back_before_anything_is_asked()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/data.put aside by Tessaly/figures.csv", "1,2");
    site.write("safe/html.put aside by Tessaly/index.html", "my site");
    QDir().mkpath(site.file("safe/html")); // as the kill left it
    site.boxes.will_say_no();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown.size(), 1);
    QVERIFY2(site.boxes.shown[0].contains("data/figures.csv\nhtml/index.html"), qPrintable(site.boxes.shown[0]));
    QCOMPARE(site.names("safe"), (QStringList{"data", "html"}));
    QCOMPARE(site.read("safe/data/figures.csv"), "1,2");
    QCOMPARE(site.read("safe/html/index.html"), "my site");
}

void backup_frm_former_test::what_cannot_come_back_is_told_and_stays()
{
    folder_site site;
    set_app_folder("/no/such/program");
    site.write("safe/data.put aside by Tessaly/figures.csv", "1,2");
    site.write("safe/data/new.csv", "3");
    site.boxes.will_say_no();
    site.choose(site.file("safe"));
    QCOMPARE(site.boxes.shown.size(), 2);
    QVERIFY2(site.boxes.shown[0].endsWith("\n\n" + site.file("safe/data.put aside by Tessaly")),
             qPrintable(site.boxes.shown[0]));
    QCOMPARE(site.read("safe/data.put aside by Tessaly/figures.csv"), "1,2");
    QCOMPARE(site.read("safe/data/new.csv"), "3");
}

QTEST_MAIN(backup_frm_former_test)
#include "backup_frm_former_test.moc"
