// The Outbox on disk: what is handed over, looked at and taken away. Kills and damage: outbox_damage_test.cpp; what was
// on its way: outbox_journal_test.cpp.
#include "platform/outside_effects.h"
#include "platform/settings.h"
#include "support/maildir_files.h"
#include "support/outbox_folder.h"
#include <QElapsedTimer>
#include <QTest>

class outbox_test : public QObject {
    Q_OBJECT
private slots:

    void an_empty_outbox()
    {
        program_folder folder;
        QCOMPARE(outbox::contents().size(), size_t(0));
        QCOMPARE(outbox::waiting_count(), 0);
        QVERIFY(!QDir(folder.folder.filePath("outbox")).exists());
    }

    void mails_wait_in_the_order_they_came()
    {
        program_folder folder;
        QStringList ids;
        for (int number = 0; number < 20; ++number)
            ids.append(outbox::hand_over(mail_to("ann@example.net", QString::number(number))));
        const auto kept = outbox::contents();
        QCOMPARE(kept.size(), size_t(20));
        for (size_t place = 0; place < kept.size(); ++place) {
            QCOMPARE(kept[place].id, ids.at(qsizetype(place)));
            QCOMPARE(kept[place].Subject, QString::number(place));
            QCOMPARE(kept[place].state, outbox::mail_state::waiting);
            QCOMPARE(kept[place].Kind, outbox::mail_kind::mailing);
            QCOMPARE(kept[place].To, QStringList{"ann@example.net"});
            QCOMPARE(kept[place].SendingAccount, "orders@example.org");
        }
        QCOMPARE(outbox::waiting_count(), 20);
        QCOMPARE(folder.outbox_files().size(), 40);
    }

    void the_mail_itself_lies_beside_its_state()
    {
        program_folder folder;
        const QString id = outbox::hand_over(mail_to("ann@example.net"));
        const QByteArray eml = bytes_of_file(folder.folder.filePath("outbox/" + id + ".eml"));
        QVERIFY(eml.contains("\r\nTo: ann@example.net\r\n"));
        QVERIFY(eml.contains("\r\nMessage-ID: <" + id.toLatin1() + "@example.org>\r\n"));
        QVERIFY(eml.endsWith("\r\n\r\n" + QByteArray("A line of text.\r\n").repeated(100)));
    }

    void what_cannot_be_sent_is_kept_with_its_reason_data()
    {
        QTest::addColumn<QString>("address");
        QTest::newRow("no address") << "";
        QTest::newRow("no at sign") << "ann";
        QTest::newRow("line ends") << "ann@example.net\r\nBcc: all@example.org";
        QTest::newRow("blanks") << "ann @example.net";
    }

    void what_cannot_be_sent_is_kept_with_its_reason()
    {
        QFETCH(QString, address);
        program_folder folder;
        const QString id = outbox::hand_over(mail_to(address));
        const auto kept = outbox::contents();
        QCOMPARE(kept.size(), size_t(1));
        QCOMPARE(kept[0].state, outbox::mail_state::refused);
        QCOMPARE(kept[0].To, QStringList{address});
        QVERIFY(!kept[0].reason.isEmpty());
        QCOMPARE(outbox::waiting_count(), 0);
        QVERIFY(!bytes_of_file(folder.folder.filePath("outbox/" + id + ".eml")).contains("\nBcc"));
    }

    void without_an_account_the_set_address_is_taken()
    {
        program_folder folder;
        SaveSetting("mail_client", "from", "me@example.org");
        outbox::outgoing_mail mail = mail_to("ann@example.net");
        mail.SendingAccount.clear();
        outbox::hand_over(mail);
        SaveSetting("mail_client", "from", "");
        QCOMPARE(outbox::contents().at(0).SendingAccount, "me@example.org");
    }

    void what_was_stored_is_committed_before()
    {
        program_folder folder;
        qsizetype files_at_commit = -1;
        const int registration = on_outside_effect([&] { files_at_commit = folder.outbox_files().size(); });
        outbox::hand_over(mail_to("ann@example.net"));
        forget_outside_effect(registration);
        QCOMPARE(files_at_commit, 0);
    }

    void one_bad_address_of_several_does_not_stop_the_others()
    {
        program_folder folder;
        outbox::outgoing_mail mail = mail_to("ann@example.net");
        mail.To = {"ann@example.net", "bob", "eve@example.net\r\nBcc: all@example.org"};
        const QString id = outbox::hand_over(mail);
        QCOMPARE(outbox::contents().at(0).state, outbox::mail_state::waiting);
        QCOMPARE(outbox::contents().at(0).To, mail.To);
        QVERIFY(outbox::contents().at(0).reason.contains("bob: "));
        QVERIFY(!outbox::bytes_of(id).contains("Bcc"));
    }

    void discarding_takes_both_files()
    {
        program_folder folder;
        const QString first = outbox::hand_over(mail_to("ann@example.net"));
        const QString second = outbox::hand_over(mail_to("bob@example.net"));
        QVERIFY(outbox::discard(first));
        QVERIFY(!outbox::discard(first));
        QVERIFY(!outbox::send_again(first));
        QCOMPARE(folder.outbox_files(), (QStringList{second + ".eml", second + ".json"}));
        QCOMPARE(outbox::count().waiting, 1);
        QCOMPARE(outbox::bytes_of(first), QByteArray());
    }

    void two_thousand_waiting_mails_do_not_slow_handing_over()
    {
        program_folder folder;
        const auto calls_of_one = [] {
            die_before_disk_call(0);
            outbox::hand_over(mail_to("ann@example.net"));
            outbox::count(); // as a status line does
            return disk_calls();
        };
        const QString id = outbox::hand_over(mail_to("ann@example.net"));
        const int calls = calls_of_one();
        const QByteArray eml = outbox::bytes_of(id);
        const QByteArray state = bytes_of_file(folder.folder.filePath("outbox/" + id + ".json"));
        for (int number = 1000; number < 3000; ++number) {
            folder.write(QString("outbox/1767268800000000-%1.eml").arg(number), eml);
            folder.write(QString("outbox/1767268800000000-%1.json").arg(number), state);
        }
        folder.begin_a_new_run();
        QCOMPARE(outbox::count().waiting, 2002);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(calls_of_one(), calls);
        const qint64 first = timer.restart();
        QCOMPARE(calls_of_one(), calls);
        qInfo("the first took %lld ms, the second %lld", first, timer.elapsed());
        QCOMPARE(outbox::count().waiting, 2004);
        QCOMPARE(outbox::contents().size(), size_t(2004));
    }
};

QTEST_GUILESS_MAIN(outbox_test)
#include "outbox_test.moc"
