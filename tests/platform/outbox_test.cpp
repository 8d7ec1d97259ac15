// The Outbox on disk: whole mails, whatever happens.
#include "platform/app_folder.h"
#include "platform/clock.h"
#include "platform/outbox.h"
#include "platform/outside_effects.h"
#include "platform/real/outbox/file_clearing.h"
#include "platform/real/outbox/sending_journal.h"
#include "platform/run_time_error.h"
#include "platform/settings.h"
#include "support/fault_points.h"
#include "support/maildir_files.h"
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct program_folder {
    program_folder() { set_app_folder(folder.path()); }
    ~program_folder() { set_app_folder({}); }
    void begin_a_new_run() const
    {
        set_app_folder("/nowhere");
        outbox::count();
        set_app_folder(folder.path());
    }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("a test's file cannot be written");
    }
    QStringList outbox_files() const { return QDir(folder.filePath("outbox")).entryList(QDir::Files, QDir::Name); }
    QTemporaryDir folder;
};

outbox::outgoing_mail mail_to(const QString &address, const QString &subject = "Hello")
{
    outbox::outgoing_mail mail;
    mail.Kind = outbox::mail_kind::mailing;
    mail.SendingAccount = "orders@example.org";
    mail.To = {address};
    mail.Subject = subject;
    mail.body = QString("A line of text.\n").repeated(100);
    return mail;
}

outbox::outgoing_mail answer_to(const QString &address)
{
    outbox::outgoing_mail mail = mail_to(address, "Re: Hello");
    mail.Kind = outbox::mail_kind::answer;
    return mail;
}

// Runs work in a child that dies before its n-th disk call; true when it lived to its end.
template <typename work>
bool lives_through(int die_before, const work &child_work)
{
    const pid_t child = fork();
    if (child == 0) {
        die_before_disk_call(die_before);
        child_work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}

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

QTEST_GUILESS_MAIN(outbox_test)
#include "outbox_test.moc"
