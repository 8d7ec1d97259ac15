// The check of the settings where the mail lies on this machine, and of ways out without a server.
#include "platform/app_folder.h"
#include "support/fake_sendmail.h"
#include "support/heard_steps.h"
#include "support/loopback.h"
#include "support/open_folder.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

using mail::check_state;

namespace {

mail::check_request maildir_request(const QString &path)
{
    mail::check_request request;
    request.settings.kind = mail::client_kind::maildir;
    request.settings.maildir = path;
    return request;
}

mail::check_request mbox_request(const QString &path)
{
    mail::check_request request;
    request.settings.kind = mail::client_kind::mbox;
    request.settings.mbox = path;
    return request;
}

void write_file(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

void make_maildir(const QString &path)
{
    for (const char *one : {"cur", "new", "tmp"})
        QDir().mkpath(path + '/' + one);
}

// For a while without the rights of root, which may do everything.
struct somebody_else {
    somebody_else() : was(geteuid())
    {
        if (was == 0 && seteuid(65534) != 0)
            qFatal("cannot become somebody else");
    }
    ~somebody_else()
    {
        if (seteuid(was) != 0)
            qFatal("cannot come back");
    }
    somebody_else(const somebody_else &) = delete;
    somebody_else &operator=(const somebody_else &) = delete;
    uid_t was;
};

}

class mail_client_check_local_test : public QObject {
    Q_OBJECT
private slots:

    void a_way_out_that_nobody_asked_for_ends_as_a_note_and_keeps_mail_in_the_outbox_data()
    {
        QTest::addColumn<bool>("is_guessed");
        QTest::addColumn<bool>("receives");
        QTest::newRow("only guessed") << true << true;
        QTest::newRow("asked for") << false << true;
        QTest::newRow("only guessed, where nothing works yet") << true << false;
    }

    void a_way_out_that_nobody_asked_for_ends_as_a_note_and_keeps_mail_in_the_outbox()
    {
        QFETCH(bool, is_guessed);
        QFETCH(bool, receives);
        const QTemporaryDir folder;
        make_maildir(folder.path());
        mail::check_request request = maildir_request(receives ? folder.path() : folder.filePath("none"));
        request.settings.sending = mail::send_by::smtp;
        request.settings.smtp = {"127.0.0.1", free_loopback_port(), mail::security::none, "ann@shop.example"};
        request.smtp_password = "sesame-4711";
        request.sending_is_guessed = is_guessed;
        const heard_steps heard(request);
        QCOMPARE(heard.outcome.receives, receives);
        QVERIFY(!heard.outcome.sends);
        QCOMPARE(heard.state("Sending server"), is_guessed ? check_state::warning : check_state::failed);
        QCOMPARE(heard.words("Sending server").startsWith("Sending is not set up: "), is_guessed);
        QCOMPARE(heard.outcome.found.sending, is_guessed && receives ? mail::send_by::keep : mail::send_by::smtp);
    }

    void a_maildir_that_works()
    {
        const QTemporaryDir folder;
        make_maildir(folder.path());
        write_file(folder.filePath("new/1.a.host"), "x");
        write_file(folder.filePath("cur/2.b.host:2,S"), "x");
        const heard_steps before(maildir_request(folder.path()));
        QVERIFY2(before.outcome.receives, qPrintable(before.text()));
        QVERIFY(before.words("Maildir").contains("2 mails"));
        QVERIFY(before.words("Folder Tessaly_Inbox").contains("made at the first fetch"));
        make_maildir(folder.filePath(".Tessaly_Inbox"));
        QVERIFY(heard_steps(maildir_request(folder.path())).words("Folder Tessaly_Inbox").contains("It is there"));
    }

    void a_maildir_that_does_not_work_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("words");
        QTest::newRow("not there") << "nowhere"
                                   << "There is no folder";
        QTest::newRow("closed") << "closed"
                                << "may not read";
        QTest::newRow("closed for writing") << "read_only"
                                            << "may not write";
    }
    void a_maildir_that_does_not_work()
    {
        QFETCH(QString, path);
        QFETCH(QString, words);
        const QTemporaryDir folder(folder_template("check"));
        open_to_servers(folder);
        make_maildir(folder.filePath("closed"));
        make_maildir(folder.filePath("read_only"));
        QFile::setPermissions(folder.filePath("closed"), {});
        const QFile::Permissions read = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup |
                                        QFile::ReadOther | QFile::ExeOther;
        for (const char *one : {"read_only", "read_only/cur", "read_only/new"})
            QFile::setPermissions(folder.filePath(one), read);
        const somebody_else now;
        const heard_steps heard(maildir_request(folder.filePath(path)));
        QVERIFY2(heard.words("Maildir").contains(words), qPrintable(heard.text()));
        QVERIFY(heard.state("Maildir") == check_state::failed);
        QVERIFY(!heard.outcome.receives);
    }

