// The Outbox on disk keeps whole mails, and loses none, whatever happens to its files.
#include "platform/real/outbox/file_clearing.h"
#include "platform/run_time_error.h"
#include "support/maildir_files.h"
#include "support/outbox_folder.h"
#include <QTest>
#include <csignal>
#include <sys/resource.h>
#include <thread>

class outbox_damage_test : public QObject {
    Q_OBJECT
private slots:

    void a_kill_at_any_point_leaves_whole_mails_only()
    {
        program_folder folder;
        outbox::hand_over(mail_to("ann@example.net", "before"));
        die_before_disk_call(0);
        outbox::hand_over(mail_to("ann@example.net", "before"));
        const int calls = disk_calls();
        QVERIFY(calls >= 7); // two writes, three syncs, two renames
        size_t before = outbox::contents().size();
        for (int point = 1; point <= calls; ++point) {
            QVERIFY(!lives_through(point, [] { outbox::hand_over(mail_to("ann@example.net", "killed")); }));
            const auto kept = outbox::contents();
            QVERIFY(kept.size() == before || kept.size() == before + 1);
            for (const outbox::kept_mail &mail : kept) {
                QCOMPARE(mail.To, QStringList{"ann@example.net"});
                QVERIFY(bytes_of_file(folder.folder.filePath("outbox/" + mail.id + ".eml"))
                            .endsWith("A line of text.\r\n"));
            }
            before = kept.size();
        }
        QVERIFY(lives_through(calls + 1, [] { outbox::hand_over(mail_to("ann@example.net", "whole")); }));
        QCOMPARE(outbox::contents().size(), before + 1);
    }

