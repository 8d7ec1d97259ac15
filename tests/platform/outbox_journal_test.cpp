// What the journal of the sending says after a kill, a power cut or a full disk.
#include "platform/real/outbox/sending_journal.h"
#include "support/maildir_files.h"
#include "support/outbox_folder.h"
#include <QSet>
#include <QTest>
#include <csignal>
#include <sys/resource.h>

class outbox_journal_test : public QObject {
    Q_OBJECT
private slots:

    void a_power_cut_leaves_the_announced_mails_in_doubt()
    {
        program_folder folder;
        const QString gone = outbox::hand_over(mail_to("ann@example.net"));
        const QString ended = outbox::hand_over(mail_to("bob@example.net"));
        const QString announced = outbox::hand_over(mail_to("eve@example.net"));
        const QString untouched = outbox::hand_over(mail_to("joe@example.net"));
        const QByteArray lines =
            QString("ahead %1 %2 %3\nend %1\ngone %1\nend %2\n").arg(gone, ended, announced).toLatin1();
        folder.write("outbox/sending.journal", "sending 1 another-boot\n" + lines + "gone " + untouched.toLatin1());
        auto kept = outbox::contents();
        QCOMPARE(kept.size(), size_t(3)); // the torn last line says nothing
        QCOMPARE(kept[0].id, ended);
        QCOMPARE(kept[0].state, outbox::mail_state::unknown);
        QCOMPARE(kept[1].id, announced);
        QCOMPARE(kept[1].state, outbox::mail_state::unknown);
        QCOMPARE(kept[2].state, outbox::mail_state::waiting);
        folder.begin_a_new_run();
        QVERIFY(outbox::send_again(announced)); // the journal's word is in the states now, and it is gone
        QVERIFY(!folder.outbox_files().contains("sending.journal"));
        QVERIFY(!folder.outbox_files().contains(gone + ".eml"));
        kept = outbox::contents();
        QCOMPARE(kept.size(), size_t(3));
        QCOMPARE(kept[0].state, outbox::mail_state::unknown);
        QCOMPARE(kept[1].state, outbox::mail_state::waiting);
    }

    void a_kill_leaves_only_the_last_one_in_doubt()
    {
        program_folder folder;
        const QString ended = outbox::hand_over(mail_to("ann@example.net"));
        const QString announced = outbox::hand_over(mail_to("bob@example.net"));
        QFile boot("/proc/sys/kernel/random/boot_id");
        QVERIFY(boot.open(QIODevice::ReadOnly));
        folder.write("outbox/sending.journal",
                     "sending 1 " + boot.readAll() + QString("ahead %1 %2\nend %1\n").arg(ended, announced).toLatin1());
        const auto kept = outbox::contents();
        QCOMPARE(kept[0].state, outbox::mail_state::unknown);
        QCOMPARE(kept[1].state, outbox::mail_state::waiting);
    }

    void torn_lines_of_a_full_disk_say_nothing_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<QList<int>>("waiting");
        QTest::newRow("gone, glued to an end") << "end %1\ngone %1end %2\n" << QList<int>{2, 3, 4};
        QTest::newRow("gone, glued to what goes next") << "end %1\ngone %1ahead %3 %4\n" << QList<int>{2, 3, 4};
        QTest::newRow("half an id") << "gone 17672\nend %1\n" << QList<int>{2, 3, 4};
        QTest::newRow("half a word") << "end %1\ngone gone %2\n" << QList<int>{2, 3, 4};
        QTest::newRow("whole words") << "gone %1\nend %2\n\nkept %2\n" << QList<int>{2, 3, 4};
    }

    void torn_lines_of_a_full_disk_say_nothing()
    {
        QFETCH(QString, lines);
        QFETCH(QList<int>, waiting);
        program_folder folder;
        QStringList ids;
        for (int number = 1; number <= 4; ++number)
            ids += outbox::hand_over(mail_to("ann@example.net"));
        QFile boot("/proc/sys/kernel/random/boot_id");
        QVERIFY(boot.open(QIODevice::ReadOnly));
        for (int number = 1; number <= 4; ++number)
            lines.replace(QString("%%1").arg(number), ids.at(number - 1));
        folder.write("outbox/sending.journal", "sending 1 " + boot.readAll() + lines.toLatin1());
        QList<int> found;
        for (const outbox::kept_mail &mail : outbox::contents())
            if (mail.state == outbox::mail_state::waiting)
                found += int(ids.indexOf(mail.id)) + 1;
        QCOMPARE(found, waiting);
        const bool is_gone = lines.startsWith("gone " + ids.first() + "\n");
        QCOMPARE(outbox::contents().size(), size_t(is_gone ? 3 : 4));
    }

    void the_line_behind_a_torn_one_stands_alone()
    {
        const QTemporaryDir folder;
        const QString first = "1767268800000001-0000000a", second = "1767268800000002-0000000b";
        QVERIFY(lives_through(0, [&] {
            outbox::sending_journal journal(folder.path());
            journal.announce({first, second});
            journal.sending(first);
            const QString name = folder.filePath("sending.journal");
            const rlim_t room = rlim_t(QFile(name).size()) + 7;
            rlimit limit{room, RLIM_INFINITY};
            signal(SIGXFSZ, SIG_IGN);
            setrlimit(RLIMIT_FSIZE, &limit);
            journal.gone(first); // torn
            limit.rlim_cur = RLIM_INFINITY;
            setrlimit(RLIMIT_FSIZE, &limit);
            journal.sending(second);
        }));
        QVERIFY(bytes_of_file(folder.filePath("sending.journal")).contains("\ngone 17\nend " + second.toLatin1()));
        const outbox::journal_verdict verdict = outbox::read_journal(folder.path());
        QCOMPARE(verdict.gone, QSet<QString>());
        QCOMPARE(verdict.in_doubt, (QSet<QString>{first, second}));
    }

    void doubt_about_a_mail_that_cannot_be_read_is_kept()
    {
        program_folder folder;
        const QString id = outbox::hand_over(mail_to("ann@example.net"));
        const QString name = folder.folder.filePath("outbox/" + id + ".json");
        const QByteArray state = bytes_of_file(name);
        folder.write("outbox/sending.journal", "sending 1 another-boot\nahead " + id.toLatin1() + '\n');
        QVERIFY(QFile::remove(name));
        QVERIFY(QDir().mkdir(name));
        folder.begin_a_new_run();
        outbox::hand_over(mail_to("bob@example.net")); // settles
        QVERIFY(folder.outbox_files().contains("sending.journal"));
        QVERIFY(QDir().rmdir(name));
        folder.write("outbox/" + id + ".json", state);
        outbox::hand_over(mail_to("eve@example.net"));
        QVERIFY(!folder.outbox_files().contains("sending.journal"));
        QCOMPARE(outbox::contents().at(0).id, id);
        QCOMPARE(outbox::contents().at(0).state, outbox::mail_state::unknown);
    }
};

QTEST_GUILESS_MAIN(outbox_journal_test)
#include "outbox_journal_test.moc"