    // Fetching makes a Maildir of it, which may not be what the user meant.
    void a_folder_that_is_no_maildir()
    {
        const QTemporaryDir folder;
        const heard_steps empty(maildir_request(folder.path()));
        QVERIFY2(empty.state("Maildir") == check_state::good, qPrintable(empty.text()));
        write_file(folder.filePath("diary.txt"), "Dear diary\n");
        const heard_steps other(maildir_request(folder.path()));
        QVERIFY2(other.state("Maildir") == check_state::warning, qPrintable(other.text()));
        QVERIFY(other.words("Maildir").contains("is no Maildir yet"));
        QVERIFY(other.outcome.receives);
    }

    void the_program_s_own_maildir_is_made_when_it_is_needed()
    {
        const QTemporaryDir folder;
        set_app_folder(folder.path());
        const heard_steps heard(maildir_request(""));
        set_app_folder({});
        QVERIFY2(heard.outcome.receives, qPrintable(heard.text()));
        QVERIFY(heard.words("Maildir").contains("first fetch"));
        QVERIFY(!QDir(folder.filePath("mail")).exists());
    }

    void mails_of_an_mbox_file_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("words");
        const QByteArray mail = "From ann@example.org Mon Jan  1 00:00:00 2026\nSubject: x\n\nText\n";
        QTest::newRow("none") << QByteArray() << "holds no mail";
        QTest::newRow("one") << mail << "holds one mail";
        QTest::newRow("two") << mail + '\n' + mail << "holds 2 mails";
        QTest::newRow("a line From inside a text") << mail + "From here on\n"
                                                   << "holds one mail";
        QTest::newRow("with CR LF") << QByteArray(mail + '\n' + mail).replace("\n", "\r\n") << "holds 2 mails";
        for (int ahead = 0; ahead < 12; ++ahead) { // a mark on the border between two pieces that are read
            QByteArray first = mail;
            first += QByteArray(1024 * 1024 - first.size() - ahead, 'y') + "\n\n";
            QTest::addRow("a border, %d bytes ahead", ahead) << first + mail << "holds 2 mails";
        }
    }
    void mails_of_an_mbox_file()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, words);
        const QTemporaryDir folder;
        write_file(folder.filePath("inbox"), bytes);
        const heard_steps heard(mbox_request(folder.filePath("inbox")));
        QVERIFY2(heard.words("mbox file").contains(words), qPrintable(heard.text()));
        QVERIFY(heard.outcome.receives);
    }

    void an_mbox_file_that_does_not_work_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("words");
        QTest::newRow("none set") << ""
                                  << "No file is set";
        QTest::newRow("not there") << "nowhere"
                                   << "There is no file";
        QTest::newRow("a folder") << "folder"
                                  << "is a folder";
        QTest::newRow("something else") << "text"
                                        << "is no mbox file";
        QTest::newRow("closed") << "closed"
                                << "may not read";
    }
    void an_mbox_file_that_does_not_work()
    {
        QFETCH(QString, name);
        QFETCH(QString, words);
        const QTemporaryDir folder(folder_template("check"));
        open_to_servers(folder);
        QDir().mkpath(folder.filePath("folder"));
        write_file(folder.filePath("text"), "Dear diary\n");
        write_file(folder.filePath("closed"), "From x\n");
        QFile::setPermissions(folder.filePath("closed"), QFile::ReadOwner);
        QFile::setPermissions(folder.filePath("text"), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        const somebody_else now;
        const heard_steps heard(mbox_request(name.isEmpty() ? name : folder.filePath(name)));
        QVERIFY2(heard.words("mbox file").contains(words), qPrintable(heard.text()));
        QVERIFY(!heard.outcome.receives);
    }

    void sending_by_this_machine()
    {
        const fake_sendmail sendmail;
        const QByteArray path = qgetenv("PATH");
        mail::check_request request = mbox_request("");
        request.settings.sending = mail::send_by::sendmail;
        const QTemporaryDir programs;
        QVERIFY(QFile::link(sendmail.program(), programs.filePath("sendmail")));
        qputenv("PATH", QFile::encodeName(programs.path()) + ':' + path);
        const heard_steps there(request);
        qputenv("PATH", path);
        QVERIFY2(there.outcome.sends, qPrintable(there.text()));
        QVERIFY(there.words("Sending").contains(programs.path()));
        QCOMPARE(sendmail.calls().size(), 0);
    }

    void keeping_what_is_sent()
    {
        mail::check_request request = mbox_request("");
        request.settings.sending = mail::send_by::keep;
        const heard_steps heard(request);
        QVERIFY(!heard.outcome.sends);
        QVERIFY(heard.state("Sending") == check_state::warning);
        QVERIFY(heard.words("Sending").contains("Nothing goes out"));
    }

    void giving_up_in_a_long_file()
    {
        const QTemporaryDir folder;
        write_file(folder.filePath("inbox"), "From x\n\n" + QByteArray(3 * 1024 * 1024, 'y'));
        int asked = 0;
        net::patience patience;
        patience.give_up = [&asked] { return ++asked > 2; };
        const heard_steps heard(mbox_request(folder.filePath("inbox")), patience);
        QVERIFY(heard.outcome.cancelled);
        QCOMPARE(heard.steps().last(), "mbox file");
    }
};

QTEST_GUILESS_MAIN(mail_client_check_local_test)
#include "mail_client_check_local_test.moc"
