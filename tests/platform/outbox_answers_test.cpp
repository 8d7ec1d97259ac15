// The 11th answer to one address within an hour is held.
#include "platform/clock.h"
#include "platform/run_time_error.h"
#include "support/maildir_files.h"
#include "support/outbox_folder.h"
#include <QTest>
#include <csignal>
#include <sys/resource.h>

class outbox_answers_test : public QObject {
    Q_OBJECT
private slots:

    void the_eleventh_answer_within_an_hour_is_held()
    {
        program_folder folder;
        for (int number = 0; number < 10; ++number)
            outbox::hand_over(answer_to(number % 2 == 0 ? "ann@example.net" : "ANN@Example.net"));
        QCOMPARE(outbox::count().waiting, 10);
        for (const auto &mail : outbox::contents())
            QVERIFY(outbox::discard(mail.id)); // those that went count as well
        const QString held = outbox::hand_over(answer_to("Ann@example.net"));
        QCOMPARE(outbox::contents().at(0).state, outbox::mail_state::held);
        QVERIFY(outbox::contents().at(0).reason.contains("Ann@example.net"));
        outbox::hand_over(answer_to("bob@example.net"));
        outbox::hand_over(mail_to("ann@example.net")); // no answer
        QCOMPARE(outbox::count().held, 1);
        QCOMPARE(outbox::count().waiting, 2);
        QVERIFY(outbox::send_again(held));
        QCOMPARE(outbox::count().held, 0);
        QCOMPARE(outbox::count().waiting, 3);
    }

    void an_hour_later_an_answer_goes_out_again()
    {
        program_folder folder;
        outbox::hand_over(mail_to("ann@example.net")); // makes the folder
        const auto ten_lines = [](qint64 seconds_ago) {
            return (QByteArray::number(seconds_now() - seconds_ago) + " ann@example.net\n").repeated(10);
        };
        folder.write("outbox/answers.ledger", ten_lines(3600));
        folder.begin_a_new_run();
        outbox::hand_over(answer_to("ann@example.net"));
        QCOMPARE(outbox::count().held, 0);
        folder.write("outbox/answers.ledger", ten_lines(3000));
        folder.begin_a_new_run();
        outbox::hand_over(answer_to("ann@example.net"));
        QCOMPARE(outbox::count().held, 1);
        QCOMPARE(outbox::count().waiting, 2);
    }

    void a_changed_wall_clock_is_no_new_hour()
    {
        program_folder folder;
        QDateTime moment(QDate(2026, 10, 25), QTime(2, 59), Qt::UTC);
        set_clock([&moment] { return moment; });
        for (int number = 0; number < 10; ++number)
            outbox::hand_over(answer_to("ann@example.net"));
        moment = moment.addSecs(3 * 3600);
        outbox::hand_over(answer_to("ann@example.net"));
        set_clock({});
        QCOMPARE(outbox::count().held, 1);
    }

    void the_answers_of_a_killed_run_count()
    {
        program_folder folder;
        outbox::hand_over(mail_to("ann@example.net")); // makes the folder
        for (int number = 0; number < 10; ++number)
            QVERIFY(lives_through(0, [] { outbox::hand_over(answer_to("ann@example.net")); }));
        folder.begin_a_new_run();
        outbox::hand_over(answer_to("ann@example.net"));
        QCOMPARE(outbox::count().waiting, 11);
        QCOMPARE(outbox::count().held, 1);
    }

    void an_answer_that_was_not_handed_over_does_not_count()
    {
        program_folder folder;
        outbox::hand_over(mail_to("ann@example.net")); // makes the folder
        QVERIFY(lives_through(0, [] {
            const rlimit small{600, 600};
            signal(SIGXFSZ, SIG_IGN);
            setrlimit(RLIMIT_FSIZE, &small);
            try {
                outbox::hand_over(answer_to("ann@example.net"));
            } catch (const run_time_error &) {
                _exit(0);
            }
            _exit(1);
        }));
        QVERIFY(!folder.outbox_files().contains("answers.ledger"));
        outbox::hand_over(answer_to("ann@example.net"));
        QVERIFY(bytes_of_file(folder.folder.filePath("outbox/answers.ledger")).endsWith(" ann@example.net\n"));
    }
};

QTEST_GUILESS_MAIN(outbox_answers_test)
#include "outbox_answers_test.moc"
