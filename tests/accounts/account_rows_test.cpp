// What adding, changing and deleting an account does in the store, its odd effects among it.
#include "accounts/account_rows.h"
#include "frame/error_log.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

namespace {

struct account_site : intake_site {
    account_site() { add_account("orders", "orders@shop.example"); }
    bool add(const QString &query, const QString &email)
    {
        return guarded("Accounts.frm", "Add_b", [&] { accounts::add(query, email); });
    }
    bool change(const QString &former, const QString &query, const QString &email)
    {
        return guarded("Accounts.frm", "Change_b", [&] { accounts::change(former, query, email); });
    }
    QStringList accounts_now() { return rows("select query,email,table_name from email_tbl"); }
    QStringList mails(const QString &table) { return column("select tsl_subject from " + table); }
};

}

class account_rows_test : public QObject {
    Q_OBJECT
private slots:
    void a_new_account_gets_its_row_the_message_and_an_empty_table();
    void the_row_stands_before_the_message_and_the_table_comes_after_it();
    void a_left_over_table_keeps_its_mails_under_old();
    void an_old_table_of_that_name_already_ends_the_click_and_loses_nothing();
    void names_with_hyphen_and_dot_keep_their_mails_too();
    void names_that_the_file_keeps_for_itself_too();
    void a_failing_table_step_leaves_the_row();
    void changing_the_address_only_empties_the_active_table();
    void changing_it_a_second_time_fails_at_the_old_table();
    void changing_the_name_leaves_the_account_on_its_old_table();
    void changing_capitals_only_moves_the_mails_as_well();
    void a_new_account_of_a_former_name_shares_the_table_of_the_renamed_one();
    void a_value_with_a_quote_is_stored_as_it_is();
    void the_last_account_stays();
    void a_deleted_account_leaves_its_table_and_its_maps();
    void the_list_begins_with_select_query();
    void an_account_is_found_in_any_capitals();
};

void account_rows_test::a_new_account_gets_its_row_the_message_and_an_empty_table()
{
    account_site site;
    QVERIFY(site.add("contact", "hello@shop.example"));
    QCOMPARE(site.accounts_now(),
             (QStringList{"orders|orders@shop.example|orders", "contact|hello@shop.example|contact"}));
    QCOMPARE(site.boxes.shown, QStringList{"New Account successfully added"});
    QCOMPARE(site.mails("contact"), QStringList());
    site.add_stored_mail("contact", "Hello", "Text");
    QCOMPARE(site.mails("contact"), QStringList{"Hello"});
}

void account_rows_test::the_row_stands_before_the_message_and_the_table_comes_after_it()
{
    struct looking : scripted_messages {
        account_site *site = nullptr;
        QStringList rows_then;
        bool table_then = true;
        std::optional<QString> show(const message_box &box) override
        {
            rows_then = site->accounts_now();
            table_then = guarded("test", "look", [this] { site->run("select * into proof from contact"); });
            return scripted_messages::show(box);
        }
    };
    account_site site;
    looking boxes;
    boxes.site = &site;
    QVERIFY(site.add("contact", "hello@shop.example"));
    QCOMPARE(boxes.rows_then.last(), "contact|hello@shop.example|contact");
    QVERIFY(!boxes.table_then);
    QCOMPARE(site.mails("contact"), QStringList());
}

void account_rows_test::a_left_over_table_keeps_its_mails_under_old()
{
    account_site site;
    site.add("contact", "hello@shop.example");
    site.add_stored_mail("contact", "Hello", "Text");
    QVERIFY(accounts::remove("contact"));
    QVERIFY(site.add("Contact", "hello@shop.example"));
    QCOMPARE(site.mails("contact"), QStringList());
    QCOMPARE(site.mails("contact_old"), QStringList{"Hello"});
    QCOMPARE(site.log_entries(), QStringList()); // that the table is there is an answer, no failure
}

