// A fetch that is cancelled between two mails, or whose server goes away: nothing is lost, nothing doubled, and the log
// tells of a failure once.
#include "frame/error_log.h"
#include "frame/session.h"
#include "intake/fetch.h"
#include "intake/fetch_session.h"
#include "intake/mail_source.h"
#include "platform/network.h"
#include "platform/services.h"
#include "support/failing_mail_client.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

class fetch_cancel_test : public QObject {
    Q_OBJECT

    static void put_orders(intake_site &site, int count)
    {
        site.add_account("orders", "orders@example.org");
        for (int number = 1; number <= count; ++number)
            site.put({"orders@example.org", "ann@example.net", "Order " + QString::number(number), "Text\n"});
    }

    static net::patience ended_by(std::function<bool()> give_up)
    {
        net::patience waits;
        waits.give_up = std::move(give_up);
        return waits;
    }

private slots:
    void cancelling_between_mails_keeps_what_was_stored_and_moves_it()
    {
        intake_site site;
        put_orders(site, 5);
        int asked = 0;
        {
            const net::patience_scope waiting(ended_by([&asked] { return ++asked >= 2; }));
            QVERIFY(site.fetch());
            QVERIFY(intake::fetch_was_cancelled());
        }
        QCOMPARE(site.column("select tsl_subject from orders order by message_id"),
                 (QStringList{"Order 1", "Order 2"}));
        QCOMPARE(site.moved().size(), 2);
        QCOMPARE(site.inbox().size(), 3);
        QCOMPARE(site.log_text(), QString());
    }

    void the_next_fetch_takes_the_rest_and_doubles_nothing()
    {
        intake_site site;
        put_orders(site, 5);
        int asked = 0;
        {
            const net::patience_scope waiting(ended_by([&asked] { return ++asked >= 2; }));
            site.fetch();
        }
        QVERIFY(site.fetch());
        QVERIFY(!intake::fetch_was_cancelled());
        QCOMPARE(site.column("select count(*) from orders"), QStringList{"5"});
        QCOMPARE(site.inbox(), QStringList());
    }

    void what_the_user_cancels_is_no_entry_of_the_log()
    {
        const intake_site site;
        QVERIFY(!guarded("Mailfrm.frm", "Form_load",
                         [] { throw net::failure(net::trouble::cancelled, QStringLiteral("Cancelled.")); }));
        QCOMPARE(session.err_number, quint32(net::trouble::cancelled));
        QCOMPARE(site.log_text(), QString());
    }

    void a_server_that_a_tick_cannot_reach_is_no_entry_either()
    {
        const intake_site site;
        const auto fail = [] { throw net::failure(net::trouble::timed_out, QStringLiteral("No answer.")); };
        {
            net::patience of_a_tick;
            of_a_tick.is_tick = true;
            const net::patience_scope tick(of_a_tick);
            QVERIFY(!guarded("Mailfrm.frm", "Form_load", fail));
            QCOMPARE(site.log_text(), QString());
            QVERIFY(!guarded("Mailfrm.frm", "Form_load", [] { throw run_time_error{6, "Overflow"}; }));
        }
        QVERIFY(!guarded("Mailfrm.frm", "Form_load", fail));
        QCOMPARE(site.log_entries(),
                 (QStringList{"6|Overflow|Mailfrm.frm|Form_load", "33003|No answer.|Mailfrm.frm|Form_load"}));
    }

    void of_one_step_a_failure_of_the_network_passes_on_and_others_do_not()
    {
        const intake_site site;
        bool went_on = false;
        QVERIFY(!guarded("Mailfrm.frm", "Form_load", [&] {
            guarded_step("Mailfrm.frm", "write_data", [] { throw run_time_error{6, "Overflow"}; });
            went_on = true;
            guarded_step("Mailfrm.frm", "write_data",
                         [] { throw net::failure(net::trouble::closed, QStringLiteral("The server hung up.")); });
            went_on = false;
        }));
        QVERIFY(went_on);
        QCOMPARE(site.log_entries(),
                 (QStringList{"6|Overflow|Mailfrm.frm|write_data", "33004|The server hung up.|Mailfrm.frm|Form_load"}));
    }

    void a_client_with_folders_that_fails_is_not_replaced_by_the_other_kind()
    {
        intake_site site;
        failing_mail_client away;
        services.mail_client = &away;
        QVERIFY(!site.fetch());
        QVERIFY(!intake::fetching.use_mapi);
        QCOMPARE(site.log_entries(),
                 QStringList{"33002|Nobody answers at imap.example.org, port 993.|Mailfrm.frm|Form_load"});
    }
};

QTEST_GUILESS_MAIN(fetch_cancel_test)
#include "fetch_cancel_test.moc"