    void leftovers_of_a_kill_go_with_the_next_mail_of_a_new_run()
    {
        program_folder folder;
        QVERIFY(QDir(folder.folder.path()).mkdir("outbox"));
        for (const char *name : {"outbox/1.eml.tmp", "outbox/1.json.tmp", "outbox/2.eml"}) {
            QFile file(folder.folder.filePath(QString::fromLatin1(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QCOMPARE(outbox::contents().size(), size_t(0));
        outbox::hand_over(mail_to("ann@example.net"));
        QCOMPARE(folder.outbox_files().size(), 2);
    }

    void a_state_that_cannot_be_read_keeps_the_mail_in_doubt_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("torn") << QByteArray("{\"state\":");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("no recipients") << QByteArray("{\"state\":\"waiting\"}");
        QTest::newRow("a list") << QByteArray("[1,2]");
        QTest::newRow("a state that nobody knows")
            << QByteArray("{\"version\":7,\"state\":\"gone fishing\",\"to\":[{\"address\":\"ann@example.net\"}]}");
    }

    void a_state_that_cannot_be_read_keeps_the_mail_in_doubt()
    {
        QFETCH(QByteArray, bytes);
        program_folder folder;
        const QString id = outbox::hand_over(mail_to("ann@example.net"));
        folder.write("outbox/" + id + ".json", bytes);
        const auto kept = outbox::contents();
        QCOMPARE(kept.size(), size_t(1));
        QCOMPARE(kept[0].state, outbox::mail_state::unknown);
        QCOMPARE(kept[0].To, QStringList{"ann@example.net"});
        QCOMPARE(outbox::count().waiting, 0);
        QCOMPARE(outbox::count().unknown, 1);
        QVERIFY(outbox::send_again(id));
        QCOMPARE(outbox::contents().at(0).state, outbox::mail_state::waiting);
    }

    void a_state_of_the_first_writing()
    {
        program_folder folder;
        QVERIFY(QDir(folder.folder.path()).mkdir("outbox"));
        folder.write("outbox/1767268800000000-a.eml", "To: ann@example.net\r\n\r\nHello\r\n");
        folder.write("outbox/1767268800000000-a.json",
                     "{\"state\":\"waiting\",\"reason\":\"\",\"kind\":\"mailing\",\"account\":\"a@b.c\","
                     "\"to\":[\"ann@example.net\"],\"subject\":\"Hello\"}");
        const auto kept = outbox::contents();
        QCOMPARE(kept.size(), size_t(1));
        QCOMPARE(kept[0].state, outbox::mail_state::waiting);
        QCOMPARE(kept[0].Kind, outbox::mail_kind::mailing);
        QCOMPARE(kept[0].To, QStringList{"ann@example.net"});
        QCOMPARE(kept[0].handed_over, QDateTime(QDate(2026, 1, 1), QTime(13, 0), Qt::UTC)); // Berlin's wall clock
    }

    void a_state_that_cannot_be_read_now_leaves_the_mail_alone()
    {
        program_folder folder;
        const QString id = outbox::hand_over(mail_to("ann@example.net"));
        outbox::hand_over(mail_to("bob@example.net"));
        const QString name = folder.folder.filePath("outbox/" + id + ".json");
        const QByteArray state = bytes_of_file(name);
        QVERIFY(QFile::remove(name));
        QVERIFY(QDir().mkdir(name)); // root reads any file, but no folder
        folder.begin_a_new_run();
        QCOMPARE(outbox::contents().size(), size_t(1));
        QCOMPARE(outbox::contents().at(0).To, QStringList{"bob@example.net"});
        QCOMPARE(outbox::count().unknown, 0);
        outbox::hand_over(mail_to("eve@example.net")); // sweeps
        QVERIFY(QDir().rmdir(name));
        folder.write("outbox/" + id + ".json", state);
        QCOMPARE(outbox::contents().size(), size_t(3));
        QCOMPARE(outbox::contents().at(0).state, outbox::mail_state::waiting);
        QVERIFY(outbox::bytes_of(id).endsWith("A line of text.\r\n"));
    }

    void no_free_file_number_is_no_damage_and_no_loss()
    {
        program_folder folder;
        for (int number = 0; number < 3; ++number)
            outbox::hand_over(mail_to("ann@example.net"));
        folder.begin_a_new_run();
        QVERIFY(lives_through(0, [] {
            rlimit limit{};
            getrlimit(RLIMIT_NOFILE, &limit);
            const rlimit none{0, limit.rlim_max};
            setrlimit(RLIMIT_NOFILE, &none);
            const size_t without = outbox::contents().size();
            setrlimit(RLIMIT_NOFILE, &limit);
            const auto kept = outbox::contents();
            const bool all_wait = outbox::count().waiting == 3 && outbox::count().unknown == 0;
            _exit(without == 0 && kept.size() == 3 && all_wait ? 0 : 1);
        }));
        QCOMPARE(folder.outbox_files().size(), 6);
    }

    void files_go_also_where_no_thread_can_be_had()
    {
        QVERIFY(lives_through(0, [] {
            QFile own("/proc/self/statm");
            if (!own.open(QIODevice::ReadOnly))
                _exit(2);
            const rlim_t pages = own.readAll().split(' ').first().toULong();
            pthread_attr_t big;
            pthread_attr_init(&big);
            pthread_attr_setstacksize(&big, 256 << 20); // stacks of threads that ended would be taken again
            pthread_setattr_default_np(&big);
            const rlim_t room = pages * rlim_t(sysconf(_SC_PAGESIZE)) + (32 << 20);
            const rlimit limit{room, room};
            setrlimit(RLIMIT_AS, &limit);
            QStringList removed;
            const auto here = std::this_thread::get_id();
            bool always_here = true;
            outbox::file_clearing clearing([&](const QString &id) {
                always_here = always_here && std::this_thread::get_id() == here;
                removed += id;
                return id != "b";
            });
            for (const char *id : {"a", "b", "c"})
                clearing.add(QString::fromLatin1(id));
            const bool all_there = removed == QStringList{"a", "b", "c"};
            _exit(all_there && always_here && !clearing.finish() ? 0 : 1);
        }));
    }

    void a_full_disk_throws_and_leaves_nothing()
    {
        program_folder folder;
        outbox::hand_over(mail_to("ann@example.net"));
        const bool told = lives_through(0, [] {
            const rlimit small{600, 600};
            signal(SIGXFSZ, SIG_IGN);
            setrlimit(RLIMIT_FSIZE, &small);
            try {
                outbox::hand_over(mail_to("ann@example.net"));
            } catch (const run_time_error &error) {
                _exit(error.number == 61 ? 0 : 1);
            }
            _exit(1);
        });
        QVERIFY(told);
        QCOMPARE(folder.outbox_files().size(), 2);
    }
};

QTEST_GUILESS_MAIN(outbox_damage_test)
#include "outbox_damage_test.moc"