void account_rows_test::an_old_table_of_that_name_already_ends_the_click_and_loses_nothing()
{
    account_site site;
    site.add("contact", "hello@shop.example");
    site.add_stored_mail("contact", "First", "Text");
    accounts::remove("contact");
    site.add("contact", "hello@shop.example");
    site.add_stored_mail("contact", "Second", "Text");
    accounts::remove("contact");
    QVERIFY(!site.add("contact", "hello@shop.example"));
    QCOMPARE(site.mails("contact"), QStringList{"Second"});
    QCOMPARE(site.mails("contact_old"), QStringList{"First"});
    QCOMPARE(site.accounts_now().last(), "contact|hello@shop.example|contact");
    QCOMPARE(site.log_entries(), QStringList{"-2147217900|Table 'contact_old' already exists.|Accounts.frm|Add_b"});
}

void account_rows_test::names_with_hyphen_and_dot_keep_their_mails_too()
{
    account_site site;
    for (const QString name : {"my-shop", "my.shop"}) {
        QVERIFY(site.add(name, name + "@shop.example"));
        site.add_stored_mail(name, "Hello", "Text");
        QVERIFY(site.change(name, name, "new-" + name + "@shop.example"));
        QCOMPARE(site.mails(name), QStringList());
        QCOMPARE(site.mails(name + "_old"), QStringList{"Hello"});
    }
}

void account_rows_test::names_that_the_file_keeps_for_itself_too()
{
    account_site site;
    QVERIFY(site.add("sqlite_shop", "shop@shop.example"));
    site.add_stored_mail("sqlite_shop", "Hello", "Text");
    QVERIFY(site.change("sqlite_shop", "sqlite_shop", "new@shop.example"));
    QCOMPARE(site.mails("sqlite_shop"), QStringList());
    QCOMPARE(site.mails("sqlite_shop_old"), QStringList{"Hello"});
}

void account_rows_test::a_failing_table_step_leaves_the_row()
{
    account_site site;
    site.run("drop table model_for_first");
    QVERIFY(!site.add("contact", "hello@shop.example"));
    QCOMPARE(site.accounts_now().last(), "contact|hello@shop.example|contact");
    QCOMPARE(site.boxes.shown, QStringList{"New Account successfully added"});
    QCOMPARE(site.log_entries().size(), 1);
    QVERIFY2(site.log_entries()[0].startsWith("-2147217865|"), qPrintable(site.log_entries()[0])); // no such table
    QVERIFY(site.log_entries()[0].endsWith("|Accounts.frm|Add_b"));
}

void account_rows_test::changing_the_address_only_empties_the_active_table()
{
    account_site site;
    site.add_stored_mail("orders", "Order 1", "Text");
    QVERIFY(site.change("orders", "orders", "new@shop.example"));
    QCOMPARE(site.accounts_now(), QStringList{"orders|new@shop.example|orders"});
    QCOMPARE(site.mails("orders"), QStringList());
    QCOMPARE(site.mails("orders_old"), QStringList{"Order 1"});
    QCOMPARE(site.boxes.shown, QStringList());
}

void account_rows_test::changing_it_a_second_time_fails_at_the_old_table()
{
    account_site site;
    site.add_stored_mail("orders", "Order 1", "Text");
    site.change("orders", "orders", "new@shop.example");
    site.add_stored_mail("orders", "Order 2", "Text");
    QVERIFY(!site.change("orders", "orders", "newer@shop.example"));
    QCOMPARE(site.accounts_now(), QStringList{"orders|newer@shop.example|orders"});
    QCOMPARE(site.mails("orders"), QStringList{"Order 2"});
    QCOMPARE(site.mails("orders_old"), QStringList{"Order 1"});
    QCOMPARE(site.log_entries(), QStringList{"-2147217900|Table 'orders_old' already exists.|Accounts.frm|Change_b"});
}

