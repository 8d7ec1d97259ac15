// A restore, and making the folder for back-ups ready, are killed before each call that changes something on disk:
// there is a whole store at every moment, nothing of the user's is lost, and the next try goes through.
// TESSALY_SEED repeats a run where points were chosen.
#include "frame/back_up.h"
#include "frame/back_up_folder.h"
#include "frame/restore.h"
#include "frame/session.h"
#include "frame/start_up.h"
#include "frame/store.h"
#include "platform/app_folder.h"
#include "platform/settings.h"
#include "platform/store_file.h"
#include "support/intake_site.h"
#include "support/killed_work.h"
#include "support/plain_files.h"
#include "support/raw_store.h"
#include "support/scripted_dialogs.h"

#include <QCoreApplication>
#include <QDir>
#include <QtTest/QTest>

namespace {

QString in(const QString &folder, const QString &name)
{
    return folder + u'/' + name;
}

// The program in that folder, its store open; the end is a fresh start.
struct program_in {
    explicit program_in(const QString &folder)
    {
        set_app_folder(folder);
        session = {};
    }
    ~program_in()
    {
        session = {};
        set_app_folder({});
    }
    bool restore(const QString &file)
    {
        dialogs.choices = {file};
        boxes.will_say_yes();
        return restore_backup();
    }
    scripted_messages boxes;
    scripted_dialogs dialogs;
};

// A store that was set up, with this one account.
QByteArray store_with(const QString &account)
{
    intake_site site;
    site.add_account(account, account + "@example.org");
    session.store_connection->copy_store(site.folder.filePath("copy.mdb"));
    return bytes_in(site.folder.filePath("copy.mdb"));
}

QByteArray present_store()
{
    static const QByteArray made = store_with("present");
    return made;
}

QByteArray chosen_store()
{
    static const QByteArray made = store_with("chosen");
    return made;
}

QStringList kept_stores(const QString &folder)
{
    QStringList kept;
    for (const QString &name : QDir(folder).entryList({"mailapp 2*.mdb"}, QDir::Files))
        kept += in(folder, name);
    return kept;
}

// Whatever was kept holds the former rows; the store of the folder is the former one or the chosen one, and it is
// only the chosen one where the former is kept.
QString what_is_wrong_with_stores(const QString &folder)
{
    for (const QString &kept : kept_stores(folder))
        if (accounts_in(kept) != "present")
            return "kept, but with the accounts " + accounts_in(kept);
    const QString accounts = accounts_in(in(folder, "mailapp.mdb"));
    if (accounts == "present")
        return {};
    if (accounts != "chosen")
        return "the store has the accounts " + accounts;
    return kept_stores(folder).isEmpty() ? QString("the former store is gone") : QString();
}

QString what_is_wrong_after_a_killed_restore(const QString &folder)
{
    if (const QString wrong = what_is_wrong_with_stores(folder); !wrong.isEmpty())
        return wrong;
    program_in program(folder);
    if (start_up() != start::console)
        return "the next start does not come to the console";
    if (!program.restore(in(folder, "copy.mdb")))
        return "another restore does not go through: " + program.boxes.shown.join(" | ");
    if (accounts_in(in(folder, "mailapp.mdb")) != "chosen")
        return "the other restore has not brought the file";
    bool still_there = false;
    for (const QString &kept : kept_stores(folder))
        still_there = still_there || accounts_in(kept) == "present";
    return still_there ? QString() : QString("the former store is gone behind another restore");
}

void restore_in(const QString &folder)
{
    program_in program(folder);
    open_store();
    if (!program.restore(in(folder, "copy.mdb")))
        qFatal("not restored: %s", qPrintable(program.boxes.shown.join(" | ")));
}

// As after a crash: what was there before the change stands in the journal alone.
void take_place_in(const QString &folder)
{
    store_file::take_place(in(folder, "mailapp.mdb"), in(folder, "mailapp 2026-11-21 15-30-12.mdb"));
}

QString what_is_wrong_with_a_crashed_store(const QString &folder)
{
    const QString kept = in(folder, "mailapp 2026-11-21 15-30-12.mdb");
    const QString store = in(folder, "mailapp.mdb");
    if (QFile::exists(kept + "-journal"))
        return accounts_in(kept) == "present" ? QString() : "kept, but with the accounts " + accounts_in(kept);
    return QFile::exists(store + "-journal") && accounts_in(store) == "present" ? QString()
                                                                                : QString("the former rows are gone");
}

// The folder "safe" holds a back-up and a page of the user's.
void make_safe(const QString &folder)
{
    put_file(in(folder, "mailapp.mdb"), present_store());
    for (const char *name : {"safe/data", "safe/html/contact", "forms/contact"})
        QDir(folder).mkpath(name);
    put_file(in(folder, "safe/data/Tessaly.mdb"), chosen_store());
    put_file(in(folder, "safe/html/contact/page.htm"), "the page");
    put_file(in(folder, "forms/contact/page.htm"), "the page");
    SaveSetting("main", "backup", {});
}

void choose_safe_in(const QString &folder)
{
    QDir().mkpath(in(folder, "program"));
    set_app_folder(in(folder, "program"));
    scripted_messages boxes;
    boxes.will_say_yes(); // to the page, which this program does not know
    if (!keep_back_up_folder(in(folder, "safe"), false))
        qFatal("not kept: %s", qPrintable(boxes.shown.join(" | ")));
}

}

