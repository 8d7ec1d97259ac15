// Many new mails come whole, heads and bodies at once, as long as most of them are small and wanted. Nothing of what is
// walked depends on it. The walk: imap_test.cpp. What goes over the line otherwise: imap_traffic_test.cpp.
#include "support/watched_imap_box.h"
#include <QFile>
#include <QTest>

namespace {

constexpr int many = 700;

struct watched_box : watched_imap_box {
    using watched_imap_box::watched_imap_box;
    void put_big(int number, qsizetype size)
    {
        const QString line = QString(70, u'x') + u'\n';
        server.deliver("ann",
                       simple_mail{"orders@example.org", "ann@example.net", QString::number(number),
                                   line.repeated(size / line.size()) + "end\n"},
                       noon + number);
    }
};

QStringList numbers(int from, int to)
{
    QStringList all;
    for (int number = from; number < to; ++number)
        all += QString::number(number);
    return all;
}

// Those whose number has no remainder.
outlook::wanted_mails each(int nth)
{
    return {QString("each %1").arg(nth),
            [nth](const QString &, const QString &subject) { return subject.toInt() % nth == 0; }};
}

}

class imap_new_mails_test : public QObject {
    Q_OBJECT
private slots:

    void small_ones_come_without_asking_for_heads_data() { rows_of_hidden_capabilities(); }
    void small_ones_come_without_asking_for_heads()
    {
        QFETCH(QStringList, hidden);
        dovecot_options options;
        options.hidden_capabilities = hidden;
        watched_box box(options);
        box.put_many(many);
        QStringList seen;
        for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext()) {
            QCOMPARE(item->body(), QString("Hello\n"));
            QCOMPARE(item->To(), QString("orders@example.org"));
            seen += item->Subject();
        }
        QCOMPARE(seen, numbers(0, many));
        QCOMPARE(box.said("HEADER.FIELDS"), 0);
        QCOMPARE(box.failures(), QStringList());
        box.put("the next", noon + many);
        QCOMPARE(box.subjects().mid(many), QStringList{"the next"});
    }

    void the_time_is_the_same_as_of_one_mail()
    {
        watched_box box;
        box.put_many(many);
        QList<QDateTime> seen;
        for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext())
            seen += item->ReceivedTime();
        box.start_anew();
        QList<QDateTime> again;
        for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext())
            again += item->ReceivedTime();
        QCOMPARE(seen.size(), many);
        QCOMPARE(again, seen);
        for (const char *name : {"", "-wal", "-shm"})
            QFile::remove(box.cache_path() + QLatin1String(name));
        box.start_anew();
        QCOMPARE(box.find(each(many))->ReceivedTime(), seen.first());
    }

    void big_ones_keep_their_turn()
    {
        watched_box box;
        for (int number = 0; number < many; ++number)
            if (number % 60 == 7)
                box.put_big(number, number == 67 ? 3 << 20 : 17 << 10);
            else
                box.put(QString::number(number), noon + number);
        QStringList seen;
        for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext()) {
            const bool is_big = item->Subject().toInt() % 60 == 7;
            QVERIFY(is_big ? item->body().endsWith("xxx\nend\n") : item->body() == "Hello\n");
            seen += item->Subject();
        }
        QCOMPARE(seen, numbers(0, many));
    }

    void a_big_one_that_is_not_wanted_does_not_come()
    {
        watched_box box;
        for (int number = 0; number < 200; ++number)
            if (number % 50 == 7)
                box.put_big(number, 1 << 20);
            else
                box.put(QString::number(number), noon + number);
        const outlook::wanted_mails small{
            "small", [](const QString &, const QString &subject) { return subject.toInt() % 50 != 7; }};
        QCOMPARE(box.subjects(small).size(), 196);
        QVERIFY(box.proxy.counts().to_client < 1 << 20);
    }

    void heads_come_first_where_few_are_wanted_data()
    {
        QTest::addColumn<int>("nth");
        QTest::newRow("a tenth") << 10;
        QTest::newRow("a third") << 3;
    }
    void heads_come_first_where_few_are_wanted()
    {
        QFETCH(int, nth);
        watched_box box;
        box.put_many(many);
        QStringList wanted;
        for (int number = 0; number < many; number += nth)
            wanted += QString::number(number);
        QCOMPARE(box.subjects(each(nth)), wanted);
        QCOMPARE(box.said("INTERNALDATE BODY.PEEK[]"), 1); // the first ones, which tell
        QCOMPARE(box.said("HEADER.FIELDS"), 1);
        QCOMPARE(box.subjects(each(nth)), wanted);
        QCOMPARE(box.subjects(), numbers(0, many));
    }

    void heads_come_first_where_most_are_big()
    {
        watched_box box;
        for (int number = 0; number < 120; ++number)
            box.put_big(number, 40 << 10);
        QCOMPARE(box.subjects(no_mails()), QStringList());
        QVERIFY(box.proxy.counts().to_client < 120 * (20 << 10));
        QCOMPARE(box.subjects(), numbers(0, 120));
    }

    void moving_while_walking_skips_none()
    {
        watched_box box;
        box.put_many(3200);
        box.open();
        const auto target = box.inbox->add("Tessaly_Inbox");
        QCOMPARE(box.move_all(*target), 3200);
        QCOMPARE(box.failures(), QStringList());
        QCOMPARE(box.in_folder().size(), 3200);
        QCOMPARE(box.in_inbox().size(), 0);
    }

    // What is known is then a part, and as many mails are gone as are not known.
    void a_walk_that_ended_early_goes_on_data() { rows_of_hidden_capabilities(); }
    void a_walk_that_ended_early_goes_on()
    {
        QFETCH(QStringList, hidden);
        dovecot_options options;
        options.hidden_capabilities = hidden;
        watched_box box(options);
        box.put_many(100);
        QVERIFY(box.find());
        QVERIFY(box.items->FindNext());
        box.proxy.reset_connections();
        box.start_anew();
        const QStringList files = box.in_inbox();
        for (int number = 0; number < 50; ++number)
            QVERIFY(QFile::remove(box.server.maildir("ann") + u'/' + files.at(number)));
        QCOMPARE(box.subjects(), numbers(50, 100));
        QCOMPARE(box.items->Count(), 50);
    }

    void a_cut_between_loses_none()
    {
        for (const qint64 at : {6000, 20000, 60000, 120000}) {
            watched_box box;
            box.put_many(200);
            wire_options options;
            wire_fault cut;
            cut.kind = wire_fault::reset;
            cut.at_byte = at;
            cut.connection = 0;
            options.faults = {cut};
            box.proxy.set(options);
            QStringList seen = box.subjects();
            QCOMPARE(seen, numbers(0, int(seen.size())));
            QCOMPARE(box.subjects(), numbers(0, 200));
        }
    }

    void moves_under_way_are_heard_later()
    {
        watched_box box;
        box.put_many(60);
        box.open();
        const auto target = box.inbox->add("Tessaly_Inbox");
        box.items->let_moves_run();
        QCOMPARE(box.move_all(*target), 60);
        QTRY_COMPARE(box.in_folder().size(), 60); // nobody listens, and it happens
        box.items->finish_moves();
        QCOMPARE(box.failures(), QStringList());
        QCOMPARE(box.items->Count(), 0);
    }
};

QTEST_GUILESS_MAIN(imap_new_mails_test)
#include "imap_new_mails_test.moc"