void account_rows_test::changing_the_name_leaves_the_account_on_its_old_table()
{
    account_site site;
    site.add_stored_mail("orders", "Order 1", "Text");
    QVERIFY(site.change("orders", "shop", "orders@shop.example"));
    QCOMPARE(site.accounts_now(), QStringList{"shop|orders@shop.example|orders"});
    QCOMPARE(site.mails("orders"), QStringList{"Order 1"});
    QCOMPARE(site.mails("shop"), QStringList()); // nothing points to it
    site.put({"orders@shop.example", "ann@mail.example", "Order 2", "Text"});
    QVERIFY(site.fetch());
    QCOMPARE(site.mails("orders"), (QStringList{"Order 1", "Order 2"}));
    QCOMPARE(site.mails("shop"), QStringList());
}

void account_rows_test::changing_capitals_only_moves_the_mails_as_well()
{
    account_site site;
    site.add_stored_mail("orders", "Order 1", "Text");
    QVERIFY(site.change("orders", "Orders", "orders@shop.example"));
    QCOMPARE(site.accounts_now(), QStringList{"Orders|orders@shop.example|orders"});
    QCOMPARE(site.mails("orders"), QStringList());
    QCOMPARE(site.mails("orders_old"), QStringList{"Order 1"});
}

void account_rows_test::a_new_account_of_a_former_name_shares_the_table_of_the_renamed_one()
{
    account_site site;
    site.add_stored_mail("orders", "Order 1", "Text");
    QVERIFY(site.change("orders", "shop", "shop@shop.example"));
    QVERIFY(site.add("orders", "orders@shop.example"));
    QCOMPARE(site.accounts_now(), (QStringList{"shop|shop@shop.example|orders", "orders|orders@shop.example|orders"}));
    QCOMPARE(site.mails("orders"), QStringList());
    QCOMPARE(site.mails("orders_old"), QStringList{"Order 1"});
    site.put({"shop@shop.example", "ann@mail.example", "To the renamed one", "Text"});
    site.put({"orders@shop.example", "ann@mail.example", "To the new one", "Text"});
    QVERIFY(site.fetch());
    QCOMPARE(site.mails("orders"), (QStringList{"To the renamed one", "To the new one"}));
}

void account_rows_test::a_value_with_a_quote_is_stored_as_it_is()
{
    account_site site;
    QVERIFY(site.add("contact", "hello@o'neil.example"));
    QCOMPARE(site.column("select email from email_tbl").last(), "hello@o'neil.example");
    QVERIFY(accounts::find("o'neil") == std::nullopt);
}

void account_rows_test::the_last_account_stays()
{
    account_site site;
    QVERIFY(!accounts::remove("orders"));
    QCOMPARE(site.boxes.shown, QStringList{"This query cannot be deleted. Atleast one query must exist."});
    QVERIFY(site.boxes.boxes[0].icon == message_icon::critical);
    QCOMPARE(site.accounts_now(), QStringList{"orders|orders@shop.example|orders"});
}

void account_rows_test::a_deleted_account_leaves_its_table_and_its_maps()
{
    account_site site;
    site.add_account("contact", "hello@shop.example");
    site.add_map("questions", 2, "Question", "Line", {{"city", "Line1"}});
    site.add_stored_mail("contact", "Hello", "Text");
    QVERIFY(accounts::remove("contact"));
    QCOMPARE(site.accounts_now(), QStringList{"orders|orders@shop.example|orders"});
    QCOMPARE(site.mails("contact"), QStringList{"Hello"});
    QCOMPARE(site.column("select table_name from table_list_tbl"), QStringList{"questions"});
    QCOMPARE(site.boxes.shown, QStringList());
}

void account_rows_test::the_list_begins_with_select_query()
{
    account_site site;
    site.add_account("contact", "hello@shop.example");
    QCOMPARE(accounts::query_list(), (QStringList{"Select query", "orders", "contact"}));
    site.run("delete from email_tbl");
    QCOMPARE(accounts::query_list(), QStringList{"Select query"});
}

void account_rows_test::an_account_is_found_in_any_capitals()
{
    const account_site site;
    QCOMPARE(accounts::find("ORDERS")->query, "orders");
    QCOMPARE(accounts::find("ORDERS")->email, "orders@shop.example");
    QVERIFY(!accounts::find("contact"));
}

QTEST_GUILESS_MAIN(account_rows_test)
#include "account_rows_test.moc"
