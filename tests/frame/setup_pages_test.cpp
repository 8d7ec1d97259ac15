// What the screens of the first-run setup test and keep.
#include "frame/account_list.h"
#include "frame/setup_pages.h"
#include "platform/settings.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

class setup_pages_test : public QObject {
    Q_OBJECT
private slots:
    void the_name_is_asked_for_before_the_organisation();
    void name_and_organisation_are_kept();
    void the_web_site_is_kept_where_it_was_changed();
    void the_ending_of_the_web_site_data();
    void the_ending_of_the_web_site();
    void adding_data();
    void adding();
    void going_on_needs_an_account_first();
    void an_address_that_was_typed_and_not_added_is_asked_about();
    void details_of_an_account();
    void a_deleted_account_is_gone();
    void accounts_stand_in_the_order_of_adding();
};

void setup_pages_test::the_name_is_asked_for_before_the_organisation()
{
    QCOMPARE(setup_pages::why_not_kept({"", "", ""}), "Enter Administrator Name");
    QCOMPARE(setup_pages::why_not_kept({"", "Rose Cottage", "rosecottage.example"}), "Enter Administrator Name");
    QCOMPARE(setup_pages::why_not_kept({"Zoe", "", "rosecottage.example"}), "Enter Organisation name");
    QCOMPARE(setup_pages::why_not_kept({"Zoe", "Rose Cottage", ""}), "");
}

void setup_pages_test::name_and_organisation_are_kept()
{
    const intake_site site;
    setup_pages::keep_owner({"Zoe O'Neil", "Rose, Cottage & Co", {}});
    QCOMPARE(GetSetting("main", "admin"), "Zoe O'Neil");
    QCOMPARE(GetSetting("main", "org"), "Rose, Cottage & Co");
    QCOMPARE(setup_pages::kept_owner().admin, "Zoe O'Neil");
}

void setup_pages_test::the_web_site_is_kept_where_it_was_changed()
{
    const intake_site site;
    setup_pages::keep_owner({"Zoe", "Rose Cottage", "www.rosecottage.example"});
    QCOMPARE(GetSetting("main", "url"), "www.rosecottage.example");
    setup_pages::keep_owner({"Zoe", "Rose Cottage", ""});
    QCOMPARE(GetSetting("main", "url", "otherwise"), "");
}

void setup_pages_test::the_ending_of_the_web_site_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("ending");
    QTest::newRow("nothing") << ""
                             << "";
    QTest::newRow("a bare name") << "www.rosecottage.example"
                                 << "example";
    QTest::newRow("with its scheme and a path") << "https://rosecottage.co.test/shop.html"
                                                << "test";
    QTest::newRow("no ending") << "localhost"
                               << "";
}

void setup_pages_test::the_ending_of_the_web_site()
{
    QFETCH(QString, url);
    QTEST(setup_pages::site_ending(url), "ending");
}

