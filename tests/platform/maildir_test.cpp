// A real Maildir behind the mail client's verbs: folders, the walk, fields, answers. Moving: maildir_moves_test.cpp.
#include "platform/clock.h"
#include "platform/outbox.h"
#include "platform/outside_effects.h"
#include "support/mailbox.h"
#include <QFile>
#include <QTest>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

namespace {

void make_old(const QString &path) // as if nothing had been touched for a minute
{
    const utimbuf times{noon, noon};
    for (const char *part : {"/cur", "/new"})
        utime(QFile::encodeName(path + QString::fromLatin1(part)).constData(), &times);
}

}

class maildir_test : public QObject {
    Q_OBJECT
private slots:

    void a_mail_shows_its_fields()
    {
        mailbox box;
        deliver(box.path(),
                simple_mail{"Orders <orders@example.org>", "Ann <ann@example.net>", " An order ", "Line 1\r\nLine 2\n"},
                noon);
        outlook::MailItem *item = box.find();
        QVERIFY(item);
        QCOMPARE(item->To(), "orders@example.org");
        QCOMPARE(item->Subject(), "An order");
        QCOMPARE(item->body(), "Line 1\nLine 2\n");
        QCOMPARE(item->SenderName(), "ann@example.net");
        QCOMPARE(item->ReceivedTime(), QDateTime(QDate(2026, 1, 1), QTime(13, 0), Qt::UTC)); // Berlin's wall clock
        QVERIFY(!box.items->FindNext());
    }

    void a_missing_maildir_that_was_set_is_a_failure_and_is_not_made()
    {
        mailbox box;
        const QString typed = box.folder.filePath("mial/box");
        SaveSetting("mail_client", "maildir", typed);
        try {
            box.open();
            QFAIL("The missing Maildir was taken.");
        } catch (const run_time_error &failure) {
            QCOMPARE(failure.number, 76u);
            QCOMPARE(failure.description, "Path not found: " + typed);
        }
        QVERIFY(!QDir(box.folder.filePath("mial")).exists());
    }

    void the_folders_in_an_empty_maildir_are_made()
    {
        mailbox box;
        for (const char *part : {"cur", "new", "tmp"})
            QVERIFY(QDir(box.path() + u'/' + QString::fromLatin1(part)).exists());
        QCOMPARE(box.items->Count(), 0);
        QVERIFY(!box.find());
    }

    void the_walk_goes_by_delivery_time_then_name()
    {
        mailbox box;
        deliver_as(box.path(), "new/1767268802.b", mail_bytes({"", "", "third", ""}));
        deliver_as(box.path(), "cur/1767268802.a:2,S", mail_bytes({"", "", "second", ""}));
        deliver_as(box.path(), "cur/1767268801.z:2,", mail_bytes({"", "", "first", ""}));
        QCOMPARE(box.subjects(), QStringList({"first", "second", "third"}));
    }

    void a_name_without_a_time_goes_by_the_files_own()
    {
        mailbox box;
        deliver_as(box.path(), "new/42.copied", mail_bytes({"", "", "by hand", ""}));
        const utimbuf times{noon + 5, noon + 5};
        utime(QFile::encodeName(box.path() + "/new/42.copied").constData(), &times);
        box.put("later", noon + 6);
        box.put("earlier", noon + 4);
        QCOMPARE(box.subjects(), QStringList({"earlier", "by hand", "later"}));
    }

    void count_tells_of_all_mails_and_the_walk_is_over_what_was_counted()
    {
        mailbox box;
        box.put("one", noon);
        box.put("two", noon + 1);
        QCOMPARE(box.items->Count(), 2);
        box.put("three", noon + 2);
        QCOMPARE(box.subjects({"two", [](const QString &, const QString &subject) { return subject != u"one"; }}),
                 QStringList{"two"});
        QCOMPARE(box.items->Count(), 3);
    }

    void a_mail_that_vanishes_in_the_middle_is_passed_over()
    {
        mailbox box;
        for (int number = 0; number < 3; ++number)
            box.put(QString::number(number), noon + number);
        outlook::MailItem *item = box.find();
        QCOMPARE(item->Subject(), "0");
        QFile::remove(box.path() + u'/' + files_in(box.path()).at(1));
        item = box.items->FindNext();
        QCOMPARE(item->Subject(), "2");
        QVERIFY(!box.items->FindNext());
    }

