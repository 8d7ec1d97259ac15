// The preferences page "Accounts" through its controls, and the list that leads from page to page.
#include "frame/session.h"
#include "screens/frame/menuFrm.h"
#include "screens/list_view.h"
#include "screens/maps/MapWizardStep2_frm.h"
#include "screens/preferences/Accounts.h"
#include "screens/preferences/mail_client_frm.h"
#include "screens/preferences/page_list.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTest>

namespace {

Accounts &page()
{
    return the<Accounts>();
}

QLineEdit &field(const char *name)
{
    return control<QLineEdit>(page(), name);
}

QPushButton &button(const char *name)
{
    return control<QPushButton>(page(), name);
}

QComboBox &query_c()
{
    return control<QComboBox>(page(), "query_c");
}

void type(const QString &query, const QString &email)
{
    field("query_t").clear();
    field("email_t").clear();
    QTest::keyClicks(&field("query_t"), query);
    QTest::keyClicks(&field("email_t"), email);
}

QStringList entries(const QComboBox &list)
{
    QStringList texts;
    for (int index = 0; index < list.count(); ++index)
        texts += list.itemText(index);
    return texts;
}

bool is_enabled(const QComboBox &list, const QString &caption)
{
    return static_cast<QStandardItemModel *>(list.model())->item(list.findText(caption))->isEnabled();
}

// As a person does it: the list opens and the entry is clicked.
void choose(QComboBox &list, const QString &caption)
{
    list.setCurrentIndex(list.findText(caption));
    emit list.activated(list.findText(caption));
}

// In the Mail Mapping Wizard, beside this page.
void rename_first_account_in_wizard(const QString &query)
{
    MapWizardStep2_frm &wizard = the<MapWizardStep2_frm>();
    wizard.show();
    auto &list = control<list_view>(wizard, "inbox_lv");
    list.setCurrentIndex(list.model()->index(0, 0));
    control<QPushButton>(wizard, "Edit_b").click();
    control<QLineEdit>(wizard, "query_t").setText(query);
    control<QPushButton>(wizard, "change_b").click();
}

const QString gone = "The account orders is not there any more. The list is filled anew.";

struct page_site : screens_site {
    page_site()
    {
        store.add_account("orders", "orders@shop.example");
        store.add_account("contact", "hello@shop.example");
        page().show();
    }
    QString accounts_now() { return join(store.column("select query from email_tbl")); }
    static QString join(const QVariantList &values)
    {
        QStringList texts;
        for (const QVariant &value : values)
            texts += value.toString();
        return texts.join(' ');
    }
};

// The page in the console, where the wizard may stand beside it.
struct console_site : screens_site {
    console_site()
    {
        store.add_account("orders", "orders@shop.example");
        store.add_account("contact", "hello@shop.example");
        console.show();
        page().show();
    }
    menuFrm console;
};

}

class Accounts_test : public QObject {
    Q_OBJECT
private slots:
    void the_list_shows_select_query_and_the_accounts()
    {
        page_site site;
        QCOMPARE(entries(query_c()), (QStringList{"Select query", "orders", "contact"}));
        QCOMPARE(query_c().currentIndex(), 0);
        QCOMPARE(field("query_t").text(), "");
    }

    void add_speaks_about_the_name_first()
    {
        page_site site;
        button("add_b").click();
        QCOMPARE(site.boxes.shown, QStringList{"Please enter a query name."});
        QVERIFY(page().focusWidget() == &field("query_t"));
    }

    void the_keyboard_goes_to_the_field_to_mend()
    {
        page_site site;
        type("shop", "hello@shop.example");
        button("add_b").click();
        QCOMPARE(site.boxes.shown,
                 QStringList{"This e-mail id has already been configured for a query, please enter another e-mail id"});
        QVERIFY(page().focusWidget() == &field("email_t"));
        QCOMPARE(field("query_t").text(), "shop"); // what was typed stays
    }

