// Where the copies of the store and of the forms go, and what is asked on the way.
#include "frame/back_up.h"
#include "frame/session.h"
#include "frame/status.h"
#include "platform/ado.h"
#include "platform/settings.h"
#include "support/intake_site.h"
#include "support/plain_files.h"
#include "support/raw_store.h"
#include "support/scripted_dialogs.h"
#include "support/test_store.h"

#include <QDir>
#include <QFile>
#include <QtTest/QTest>

namespace {

QString not_there(const QString &html)
{
    return "Folder " + html + " does not exists! Unable to take backup!";
}

QString make_it(const QString &html)
{
    return "Do you want to create a new folder called " + html + " ?";
}

// A site with the setting on its folder "safe", which holds data and html when they are wanted.
struct back_up_site : intake_site {
    explicit back_up_site(const QStringList &folders = {"data", "html"})
    {
        for (const QString &name : folders)
            QDir().mkpath(safe(name));
        SaveSetting("main", "backup", folder.filePath("safe"));
    }
    ~back_up_site() { SaveSetting("main", "backup", QString()); }
    QString safe(const QString &below) const { return folder.filePath("safe/" + below); }
    void add_form(const QString &name, const QByteArray &page)
    {
        QDir().mkpath(folder.filePath("forms/" + name));
        put_file(folder.filePath("forms/" + name + "/page.htm"), page);
    }
};

// The stick is a folder of another disk, where the program is not.
struct site_without_setting : intake_site {
    site_without_setting() { SaveSetting("main", "backup", QString()); }
    QString on_stick(const QString &name) const { return stick.filePath(name); }
    void add_form(const QString &name, const QByteArray &page) const
    {
        QDir().mkpath(folder.filePath("forms/" + name));
        put_file(folder.filePath("forms/" + name + "/page.htm"), page);
    }
    QTemporaryDir stick;
};

QString holds_something(const QString &html, const QString &names)
{
    return "The folder " + html + " holds something already:\n\n" + names +
           "\n\nYour forms are copied there, and files of the same names are overwritten. "
           "Do you want to copy them there?";
}

}

class back_up_test : public QObject {
    Q_OBJECT
private slots:
    void the_configured_folder_takes_the_copy();
    void an_older_copy_there_is_replaced_without_a_question();
    void no_configured_folder_falls_back_to_the_dialog();
    void a_configured_folder_without_data_falls_back_to_the_dialog();
    void cancel_ends_without_a_copy_and_without_a_question();
    void a_folder_that_a_kill_put_aside_comes_back_first();
    void an_existing_file_asks_and_no_opens_the_dialog_again();
    void what_was_written_just_before_is_in_the_copy();
    void a_copy_that_cannot_be_made_is_the_callers_failure();
    void a_store_that_is_damaged_does_not_replace_the_last_copy();
    void only_sub_folders_of_forms_are_copied();
    void an_older_form_in_the_back_up_is_overwritten_and_others_stay();
    void no_to_the_html_folder_still_leaves_the_stores_copy();
    void the_store_is_copied_before_the_question();
    void yes_makes_the_html_folder();
    void yes_makes_each_missing_folder();
    void with_no_folder_set_the_forms_go_beside_the_chosen_file();
    void with_no_folder_set_what_html_holds_is_named_and_no_leaves_it();
    void with_no_folder_set_yes_copies_into_html();
    void with_no_folder_set_nothing_is_asked_where_nothing_can_be_lost();
    void a_folder_of_the_program_is_refused_for_the_chosen_file_data();
    void a_folder_of_the_program_is_refused_for_the_chosen_file();
    void a_journal_of_the_older_copy_is_not_left_beside_the_new_one();
    void a_copy_that_fails_leaves_the_older_one_its_journal();
    void the_copy_is_no_more_readable_than_the_store();
    void a_folder_that_is_not_there_is_named_before_the_dialog();
    void a_program_folder_without_forms_has_nothing_to_copy();
    void a_link_called_data_is_not_followed();
    void a_link_called_html_is_not_followed();
    void a_failing_form_ends_it_and_the_stores_copy_stays();
    void how_far_it_is_is_told();
};

void back_up_test::the_configured_folder_takes_the_copy()
{
    back_up_site site;
    site.add_account("orders", "orders@example.org");
    QCOMPARE(run_backup(), site.safe("data/Tessaly.mdb"));
    QCOMPARE(accounts_in(site.safe("data/Tessaly.mdb")), QString("orders"));
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(session.store_connection->State(), 1);
}

