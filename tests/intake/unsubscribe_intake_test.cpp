// Recognising an unsubscribe, the block list, and the text of the confirmation.
#include "intake/unsubscribe_intake.h"
#include "intake/unsubscribe_reply.h"
#include "platform/run_time_error.h"
#include "platform/settings.h"
#include "support/intake_site.h"
#include "support/test_store.h"

#include <QtTest/QTest>

namespace {

const QDateTime noon(QDate(2026, 8, 13), QTime(12, 0, 0), Qt::UTC);
const intake::unsubscribe_rules enabled_rules{true, "Unsubscribe", "8/13/2026 12:00:00 PM"};
const QString blocked = "select email from unsubscribe_tbl";

}

class unsubscribe_intake_test : public QObject {
    Q_OBJECT
private slots:
    void the_number_in_a_subject_data();
    void the_number_in_a_subject();
    void when_it_applies_data();
    void when_it_applies();
    void a_date_that_cannot_be_read_fails_only_where_it_decides_data();
    void a_date_that_cannot_be_read_fails_only_where_it_decides();
    void the_rules_as_they_are_kept();
    void without_a_row_unsubscribing_is_off();
    void the_address_of_an_entry();
    void blocking();
    void replacing_the_sender_data();
    void replacing_the_sender();
    void confirmation_texts_data();
    void confirmation_texts();
    void signatures_data();
    void signatures();
    void without_a_confirmation_there_is_a_failure();
};

void unsubscribe_intake_test::the_number_in_a_subject_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("number"); // "" is none
    QTest::newRow("keyword and number") << "Unsubscribe 1037"
                                        << "1037";
    QTest::newRow("in other capitals") << "uNSUBSCRIBE 1037"
                                       << "1037";
    QTest::newRow("a colon goes") << "Unsubscribe: 1037"
                                  << "1037";
    QTest::newRow("all colons go") << "::Unsubscribe: 10:37:"
                                   << "1037";
    QTest::newRow("the keyword goes wherever and as often as it stands") << "Unsubscribe 1037 unsubscribe"
                                                                         << "1037";
    QTest::newRow("a number before the keyword") << "1037 Unsubscribe"
                                                 << "1037";
    QTest::newRow("leading noughts stay") << "Unsubscribe 000701"
                                          << "000701";
    QTest::newRow("an answer's Re stays, so it is none") << "Re: Unsubscribe 1037"
                                                         << "";
    QTest::newRow("only the keyword") << "Unsubscribe"
                                      << "";
    QTest::newRow("a word") << "Unsubscribe me"
                            << "";
    QTest::newRow("two numbers") << "Unsubscribe 10 37"
                                 << "";
    QTest::newRow("no keyword") << "1037"
                                << "";
    QTest::newRow("one pass: a keyword that comes together stays") << "UnsubUnsubscribescribe 1037"
                                                                   << "";
}

void unsubscribe_intake_test::the_number_in_a_subject()
{
    QFETCH(QString, subject);
    const auto number = intake::entry_number_in(subject, noon, enabled_rules);
    QTEST(number.value_or(QString()), "number");
    QCOMPARE(number.has_value(), !number.value_or(QString()).isEmpty());
}

void unsubscribe_intake_test::when_it_applies_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QString>("keyword");
    QTest::addColumn<QString>("since");
    QTest::addColumn<QDateTime>("received");
    QTest::addColumn<bool>("applies");
    const QString at_noon = "8/13/2026 12:00:00 PM";
    QTest::newRow("on the second") << true << "Unsubscribe" << at_noon << noon << true;
    QTest::newRow("later") << true << "Unsubscribe" << at_noon << noon.addDays(1) << true;
    QTest::newRow("one second too early") << true << "Unsubscribe" << at_noon << noon.addSecs(-1) << false;
    QTest::newRow("earlier on the same day") << true << "Unsubscribe" << at_noon << noon.addSecs(-3600) << false;
    QTest::newRow("no date was set") << true << "Unsubscribe"
                                     << "" << noon << false;
    QTest::newRow("switched off") << false << "Unsubscribe" << at_noon << noon << false;
    QTest::newRow("an empty keyword is contained in nothing") << true << "" << at_noon << noon << false;
    QTest::newRow("another keyword") << true << "Stop" << at_noon << noon << false;
    QTest::newRow("a day alone begins at midnight")
        << true << "Unsubscribe"
        << "8/13/2026" << QDateTime(QDate(2026, 8, 13), QTime(0, 0), Qt::UTC) << true;
}

void unsubscribe_intake_test::when_it_applies()
{
    QFETCH(bool, enabled);
    QFETCH(QString, keyword);
    QFETCH(QString, since);
    QFETCH(QDateTime, received);
    QTEST(intake::entry_number_in("Unsubscribe 1037", received, {enabled, keyword, since}).has_value(), "applies");
}

void unsubscribe_intake_test::a_date_that_cannot_be_read_fails_only_where_it_decides_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QString>("subject");
    QTest::addColumn<bool>("fails");
    QTest::newRow("the keyword, and enabled") << true << "Unsubscribe 1037" << true;
    QTest::newRow("no keyword") << true << "Order 1037" << false;
    QTest::newRow("switched off") << false << "Unsubscribe 1037" << false;
}

void unsubscribe_intake_test::a_date_that_cannot_be_read_fails_only_where_it_decides()
{
    QFETCH(bool, enabled);
    QFETCH(QString, subject);
    const intake::unsubscribe_rules rules{enabled, "Unsubscribe", "last summer"};
    QTEST(error_number_of([&] { intake::entry_number_in(subject, noon, rules); }) != 0, "fails");
}

