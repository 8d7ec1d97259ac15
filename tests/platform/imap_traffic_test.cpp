// What goes over the line, and what does not go a second time; the cache on disk. The walk: imap_test.cpp.
#include "support/watched_imap_box.h"
#include <QFile>
#include <QTest>

class imap_traffic_test : public QObject {
    Q_OBJECT
private slots:

    void an_unchanged_inbox_costs_one_round_trip()
    {
        watched_imap_box box;
        box.put_many(50);
        QCOMPARE(box.subjects(no_mails()), QStringList());
        box.proxy.forget();
        box.open();
        QCOMPARE(box.inbox->Folders().size(), 0u);
        box.proxy.forget(); // the folders are listed once a connection
        box.open();
        QCOMPARE(box.inbox->Folders().size(), 0u);
        QCOMPARE(box.items->Count(), 50);
        QCOMPARE(box.subjects(no_mails()), QStringList());
        QCOMPARE(box.proxy.counts().round_trips, 1);
        QCOMPARE(box.proxy.counts().connections, 0);
    }

    void five_hundred_new_mails_cost_few_round_trips()
    {
        watched_imap_box box;
        box.put_many(1500);
        box.open();
        box.inbox->Folders();
        const auto target = box.inbox->add("Tessaly_Inbox");
        QCOMPARE(box.move_all(*target), 1500);
        QCOMPARE(box.failures(), QStringList());
        QVERIFY2(box.proxy.counts().round_trips <= 28, qPrintable(QString::number(box.proxy.counts().round_trips)));
    }

    void a_new_process_asks_for_no_head_again_data() { rows_of_hidden_capabilities(); }
    void a_new_process_asks_for_no_head_again()
    {
        QFETCH(QStringList, hidden);
        dovecot_options options;
        options.hidden_capabilities = hidden;
        watched_imap_box box(options);
        box.put_many(30);
        QCOMPARE(box.subjects().size(), 30);
        box.start_anew();
        box.proxy.forget();
        QCOMPARE(box.subjects().size(), 30);
        QCOMPARE(box.said("HEADER.FIELDS"), 0);
        QCOMPARE(box.said("SEARCH"), 0);
    }

    void what_changed_while_nobody_looked_is_seen_data() { rows_of_hidden_capabilities(); }
    void what_changed_while_nobody_looked_is_seen()
    {
        QFETCH(QStringList, hidden);
        dovecot_options options;
        options.hidden_capabilities = hidden;
        imap_box box(options);
        box.put_many(4);
        QCOMPARE(box.subjects(), QStringList({"0", "1", "2", "3"}));
        box.start_anew();
        QVERIFY(QFile::remove(box.server.maildir("ann") + u'/' + box.in_inbox().at(1)));
        box.put("4", noon + 4);
        QCOMPARE(box.subjects(), QStringList({"0", "2", "3", "4"}));
        QCOMPARE(box.items->Count(), 4);
    }