    void an_added_account_is_in_the_list_and_in_the_store()
    {
        page_site site;
        type("shop", "shop@shop.example");
        button("add_b").click();
        QCOMPARE(site.boxes.shown, QStringList{"New Account successfully added"});
        QCOMPARE(entries(query_c()), (QStringList{"Select query", "orders", "contact", "shop"}));
        QCOMPARE(query_c().currentIndex(), 0);
        QCOMPARE(site.rows_of("shop"), 0);
    }

    void enter_adds()
    {
        page_site site;
        type("shop", "shop@shop.example");
        QTest::keyClick(&field("email_t"), Qt::Key_Return);
        QCOMPARE(site.accounts_now(), "orders contact shop");
    }

    void choosing_an_account_fills_the_fields()
    {
        page_site site;
        query_c().setCurrentIndex(2);
        QCOMPARE(field("query_t").text(), "contact");
        QCOMPARE(field("email_t").text(), "hello@shop.example");
    }

    void change_takes_the_chosen_account_and_fills_the_list_again()
    {
        page_site site;
        query_c().setCurrentIndex(1);
        type("shop", "shop@shop.example");
        button("change_b").click();
        QCOMPARE(site.accounts_now(), "shop contact");
        QCOMPARE(site.store.cell("select table_name from email_tbl where query='shop'"), "orders");
        QCOMPARE(entries(query_c()), (QStringList{"Select query", "shop", "contact"}));
        QCOMPARE(query_c().currentIndex(), 0);
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void change_refuses_anothers_name()
    {
        page_site site;
        query_c().setCurrentIndex(1);
        type("contact", "orders@shop.example");
        button("change_b").click();
        QCOMPARE(site.boxes.shown,
                 QStringList{"This query has already been configured, please enter another query name"});
        QCOMPARE(site.accounts_now(), "orders contact");
    }

    void change_refuses_an_account_that_is_gone_and_leaves_its_table()
    {
        page_site site;
        site.store.run("insert into orders (tsl_subject,tsl_recdate,tsl_Email,tsl_status,tsl_body) "
                       "values('Order','1/2/2026','zoe@home.example','new','Name: Zoe')");
        query_c().setCurrentIndex(1);
        site.store.run("update email_tbl set query='sales' where query='orders'");
        button("change_b").click();
        QCOMPARE(site.boxes.shown, QStringList{gone});
        QCOMPARE(site.rows_of("orders"), 1);
        QCOMPARE(error_number_of([&] { site.store.run("select * from orders_old"); }), quint32(ado::unknown_table));
        QCOMPARE(entries(query_c()), (QStringList{"Select query", "sales", "contact"}));
        QCOMPARE(query_c().currentIndex(), 0);
    }

    void delete_refuses_an_account_that_is_gone()
    {
        page_site site;
        query_c().setCurrentIndex(1);
        site.store.run("update email_tbl set query='sales' where query='orders'");
        button("Delete_b").click();
        QCOMPARE(site.boxes.shown, QStringList{gone});
        QCOMPARE(site.accounts_now(), "sales contact");
        QCOMPARE(entries(query_c()), (QStringList{"Select query", "sales", "contact"}));
    }

    void what_the_wizard_changed_is_listed_when_the_page_comes_to_the_front()
    {
        console_site site;
        query_c().setCurrentIndex(1);
        rename_first_account_in_wizard("sales");
        page().show();
        QCOMPARE(entries(query_c()), (QStringList{"Select query", "sales", "contact"}));
        QCOMPARE(query_c().currentIndex(), 0);
        QCOMPARE(field("query_t").text(), "");
        QVERIFY(!button("change_b").isEnabled());
        forget_screens();
    }

    void what_is_typed_stays_when_its_account_is_as_it_was()
    {
        console_site site;
        query_c().setCurrentIndex(2);
        type("shop", "shop@shop.example");
        rename_first_account_in_wizard("sales");
        page().show();
        QCOMPARE(entries(query_c()), (QStringList{"Select query", "sales", "contact"}));
        QCOMPARE(query_c().currentText(), "contact");
        QCOMPARE(field("query_t").text(), "shop");
        QVERIFY(button("change_b").isEnabled());
        forget_screens();
    }

    void enter_changes_a_chosen_account_and_adds_none()
    {
        page_site site;
        query_c().setCurrentIndex(1);
        type("shop", "shop@shop.example");
        QTest::keyClick(&field("email_t"), Qt::Key_Return);
        QCOMPARE(site.accounts_now(), "shop contact");
        type("garden", "garden@shop.example"); // none is chosen any more
        QTest::keyClick(&field("email_t"), Qt::Key_Return);
        QCOMPARE(site.accounts_now(), "shop contact garden");
    }

    void accounts_that_cannot_be_read_are_said()
    {
        screens_site site;
        site.store.run("drop table email_tbl");
        page().show();
        QCOMPARE(site.status_lines.size(), 1);
        QVERIFY(site.status_lines[0].startsWith("The accounts cannot be shown: "));
    }

    void an_account_that_cannot_be_deleted_is_said()
    {
        page_site site;
        query_c().setCurrentIndex(1);
        site.store.run("drop table email_tbl");
        button("Delete_b").click();
        QCOMPARE(session.err_routine, "Delete_b");
        QCOMPARE(site.status_lines.size(), 1);
        QVERIFY(site.status_lines[0].startsWith("The account orders could not be deleted: "));
    }

    void a_change_that_cannot_make_its_table_is_told_in_the_status_bar()
    {
        page_site site;
        site.store.run("select * into orders_old from model_for_first");
        query_c().setCurrentIndex(1);
        button("change_b").click();
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(session.err_form, "Accounts.frm");
        QCOMPARE(session.err_routine, "Change_b");
        QCOMPARE(site.status_lines,
                 QStringList{"The account orders could not be set up whole: Table 'orders_old' already exists."});
    }

    void with_select_query_chosen_nothing_is_changed_or_deleted()
    {
        page_site site;
        type("shop", "shop@shop.example");
        QVERIFY(!button("change_b").isEnabled());
        QVERIFY(!button("Delete_b").isEnabled());
        button("change_b").click();
        button("Delete_b").click();
        QCOMPARE(site.accounts_now(), "orders contact");
        QCOMPARE(error_number_of([&] { site.store.run("select * from shop"); }), quint32(ado::unknown_table));
        QCOMPARE(site.boxes.shown, QStringList());
        query_c().setCurrentIndex(1);
        query_c().setCurrentIndex(0);
        QVERIFY(!button("Delete_b").isEnabled());
    }

    void delete_takes_the_chosen_account_only()
    {
        page_site site;
        query_c().setCurrentIndex(1);
        button("Delete_b").click();
        QCOMPARE(site.accounts_now(), "contact");
        QCOMPARE(entries(query_c()), (QStringList{"Select query", "contact"}));
        QCOMPARE(site.rows_of("orders"), 0); // its table is still there
    }

    void the_last_account_stays()
    {
        page_site site;
        query_c().setCurrentIndex(1);
        button("Delete_b").click();
        query_c().setCurrentIndex(1);
        button("Delete_b").click();
        QCOMPARE(site.boxes.shown, QStringList{"This query cannot be deleted. Atleast one query must exist."});
        QVERIFY(site.boxes.boxes[0].icon == message_icon::critical);
        QCOMPARE(site.accounts_now(), "contact");
        QCOMPARE(query_c().currentIndex(), 1);
    }

    void a_store_without_accounts_opens_too()
    {
        screens_site site;
        page().show();
        QCOMPARE(entries(query_c()), QStringList{"Select query"});
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void escape_and_close_end_the_page()
    {
        page_site site;
        QTest::keyClick(&field("query_t"), Qt::Key_Escape);
        QVERIFY(!is_loaded<Accounts>());
        page().show();
        button("close_b").click();
        QVERIFY(!is_loaded<Accounts>());
    }

    void the_page_list_stands_on_its_own_page_and_refuses_those_that_do_not_exist()
    {
        page_site site;
        const auto &list = control<QComboBox>(page(), "Combo2");
        QCOMPARE(list.currentText(), "ACCOUNTS");
        QCOMPARE(entries(list),
                 (QStringList{"GENERAL", "ACCOUNTS", "LABELS", "ONLINE FORM", "MAP MAILS", "MAIL CLIENT"}));
        QVERIFY(!is_enabled(list, "LABELS"));
        QCOMPARE(list.itemData(list.findText("LABELS"), Qt::ToolTipRole).toString(), "This page is not there yet.");
        for (const char *caption : {"GENERAL", "ACCOUNTS", "ONLINE FORM", "MAP MAILS", "MAIL CLIENT"})
            QVERIFY(is_enabled(list, caption));
        QVERIFY(!page_exists(preference_page::labels));
        QVERIFY(page_exists(preference_page::accounts));
    }

    void choosing_a_page_closes_this_one_and_opens_that_one()
    {
        page_site site;
        choose(control<QComboBox>(page(), "Combo2"), "MAIL CLIENT");
        QVERIFY(!is_loaded<Accounts>());
        QVERIFY(is_visible<mail_client_frm>());
        auto &list = control<QComboBox>(the<mail_client_frm>(), "Combo1");
        QCOMPARE(list.currentText(), "MAIL CLIENT");
        choose(list, "ACCOUNTS");
        QVERIFY(is_visible<Accounts>());
        QVERIFY(!is_loaded<mail_client_frm>());
    }

    void choosing_ones_own_page_does_nothing()
    {
        page_site site;
        type("shop", "");
        choose(control<QComboBox>(page(), "Combo2"), "ACCOUNTS");
        QCOMPARE(field("query_t").text(), "shop");
    }

    void what_is_typed_in_the_mail_client_is_not_dropped_unasked()
    {
        screens_site site;
        open_page(preference_page::mail_client);
        QTest::keyClicks(&control<QLineEdit>(the<mail_client_frm>(), "address_t"), "ann@mail.example");
        auto &list = control<QComboBox>(the<mail_client_frm>(), "Combo1");
        site.boxes.will_say_no();
        choose(list, "ACCOUNTS");
        QVERIFY(is_visible<mail_client_frm>());
        QVERIFY(!is_loaded<Accounts>());
        QCOMPARE(list.currentText(), "MAIL CLIENT");
        site.boxes.will_say_yes();
        choose(list, "ACCOUNTS");
        QVERIFY(!is_loaded<mail_client_frm>());
        QVERIFY(is_visible<Accounts>());
        QCOMPARE(site.boxes.shown,
                 (QStringList{2, "What is typed on this page is not saved yet. Leave it without saving?"}));
    }

    void the_console_keeps_one_page_open_at_most()
    {
        screens_site site;
        menuFrm console;
        console.show();
        control<QAction>(console, "account").trigger();
        QVERIFY(is_visible<Accounts>());
        control<QAction>(console, "mail_client_mnu").trigger();
        QVERIFY(is_visible<mail_client_frm>());
        QVERIFY(!is_loaded<Accounts>());
        control<QAction>(console, "account").trigger();
        QVERIFY(is_visible<Accounts>());
        QVERIFY(!is_loaded<mail_client_frm>());
    }

    void the_same_command_twice_keeps_what_is_typed()
    {
        screens_site site;
        menuFrm console;
        console.show();
        control<QAction>(console, "account").trigger();
        type("shop", "");
        control<QAction>(console, "account").trigger();
        QCOMPARE(field("query_t").text(), "shop");
    }
};

QTEST_MAIN(Accounts_test)
#include "Accounts_test.moc"