void unsubscribe_intake_test::the_rules_as_they_are_kept()
{
    intake_site site;
    site.enable_unsubscribing(noon);
    const auto rules = intake::read_unsubscribe_rules();
    QVERIFY(rules.enabled);
    QCOMPARE(rules.keyword, QString("unsubscribe"));
    QCOMPARE(rules.since, QString("8/13/2026 12:00:00 PM"));
    site.run("update unsub_detail set enable_unsub=no,unsub_keyword='STOP'");
    SaveSetting("main", "enabledUnsubDate", "8/13/2026");
    const auto changed = intake::read_unsubscribe_rules();
    QVERIFY(!changed.enabled);
    QCOMPARE(changed.keyword, QString("STOP"));
    QCOMPARE(changed.since, QString("8/13/2026"));
}

void unsubscribe_intake_test::without_a_row_unsubscribing_is_off()
{
    intake_site site;
    site.run("delete from unsub_detail");
    const auto rules = intake::read_unsubscribe_rules();
    QVERIFY(!rules.enabled);
    QCOMPARE(rules.keyword, QString());
    QCOMPARE(rules.since, QString());
}

void unsubscribe_intake_test::the_address_of_an_entry()
{
    intake_site site;
    site.enable_unsubscribing();
    QCOMPARE(intake::address_of_entry("1037"), std::optional<QString>("ann@example.net"));
    QVERIFY(!intake::address_of_entry("1038"));
    QVERIFY(!intake::address_of_entry("01037"));
    QVERIFY(!intake::address_of_entry("1037' or '1'='1"));
}

void unsubscribe_intake_test::blocking()
{
    intake_site site;
    QVERIFY(!intake::is_blocked("ann@example.net"));
    intake::block_address("ann@example.net");
    QVERIFY(intake::is_blocked("ann@example.net"));
    QVERIFY(intake::is_blocked("ANN@example.NET"));
    QVERIFY(!intake::is_blocked("an@example.net"));
    intake::block_address("o'neil@example.net");
    QVERIFY(intake::is_blocked("o'neil@example.net"));
}

void unsubscribe_intake_test::replacing_the_sender_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("sender");
    QTest::addColumn<bool>("sender_was_blocked");
    QTest::addColumn<QStringList>("after");
    QTest::newRow("the sender's place is taken by the entry's address")
        << QStringList{"bob@x.org"} << "ann@x.org"
        << "bob@x.org" << false << QStringList{"ann@x.org"};
    QTest::newRow("without smtp: in any capitals") << QStringList{"bob@x.org"} << "SMTP:ann@x.org"
                                                   << "bob@x.org" << false << QStringList{"ann@x.org"};
    QTest::newRow("a sender who is not on the list changes nothing")
        << QStringList{"ann@x.org"} << "ann@x.org"
        << "bob@x.org" << false << QStringList{"ann@x.org"};
    QTest::newRow("a sender who was on it before keeps a place")
        << QStringList{"bob@x.org", "ann@x.org"} << "ann@x.org"
        << "bob@x.org" << true << QStringList{"ann@x.org", "ann@x.org", "bob@x.org"};
    QTest::newRow("the same address is put there once") << QStringList{"ann@x.org"} << "ann@x.org"
                                                        << "ann@x.org" << true << QStringList{"ann@x.org"};
}

void unsubscribe_intake_test::replacing_the_sender()
{
    QFETCH(QStringList, before);
    QFETCH(QString, entry);
    QFETCH(QString, sender);
    QFETCH(bool, sender_was_blocked);
    intake_site site;
    for (const QString &address : before)
        intake::block_address(address);
    intake::replace_blocked_sender(entry, sender, sender_was_blocked);
    QTEST(site.column(blocked), "after");
}

void unsubscribe_intake_test::confirmation_texts_data()
{
    QTest::addColumn<bool>("add_query");
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("body");
    QTest::newRow("without the account") << false << "orders"
                                         << "Goodbye.\r\n\r\nAnn";
    QTest::newRow("with the account") << true << "orders"
                                      << "Goodbye.\r\norders\r\n\r\nAnn";
    QTest::newRow("with the account of a mail to none: one empty line more") << true << ""
                                                                             << "Goodbye.\r\n\r\n\r\nAnn";
}

void unsubscribe_intake_test::confirmation_texts()
{
    QFETCH(bool, add_query);
    QFETCH(QString, table);
    QTEST(intake::confirmation_body("Goodbye.", add_query, table, "Ann"), "body");
}

void unsubscribe_intake_test::signatures_data()
{
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QString>("body");
    QTest::newRow("minus one is one blank") << "-1"
                                            << "Goodbye.\r\n\r\n ";
    QTest::newRow("by its title") << "shop"
                                  << "Goodbye.\r\n\r\nRose Cottage\r\nO'Neil";
    QTest::newRow("a title that is no longer there is empty") << "gone"
                                                              << "Goodbye.\r\n\r\n";
}

void unsubscribe_intake_test::signatures()
{
    QFETCH(QString, signature);
    intake_site site;
    site.enable_unsubscribing();
    site.run("update unsubconfirm_tbl set signature='" + signature + "'");
    site.run("insert into sign (signtitle,signtext,signselected) values('shop','Rose Cottage\r\nO''Neil','No')");
    const auto confirmation = intake::unsubscribe_confirmation("orders");
    QCOMPARE(confirmation.subject, QString("You are off the list"));
    QTEST(confirmation.body, "body");
}

void unsubscribe_intake_test::without_a_confirmation_there_is_a_failure()
{
    intake_site site;
    site.run("delete from unsubconfirm_tbl");
    QVERIFY_EXCEPTION_THROWN(intake::unsubscribe_confirmation("orders"), run_time_error);
}

QTEST_GUILESS_MAIN(unsubscribe_intake_test)
#include "unsubscribe_intake_test.moc"