    void what_is_no_readable_file_is_passed_over()
    {
        mailbox box;
        box.put("good", noon + 9);
        QCOMPARE(mkfifo(QFile::encodeName(box.path() + "/new/1767268800.pipe").constData(), 0600), 0);
        QVERIFY(QDir().mkdir(box.path() + "/cur/1767268800.folder"));
        QVERIFY(QFile::link("/nowhere/at/all", box.path() + "/cur/1767268800.link"));
        deliver_as(box.path(), "new/.hidden", "Subject: hidden\n\n");
        QCOMPARE(box.subjects(), QStringList{"good"});
    }

    void a_mail_in_both_folders_at_once_is_met_once()
    {
        mailbox box;
        deliver_as(box.path(), "new/1767268801.x", "Subject: x\n\n");
        deliver_as(box.path(), "cur/1767268801.x:2,S", "Subject: x\n\n");
        QCOMPARE(box.items->Count(), 1);
        QCOMPARE(box.subjects(), QStringList{"x"});
    }

    void an_unchanged_inbox_is_tested_once_under_one_key()
    {
        mailbox box;
        box.put("a", noon);
        box.put("b", noon + 1);
        make_old(box.path());
        int asked = 0;
        const auto test = [&asked](const QString &, const QString &subject) {
            ++asked;
            return subject == u"b";
        };
        QCOMPARE(box.subjects({"key 1", test}), QStringList{"b"});
        QCOMPARE(asked, 2);
        box.open();
        QCOMPARE(box.subjects({"key 1", test}), QStringList{"b"});
        QCOMPARE(asked, 2);
        QCOMPARE(box.subjects({"key 2", test}), QStringList{"b"});
        QCOMPARE(asked, 4);
        box.put("c", noon + 2);
        QCOMPARE(box.subjects({"key 2", test}), QStringList{"b"});
        QCOMPARE(asked, 5);
    }

    void answers_without_a_key_are_not_kept()
    {
        mailbox box;
        box.put("a", noon);
        QString wanted = "b";
        const outlook::wanted_mails test{
            {}, [&wanted](const QString &, const QString &subject) { return subject == wanted; }};
        QCOMPARE(box.subjects(test), QStringList());
        wanted = "a";
        QCOMPARE(box.subjects(test), QStringList{"a"});
    }

    void a_mail_delivered_in_the_same_second_is_seen()
    {
        mailbox box;
        box.put("a", noon);
        QCOMPARE(box.subjects(), QStringList{"a"});
        box.put("b", noon + 1);
        QCOMPARE(box.subjects(), QStringList({"a", "b"}));
    }

    void a_changed_flag_forgets_nothing()
    {
        mailbox box;
        box.put("a", noon);
        int asked = 0;
        const outlook::wanted_mails test{"key", [&asked](const QString &, const QString &) { return ++asked > 0; }};
        QCOMPARE(box.subjects(test), QStringList{"a"});
        const QString file = files_in(box.path()).first();
        QVERIFY(QFile::rename(box.path() + u'/' + file, box.path() + "/cur/" + file.sliced(4) + ":2,S"));
        QCOMPARE(box.subjects(test), QStringList{"a"});
        QCOMPARE(asked, 1);
    }

    void folders_are_listed_by_their_true_names()
    {
        mailbox box;
        deliver_as(box.path() + "/.TESSALY_inbox", "cur/1767268801.x:2,", "");
        deliver_as(box.path() + "/.Work.Old", "cur/1767268801.x:2,", "");
        QVERIFY(QDir().mkdir(box.path() + "/.no_mail_folder"));
        QStringList names;
        for (const auto &folder : box.inbox->Folders())
            names.append(folder->Name());
        QCOMPARE(names, QStringList{"TESSALY_inbox"});
        QCOMPARE(box.inbox->Name(), "Inbox");
    }