    void the_cache_may_be_gone_or_damaged()
    {
        imap_box box;
        box.put_many(3);
        QCOMPARE(box.subjects().size(), 3);
        box.start_anew();
        for (const char *name : {"", "-wal", "-shm"})
            QFile::remove(box.cache_path() + QLatin1String(name));
        QCOMPARE(box.subjects().size(), 3);
        box.start_anew();
        for (const char *name : {"", "-wal"}) {
            QFile file(box.cache_path() + QLatin1String(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(8192, '?'));
        }
        QCOMPARE(box.subjects(), QStringList({"0", "1", "2"}));
        box.start_anew();
        QCOMPARE(box.subjects(), QStringList({"0", "1", "2"}));
    }

    void the_time_of_the_first_sight_stays()
    {
        imap_box box;
        box.put("one");
        const QDateTime first = box.find()->ReceivedTime();
        box.start_anew();
        const QByteArray zone = qgetenv("TZ");
        qputenv("TZ", "America/New_York");
        tzset();
        const QDateTime second = box.find()->ReceivedTime();
        qputenv("TZ", zone);
        tzset();
        QCOMPARE(second, first);
    }

    void another_uidvalidity_drops_what_was_known()
    {
        imap_box box;
        box.put_many(3);
        QCOMPARE(box.subjects().size(), 3);
        box.server.stop();
        for (const char *name : {"/dovecot-uidlist", "/dovecot.index", "/dovecot.index.log", "/dovecot.index.cache",
                                 "/dovecot-uidvalidity"})
            QFile::remove(box.server.maildir("ann") + QLatin1String(name));
        const QString first = box.in_inbox().first();
        QVERIFY(QFile::remove(box.server.maildir("ann") + u'/' + first));
        QTest::qWait(1100); // the server takes the second of its clock for the new one
        box.server.start();
        QCOMPARE(box.subjects(), QStringList({"1", "2"}));
        QCOMPARE(box.failures(), QStringList());
    }

    void a_cut_ends_the_walk_as_one_failure_and_the_next_goes_on()
    {
        watched_imap_box box;
        box.put_many(600);
        box.open();
        const auto target = box.inbox->add("Tessaly_Inbox");
        int seen = 0;
        for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext()) {
            item->Move(*target);
            if (++seen == 100)
                box.proxy.reset_connections();
        }
        QVERIFY(box.failures().size() <= 1);
        // The server goes on with what it was asked for behind the cut; meanwhile a mail is in both folders.
        const auto both = [&] { return box.in_inbox().size() + box.in_folder().size(); };
        QTRY_VERIFY(box.server.log().contains("imap(ann)") && box.server.log().contains("Disconnected") &&
                    both() == 600);
        const qsizetype moved = box.in_folder().size();
        box.open();
        QCOMPARE(box.move_all(*target), 600 - moved);
        QCOMPARE(box.in_folder().size(), 600);
        QCOMPARE(box.in_inbox().size(), 0);
        QCOMPARE(box.failures(), QStringList());
    }

    void a_cut_while_moving_is_no_failure_of_what_moved()
    {
        for (const qint64 at : {900, 1000, 1050, 1100, 1150, 1200, 1300}) {
            watched_imap_box box;
            box.put_many(3);
            wire_options options;
            wire_fault cut;
            cut.kind = wire_fault::reset;
            cut.direction = wire::to_client;
            cut.at_byte = 2 * at;
            cut.connection = 0;
            options.faults = {cut};
            box.proxy.set(options);
            try {
                box.open();
                const auto target = box.inbox->add("Tessaly_Inbox");
                box.move_all(*target);
            } catch (const run_time_error &failure) {
                QVERIFY2(net::is_network_failure(failure), qPrintable(failure.description));
            }
            QCOMPARE(box.in_inbox().size() + box.in_folder().size(), 3);
            box.open();
            box.inbox->Folders();
            box.move_all(*box.inbox->add("Tessaly_Inbox"));
            QCOMPARE(box.in_folder().size(), 3);
        }
    }

    void a_server_that_stalls_is_left_in_time()
    {
        for (const qint64 at : {0, 300, 1500}) {
            watched_imap_box box;
            box.put_many(3);
            wire_options options;
            wire_fault stall;
            stall.kind = wire_fault::stall;
            stall.at_byte = at;
            options.faults = {stall};
            box.proxy.set(options);
            net::patience patience;
            patience.connect_ms = patience.answer_ms = 300;
            const net::patience_scope scope(patience);
            QElapsedTimer since;
            since.start();
            QStringList told;
            try {
                box.subjects();
                told = box.failures();
            } catch (const run_time_error &failure) {
                told = QStringList{failure.description};
                QCOMPARE(failure.number, quint32(net::trouble::timed_out));
            }
            QCOMPARE(told.size(), 1);
            QVERIFY(since.elapsed() < 5000);
        }
    }
};

QTEST_GUILESS_MAIN(imap_traffic_test)
#include "imap_traffic_test.moc"