void back_up_test::an_older_copy_there_is_replaced_without_a_question()
{
    back_up_site site;
    run_backup();
    site.add_account("orders", "orders@example.org");
    run_backup();
    QCOMPARE(accounts_in(site.safe("data/Tessaly.mdb")), QString("orders"));
    QCOMPARE(site.boxes.shown, QStringList());
}

void back_up_test::no_configured_folder_falls_back_to_the_dialog()
{
    site_without_setting site;
    scripted_dialogs dialogs;
    site.add_account("orders", "orders@example.org");
    dialogs.choices = {site.on_stick("chosen.mdb")};
    site.boxes.will_say_no();
    QCOMPARE(run_backup(), site.on_stick("chosen.mdb"));
    QCOMPARE(dialogs.asked, QStringList{"Tessaly.mdb|*.mdb"});
    QCOMPARE(accounts_in(site.on_stick("chosen.mdb")), QString("orders"));
}

void back_up_test::a_configured_folder_without_data_falls_back_to_the_dialog()
{
    back_up_site site((QStringList()));
    scripted_dialogs dialogs;
    dialogs.choices = {std::nullopt};
    QCOMPARE(run_backup(), QString());
    QCOMPARE(dialogs.asked.size(), 1);
}

void back_up_test::cancel_ends_without_a_copy_and_without_a_question()
{
    site_without_setting site;
    scripted_dialogs dialogs;
    dialogs.choices = {std::nullopt};
    QCOMPARE(run_backup(), QString());
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(QDir(site.folder.path()).entryList({"*.mdb", "html"}), QStringList{"mailapp.mdb"});
}

void back_up_test::a_folder_that_a_kill_put_aside_comes_back_first()
{
    back_up_site site(QStringList{"data.put aside by Tessaly", "html.put aside by Tessaly/contact"});
    put_file(site.safe("data.put aside by Tessaly/Tessaly.mdb"), "the last copy");
    put_file(site.safe("html.put aside by Tessaly/contact/page.htm"), "the page");
    site.add_account("orders", "orders@example.org");
    QCOMPARE(run_backup(), site.safe("data/Tessaly.mdb"));
    QCOMPARE(accounts_in(site.safe("data/Tessaly.mdb")), QString("orders"));
    QCOMPARE(bytes_in(site.safe("html/contact/page.htm")), QByteArray("the page"));
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(QDir(site.safe("")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), (QStringList{"data", "html"}));
}

void back_up_test::an_existing_file_asks_and_no_opens_the_dialog_again()
{
    site_without_setting site;
    scripted_dialogs dialogs;
    const QString old = site.on_stick("old.mdb");
    put_file(old, "former");
    QDir().mkpath(site.on_stick("html"));
    dialogs.choices = {old, old};
    site.boxes.will_say_no();
    site.boxes.will_say_yes();
    QCOMPARE(run_backup(), old);
    QCOMPARE(site.boxes.shown, (QStringList{"File already exists! Overwrite?", "File already exists! Overwrite?"}));
    QVERIFY(site.boxes.boxes[0].kind == message_kind::yes_no);
    QCOMPARE(accounts_in(old), QString());
}

void back_up_test::what_was_written_just_before_is_in_the_copy()
{
    back_up_site site;
    site.run("insert into email_tbl(query,email,table_name) values('late','l@example.org','late')");
    run_backup();
    QCOMPARE(accounts_in(site.safe("data/Tessaly.mdb")), QString("late"));
}

void back_up_test::a_copy_that_cannot_be_made_is_the_callers_failure()
{
    site_without_setting site;
    scripted_dialogs dialogs;
    dialogs.choices = {site.on_stick("no/such/folder/x.mdb")};
    QVERIFY_EXCEPTION_THROWN(run_backup(), run_time_error);
    QCOMPARE(site.boxes.shown, QStringList());
}

