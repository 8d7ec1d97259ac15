// The screens of the first-run setup through their controls, from an empty store to the console.
#include "frame/session.h"
#include "frame/setup.h"
#include "platform/settings.h"
#include "screens/frame/Stage1.h"
#include "screens/frame/Stage3.h"
#include "screens/frame/backup_frm.h"
#include "screens/frame/closing.h"
#include "screens/frame/frmSplash.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/opening.h"
#include "screens/frame/stage5b.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QTest>

namespace {

// A store that was never set up, and the program's end counted instead of done.
struct fresh_site : screens_site {
    fresh_site()
    {
        store.run("update install_tbl set install=no");
        set_program_end([this] { ++ends; });
    }
    ~fresh_site()
    {
        set_program_end({});
        delete live_widget(typeid(menuFrm));
    }
    QString accounts_now()
    {
        QStringList texts;
        for (const QVariant &value : store.column("select query from email_tbl"))
            texts += value.toString();
        return texts.join(' ');
    }
    void configure(const QString &query, const QString &email)
    {
        store.run("insert into email_tbl(query,email,table_name) values('" + query + "','" + email + "','" + query +
                  "')");
    }
    int ends = 0;
};

template <typename T>
void type(const char *name, const QString &text)
{
    auto &field = control<QLineEdit>(the<T>(), name);
    field.clear();
    QTest::keyClicks(&field, text);
}

template <typename T>
void press(const char *name)
{
    control<QPushButton>(the<T>(), name).click();
}

template <typename T>
QString text_of(const char *name)
{
    return control<QLineEdit>(the<T>(), name).text();
}

QListWidget &query_l()
{
    return control<QListWidget>(the<Stage3>(), "query_l");
}

QStringList listed()
{
    QStringList names;
    for (int row = 0; row < query_l().count(); ++row)
        names += query_l().item(row)->text();
    return names;
}

QString details()
{
    return control<QLabel>(the<Stage3>(), "details_l").text();
}

void add(const QString &query, const QString &email)
{
    type<Stage3>("query_t", query);
    type<Stage3>("email_t", email);
    press<Stage3>("add_b");
}

}

