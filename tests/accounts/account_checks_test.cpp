// What is refused when an account is added or changed, and which message comes first.
#include "accounts/account_checks.h"
#include "frame/fixed_tables.h"
#include "support/intake_site.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest/QTest>

namespace {

const QString no_name = "Please enter a query name.";
const QString no_address = "Please enter an e-mail id.";
const QString bad_address = "E-mail id not in a proper format";
const QString bad_name = "Invalid query name. Special characters, keywords not allowed";
const QString taken_address = "This e-mail id has already been configured for a query, please enter another e-mail id";
const QString taken_name = "The query with this name already exists. Please specify another name";
const QString taken_by_another = "This query has already been configured, please enter another query name";
const QString taken_table = "A table with this name already exists. Please specify another name";

// Two accounts, and a map of the first one.
struct account_site : intake_site {
    account_site()
    {
        add_account("orders", "orders@shop.example");
        add_account("contact", "hello@shop.example");
        add_map("roses", 1, "Order", "Line", {{"city", "Line1"}});
    }
};

QString words(const std::optional<accounts::fault> &fault)
{
    return fault ? fault->message : QString();
}

}

class account_checks_test : public QObject {
    Q_OBJECT
private slots:
    void adding_data();
    void adding();
    void changing_data();
    void changing();
    void the_field_to_mend_is_told();
    void names_of_fixed_tables_are_refused_data();
    void names_of_fixed_tables_are_refused();
    void the_list_of_fixed_tables_is_the_delivered_store();
};

// Each row holds every later fault too, as far as one can hold both: only the first one speaks.
void account_checks_test::adding_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("email");
    QTest::addColumn<QString>("message");
    QTest::newRow("both empty: the name first") << ""
                                                << "" << no_name;
    QTest::newRow("a bad name and no address: the address") << "1 2"
                                                            << "" << no_address;
    QTest::newRow("a bad name and a bad address: the address") << "1 2"
                                                               << "x" << bad_address;
    QTest::newRow("no at sign") << "shop"
                                << "shop.example" << bad_address;
    QTest::newRow("no dot") << "shop"
                            << "shop@example" << bad_address;
    QTest::newRow("two at signs") << "shop"
                                  << "shop@shop@shop.example" << bad_address;
    QTest::newRow("it starts with the at sign") << "shop"
                                                << "@shop.example" << bad_address;
    QTest::newRow("five characters") << "shop"
                                     << "a@b.c" << bad_address;
    QTest::newRow("six characters") << "shop"
                                    << "a@b.de" << bad_address;
    QTest::newRow("seven characters") << "shop"
                                      << "a@bc.de"
                                      << "";
    QTest::newRow("a quote before the at sign") << "shop"
                                                << "o'neil@shop.example" << bad_address;
    QTest::newRow("a blank before the at sign") << "shop"
                                                << " shop@shop.example" << bad_address;
    QTest::newRow("a bad name and a taken address: the name") << "1 2"
                                                              << "orders@shop.example" << bad_name;
    QTest::newRow("a name with a blank") << "my shop"
                                         << "my@shop.example" << bad_name;
    QTest::newRow("a name with a trailing blank") << "shop "
                                                  << "my@shop.example" << bad_name;
    QTest::newRow("a name of one blank is not empty") << " "
                                                      << "my@shop.example" << bad_name;
    QTest::newRow("a name that starts with a digit") << "2shop"
                                                     << "my@shop.example" << bad_name;
    QTest::newRow("a name with a quote") << "o'neil"
                                         << "my@shop.example" << bad_name;
    QTest::newRow("a keyword of names") << "Position"
                                        << "my@shop.example" << bad_name;
    QTest::newRow("Select, in any capitals") << "sElEcT"
                                             << "my@shop.example" << bad_name;
    QTest::newRow("a reserved word, in any capitals") << "gRoUp"
                                                      << "my@shop.example" << bad_name;
    QTest::newRow("Form is reserved here") << "Form"
                                           << "my@shop.example" << bad_name;
    QTest::newRow("IEEESINGLE is not") << "IEEESINGLE"
                                       << "my@shop.example"
                                       << "";
    QTest::newRow("a hyphen passes") << "my-shop"
                                     << "my@shop.example"
                                     << "";
    QTest::newRow("a dot passes") << "my.shop"
                                  << "my@shop.example"
                                  << "";
    QTest::newRow("one letter passes") << "x"
                                       << "my@shop.example"
                                       << "";
    QTest::newRow("a taken address and a taken name: the address") << "orders"
                                                                   << "hello@shop.example" << taken_address;
    QTest::newRow("a taken address in other capitals") << "shop"
                                                       << "Hello@SHOP.example" << taken_address;
    QTest::newRow("a taken address with a blank behind it") << "shop"
                                                            << "hello@shop.example " << taken_address;
    QTest::newRow("a taken name") << "orders"
                                  << "new@shop.example" << taken_name;
    QTest::newRow("a taken name in other capitals") << "ORDERS"
                                                    << "new@shop.example" << taken_name;
    QTest::newRow("the name of a map") << "roses"
                                       << "new@shop.example" << taken_table;
    QTest::newRow("the name of a map in other capitals") << "Roses"
                                                         << "new@shop.example" << taken_table;
    QTest::newRow("a new one") << "shop"
                               << "new@shop.example"
                               << "";
}