// Each row holds later faults too; only the first one speaks.
void setup_pages_test::adding_data()
{
    const QString no_name = "Please enter query name and then click Add.";
    const QString bad_name = "Invalid query name. Keywords, special characters,spaces not allowed.";
    const QString no_address = "Please enter e-mail id and then click Add.";
    const QString bad_address = "Invalid email id. Keywords, special characters,spaces not allowed";
    const QString taken_address =
        "This e-mail id has already been configured for a query, please enter another e-mail id";
    const QString taken_name = "The query names should be unique";
    const QString taken_table = "A table with this name already exists. Please specify another name";
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("email");
    QTest::addColumn<QString>("message");
    QTest::newRow("both empty") << ""
                                << "" << no_name;
    QTest::newRow("no name and a bad address") << ""
                                               << "x" << no_name;
    QTest::newRow("the name's syntax before the missing address") << "my shop"
                                                                  << "" << bad_name;
    QTest::newRow("Select, in any capitals") << "SELect"
                                             << "" << bad_name;
    QTest::newRow("a blank in front") << " shop"
                                      << "new@shop.example" << bad_name;
    QTest::newRow("a blank behind") << "shop "
                                    << "new@shop.example" << bad_name;
    QTest::newRow("no address") << "shop"
                                << "" << no_address;
    QTest::newRow("no at sign") << "shop"
                                << "shop.example" << bad_address;
    QTest::newRow("no dot") << "shop"
                            << "shop@example" << bad_address;
    QTest::newRow("six characters") << "shop"
                                    << "a@b.de" << bad_address;
    QTest::newRow("seven characters") << "shop"
                                      << "a@bc.de"
                                      << "";
    QTest::newRow("a bad address before a listed name") << "orders"
                                                        << "x" << bad_address;
    QTest::newRow("a taken address before a listed name") << "orders"
                                                          << "orders@shop.example" << taken_address;
    QTest::newRow("a taken address in other capitals") << "shop"
                                                       << "ORDERS@shop.example" << taken_address;
    QTest::newRow("a listed name") << "orders"
                                   << "new@shop.example" << taken_name;
    QTest::newRow("a listed name in other capitals") << "Orders"
                                                     << "new@shop.example" << taken_name;
    QTest::newRow("a fixed table") << "format_tbl"
                                   << "new@shop.example" << taken_table;
    QTest::newRow("what a fixed table would move to") << "format_tbl_old"
                                                      << "new@shop.example" << taken_table;
    QTest::newRow("words that statements reserve are fine here") << "Form"
                                                                 << "new@shop.example"
                                                                 << "";
    QTest::newRow("another of them") << "Group"
                                     << "new@shop.example"
                                     << "";
    QTest::newRow("a hyphen") << "my-shop"
                              << "new@shop.example"
                              << "";
}

void setup_pages_test::adding()
{
    QFETCH(QString, query);
    QFETCH(QString, email);
    QFETCH(QString, message);
    intake_site site;
    add_account_row("orders", "orders@shop.example");
    QCOMPARE(setup_pages::why_not_addable(query, email, setup_pages::account_names()), message);
    QCOMPARE(site.boxes.shown, QStringList());
}

void setup_pages_test::going_on_needs_an_account_first()
{
    const QString no_account = "You must configure atleast one query/e-mail id to proceed.";
    intake_site site;
    QCOMPARE(setup_pages::why_not_on(""), no_account);
    QCOMPARE(setup_pages::why_not_on("new@shop.example"), no_account);
    add_account_row("orders", "orders@shop.example");
    QCOMPARE(setup_pages::why_not_on(""), "");
}

void setup_pages_test::an_address_that_was_typed_and_not_added_is_asked_about()
{
    intake_site site;
    add_account_row("orders", "orders@shop.example");
    QCOMPARE(setup_pages::why_not_on("new@shop.example"),
             "Please click on the ADD button next to the e-mail id you entered for the confirmation.");
    QCOMPARE(setup_pages::why_not_on("Orders@shop.example"), ""); // that one was added
}

void setup_pages_test::details_of_an_account()
{
    intake_site site;
    add_account_row("orders", "orders@shop.example");
    QCOMPARE(setup_pages::account_details(""), "Select a query to view its details.");
    QCOMPARE(setup_pages::account_details("orders"), "Query Name= orders\nE-mail ID= orders@shop.example");
    QCOMPARE(setup_pages::account_details("gone"), "");
}

void setup_pages_test::a_deleted_account_is_gone()
{
    intake_site site;
    add_account_row("orders", "orders@shop.example");
    add_account_row("contact", "hello@shop.example");
    setup_pages::delete_account("orders");
    QCOMPARE(setup_pages::account_names(), QStringList{"contact"});
    QCOMPARE(setup_pages::why_not_addable("orders", "orders@shop.example", setup_pages::account_names()), "");
}

void setup_pages_test::accounts_stand_in_the_order_of_adding()
{
    intake_site site;
    add_account_row("zinnia", "zinnia@shop.example");
    add_account_row("aster", "aster@shop.example");
    QCOMPARE(setup_pages::account_names(), (QStringList{"zinnia", "aster"}));
    QCOMPARE(site.rows("select query,email,table_name from email_tbl"),
             (QStringList{"zinnia|zinnia@shop.example|zinnia", "aster|aster@shop.example|aster"}));
}

QTEST_GUILESS_MAIN(setup_pages_test)
#include "setup_pages_test.moc"