    void a_new_folder_is_one_for_other_programs_too()
    {
        mailbox box;
        const auto added = box.inbox->add(QStringLiteral("Tessaly_Inbox"));
        QCOMPARE(added->Name(), "Tessaly_Inbox");
        QVERIFY(QFile::exists(box.path() + "/.Tessaly_Inbox/maildirfolder"));
        QCOMPARE(box.inbox->Folders().size(), 1);
        QCOMPARE(added->Folders().size(), 0);
        const auto below = added->add(QStringLiteral("Old"));
        QVERIFY(QDir(box.path() + "/.Tessaly_Inbox.Old/cur").exists());
        QCOMPARE(added->Folders().at(0)->Name(), "Old");
    }

    void a_folder_name_cannot_lead_elsewhere_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << "";
        QTest::newRow("a slash") << "../x";
        QTest::newRow("a dot") << "a.b";
        QTest::newRow("a line end") << "a\nb";
    }
    void a_folder_name_cannot_lead_elsewhere()
    {
        QFETCH(QString, name);
        mailbox box;
        bool thrown = false;
        try {
            box.inbox->add(name);
        } catch (const run_time_error &error) {
            thrown = error.number == 52;
        }
        QVERIFY(thrown);
    }

    void a_mail_with_addresses_of_several_fields_joins_them()
    {
        mailbox box;
        box.put("x", noon);
        deliver(box.path(), QByteArray("To: a@example.org\nSubject: two\nTo: Team: b@example.org, c@example.org;\n\n"),
                noon + 1);
        box.find();
        QCOMPARE(box.items->FindNext()->To(), "a@example.org; b@example.org; c@example.org");
    }

    void a_big_mail_is_read_whole()
    {
        mailbox box;
        const QString big = QString(100000, u'x') + "end\n";
        deliver(box.path(), simple_mail{"orders@example.org", "", "big", big}, noon);
        QCOMPARE(box.find()->body(), big);
    }

    void a_header_beyond_the_first_read_is_found()
    {
        mailbox box;
        deliver(box.path(), "X-Long: " + QByteArray(100000, 'x') + "\nSubject: behind it\n\nbody", noon);
        outlook::MailItem *item = box.find();
        QCOMPARE(item->Subject(), "behind it");
        QCOMPARE(item->body(), "body");
    }

    void the_reply_goes_to_the_outbox_as_the_account()
    {
        mailbox box;
        deliver(box.path(),
                simple_mail{"orders@example.org, b@example.org", "ann@example.net", "q", "",
                            "Message-ID: <1@x>\nReferences: <0@x>\n"},
                noon);
        const auto reply = box.find()->Reply();
        reply->Subject = "Your answer";
        reply->body = "Thank you\r\n";
        int commits = 0;
        const int registration = on_outside_effect([&commits] { ++commits; });
        reply->send();
        forget_outside_effect(registration);
        QVERIFY(commits > 0);
        const auto kept = outbox::contents();
        QCOMPARE(kept.size(), size_t(1));
        QCOMPARE(kept.at(0).state, outbox::mail_state::waiting);
        QCOMPARE(kept.at(0).Kind, outbox::mail_kind::answer);
        QCOMPARE(kept.at(0).To, QStringList{"ann@example.net"});
        QCOMPARE(kept.at(0).SendingAccount, "orders@example.org");
        const QByteArray eml = bytes_of_file(box.folder.filePath("outbox/" + kept.at(0).id + ".eml"));
        for (const char *line :
             {"\r\nFrom: orders@example.org\r\n", "\r\nTo: ann@example.net\r\n", "\r\nSubject: Your answer\r\n",
              "\r\nIn-Reply-To: <1@x>\r\n", "\r\nReferences: <0@x> <1@x>\r\n", "\r\nAuto-Submitted: auto-replied\r\n"})
            QVERIFY2(eml.contains(line), line);
        QVERIFY(eml.endsWith("\r\n\r\nThank you\r\n"));
    }

    void a_reply_does_the_moves_asked_for_before_it()
    {
        mailbox box;
        box.put("first", noon);
        box.put("second", noon + 1);
        const auto target = box.inbox->add(QStringLiteral("Tessaly_Inbox"));
        box.find()->Move(*target);
        const auto reply = box.items->FindNext()->Reply();
        QCOMPARE(files_in(box.path()).size(), 2);
        reply->send();
        QCOMPARE(files_in(box.path()).size(), 1);
    }

    void a_reply_to_nobody_is_kept_as_refused()
    {
        mailbox box;
        deliver(box.path(), simple_mail{"orders@example.org", "not an address", "q", ""}, noon);
        box.find()->Reply()->send();
        const auto kept = outbox::contents();
        QCOMPARE(kept.size(), size_t(1));
        QCOMPARE(kept.at(0).state, outbox::mail_state::refused);
        QVERIFY(!kept.at(0).reason.isEmpty());
        QCOMPARE(outbox::waiting_count(), 0);
    }

    void a_file_that_cannot_be_read_is_told_once_and_passed_over()
    {
        mailbox box;
        box.put("good", noon + 1);
        const QString bad = box.path() + "/new/" + QString::number(noon) + ".bad";
        QVERIFY(symlink(qPrintable(bad), qPrintable(bad)) == 0); // leads to itself: nobody can open it
        QCOMPARE(box.subjects(), QStringList{"good"});
        QCOMPARE(box.failures(), QStringList{"75 The mail cannot be read (" + bad + "): " + strerror(ELOOP)});
        box.put("later", noon + 2);
        box.open();
        QCOMPARE(box.subjects(), QStringList({"good", "later"}));
        QCOMPARE(box.failures(), QStringList());
    }

    void of_many_unreadable_files_some_are_told_at_a_time()
    {
        mailbox box;
        for (int i = 0; i < 25; ++i) {
            const QString bad = box.path() + "/new/" + QString::number(noon + i) + ".bad";
            QVERIFY(symlink(qPrintable(bad), qPrintable(bad)) == 0);
        }
        QList<qsizetype> told;
        for (int walk = 0; walk < 3; ++walk) {
            QCOMPARE(box.subjects(), QStringList());
            told += box.failures().size();
        }
        QCOMPARE(told, QList<qsizetype>({20, 5, 0}));
    }

    void a_mail_that_vanished_before_it_was_read_is_no_failure()
    {
        mailbox box;
        box.put("gone", noon);
        QCOMPARE(box.items->Count(), 1);
        QVERIFY(QFile::remove(box.path() + u'/' + files_in(box.path()).value(0)));
        QCOMPARE(box.subjects(), QStringList());
        QCOMPARE(box.failures(), QStringList());
    }

    void a_closed_or_missing_inbox_says_so()
    {
        mailbox box;
        QVERIFY(QDir(box.path()).removeRecursively());
        bool thrown = false;
        try {
            box.items->Count();
        } catch (const run_time_error &error) {
            thrown = error.number == 53 && error.description.contains(box.path());
        }
        QVERIFY(thrown);
    }

    void the_default_place_is_beside_the_program_or_the_homes_maildir()
    {
        QTemporaryDir folder;
        set_app_folder(folder.path());
        SaveSetting("mail_client", "maildir", "");
        real_mail_client client;
        client.CreateObject()->GetNamespace("MAPI")->GetDefaultFolder();
        QVERIFY(QDir(folder.filePath("mail/cur")).exists());
        QVERIFY(QDir::home().mkdir("Maildir"));
        client.CreateObject()->GetNamespace("MAPI")->GetDefaultFolder();
        QVERIFY(QDir::home().exists("Maildir/cur"));
        QVERIFY(QDir(QDir::home().filePath("Maildir")).removeRecursively());
        set_app_folder({});
    }

    void kinds_without_folders_have_no_client_here()
    {
        real_mail_client client;
        for (const char *kind : {"pop3", "mbox"}) {
            SaveSetting("mail_client", "kind", QString::fromLatin1(kind));
            QVERIFY(!client.CreateObject());
        }
        for (const char *kind : {"maildir", "imap"}) {
            SaveSetting("mail_client", "kind", QString::fromLatin1(kind));
            QVERIFY(client.CreateObject());
        }
        QVERIFY(!client.GetObject());
        SaveSetting("mail_client", "kind", "");
    }
};

QTEST_GUILESS_MAIN(maildir_test)
#include "maildir_test.moc"