class back_up_kill_test : public QObject {
    Q_OBJECT
private slots:
    void a_killed_restore_data() { kinds_of_calls(); }
    void a_killed_restore();
    void a_crashed_store_that_is_replaced_keeps_its_journal();
    void a_folder_that_is_made_ready_data() { kinds_of_calls(); }
    void a_folder_that_is_made_ready();

private:
    static void kinds_of_calls()
    {
        QTest::addColumn<QString>("calls");
        QTest::newRow("before a write") << "writes";
        QTest::newRow("before a rename") << "renames";
    }
};

void back_up_kill_test::a_killed_restore()
{
    QFETCH(QString, calls);
    kill_trial trial{"restore", calls};
    trial.least = calls == "writes" ? 2 : 4; // its bytes on disk; a link, the file, what is left of the copy
    trial.make = [](const QString &folder) {
        put_file(in(folder, "mailapp.mdb"), present_store());
        put_file(in(folder, "copy.mdb"), chosen_store());
    };
    trial.look = what_is_wrong_after_a_killed_restore;
    QCOMPARE(what_a_kill_does(trial), QString());
}

void back_up_kill_test::a_crashed_store_that_is_replaced_keeps_its_journal()
{
    kill_trial trial{"take place", "renames"};
    trial.least = 3; // a link, the journal, the file
    trial.make = [](const QString &folder) {
        put_file(in(folder, "before.mdb"), present_store());
        leave_crashed(in(folder, "before.mdb"), in(folder, "mailapp.mdb"), half_done);
        put_file(in(folder, "mailapp.mdb.new"), chosen_store());
    };
    trial.look = what_is_wrong_with_a_crashed_store;
    QCOMPARE(what_a_kill_does(trial), QString());
}

// What comes back is at its place, with nothing beside it; what is gone had been given up by a Yes, and then the new
// folder is kept.
void back_up_kill_test::a_folder_that_is_made_ready()
{
    QFETCH(QString, calls);
    kill_trial trial{"choose safe", calls};
    trial.least = calls == "writes" ? 2 : 6; // the setting on disk; two folders aside, two made, two gone
    trial.make = make_safe;
    trial.look = [](const QString &folder) -> QString {
        const QString kept = GetSetting("main", "backup");
        scripted_messages boxes;
        bring_back_what_a_kill_left(in(folder, "safe"));
        if (!boxes.shown.isEmpty())
            return "something stays aside: " + boxes.shown.join(" | ");
        const QStringList names = QDir(in(folder, "safe")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        if (!kept.isEmpty())
            return names == QStringList{"data", "html"} ? QString() : "in the kept folder: " + names.join(", ");
        if (accounts_in(in(folder, "safe/data/Tessaly.mdb")) != "chosen")
            return "the back-up is gone";
        return bytes_in(in(folder, "safe/html/contact/page.htm")) == "the page" ? QString()
                                                                                : QString("the page is gone");
    };
    QCOMPARE(what_a_kill_does(trial), QString());
    SaveSetting("main", "backup", {});
}

int main(int argc, char **argv)
{
    do_killed_work(argc, argv,
                   {{"restore", restore_in}, {"take place", take_place_in}, {"choose safe", choose_safe_in}});
    const QCoreApplication application(argc, argv);
    back_up_kill_test tests;
    return QTest::qExec(&tests, argc, argv);
}

#include "back_up_kill_test.moc"
