// Moving mails of a real IMAP server: in ranges, behind a commit, on servers that offer less. The walk: imap_test.cpp.
#include "platform/outside_effects.h"
#include "support/imap_box.h"
#include "support/loopback.h"
#include <QTest>

namespace {

struct less {
    const char *name;
    QStringList hidden;
};
const QList<less> servers{
    {"all offered", {}},
    {"no QRESYNC", {"QRESYNC", "CONDSTORE"}},
    {"no MOVE", {"MOVE"}},
    {"neither MOVE nor UIDPLUS", {"MOVE", "UIDPLUS"}},
    {"MOVE without UIDPLUS", {"UIDPLUS"}},
    {"nothing of all that", {"MOVE", "UIDPLUS", "QRESYNC", "CONDSTORE", "ESEARCH", "ENABLE", "NAMESPACE"}}};

dovecot_options without(const QStringList &hidden)
{
    dovecot_options options;
    options.hidden_capabilities = hidden;
    return options;
}

// As a user does with another program.
void in_another_program(const imap_box &box, const QByteArray &command)
{
    raw_connection other(box.server.imap_port);
    other.line();
    for (const QByteArray &line : {QByteArray("LOGIN ann \"apple tree\""), QByteArray("SELECT INBOX"), command}) {
        other.send("x " + line + "\r\n");
        const QByteArray said = other.up_to("x ");
        QVERIFY2(said.contains("x OK"), said.constData());
    }
}

}

class imap_moves_test : public QObject {
    Q_OBJECT
private slots:

    void moving_while_walking_skips_none_data() { rows(); }
    void moving_while_walking_skips_none()
    {
        QFETCH(QStringList, hidden);
        imap_box box(without(hidden));
        box.put_many(1100);
        box.open();
        const auto target = box.inbox->add("Tessaly_Inbox");
        int seen = 0;
        for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext()) {
            QCOMPARE(item->Subject(), QString::number(seen++));
            item->Move(*target);
        }
        QCOMPARE(seen, 1100);
        QCOMPARE(box.failures(), QStringList());
        QCOMPARE(box.in_inbox(), QStringList());
        QCOMPARE(box.in_folder().size(), 1100);
        box.put("the next");
        QCOMPARE(box.subjects(), QStringList{"the next"});
        QCOMPARE(box.items->Count(), 1);
    }

    void a_moved_mail_keeps_its_flags_data() { rows(); }
    void a_moved_mail_keeps_its_flags()
    {
        QFETCH(QStringList, hidden);
        imap_box box(without(hidden));
        box.put("flagged");
        box.open();
        const auto target = box.inbox->add("Tessaly_Inbox");
        in_another_program(box, "STORE 1 +FLAGS (\\Flagged \\Seen)");
        QCOMPARE(box.move_all(*target), 1);
        QVERIFY2(box.in_folder().value(0).endsWith(":2,FS"), qPrintable(box.in_folder().value(0)));
    }

    void moves_wait_for_the_five_hundredth_and_for_the_commit()
    {
        imap_box box;
        box.put_many(700);
        box.open();
        const auto target = box.inbox->add("Tessaly_Inbox");
        QList<qsizetype> moved_at_commit;
        const int registration = on_outside_effect([&] { moved_at_commit.append(700 - box.in_inbox().size()); });
        int asked = 0;
        for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext()) {
            if (asked <= 499)
                QCOMPARE(box.in_inbox().size(), 700);
            item->Move(*target);
            ++asked;
        }
        forget_outside_effect(registration);
        QCOMPARE(moved_at_commit.size(), 2);
        QCOMPARE(moved_at_commit.at(0), 0);
        QVERIFY(moved_at_commit.at(1) <= 500);
        QCOMPARE(box.in_inbox().size(), 0);
    }

    void nothing_moves_when_the_commit_fails_and_the_next_walk_meets_it_again()
    {
        imap_box box;
        box.put("kept");
        box.open();
        const auto target = box.inbox->add("Tessaly_Inbox");
        box.find()->Move(*target);
        const int registration = on_outside_effect([] { throw run_time_error{61, QStringLiteral("Disk full")}; });
        quint32 thrown = 0;
        try {
            box.items->FindNext();
        } catch (const run_time_error &error) {
            thrown = error.number;
        }
        forget_outside_effect(registration);
        QCOMPARE(thrown, 61u);
        box.items->finish_moves();
        QCOMPARE(box.subjects(), QStringList{"kept"});
    }

    void nothing_moves_when_the_store_gave_up_rows()
    {
        imap_box box;
        box.put("kept");
        box.open();
        const auto target = box.inbox->add("Tessaly_Inbox");
        box.find()->Move(*target);
        writes_were_lost();
        QVERIFY(!box.items->FindNext());
        QCOMPARE(box.in_inbox().size(), 1);
        box.find()->Move(*target);
        QVERIFY(!box.items->FindNext());
        QCOMPARE(box.in_inbox().size(), 0);
    }

    void a_mail_that_somebody_took_is_one_failed_move_data()
    {
        QTest::addColumn<QStringList>("hidden");
        for (const less &one : servers)
            if (!one.hidden.contains("UIDPLUS")) // without it, a server does not say what it moved
                QTest::newRow(one.name) << one.hidden;
    }
    void a_mail_that_somebody_took_is_one_failed_move()
    {
        QFETCH(QStringList, hidden);
        for (const int others : {0, 3}) {
            imap_box box(without(hidden));
            box.put("gone");
            for (int number = 0; number < others; ++number)
                box.put("there", noon + 1 + number);
            box.server.make_folder("ann", "Bin");
            box.open();
            const auto target = box.inbox->add("Tessaly_Inbox");
            for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext()) {
                item->Move(*target);
                if (item->Subject() == u"gone")
                    in_another_program(box, "UID MOVE 1 Bin");
            }
            QCOMPARE(box.in_folder().size(), others);
            QCOMPARE(box.failures().size(), 1);
        }
    }

    void a_mail_that_vanishes_before_it_is_read_is_passed_over_data() { rows(); }
    void a_mail_that_vanishes_before_it_is_read_is_passed_over()
    {
        QFETCH(QStringList, hidden);
        imap_box box(without(hidden));
        box.put_many(5);
        box.open();
        QCOMPARE(box.items->Count(), 5);
        in_another_program(box, "UID STORE 2 +FLAGS (\\Deleted)");
        in_another_program(box, "EXPUNGE");
        QCOMPARE(box.subjects(), QStringList({"0", "2", "3", "4"}));
        QCOMPARE(box.failures(), QStringList());
        QCOMPARE(box.subjects(), QStringList({"0", "2", "3", "4"}));
        QCOMPARE(box.items->Count(), 4);
    }

    void mails_marked_by_hand_are_never_removed_data() { rows(); }
    void mails_marked_by_hand_are_never_removed()
    {
        QFETCH(QStringList, hidden);
        imap_box box(without(hidden));
        box.put("marked by hand");
        box.put("ours", noon + 1);
        in_another_program(box, "STORE 1 +FLAGS (\\Deleted)");
        box.open();
        const auto target = box.inbox->add("Tessaly_Inbox");
        const outlook::wanted_mails ours{"ours",
                                         [](const QString &, const QString &subject) { return subject == u"ours"; }};
        QCOMPARE(box.move_all(*target, ours), 1);
        const bool cannot = hidden.contains("UIDPLUS") && hidden.contains("MOVE");
        QCOMPARE(box.failures().size(), cannot ? 1 : 0);
        QCOMPARE(box.in_inbox().size(), cannot ? 2 : 1);
        QCOMPARE(box.in_folder().size(), cannot ? 0 : 1);
    }

    void a_target_that_is_gone_is_made_again_data() { rows(); }
    void a_target_that_is_gone_is_made_again()
    {
        QFETCH(QStringList, hidden);
        imap_box box(without(hidden));
        box.put("moved");
        box.open();
        const auto target = box.inbox->add("Tessaly_Inbox");
        in_another_program(box, "DELETE Tessaly_Inbox");
        QCOMPARE(box.move_all(*target), 1);
        QCOMPARE(box.failures(), QStringList());
        QCOMPARE(box.in_folder().size(), 1);
        QCOMPARE(box.in_inbox().size(), 0);
    }

private:
    void rows()
    {
        QTest::addColumn<QStringList>("hidden");
        for (const less &one : servers)
            QTest::newRow(one.name) << one.hidden;
    }
};

QTEST_GUILESS_MAIN(imap_moves_test)
#include "imap_moves_test.moc"
