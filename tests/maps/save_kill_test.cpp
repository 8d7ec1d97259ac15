// The wizard's save is killed before each call that changes something on disk: the store is whole, the next start
// works, what is left of the map takes no mail unless it is whole, and saving again under another name takes them all.
#include "frame/session.h"
#include "frame/start_up.h"
#include "frame/store.h"
#include "intake/map_parser.h"
#include "maps/field_entry.h"
#include "maps/map_wizard.h"
#include "maps/map_writing.h"
#include "platform/app_folder.h"
#include "support/intake_site.h"
#include "support/killed_work.h"
#include "support/plain_files.h"
#include "support/raw_store.h"

#include <QCoreApplication>
#include <QtTest/QTest>

namespace {

constexpr int mails = 6;

QString store_of(const QString &folder)
{
    return folder + "/mailapp.mdb";
}

// An account with mails of one form, none of them taken yet.
QByteArray store_with_mails()
{
    intake_site site;
    site.add_account("orders", "orders@example.org");
    for (int number = 1; number <= mails; ++number)
        site.add_stored_mail("orders", "Order", QString("Name: Customer %1\r\nCity: Rome\r\nNo: 17").arg(number));
    session.store_connection->copy_store(site.folder.filePath("copy.mdb"));
    return bytes_in(site.folder.filePath("copy.mdb"));
}

struct program_in {
    explicit program_in(const QString &folder)
    {
        set_app_folder(folder);
        session = {};
        maps::map_wizard = {};
    }
    ~program_in()
    {
        session = {};
        maps::map_wizard = {};
        set_app_folder({});
    }
    scripted_messages boxes;
};

void save_as(const QString &name)
{
    maps::map_wizard = {};
    maps::map_wizard.mail_table = "orders";
    maps::map_wizard.mail_id = "1";
    maps::map_wizard.account_id = "1";
    maps::map_wizard.map_subject = "Order";
    maps::map_wizard.map_separator = "Line";
    maps::keep_field("person", "Separator1", {"Name:"}, {}, {}, false);
    maps::keep_field("town", "Separator2", {"City:"}, {}, {}, false);
    maps::keep_field("number", "Separator3", {"No:"}, {}, {}, false);
    maps::write_map(name);
    if (!maps::bring_mails_over(name))
        qFatal("the mails were not brought over");
}

void save_in(const QString &folder)
{
    program_in program(folder);
    open_store();
    save_as("customers");
    close_store();
}

QString count_in(const QString &folder, const char *table)
{
    return raw_store(store_of(folder)).text(QByteArray("select count(*) from ") + table);
}

bool has_table(const QString &folder, const char *name)
{
    return raw_store(store_of(folder))
               .text(QByteArray("select count(*) from sqlite_master where name='") + name + "' collate nocase") == "1";
}

// A map that is not whole takes no mail.
QString what_is_wrong_with_the_map(const QString &folder)
{
    const bool has_its_table = has_table(folder, "customers");
    const bool is_whole =
        has_its_table && count_in(folder, "format_tbl") == "3" &&
        count_in(folder, "pragma_table_info('customers') where name in ('person','town','number')") == "3";
    if (!is_whole && has_its_table && count_in(folder, "customers") != "0")
        return "half a map took " + count_in(folder, "customers") + " mails";
    // A row that the kill cut short stays without values, and its mail is taken once more: none is lost.
    if (is_whole && count_in(folder, "(select distinct person from customers where town='Rome' and number='17')") !=
                        QString::number(mails))
        return "the whole map has not all mails that fit";
    return {};
}

QString what_is_wrong_after(const QString &folder)
{
    if (const QString damage = raw_store(store_of(folder)).text("pragma integrity_check"); damage != "ok")
        return "the store is damaged: " + damage;
    {
        program_in program(folder);
        if (start_up() != start::console)
            return "the next start does not come to the console";
        if (!intake::parse_unprocessed_mails())
            return "the pass of the parser ends: " + session.err_description;
        close_store();
    }
    if (const QString wrong = what_is_wrong_with_the_map(folder); !wrong.isEmpty())
        return wrong;
    {
        program_in program(folder);
        open_store();
        save_as("again");
        close_store();
    }
    const QString taken = count_in(folder, "again where town='Rome' and number='17'");
    return taken == QString::number(mails) ? QString() : "saved again, the map takes " + taken;
}

}

class save_kill_test : public QObject {
    Q_OBJECT
private slots:
    void killed_data();
    void killed();
};

void save_kill_test::killed_data()
{
    QTest::addColumn<QString>("calls");
    QTest::addColumn<bool>("every_statement");
    QTest::addColumn<int>("most");
    QTest::newRow("before a write") << "writes" << false << 20;
    QTest::newRow("before a rename") << "renames" << false << 20;
    QTest::newRow("before a write, each statement late enough to be committed") << "writes" << true << 40;
}

void save_kill_test::killed()
{
    QFETCH(QString, calls);
    QFETCH(bool, every_statement);
    QFETCH(int, most);
    static const QByteArray store = store_with_mails();
    kill_trial trial{"save", calls};
    trial.every_statement = every_statement;
    trial.most = most;
    trial.make = [](const QString &folder) { put_file(store_of(folder), store); };
    trial.look = what_is_wrong_after;
    QCOMPARE(what_a_kill_does(trial), QString());
}

int main(int argc, char **argv)
{
    do_killed_work(argc, argv, {{"save", save_in}});
    const QCoreApplication application(argc, argv);
    save_kill_test tests;
    return QTest::qExec(&tests, argc, argv);
}

#include "save_kill_test.moc"