class setup_screens_test : public QObject {
    Q_OBJECT
private slots:
    void a_store_that_was_never_set_up_shows_stage1_and_no_console()
    {
        fresh_site site;
        Main();
        QVERIFY(is_visible<Stage1>());
        QVERIFY(!live_widget(typeid(menuFrm)));
        QVERIFY(!is_loaded<frmSplash>());
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void stage1_asks_for_the_name_then_for_the_organisation()
    {
        fresh_site site;
        Main();
        press<Stage1>("next_b");
        type<Stage1>("Admin_t", "Zoe");
        press<Stage1>("next_b");
        QCOMPARE(site.boxes.shown, (QStringList{"Enter Administrator Name", "Enter Organisation name"}));
        QVERIFY(is_visible<Stage1>());
        QVERIFY(!is_loaded<Stage3>());
        QCOMPARE(GetSetting("main", "admin"), "");
    }

    void stage1_keeps_both_and_goes_on()
    {
        fresh_site site;
        Main();
        type<Stage1>("Admin_t", "Zoe");
        type<Stage1>("org_t", "Rose Cottage");
        QTest::keyClick(&control<QLineEdit>(the<Stage1>(), "org_t"), Qt::Key_Return);
        QCOMPARE(GetSetting("main", "admin"), "Zoe");
        QCOMPARE(GetSetting("main", "org"), "Rose Cottage");
        QVERIFY(!is_loaded<Stage1>());
        QVERIFY(is_visible<Stage3>());
        QCOMPARE(the<Stage3>().windowTitle(), "Configure");
    }

    void stage1_shows_what_was_kept()
    {
        fresh_site site;
        SaveSetting("main", "admin", "Zoe");
        SaveSetting("main", "org", "Rose Cottage");
        SaveSetting("main", "url", "www.rosecottage.example");
        Main();
        QCOMPARE(text_of<Stage1>("Admin_t"), "Zoe");
        QCOMPARE(text_of<Stage1>("org_t"), "Rose Cottage");
        QCOMPARE(text_of<Stage1>("url_T"), "www.rosecottage.example");
        QCOMPARE(text_of<Stage1>("dext_t"), "example");
        QVERIFY(!control<QLineEdit>(the<Stage1>(), "dext_t").isVisible());
    }

    void stage3_adds_to_list_and_store_and_makes_no_table()
    {
        fresh_site site;
        the<Stage3>().show();
        add("orders", "orders@shop.example");
        QCOMPARE(listed(), QStringList{"orders"});
        QCOMPARE(site.accounts_now(), "orders");
        QCOMPARE(text_of<Stage3>("query_t"), "");
        QCOMPARE(text_of<Stage3>("email_t"), "");
        QCOMPARE(error_number_of([&] { site.store.run("select * from orders"); }), quint32(ado::unknown_table));
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void stage3_refuses_the_same_address_again()
    {
        fresh_site site;
        the<Stage3>().show();
        add("orders", "orders@shop.example");
        add("contact", "orders@shop.example");
        QCOMPARE(site.boxes.shown,
                 QStringList{"This e-mail id has already been configured for a query, please enter another e-mail id"});
        QCOMPARE(listed(), QStringList{"orders"});
        QCOMPARE(text_of<Stage3>("email_t"), "orders@shop.example");
    }

    void stage3_tells_of_the_chosen_account()
    {
        fresh_site site;
        the<Stage3>().show();
        QCOMPARE(details(), "Select a query to view its details.");
        add("orders", "orders@shop.example");
        QCOMPARE(details(), "Select a query to view its details.");
        query_l().setCurrentRow(0);
        QCOMPARE(details(), "Query Name= orders\nE-mail ID= orders@shop.example");
    }

    void stage3_deletes_the_chosen_account()
    {
        fresh_site site;
        the<Stage3>().show();
        press<Stage3>("Command1");
        QCOMPARE(site.boxes.shown, QStringList{"Please select a query to be deleted"});
        add("orders", "orders@shop.example");
        add("contact", "hello@shop.example");
        query_l().setCurrentRow(0);
        press<Stage3>("Command1");
        QCOMPARE(listed(), QStringList{"contact"});
        QCOMPARE(site.accounts_now(), "contact");
    }

    void reset_empties_the_fields()
    {
        fresh_site site;
        the<Stage3>().show();
        type<Stage3>("query_t", "orders");
        type<Stage3>("email_t", "orders@shop.example");
        press<Stage3>("Reset_b");
        QCOMPARE(text_of<Stage3>("query_t") + text_of<Stage3>("email_t"), "");
        QCOMPARE(site.accounts_now(), "");
    }

    void stage3_refuses_to_go_on_without_an_account()
    {
        fresh_site site;
        the<Stage3>().show();
        press<Stage3>("next_b");
        QCOMPARE(site.boxes.shown, QStringList{"You must configure atleast one query/e-mail id to proceed."});
        QVERIFY(is_visible<Stage3>());
    }

    void stage3_asks_about_an_address_that_was_not_added()
    {
        fresh_site site;
        site.configure("orders", "orders@shop.example");
        the<Stage3>().show();
        type<Stage3>("email_t", "hello@shop.example");
        press<Stage3>("next_b");
        QCOMPARE(site.boxes.shown,
                 QStringList{"Please click on the ADD button next to the e-mail id you entered for the confirmation."});
        QVERIFY(is_visible<Stage3>());
    }

    void enter_adds_what_is_typed_and_else_goes_on()
    {
        fresh_site site;
        the<Stage3>().show();
        type<Stage3>("query_t", "orders");
        type<Stage3>("email_t", "orders@shop.example");
        QTest::keyClick(&control<QLineEdit>(the<Stage3>(), "email_t"), Qt::Key_Return);
        QCOMPARE(listed(), QStringList{"orders"});
        QVERIFY(is_visible<Stage3>());
        QTest::keyClick(&control<QLineEdit>(the<Stage3>(), "query_t"), Qt::Key_Return);
        QVERIFY(!is_loaded<Stage3>());
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void back_goes_to_stage1_and_loses_no_account()
    {
        fresh_site site;
        the<Stage3>().show();
        add("orders", "orders@shop.example");
        press<Stage3>("back_b");
        QVERIFY(is_visible<Stage1>());
        QVERIFY(!is_visible<Stage3>());
        type<Stage1>("Admin_t", "Zoe");
        type<Stage1>("org_t", "Rose Cottage");
        press<Stage1>("next_b");
        QCOMPARE(listed(), QStringList{"orders"});
    }

    void back_keeps_what_is_typed_for_the_way_forward()
    {
        fresh_site site;
        SaveSetting("main", "admin", "Zoe");
        SaveSetting("main", "org", "Rose Cottage");
        site.configure("orders", "orders@shop.example");
        Main();
        press<Stage1>("next_b");
        press<Stage3>("next_b");
        type<backup_frm>("Folder_t", "/somewhere");
        press<backup_frm>("back_b");
        QVERIFY(!is_visible<backup_frm>());
        type<Stage3>("query_t", "shop");
        press<Stage3>("back_b");
        press<Stage1>("next_b");
        QVERIFY(!is_loaded<Stage1>());
        QCOMPARE(text_of<Stage3>("query_t"), "shop");
        press<Stage3>("Reset_b");
        press<Stage3>("next_b");
        QCOMPARE(text_of<backup_frm>("Folder_t"), "/somewhere");
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void leaving_an_earlier_step_asks_about_what_is_typed_in_a_later_one()
    {
        fresh_site site;
        the<Stage3>().show();
        type<Stage3>("query_t", "shop");
        press<Stage3>("back_b");
        site.boxes.will_say_no();
        press<Stage1>("cancel_b");
        QCOMPARE(site.ends, 0);
        QVERIFY(is_visible<Stage1>());
        site.boxes.will_say_yes();
        press<Stage1>("cancel_b");
        QCOMPARE(site.ends, 1);
        QVERIFY(!is_loaded<Stage3>());
    }

    void a_setup_that_was_left_in_the_middle_goes_on()
    {
        fresh_site site;
        SaveSetting("main", "admin", "Zoe");
        SaveSetting("main", "org", "Rose Cottage");
        site.configure("orders", "orders@shop.example");
        Main();
        press<Stage1>("next_b");
        QCOMPARE(listed(), QStringList{"orders"});
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void a_failing_insert_is_logged_under_stage2()
    {
        fresh_site site;
        the<Stage3>().show();
        type<Stage3>("query_t", "orders");
        type<Stage3>("email_t", "orders@shop.example");
        site.store.run("drop table email_tbl");
        press<Stage3>("add_b");
        QCOMPARE(session.err_form, "Stage2.frm");
        QCOMPARE(listed(), QStringList());
    }

    void accounts_that_cannot_be_counted_are_logged_under_stage2_and_the_step_stays()
    {
        fresh_site site;
        the<Stage3>().show();
        add("orders", "orders@shop.example");
        site.store.run("drop table email_tbl");
        press<Stage3>("next_b");
        QCOMPARE(site.last_logged(), "Stage2.frm|next_b");
        QVERIFY(is_visible<Stage3>());
        QVERIFY(!is_loaded<backup_frm>());
    }

    void settings_that_cannot_be_saved_are_logged_and_said()
    {
        fresh_site site;
        Main();
        type<Stage1>("Admin_t", "Zoe");
        type<Stage1>("org_t", "Rose Cottage");
        const QString settings = QSettings(QStringLiteral("brenmoorbiz")).fileName();
        QFile::remove(settings);
        QVERIFY(QDir().mkpath(settings)); // a folder cannot be written, not even by root
        press<Stage1>("next_b");
        QVERIFY(QDir().rmdir(settings));
        QCOMPARE(site.last_logged(), "Stage1.frm|next_b");
        QCOMPARE(site.boxes.shown, QStringList{"The settings could not be saved: Permission denied: " + settings});
        QVERIFY(is_visible<Stage1>());
        QVERIFY(!is_loaded<Stage3>());
    }

    void finish_makes_the_tables_and_opens_the_console()
    {
        fresh_site site;
        site.configure("orders", "orders@shop.example");
        site.configure("contact", "hello@shop.example");
        the<stage5b>().show();
        QCOMPARE(control<QPlainTextEdit>(the<stage5b>(), "accounts_t").toPlainText(),
                 "Query Name= orders\nE-mail ID= orders@shop.example\n\n"
                 "Query Name= contact\nE-mail ID= hello@shop.example");
        press<stage5b>("finish_b");
        QVERIFY(is_installed());
        QCOMPARE(site.rows_of("orders"), 0);
        QCOMPARE(site.rows_of("contact"), 0);
        QVERIFY(!is_loaded<stage5b>());
        QVERIFY(live_widget(typeid(menuFrm)) && live_widget(typeid(menuFrm))->isVisible());
        QVERIFY(is_visible<frmSplash>());
        QCOMPARE(site.ends, 0);
        QCOMPARE(GetSetting("main", "install_location"), site.store.folder());
    }

    void the_setup_ends_without_a_back_up_folder_too()
    {
        fresh_site site;
        site.configure("orders", "orders@shop.example");
        the<Stage3>().show();
        press<Stage3>("next_b");
        QVERIFY(is_visible<backup_frm>());
        press<backup_frm>("later_b");
        QVERIFY(!is_loaded<backup_frm>());
        press<stage5b>("finish_b");
        QVERIFY(is_installed());
        QVERIFY(live_widget(typeid(menuFrm)) && live_widget(typeid(menuFrm))->isVisible());
        QCOMPARE(GetSetting("main", "backup", "none"), "none");
        QCOMPARE(site.boxes.shown, QStringList());
        the<backup_frm>().show(); // from the console it is a command, no step
        QVERIFY(!control<QPushButton>(the<backup_frm>(), "later_b").isVisible());
    }

    void what_hinders_the_end_is_told_and_the_step_stays()
    {
        fresh_site site;
        site.store.run("select * into orders from model_tbl");
        site.configure("orders", "orders@shop.example");
        the<stage5b>().show();
        press<stage5b>("finish_b");
        QCOMPARE(site.boxes.shown, QStringList{"The setup could not be finished: Table 'orders' already exists."});
        QCOMPARE(session.err_form, "Stage5b.frm");
        QCOMPARE(session.err_routine, "finish_b");
        QVERIFY(is_visible<stage5b>());
        QVERIFY(!is_installed());
        QVERIFY(!live_widget(typeid(menuFrm)));
    }

    void escape_ends_the_program_and_keeps_what_was_kept()
    {
        fresh_site site;
        the<Stage3>().show();
        add("orders", "orders@shop.example");
        QTest::keyClick(&query_l(), Qt::Key_Escape);
        QCOMPARE(site.ends, 1);
        QVERIFY(!is_loaded<Stage3>());
        QCOMPARE(site.accounts_now(), "orders");
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void what_is_typed_and_not_kept_is_not_dropped_unasked()
    {
        fresh_site site;
        Main();
        type<Stage1>("Admin_t", "Zoe");
        site.boxes.will_say_no();
        the<Stage1>().close();
        QCOMPARE(site.ends, 0);
        QVERIFY(is_visible<Stage1>());
        site.boxes.will_say_yes();
        press<Stage1>("cancel_b");
        QCOMPARE(site.ends, 1);
        QCOMPARE(site.boxes.shown, (QStringList{2, "What is typed here is not kept yet. Leave it?\n\n"
                                                   "The setup goes on at the next start of Tessaly."}));
    }

    void the_steps_have_one_size()
    {
        fresh_site site;
        Main();
        const QSize size = the<Stage1>().size();
        the<Stage3>().show();
        QCOMPARE(the<Stage3>().size(), size);
        the<backup_frm>().show();
        QCOMPARE(the<backup_frm>().size(), size);
        the<stage5b>().show();
        QCOMPARE(the<stage5b>().size(), size);
    }

    void no_step_leaves_the_process_without_a_window()
    {
        fresh_site site;
        const auto windows = [] {
            int shown = 0;
            for (const QWidget *window : QApplication::topLevelWidgets())
                shown += window->isVisible();
            return shown;
        };
        Main();
        QCOMPARE(windows(), 1);
        type<Stage1>("Admin_t", "Zoe");
        type<Stage1>("org_t", "Rose Cottage");
        press<Stage1>("next_b");
        QCOMPARE(windows(), 1);
        add("orders", "orders@shop.example");
        press<Stage3>("next_b");
        QCOMPARE(windows(), 1);
    }
};

QTEST_MAIN(setup_screens_test)
#include "setup_screens_test.moc"
