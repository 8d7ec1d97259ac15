// A real IMAP server behind the mail client's verbs: folders, the walk, fields, answers. Moving: imap_moves_test.cpp.
// What is read again and what is not: imap_traffic_test.cpp. Cuts: imap_cuts_test.cpp.
#include "platform/app_folder.h"
#include "platform/clock.h"
#include "platform/outbox.h"
#include "platform/outside_effects.h"
#include "support/imap_box.h"
#include <QDir>
#include <QTest>

class imap_test : public QObject {
    Q_OBJECT
private slots:

    void a_mail_shows_its_fields()
    {
        imap_box box;
        box.server.deliver("ann",
                           simple_mail{"Orders <orders@example.org>, b@example.org", "Ann <ann@example.net>",
                                       " An =?utf-8?Q?=C3=B6rder?= ", "Line 1\nLine 2\n"},
                           noon);
        outlook::MailItem *item = box.find();
        QVERIFY(item);
        QCOMPARE(item->To(), "orders@example.org; b@example.org");
        QCOMPARE(item->Subject(), QString::fromUtf8("An \xC3\xB6rder"));
        QCOMPARE(item->body(), "Line 1\nLine 2\n");
        QCOMPARE(item->SenderName(), "ann@example.net");
        QCOMPARE(item->ReceivedTime(), QDateTime(QDate(2026, 1, 1), QTime(13, 0), Qt::UTC)); // Berlin's wall clock
        QVERIFY(!box.items->FindNext());
        QCOMPARE(box.items->Count(), 1);
        QCOMPARE(box.failures(), QStringList());
    }

    void reading_marks_nothing_as_seen()
    {
        imap_box box;
        box.put("unread");
        QCOMPARE(box.find()->body(), "Hello\n");
        QVERIFY(!box.items->FindNext());
        for (const QString &file : box.in_inbox())
            QVERIFY2(!file.section(u':', 1).contains(u'S'), qPrintable(file));
    }

    void only_wanted_mails_are_met_oldest_first()
    {
        imap_box box;
        box.put("second", noon + 2);
        box.put("left alone", noon + 1);
        box.put("third", noon + 3);
        const outlook::wanted_mails wanted{
            "some", [](const QString &, const QString &subject) { return subject != u"left alone"; }};
        QCOMPARE(box.subjects(wanted), QStringList({"second", "third"}));
        QCOMPARE(box.items->Count(), 3);
    }

    void new_mails_show_at_the_next_walk()
    {
        imap_box box;
        QCOMPARE(box.subjects(), QStringList());
        box.put("one");
        QCOMPARE(box.subjects(), QStringList({"one"}));
        box.put("two", noon + 1);
        QCOMPARE(box.subjects(), QStringList({"one", "two"}));
    }

    void a_new_question_is_put_to_all_mails_again()
    {
        imap_box box;
        box.put("a");
        box.put("b", noon + 1);
        const auto only = [](const QString &which) {
            return outlook::wanted_mails{which,
                                         [which](const QString &, const QString &subject) { return subject == which; }};
        };
        QCOMPARE(box.subjects(only("a")), QStringList({"a"}));
        QCOMPARE(box.subjects(only("b")), QStringList({"b"}));
    }

    void folders_are_found_and_made_data()
    {
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<QString>("separator");
        QTest::addColumn<QStringList>("hidden");
        QTest::newRow("beside the Inbox") << ""
                                          << "." << QStringList();
        QTest::newRow("below the Inbox") << "INBOX."
                                         << "." << QStringList();
        QTest::newRow("below the Inbox, and the server does not say where") << "INBOX/"
                                                                            << "/" << QStringList{"NAMESPACE"};
        QTest::newRow("beside the Inbox, another delimiter") << ""
                                                             << "/" << QStringList{"NAMESPACE"};
    }

    void folders_are_found_and_made()
    {
        QFETCH(QString, prefix);
        QFETCH(QString, separator);
        QFETCH(QStringList, hidden);
        dovecot_options options;
        options.prefix = prefix;
        options.separator = separator;
        options.hidden_capabilities = hidden;
        imap_box box(options);
        box.server.make_folder("ann", "TESSALY_inbox");
        box.open();
        QCOMPARE(names(*box.inbox), QStringList({"TESSALY_inbox"}));
        const auto made = box.inbox->add(QString::fromUtf8("B\xC3\xBC"
                                                           "cher & mehr"));
        QCOMPARE(made->Name(), QString::fromUtf8("B\xC3\xBC"
                                                 "cher & mehr"));
        QCOMPARE(names(*box.inbox), QStringList({made->Name(), "TESSALY_inbox"}));
        QVERIFY(QDir(box.server.maildir("ann", "B&APw-cher &- mehr")).exists());
        QFile subscribed(box.server.maildir("ann") + "/subscriptions");
        QVERIFY(subscribed.open(QIODevice::ReadOnly));
        QVERIFY(subscribed.readAll().contains("B&APw-cher &- mehr"));
        box.put("moved");
        QCOMPARE(box.move_all(*made), 1);
        QCOMPARE(box.in_folder("B&APw-cher &- mehr").size(), 1);
        QCOMPARE(box.failures(), QStringList());
    }