void back_up_test::a_store_that_is_damaged_does_not_replace_the_last_copy()
{
    back_up_site site;
    site.add_account("orders", "orders@example.org");
    run_backup();
    session.store_connection->Close();
    const QString path = site.folder.filePath("mailapp.mdb");
    QByteArray bytes = bytes_in(path);
    for (qsizetype at = bytes.size() / 2 / 4096 * 4096; at < bytes.size() / 2 / 4096 * 4096 + 4096; ++at)
        bytes[at] = 'x';
    put_file(path, bytes);
    QVERIFY_EXCEPTION_THROWN(run_backup(), run_time_error);
    QCOMPARE(accounts_in(site.safe("data/Tessaly.mdb")), QString("orders"));
    QCOMPARE(QDir(site.safe("data")).entryList(QDir::Files), QStringList{"Tessaly.mdb"});
}

void back_up_test::only_sub_folders_of_forms_are_copied()
{
    back_up_site site;
    site.add_form("contact", "first page");
    site.add_form("order/pictures", "second page");
    put_file(site.folder.filePath("forms/beside.htm"), "no sub-folder");
    QVERIFY(QFile::link("contact", site.folder.filePath("forms/link")));
    run_backup();
    QCOMPARE(QDir(site.safe("html")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             (QStringList{"contact", "order"}));
    QCOMPARE(bytes_in(site.safe("html/contact/page.htm")), QByteArray("first page"));
    QCOMPARE(bytes_in(site.safe("html/order/pictures/page.htm")), QByteArray("second page"));
    QCOMPARE(site.boxes.shown, QStringList());
}

void back_up_test::an_older_form_in_the_back_up_is_overwritten_and_others_stay()
{
    back_up_site site;
    site.add_form("contact", "old");
    run_backup();
    site.add_form("contact", "new");
    QDir().mkpath(site.safe("html/gone"));
    run_backup();
    QCOMPARE(bytes_in(site.safe("html/contact/page.htm")), QByteArray("new"));
    QVERIFY(QDir(site.safe("html/gone")).exists());
}

void back_up_test::no_to_the_html_folder_still_leaves_the_stores_copy()
{
    back_up_site site({"data"});
    site.add_form("contact", "page");
    site.boxes.will_say_no();
    QCOMPARE(run_backup(), site.safe("data/Tessaly.mdb"));
    QCOMPARE(site.boxes.shown, (QStringList{not_there(site.safe("html")), make_it(site.safe("html"))}));
    QVERIFY(site.boxes.boxes[0].kind == message_kind::say);
    QVERIFY(site.boxes.boxes[1].kind == message_kind::yes_no);
    QCOMPARE(accounts_in(site.safe("data/Tessaly.mdb")), QString());
    QVERIFY(!QDir(site.safe("html")).exists());
}

void back_up_test::the_store_is_copied_before_the_question()
{
    struct looking_messages : scripted_messages {
        QString file;
        bool was_there = false;
        std::optional<QString> show(const message_box &box) override
        {
            was_there = QFile::exists(file);
            return scripted_messages::show(box);
        }
    };
    back_up_site site({"data"});
    looking_messages boxes;
    boxes.file = site.safe("data/Tessaly.mdb");
    boxes.will_say_no();
    run_backup();
    QCOMPARE(boxes.shown.size(), 2);
    QVERIFY(boxes.was_there);
    set_message_service(&site.boxes);
}

void back_up_test::yes_makes_the_html_folder()
{
    back_up_site site({"data"});
    site.add_form("contact", "page");
    site.boxes.will_say_yes();
    run_backup();
    QCOMPARE(bytes_in(site.safe("html/contact/page.htm")), QByteArray("page"));
}

void back_up_test::yes_makes_each_missing_folder()
{
    back_up_site site;
    const QTemporaryDir stick;
    scripted_dialogs dialogs;
    const QString deep = site.folder.filePath("new/and/deep");
    SaveSetting("main", "backup", deep);
    site.add_form("contact", "page");
    dialogs.choices = {stick.filePath("chosen.mdb")};
    site.boxes.will_say_yes();
    QCOMPARE(run_backup(), stick.filePath("chosen.mdb"));
    QCOMPARE(site.boxes.shown, (QStringList{not_there(deep + "/html"), make_it(deep + "/html")}));
    QCOMPARE(bytes_in(deep + "/html/contact/page.htm"), QByteArray("page"));
}

void back_up_test::with_no_folder_set_the_forms_go_beside_the_chosen_file()
{
    site_without_setting site;
    scripted_dialogs dialogs;
    site.add_form("contact", "page");
    dialogs.choices = {site.on_stick("mine.mdb")};
    site.boxes.will_say_yes();
    run_backup();
    const QString html = site.on_stick("html");
    QCOMPARE(site.boxes.shown, (QStringList{not_there(html), make_it(html)}));
    QCOMPARE(bytes_in(html + "/contact/page.htm"), QByteArray("page"));
}

void back_up_test::with_no_folder_set_what_html_holds_is_named_and_no_leaves_it()
{
    site_without_setting site;
    scripted_dialogs dialogs;
    site.add_form("contact", "page");
    site.add_form("order", "page");
    QDir().mkpath(site.on_stick("html/contact"));
    put_file(site.on_stick("html/contact/page.htm"), "my own page");
    put_file(site.on_stick("html/index.html"), "my site");
    dialogs.choices = {site.on_stick("mine.mdb")};
    site.boxes.will_say_no();
    QCOMPARE(run_backup(), site.on_stick("mine.mdb"));
    QCOMPARE(site.boxes.shown, QStringList{holds_something(site.on_stick("html"), "html/contact\nhtml/index.html")});
    QVERIFY(site.boxes.boxes[0].no_is_default);
    QCOMPARE(bytes_in(site.on_stick("html/contact/page.htm")), QByteArray("my own page"));
    QCOMPARE(QDir(site.on_stick("html")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             (QStringList{"contact", "index.html"}));
    QCOMPARE(accounts_in(site.on_stick("mine.mdb")), QString());
}

void back_up_test::with_no_folder_set_yes_copies_into_html()
{
    site_without_setting site;
    scripted_dialogs dialogs;
    site.add_form("contact", "page");
    QDir().mkpath(site.on_stick("html/contact"));
    put_file(site.on_stick("html/contact/page.htm"), "an older page");
    put_file(site.on_stick("html/index.html"), "my site");
    dialogs.choices = {site.on_stick("mine.mdb")};
    site.boxes.will_say_yes();
    run_backup();
    QCOMPARE(site.boxes.shown.size(), 1);
    QCOMPARE(bytes_in(site.on_stick("html/contact/page.htm")), QByteArray("page"));
    QCOMPARE(bytes_in(site.on_stick("html/index.html")), QByteArray("my site"));
}

void back_up_test::with_no_folder_set_nothing_is_asked_where_nothing_can_be_lost()
{
    site_without_setting site;
    scripted_dialogs dialogs;
    QDir().mkpath(site.on_stick("html"));
    put_file(site.on_stick("html/index.html"), "my site");
    dialogs.choices = {site.on_stick("mine.mdb"), site.on_stick("more.mdb")};
    run_backup(); // no forms
    QFile::remove(site.on_stick("html/index.html"));
    site.add_form("contact", "page");
    run_backup(); // an empty folder
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(bytes_in(site.on_stick("html/contact/page.htm")), QByteArray("page"));
}

void back_up_test::a_folder_of_the_program_is_refused_for_the_chosen_file_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("the program's folder") << "Tessaly.mdb";
    QTest::newRow("one inside it") << "forms/Tessaly.mdb";
    QTest::newRow("through a link") << "../LINK/Tessaly.mdb";
}

void back_up_test::a_folder_of_the_program_is_refused_for_the_chosen_file()
{
    QFETCH(QString, name);
    site_without_setting site;
    scripted_dialogs dialogs;
    site.add_form("contact", "page");
    const QString link = site.on_stick("link");
    QVERIFY(QFile::link(site.folder.filePath("forms"), link));
    dialogs.choices = {name.startsWith("../LINK") ? link + "/Tessaly.mdb" : site.folder.filePath(name), std::nullopt};
    QCOMPARE(run_backup(), QString());
    QCOMPARE(site.boxes.shown, QStringList{"The folder of the program takes no back-up. Please choose another one."});
    QVERIFY(!QFile::exists(site.folder.filePath(name)));
    QVERIFY(!QFile::exists(link + "/Tessaly.mdb"));
}

void back_up_test::a_journal_of_the_older_copy_is_not_left_beside_the_new_one()
{
    back_up_site site;
    run_backup();
    for (const char *side : {"-journal", "-wal", "-shm", ".former-journal"})
        put_file(site.safe("data/Tessaly.mdb") + side, "of the older copy");
    run_backup();
    QCOMPARE(QDir(site.safe("data")).entryList(QDir::Files), QStringList{"Tessaly.mdb"});
}

void back_up_test::a_copy_that_fails_leaves_the_older_one_its_journal()
{
    site_without_setting site;
    scripted_dialogs dialogs;
    QDir().mkpath(site.on_stick("old.mdb/in the way")); // a file cannot take the place of a folder
    put_file(site.on_stick("old.mdb-journal"), "of the older one");
    dialogs.choices = {site.on_stick("old.mdb")};
    QVERIFY_EXCEPTION_THROWN(run_backup(), run_time_error);
    QCOMPARE(bytes_in(site.on_stick("old.mdb-journal")), QByteArray("of the older one"));
    QCOMPARE(QDir(site.stick.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             (QStringList{"old.mdb", "old.mdb-journal"}));
}

void back_up_test::the_copy_is_no_more_readable_than_the_store()
{
    back_up_site site;
    const auto owners = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    QVERIFY(QFile::setPermissions(site.folder.filePath("mailapp.mdb"), owners));
    run_backup();
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    QVERIFY(!(QFile::permissions(site.safe("data/Tessaly.mdb")) & others));
}

void back_up_test::a_folder_that_is_not_there_is_named_before_the_dialog()
{
    back_up_site site((QStringList()));
    scripted_dialogs dialogs;
    dialogs.choices = {std::nullopt};
    SaveSetting("main", "backup", "/media/stick");
    QStringList told;
    set_progress_sink([&](const QString &what, qint64, qint64) { told += what; });
    run_backup();
    set_progress_sink({});
    QCOMPARE(told, QStringList{"The folder for back-ups is not there (/media/stick). Please choose a file"});
}

void back_up_test::a_program_folder_without_forms_has_nothing_to_copy()
{
    back_up_site site;
    QCOMPARE(run_backup(), site.safe("data/Tessaly.mdb"));
    QCOMPARE(QDir(site.safe("html")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

void back_up_test::a_link_called_data_is_not_followed()
{
    back_up_site site({"html"});
    scripted_dialogs dialogs;
    QDir().mkpath(site.folder.filePath("precious"));
    QVERIFY(QFile::link(site.folder.filePath("precious"), site.safe("data")));
    dialogs.choices = {std::nullopt};
    QCOMPARE(run_backup(), QString());
    QCOMPARE(QDir(site.folder.filePath("precious")).entryList(QDir::Files), QStringList());
}

void back_up_test::a_link_called_html_is_not_followed()
{
    back_up_site site({"data"});
    site.add_form("contact", "page");
    QDir().mkpath(site.folder.filePath("precious"));
    QVERIFY(QFile::link(site.folder.filePath("precious"), site.safe("html")));
    site.boxes.will_say_yes();
    QCOMPARE(error_number_of([] { run_backup(); }), 58u);
    QCOMPARE(QDir(site.folder.filePath("precious")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    QCOMPARE(accounts_in(site.safe("data/Tessaly.mdb")), QString());
}

void back_up_test::a_failing_form_ends_it_and_the_stores_copy_stays()
{
    back_up_site site;
    site.add_form("contact", "page");
    put_file(site.safe("html/contact"), "a file where the folder should be");
    QCOMPARE(error_number_of([] { run_backup(); }), 58u);
    QCOMPARE(accounts_in(site.safe("data/Tessaly.mdb")), QString());
}

void back_up_test::how_far_it_is_is_told()
{
    back_up_site site;
    site.add_account("orders", "orders@example.org");
    for (int i = 0; i < 40; ++i)
        site.add_stored_mail("orders", "Order", QString(200000, 'x')); // several pieces of the copy
    site.add_form("contact", "page");
    site.add_form("order", "page");
    QStringList told;
    qint64 last = -1;
    set_progress_sink([&](const QString &what, qint64 done, qint64 total) {
        if (!told.contains(what))
            last = -1;
        told += what;
        QVERIFY(done >= last && done <= total && total > 0);
        last = done;
        if (what == "Copying your forms")
            QCOMPARE(total, qint64(2));
    });
    run_backup();
    set_progress_sink({});
    QVERIFY(told.count("Copying the store") > 2);
    QCOMPARE(told.count("Copying your forms"), 3);
    QCOMPARE(last, qint64(2));
}

QTEST_GUILESS_MAIN(back_up_test)
#include "back_up_test.moc"
