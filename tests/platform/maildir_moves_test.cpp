// Moving mails of a real Maildir: while walking, behind a commit, through kills and failures. The walk:
// maildir_test.cpp.
#include "platform/outside_effects.h"
#include "support/fault_points.h"
#include "support/mailbox.h"
#include <QFile>
#include <QTest>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

class maildir_moves_test : public QObject {
    Q_OBJECT
private slots:

    void moving_while_walking_skips_none()
    {
        mailbox box;
        for (int number = 0; number < 250; ++number)
            box.put(QString::number(number), noon + number);
        const auto target = box.inbox->add(QStringLiteral("Tessaly_Inbox"));
        int seen = 0;
        for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext()) {
            QCOMPARE(item->Subject(), QString::number(seen++));
            item->Move(*target);
        }
        QCOMPARE(seen, 250);
        QCOMPARE(files_in(box.path()), QStringList());
        QCOMPARE(files_in(box.path() + "/.Tessaly_Inbox").size(), 250);
        QVERIFY(!box.items->raise_next_failure());
    }

    void moved_mails_lie_in_cur_with_their_flags()
    {
        mailbox box;
        deliver_as(box.path(), "new/1767268801.fresh", mail_bytes({"", "", "a", ""}));
        deliver_as(box.path(), "cur/1767268802.seen:2,FS", mail_bytes({"", "", "b", ""}));
        const auto target = box.inbox->add(QStringLiteral("Tessaly_Inbox"));
        for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext())
            item->Move(*target);
        QCOMPARE(files_in(box.path() + "/.Tessaly_Inbox"),
                 QStringList({"cur/1767268801.fresh:2,", "cur/1767268802.seen:2,FS"}));
    }

    void a_name_that_is_taken_in_the_target_is_not_overwritten()
    {
        mailbox box;
        const auto target = box.inbox->add(QStringLiteral("Tessaly_Inbox"));
        deliver_as(box.path() + "/.Tessaly_Inbox", "cur/1767268801.x:2,", "old");
        deliver_as(box.path(), "new/1767268801.x", "Subject: new\n\n");
        box.find()->Move(*target);
        box.items->finish_moves();
        QCOMPARE(files_in(box.path() + "/.Tessaly_Inbox"),
                 QStringList({"cur/1767268801.x:2,", "cur/1767268801.x_1:2,"}));
        QCOMPARE(bytes_of_file(box.path() + "/.Tessaly_Inbox/cur/1767268801.x:2,"), "old");
    }

    void moves_wait_for_the_hundredth_and_for_the_commit()
    {
        mailbox box;
        for (int number = 0; number < 150; ++number)
            box.put(QString::number(number), noon + number);
        const auto target = box.inbox->add(QStringLiteral("Tessaly_Inbox"));
        QList<qsizetype> moved_at_commit;
        const int registration =
            on_outside_effect([&] { moved_at_commit.append(files_in(box.path() + "/.Tessaly_Inbox").size()); });
        int asked = 0;
        for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext()) {
            QCOMPARE(files_in(box.path()).size(), asked < 100 ? 150 : 50);
            item->Move(*target);
            ++asked;
        }
        forget_outside_effect(registration);
        QCOMPARE(moved_at_commit, QList<qsizetype>({0, 100}));
        QCOMPARE(files_in(box.path()).size(), 0);
    }

    void nothing_moves_when_the_commit_fails_and_the_next_walk_meets_it_again()
    {
        mailbox box;
        box.put("kept", noon);
        const auto target = box.inbox->add(QStringLiteral("Tessaly_Inbox"));
        box.find()->Move(*target);
        const int registration = on_outside_effect([] { throw run_time_error{61, QStringLiteral("Disk full")}; });
        bool thrown = false;
        try {
            box.items->FindNext();
        } catch (const run_time_error &error) {
            thrown = error.number == 61;
        }
        forget_outside_effect(registration);
        QVERIFY(thrown);
        box.items->finish_moves();
        QCOMPARE(files_in(box.path()).size(), 1);
        QCOMPARE(box.subjects(), QStringList{"kept"});
    }

    void nothing_moves_when_the_store_gave_up_rows()
    {
        mailbox box;
        box.put("kept", noon);
        const auto target = box.inbox->add(QStringLiteral("Tessaly_Inbox"));
        box.find()->Move(*target);
        writes_were_lost();
        QVERIFY(!box.items->FindNext());
        QCOMPARE(files_in(box.path()).size(), 1);
        box.find()->Move(*target);
        QVERIFY(!box.items->FindNext());
        QCOMPARE(files_in(box.path()).size(), 0);
    }

    void a_kill_at_any_rename_loses_and_doubles_no_mail()
    {
        for (int point = 1; point <= 12; ++point) {
            mailbox box;
            for (int number = 0; number < 10; ++number)
                box.put(QString::number(number), noon + number);
            const auto target = box.inbox->add(QStringLiteral("Tessaly_Inbox"));
            const pid_t child = fork();
            if (child == 0) {
                die_before_disk_call(point);
                for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext())
                    item->Move(*target);
                _exit(0);
            }
            int status = 0;
            waitpid(child, &status, 0);
            QVERIFY(WIFSIGNALED(status));
            const qsizetype moved = files_in(box.path() + "/.Tessaly_Inbox").size();
            QCOMPARE(moved, qMin(point - 1, 10));
            QCOMPARE(files_in(box.path()).size(), 10 - moved);
        }
    }

    void a_failed_move_is_raised_once_and_the_others_are_done()
    {
        mailbox box;
        box.put("gone", noon);
        box.put("there", noon + 1);
        const auto target = box.inbox->add(QStringLiteral("Tessaly_Inbox"));
        for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext()) {
            item->Move(*target);
            if (item->Subject() == u"gone")
                QFile::remove(box.path() + u'/' + files_in(box.path()).first());
        }
        QCOMPARE(files_in(box.path() + "/.Tessaly_Inbox").size(), 1);
        bool thrown = false;
        try {
            box.items->raise_next_failure();
        } catch (const run_time_error &error) {
            thrown = error.number == 53;
        }
        QVERIFY(thrown);
        QVERIFY(!box.items->raise_next_failure());
    }

    void a_mail_whose_flags_change_meanwhile_is_moved_all_the_same()
    {
        mailbox box;
        const QString name = deliver(box.path(), simple_mail{"", "", "x", ""}, noon);
        const auto target = box.inbox->add(QStringLiteral("Tessaly_Inbox"));
        box.find()->Move(*target);
        QVERIFY(QFile::rename(box.path() + "/new/" + name, box.path() + "/cur/" + name + ":2,S"));
        box.items->finish_moves();
        QCOMPARE(files_in(box.path() + "/.Tessaly_Inbox"), QStringList{"cur/" + name + ":2,S"});
        QVERIFY(!box.items->raise_next_failure());
    }
};

QTEST_GUILESS_MAIN(maildir_moves_test)
#include "maildir_moves_test.moc"
