// Answering a mail by hand: what is proposed, and which addresses are refused while the user waits.
#include "frame/session.h"
#include "intake/mail_deletion.h"
#include "intake/mail_reply.h"
#include "platform/clock.h"
#include "platform/mail_session.h"
#include "platform/real/mail_session/real_mail_session.h"
#include "platform/services.h"
#include "support/intake_site.h"

#include <QTest>

namespace {

struct reply_site : intake_site {
    reply_site() { services.mail_session = &session_client; }
    ~reply_site() { services.mail_session = nullptr; }
    real_mail_session session_client;
};

quint32 number_of_failure(const QString &address)
{
    try {
        intake::hand_over_reply({address, "Re: x", "Text"}, {"orders", "orders@shop.example"});
    } catch (const run_time_error &failure) {
        return failure.number;
    }
    return 0;
}

}

class mail_reply_test : public QObject {
    Q_OBJECT
private slots:
    void the_proposal_quotes_the_mail()
    {
        const intake::mail_reply reply =
            intake::reply_to({" ann@mail.example ", "Two\r\nlines", "8/6/2026", "One\r\nTwo\rThree\nFour"});
        QCOMPARE(reply.to, "ann@mail.example");
        QCOMPARE(reply.subject, "Re: Two  lines");
        QCOMPARE(reply.body, "\n-----Your Original Message-----\nOne\nTwo\nThree\nFour");
    }

    void the_statements_stand_to_the_letter()
    {
        set_clock([] { return QDateTime(QDate(2026, 11, 21), QTime(13, 2, 3), Qt::UTC); });
        const QString insert =
            intake::reply_insert({"ann@mail.example", "Re: Ann's", "One\nTwo"}, {"orders", "orders@shop.example"});
        set_clock({});
        QCOMPARE(insert,
                 "insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body,tsl_sentaccount,tsl_sentmailid) "
                 "values('ann@mail.example','Re: Ann''s','11/21/2026 1:02:03 PM','One\r\nTwo','orders',"
                 "'orders@shop.example')");
        QCOMPARE(intake::stored_mail_delete({"orders", 17, {}, {}, {}}), "delete from orders where message_id=17");
        QCOMPARE(intake::sent_mail_delete({{}, 9, {}, {}, {}}), "delete from sentitems_tbl where sentid=9");
    }

    void an_endless_mail_is_quoted_from_its_start()
    {
        const intake::mail_reply reply = intake::reply_to({"a@b.com", "x", "", QString(2000000, 'q')});
        QCOMPARE(reply.body.count('q'), 300000);
        QVERIFY(reply.body.endsWith("(The text is longer than what is shown here.)"));
    }

    void addresses_are_refused_at_once_and_leave_nothing_in_the_outbox_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<quint32>("number");
        QTest::newRow("one that can be written to") << "ann@mail.example" << 0U;
        QTest::newRow("two dots in the domain") << "a@b..com" << mapi::unknown_recipient;
        QTest::newRow("a dot at the end") << "a@mail.example." << mapi::unknown_recipient;
        QTest::newRow("none") << "" << mapi::unknown_recipient;
        QTest::newRow("a header of its own") << "a@b.com\r\nBcc: c@d.com" << mapi::unknown_recipient;
        QTest::newRow("the second of two") << "a@b.com; c@d..com" << mapi::unknown_recipient;
    }

    void addresses_are_refused_at_once_and_leave_nothing_in_the_outbox()
    {
        QFETCH(QString, address);
        QFETCH(quint32, number);
        const reply_site site;
        QCOMPARE(number_of_failure(address), number);
        QCOMPARE(outbox::contents().size(), size_t(number == 0 ? 1 : 0));
    }

    void only_a_mail_that_is_composed_can_be_addressed()
    {
        const reply_site site;
        const auto messages = services.mail_session->messages();
        messages->MsgIndex = 0;
        try {
            messages->ResolveName();
            QFAIL("nothing was refused");
        } catch (const run_time_error &failure) {
            QCOMPARE(failure.number, 9U);
        }
    }

    void the_accounts_come_in_the_order_of_the_store()
    {
        reply_site site;
        site.add_account("zebra", "z@shop.example");
        site.add_account("apple", "a@shop.example");
        const auto accounts = intake::sending_accounts();
        QCOMPARE(accounts.size(), size_t(2));
        QCOMPARE(accounts[0].query, "zebra");
        QCOMPARE(accounts[1].email, "a@shop.example");
    }

    void deleting_works_for_an_account_whose_name_has_signs()
    {
        reply_site site;
        site.add_account("shop-1.orders", "o@shop.example");
        const qint64 first = site.add_stored_mail("shop-1.orders", "Order", "One");
        site.add_stored_mail("shop-1.orders", "Order", "Two");
        intake::delete_stored_mail({"shop-1.orders", first, "", "", {}});
        QCOMPARE(site.column("select tsl_body from shop-1.orders"), QStringList{"Two"});
    }
};

QTEST_GUILESS_MAIN(mail_reply_test)
#include "mail_reply_test.moc"
