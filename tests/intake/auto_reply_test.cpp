// What is configured for automatic replies: the tests before it is stored, and the storing. What goes out:
// auto_responder_test.cpp. The screen: tests/screens/autoresponder_test.cpp.
#include "intake/auto_reply.h"
#include "support/wizard_site.h"

#include <QtTest/QTest>

using intake::reply_part;

namespace {

void add_map_names(wizard_site &site)
{
    site.add_map("names", 1, "Order", "Line", {{"full_name", "Line1", ":"}, {"city", "Line2", ":"}});
}

}

class auto_reply_test : public QObject {
    Q_OBJECT
private slots:
    void all_columns_are_quoted();
    void the_tests_come_in_their_order_data();
    void the_tests_come_in_their_order();
    void the_field_lists_leave_every_map_s_own_columns_out();
    void tokens_are_raised_data();
    void tokens_are_raised();
};

void auto_reply_test::all_columns_are_quoted()
{
    wizard_site site;
    add_map_names(site);
    intake::auto_reply reply;
    reply.SubjectType = intake::standard_subject;
    reply.SubjectPrefix = "it's";
    reply.Subject = "O'Neil's";
    reply.GreetText = "'Dear'";
    reply.autocontent = "It's ours: " + QString(1000, 'x');
    reply.enable = false;
    intake::save_auto_reply("names", reply);
    QVERIFY(intake::stored_auto_reply("NAMES") == reply);
    QCOMPARE(site.column("select enable from autocontent"), QStringList{"False"});
    QVERIFY(!intake::stored_auto_reply("nobody's"));
}

void auto_reply_test::the_tests_come_in_their_order_data()
{
    QTest::addColumn<QString>("map");
    QTest::addColumn<intake::auto_reply>("typed");
    QTest::addColumn<QString>("words");
    QTest::addColumn<reply_part>("part");
    const intake::auto_reply nothing;
    intake::auto_reply text = nothing;
    text.autocontent = "Hello";
    intake::auto_reply dynamic = text;
    dynamic.SubjectType = intake::dynamic_subject;
    intake::auto_reply token = text;
    token.SubjectType = intake::support_token;
    intake::auto_reply worded = token;
    worded.SubjectPrefix = "No";
    worded.LastToken = "5x";
    intake::auto_reply endless = worded;
    endless.LastToken = "1e999";
    const auto numbered = [&worded](const char *number) {
        intake::auto_reply reply = worded;
        reply.LastToken = number;
        return reply;
    };
    intake::auto_reply good = worded;
    good.LastToken = " 5 ";
    intake::auto_reply good_dynamic = dynamic; // without a field: that is an empty value
    good_dynamic.SubjectPrefix = "No";
    QTest::newRow("no map") << "" << nothing << "Please select map" << reply_part::map;
    QTest::newRow("no text") << "names" << nothing << "Please enter mail text" << reply_part::text;
    QTest::newRow("no subject") << "names" << text << "Please enter subject text." << reply_part::subject;
    QTest::newRow("dynamic, no prefix") << "names" << dynamic << "Please enter subject prefix." << reply_part::prefix;
    QTest::newRow("token, no prefix") << "names" << token << "Please enter subject prefix." << reply_part::prefix;
    QTest::newRow("token, no number") << "names" << worded << "Please enter numeric value." << reply_part::token;
    QTest::newRow("token, too large") << "names" << endless << "Please enter numeric value." << reply_part::token;
    QTest::newRow("token, 1 more would be the same")
        << "names" << numbered("1e17") << "Please enter numeric value." << reply_part::token;
    QTest::newRow("token, eighteen nines")
        << "names" << numbered("999999999999999999") << "Please enter numeric value." << reply_part::token;
    QTest::newRow("token, fifteen digits and a half")
        << "names" << numbered("999999999999999.5") << "Please enter numeric value." << reply_part::token;
    QTest::newRow("token, far below nought")
        << "names" << numbered("-1e17") << "Please enter numeric value." << reply_part::token;
    QTest::newRow("token, seventeen nines") << "names" << numbered("99999999999999999") << "" << reply_part::map;
    QTest::newRow("token, fourteen noughts") << "names" << numbered("1e14") << "" << reply_part::map;
    QTest::newRow("token, a fraction") << "names" << numbered("0.1") << "" << reply_part::map;
    QTest::newRow("token") << "names" << good << "" << reply_part::map;
    QTest::newRow("dynamic") << "names" << good_dynamic << "" << reply_part::map;
}

void auto_reply_test::the_tests_come_in_their_order()
{
    QFETCH(QString, map);
    QFETCH(intake::auto_reply, typed);
    QFETCH(QString, words);
    const auto fault = intake::why_not_saveable(map, typed);
    QCOMPARE(fault ? fault->words : QString(), words);
    if (fault)
        QTEST(fault->part, "part");
}

void auto_reply_test::the_field_lists_leave_every_map_s_own_columns_out()
{
    wizard_site site;
    add_map_names(site);
    site.run("alter table names add column tsl_extra text(255)");
    QCOMPARE(intake::answer_fields("names"), (QStringList{"full_name", "city", "tsl_extra"}));
}

void auto_reply_test::tokens_are_raised_data()
{
    QTest::addColumn<QString>("raised");
    QTest::newRow("007") << "8";
    QTest::newRow("9") << "10";
    QTest::newRow("-1") << "0";
    QTest::newRow("1,000") << "1001";
    QTest::newRow(" 5 ") << "6";
    QTest::newRow("2.5") << "3.5";
    QTest::newRow("1e3") << "1001";
    QTest::newRow("99999999999") << "100000000000";
    QTest::newRow("") << "1"; // what no screen has tested
    QTest::newRow("seven") << "1";
    QTest::newRow("1e999") << "1"; // more than the store holds
}

void auto_reply_test::tokens_are_raised()
{
    QFETCH(QString, raised);
    QCOMPARE(intake::next_token(QTest::currentDataTag()), raised);
}

QTEST_GUILESS_MAIN(auto_reply_test)
#include "auto_reply_test.moc"