void account_checks_test::adding()
{
    QFETCH(QString, query);
    QFETCH(QString, email);
    QFETCH(QString, message);
    const account_site site;
    QCOMPARE(words(accounts::why_not_addable(query, email)), message);
    QCOMPARE(site.boxes.shown, QStringList()); // whoever asks speaks
}

// Of the account orders.
void account_checks_test::changing_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("email");
    QTest::addColumn<QString>("message");
    QTest::newRow("both empty: the name first") << ""
                                                << "" << no_name;
    QTest::newRow("no address") << "1 2"
                                << "" << no_address;
    QTest::newRow("a bad address before a bad name") << "1 2"
                                                     << "a@b.de" << bad_address;
    QTest::newRow("a bad name before another's address") << "Select"
                                                         << "hello@shop.example" << bad_name;
    QTest::newRow("a reserved word") << "Query"
                                     << "orders@shop.example" << bad_name;
    QTest::newRow("another's address before another's name") << "contact"
                                                             << "hello@shop.example" << taken_address;
    QTest::newRow("another's name") << "contact"
                                    << "orders@shop.example" << taken_by_another;
    QTest::newRow("another's name in other capitals") << "Contact"
                                                      << "orders@shop.example" << taken_by_another;
    QTest::newRow("the name of a map") << "roses"
                                       << "orders@shop.example" << taken_table;
    QTest::newRow("nothing is other: it counts as unchanged") << "orders"
                                                              << "orders@shop.example"
                                                              << "";
    QTest::newRow("other capitals only: unchanged") << "Orders"
                                                    << "orders@shop.example"
                                                    << "";
    QTest::newRow("the address only") << "orders"
                                      << "new@shop.example"
                                      << "";
    QTest::newRow("the name only") << "shop"
                                   << "orders@shop.example"
                                   << "";
}

void account_checks_test::changing()
{
    QFETCH(QString, query);
    QFETCH(QString, email);
    QFETCH(QString, message);
    const account_site site;
    QCOMPARE(words(accounts::why_not_changeable("orders", query, email)), message);
}

void account_checks_test::the_field_to_mend_is_told()
{
    const account_site site;
    using enum accounts::typed_field;
    QVERIFY(accounts::why_not_addable("", "")->field == query_t);
    QVERIFY(accounts::why_not_addable("shop", "")->field == email_t);
    QVERIFY(accounts::why_not_addable("shop", "hello@shop.example")->field == email_t);
    QVERIFY(accounts::why_not_addable("roses", "new@shop.example")->field == query_t);
}

void account_checks_test::names_of_fixed_tables_are_refused_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<bool>("refused");
    QTest::newRow("a table") << "email_tbl" << true;
    QTest::newRow("in other capitals") << "EMAIL_TBL" << true;
    QTest::newRow("one without the ending") << "sign" << true;
    QTest::newRow("a model") << "model_for_first" << true;
    QTest::newRow("what the store would move it to") << "model_tbl_old" << true;
    QTest::newRow("the same in other capitals") << "Model_Tbl_OLD" << true;
    QTest::newRow("a name that the file keeps for itself is any name") << "sqlite_sequence" << false;
    QTest::newRow("twice old is nobody's") << "model_tbl_old_old" << false;
    QTest::newRow("longer") << "email_tbls" << false;
    QTest::newRow("old of another account") << "contact_old" << false;
}

void account_checks_test::names_of_fixed_tables_are_refused()
{
    QFETCH(QString, query);
    QFETCH(bool, refused);
    const account_site site;
    QCOMPARE(words(accounts::why_not_addable(query, "new@shop.example")), refused ? taken_table : QString());
    QCOMPARE(words(accounts::why_not_changeable("orders", query, "new@shop.example")),
             refused ? taken_table : QString());
}

void account_checks_test::the_list_of_fixed_tables_is_the_delivered_store()
{
    QFile schema(SOURCE_ROOT "/delivered/store/schema.sql");
    QVERIFY(schema.open(QIODevice::ReadOnly));
    static const QRegularExpression made("^CREATE TABLE \"(\\w+)\"", QRegularExpression::MultilineOption);
    QStringList delivered;
    for (const auto &found : made.globalMatch(QString::fromUtf8(schema.readAll())))
        delivered += found.captured(1);
    QVERIFY(delivered.size() > 30);
    QCOMPARE(fixed_tables(), delivered);
}

QTEST_GUILESS_MAIN(account_checks_test)
#include "account_checks_test.moc"