    void a_name_that_no_folder_can_have_is_refused()
    {
        imap_box box;
        box.open();
        for (const QString &name : {QString(), QStringLiteral("a.b")})
            QCOMPARE(number_of_failure([&] { box.inbox->add(name); }), 52u);
    }

    void a_folder_that_is_there_already_is_as_good_as_made()
    {
        imap_box box;
        box.open();
        QCOMPARE(names(*box.inbox), QStringList());
        box.server.make_folder("ann", "Tessaly_Inbox");
        QCOMPARE(box.inbox->add("Tessaly_Inbox")->Name(), "Tessaly_Inbox");
    }

    void another_folder_can_be_walked()
    {
        imap_box box;
        box.open();
        const auto folder = box.inbox->add("Tessaly_Inbox");
        box.server.deliver("ann", simple_mail{"", "", "in there", ""}, noon, "Tessaly_Inbox");
        const auto items = folder->items();
        outlook::MailItem *item = items->Find(QString::fromLatin1(every_item), all_mails());
        QVERIFY(item);
        QCOMPARE(item->Subject(), "in there");
        item->Move(*box.inbox);
        QVERIFY(!items->FindNext());
        QCOMPARE(box.subjects(), QStringList{"in there"});
    }

    void an_answer_is_handed_over_behind_a_commit()
    {
        imap_box box;
        set_app_folder(box.folder.path());
        box.server.deliver(
            "ann", simple_mail{"orders@example.org", "ann@example.net", "Q", "?\n", "Message-ID: <1@x>\n"}, noon);
        int commits = 0;
        const int registration = on_outside_effect([&] { ++commits; });
        const auto answer = box.find()->Reply();
        answer->Subject = "A";
        answer->body = "Yes";
        answer->send();
        forget_outside_effect(registration);
        QVERIFY(commits > 0);
        const auto kept = outbox::contents();
        QCOMPARE(kept.size(), 1u);
        QCOMPARE(kept[0].To, QStringList{"ann@example.net"});
        QCOMPARE(kept[0].SendingAccount, "orders@example.org");
        QVERIFY(bytes_of_file(box.folder.filePath("outbox/" + kept[0].id + ".eml")).contains("In-Reply-To: <1@x>"));
        set_app_folder({});
    }

    void a_new_mail_goes_into_the_outbox()
    {
        imap_box box;
        set_app_folder(box.folder.path());
        const auto mail = box.application->CreateItem(0);
        mail->To = "bob@example.net";
        mail->Send();
        QCOMPARE(outbox::contents().size(), 1u);
        set_app_folder({});
    }

    void a_wrong_password_is_told_when_the_inbox_is_asked_for()
    {
        imap_box box;
        box.password = "wrong";
        QCOMPARE(number_of_failure([&] { box.open(); }), quint32(net::trouble::login_refused));
    }

    void a_server_that_is_away_is_told_when_the_inbox_is_asked_for()
    {
        imap_box box;
        box.server.stop();
        QCOMPARE(number_of_failure([&] { box.open(); }), quint32(net::trouble::not_reached));
        box.server.start();
        box.put("back");
        QCOMPARE(box.subjects(), QStringList{"back"});
    }

    void the_connection_is_opened_again_when_it_died_between_two_walks()
    {
        imap_box box;
        box.put("one");
        QCOMPARE(box.subjects(), QStringList{"one"});
        for (const bool softly : {true, false}) {
            softly ? box.server.stop() : box.server.kill();
            box.server.start();
            QCOMPARE(box.subjects(), QStringList{"one"});
            QCOMPARE(box.failures(), QStringList());
        }
    }

    void a_huge_mail_is_cut()
    {
        imap_box box;
        QByteArray bytes = "To: orders@example.org\nSubject: huge\n\n";
        bytes += QByteArray(40 * 1024 * 1024, 'x');
        box.server.deliver("ann", bytes, noon);
        box.put("behind it", noon + 1);
        outlook::MailItem *item = box.find();
        QVERIFY(item);
        QCOMPARE(item->Subject(), "huge");
        QVERIFY(item->body().startsWith("xxx"));
        item = box.items->FindNext();
        QVERIFY(item);
        QCOMPARE(item->body(), "Hello\n");
    }

private:
    static QStringList names(outlook::MailFolder &folder)
    {
        QStringList found;
        for (const auto &one : folder.Folders())
            found.append(one->Name());
        found.sort();
        return found;
    }
    static quint32 number_of_failure(const std::function<void()> &action)
    {
        try {
            action();
        } catch (const run_time_error &failure) {
            return failure.number;
        }
        return 0;
    }
};

QTEST_GUILESS_MAIN(imap_test)
#include "imap_test.moc"
