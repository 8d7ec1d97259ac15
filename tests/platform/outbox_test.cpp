// The Outbox on disk: whole mails, whatever happens.
#include "platform/app_folder.h"
#include "platform/outbox.h"
#include "platform/outside_effects.h"
#include "platform/settings.h"
#include "support/fault_points.h"
#include "support/maildir_files.h"
#include <QDir>
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

    void a_state_that_is_no_state_is_left_out()
    {
        program_folder folder;
        const QString id = outbox::hand_over(mail_to("ann@example.net"));
        QFile file(folder.folder.filePath("outbox/" + id + ".json"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{\"state\":");
        file.close();
        QCOMPARE(outbox::contents().size(), size_t(0));
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
