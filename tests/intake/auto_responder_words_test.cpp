// The subject of an automatic reply in its kinds, the running number, the greeting, and the text.
#include "intake/map_parser.h"
#include "support/answer_site.h"

#include <QtTest/QTest>

class auto_responder_words_test : public QObject {
    Q_OBJECT
private slots:
    void a_standard_subject();
    void a_dynamic_subject_names_the_mail_s_own_value();
    void two_mails_in_one_pass_get_n_and_n_plus_1();
    void the_token_goes_out_as_it_was_typed();
    void a_token_that_is_no_number_goes_out_and_counts_from_one();
    void the_blanks_beside_an_empty_part_stay();
    void a_dynamic_subject_without_a_field_has_an_empty_value();
    void another_subject_type_has_an_empty_subject();
    void an_empty_greeting_leaves_the_text_alone();
    void a_greeting_is_followed_by_a_value_and_two_line_ends();
    void a_greeting_without_a_field_has_an_empty_value();
    void saving_again_puts_the_token_back();
};

void auto_responder_words_test::a_standard_subject()
{
    answer_site site;
    site.answer(reply_with(intake::standard_subject));
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), QStringList{"bob@example.net|Thank you|waiting"});
    QCOMPARE(site.token(), "7"); // no token went out
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies().size(), 1); // the mail is marked
}

// Each is composed before the next mail is stored: its row is the newest then.
void auto_responder_words_test::a_dynamic_subject_names_the_mail_s_own_value()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::dynamic_subject);
    reply.GreetText = "Dear";
    reply.GreetField = "full_name";
    site.answer(reply);
    for (const char *visitor : {"Bob", "Liam O'Neil", "Zoë"})
        site.come(visitor);
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), (QStringList{"bob@example.net|Order Bob at the nursery|waiting",
                                     "bob@example.net|Order Liam O'Neil at the nursery|waiting",
                                     "bob@example.net|Order Zoë at the nursery|waiting"}));
    QVERIFY(text_of_mail(0).startsWith("Dear Bob\r\n"));
    QVERIFY(text_of_mail(1).startsWith("Dear Liam O'Neil\r\n"));
}

void auto_responder_words_test::two_mails_in_one_pass_get_n_and_n_plus_1()
{
    answer_site site;
    site.answer(reply_with(intake::support_token));
    site.come("Bob");
    site.come("Zoe", "zoe@example.net");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), (QStringList{"bob@example.net|Order 7 at the nursery|waiting",
                                     "zoe@example.net|Order 8 at the nursery|waiting"}));
    QCOMPARE(site.token(), "9");
}

void auto_responder_words_test::the_token_goes_out_as_it_was_typed()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::support_token);
    reply.LastToken = "007";
    site.answer(reply);
    site.come("Bob");
    site.come("Zoe");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), (QStringList{"bob@example.net|Order 007 at the nursery|waiting",
                                     "bob@example.net|Order 8 at the nursery|waiting"}));
}

// No screen has tested it; what went out cannot be taken back.
void auto_responder_words_test::a_token_that_is_no_number_goes_out_and_counts_from_one()
{
    answer_site site;
    site.answer(reply_with(intake::support_token));
    site.run("update autocontent set LastToken='seven'");
    site.come("Bob");
    site.come("Zoe", "zoe@example.net");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), (QStringList{"bob@example.net|Order seven at the nursery|waiting",
                                     "zoe@example.net|Order 1 at the nursery|waiting"}));
    QCOMPARE(site.token(), "2");
}

void auto_responder_words_test::the_blanks_beside_an_empty_part_stay()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::support_token);
    reply.SubjectSuffix = "";
    site.answer(reply);
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(outbox::contents().at(0).Subject, "Order 7 ");
    // Base64 of "Order 7 ": a bare blank at a line's end would be lost on the way.
    QVERIFY2(head_of(0).contains("\r\nSubject: =?utf-8?B?T3JkZXIgNyA=?=\r\n"), head_of(0));
}

void auto_responder_words_test::a_dynamic_subject_without_a_field_has_an_empty_value()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::dynamic_subject);
    reply.SubjectDynamic = "";
    site.answer(reply);
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), QStringList{"bob@example.net|Order  at the nursery|waiting"});
    QCOMPARE(site.log_text(), QString());
}

void auto_responder_words_test::another_subject_type_has_an_empty_subject()
{
    answer_site site;
    site.answer(reply_with(4));
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), QStringList{"bob@example.net||waiting"});
    QCOMPARE(site.token(), "7");
}

void auto_responder_words_test::an_empty_greeting_leaves_the_text_alone()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::standard_subject);
    reply.GreetField = "full_name";
    site.answer(reply);
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(text_of_mail(0), "We have your order.");
}

void auto_responder_words_test::a_greeting_is_followed_by_a_value_and_two_line_ends()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::standard_subject);
    reply.GreetText = "Dear";
    reply.GreetField = "full_name";
    reply.autocontent = "We have it.\r\n\r\nAnn";
    site.answer(reply);
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QVERIFY(text_of_mail(0).startsWith("Dear Bob\r\n\r\nWe have it.\r\n\r\nAnn"));
}

void auto_responder_words_test::a_greeting_without_a_field_has_an_empty_value()
{
    intake::auto_reply reply = reply_with(intake::standard_subject);
    reply.GreetText = "Hello";
    QCOMPARE(intake::text_of(reply, ""), "Hello \r\n\r\nWe have your order.");
    answer_site site;
    site.answer(reply);
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies().size(), 1);
    QCOMPARE(site.log_text(), QString());
}

void auto_responder_words_test::saving_again_puts_the_token_back()
{
    answer_site site;
    const intake::auto_reply as_in_the_box = reply_with(intake::support_token);
    site.answer(as_in_the_box);
    site.come("Bob");
    site.come("Zoe");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(site.token(), "9");
    site.answer(as_in_the_box);
    QCOMPARE(site.token(), "7");
    QCOMPARE(site.column("select count(*) from autocontent"), QStringList{"1"});
    site.come("Liam");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies().last(), "bob@example.net|Order 7 at the nursery|waiting");
}

QTEST_GUILESS_MAIN(auto_responder_words_test)
#include "auto_responder_words_test.moc"
