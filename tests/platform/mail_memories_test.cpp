// The files that remember mails, of POP3 mailboxes and of IMAP folders: a passing trouble costs no memory, a spoilt
// file is begun anew, and nobody but their owner may read them.
#include "platform/real/imap/mail_cache.h"
#include "platform/real/mail_session/pop3_memory.h"
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

enum class kind { pop3, imap };

// One mail a name, through whichever memory it is.
struct remembering {
    explicit remembering(kind which) : of(which) {}

    QString path() const { return folder.filePath(QStringLiteral("memory.sqlite")); }
    void keep(const QByteArray &name) const { keep_at(path(), name); }
    bool knows(const QByteArray &name) const
    {
        if (of == kind::pop3)
            return pop3::mail_memory(path(), "ann").text(name) == QString::fromUtf8(name);
        imap::mail_list list;
        imap::mail_cache(path()).read(name, list);
        return list.find(1) && list.find(1)->subject == name;
    }
    void keep_at(const QString &file, const QByteArray &name) const
    {
        if (of == kind::pop3) {
            pop3::mail_memory memory(file, "ann");
            memory.keep(name, {QString(), QString(), QString(), QDateTime(QDate(2026, 3, 4), QTime(5, 6), Qt::UTC),
                               QString(), QString()});
            memory.keep_text(name, QString::fromUtf8(name));
            memory.commit();
            return;
        }
        imap::listed_mail mail;
        mail.uid = 1;
        mail.subject = name;
        imap::mail_cache(file).write(name, {7, 2, 0}, {&mail}, {});
    }

    kind of;
    QTemporaryDir folder;
};

// Another program at the same file.
class other_hand {
public:
    explicit other_hand(const QString &path) { sqlite3_open(QFile::encodeName(path).constData(), &file); }
    ~other_hand() { sqlite3_close(file); }
    other_hand(const other_hand &) = delete;
    other_hand &operator=(const other_hand &) = delete;
    bool does(const char *sql) { return sqlite3_exec(file, sql, nullptr, nullptr, nullptr) == SQLITE_OK; }

private:
    sqlite3 *file = nullptr;
};

// No file may grow beyond this while it lives.
class small_files {
public:
    explicit small_files(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit small{bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~small_files() { setrlimit(RLIMIT_FSIZE, &before); }
    small_files(const small_files &) = delete;
    small_files &operator=(const small_files &) = delete;

private:
    rlimit before{};
};

int mode_of(const QString &path)
{
    struct stat found;
    return ::stat(QFile::encodeName(path).constData(), &found) == 0 ? int(found.st_mode & 07777) : 0;
}

mail::server server_at(int port, const QString &host = "mail.example.org")
{
    mail::server server;
    server.host = host;
    server.port = port;
    server.user = "ann";
    return server;
}

void remember(const QString &path, const QByteArray &mailbox, const QByteArray &key, const QString &subject)
{
    pop3::mail_memory memory(path, mailbox);
    memory.keep(
        key, {QString(), subject, QString(), QDateTime(QDate(2026, 3, 4), QTime(5, 6), Qt::UTC), QString(), QString()});
    memory.commit();
}

QString subject_of(pop3::mail_memory &memory, const QByteArray &key)
{
    const auto facts = memory.facts(key);
    return facts ? facts->subject : QString("(unknown)");
}

}

Q_DECLARE_METATYPE(kind)

class mail_memories_test : public QObject {
    Q_OBJECT
private slots:
    void a_locked_file_stays_data() { kinds(); }
    void a_locked_file_stays();
    void a_file_that_cannot_grow_stays_data() { kinds(); }
    void a_file_that_cannot_grow_stays();
    void what_one_fetch_keeps_it_finds_again_beside_a_lock();
    void behind_a_missed_write_no_gap_is_written();
    void a_spoilt_file_is_begun_anew_data();
    void a_spoilt_file_is_begun_anew();
    void only_the_owner_reads_it_data() { kinds(); }
    void only_the_owner_reads_it();
    void an_open_one_is_closed_to_others_data() { kinds(); }
    void an_open_one_is_closed_to_others();

    void another_usual_port_leads_to_the_same_mails();
    void another_port_leads_to_another_mailbox_data();
    void another_port_leads_to_another_mailbox();
    void what_was_remembered_with_the_port_is_taken_over();
    void what_a_mailbox_knows_itself_is_not_taken_over();

private:
    static void kinds()
    {
        QTest::addColumn<kind>("which");
        QTest::newRow("POP3") << kind::pop3;
        QTest::newRow("IMAP") << kind::imap;
    }
};

void mail_memories_test::a_locked_file_stays()
{
    QFETCH(kind, which);
    const remembering site(which);
    site.keep("one");
    {
        other_hand other(site.path());
        QVERIFY(other.does("begin immediate; create table other(x)"));
        site.keep("two");
        QVERIFY(other.does("commit")); // of the very file that is there
    }
    QVERIFY(other_hand(site.path()).does("select * from other"));
    QVERIFY(site.knows("one"));
    QVERIFY(!site.knows("two"));
    site.keep("three");
    QVERIFY(site.knows("three"));
}

void mail_memories_test::a_file_that_cannot_grow_stays()
{
    QFETCH(kind, which);
    const remembering site(which);
    site.keep("one");
    {
        const other_hand reader(site.path()); // what the memory wrote lies beside the file as long as somebody has it
        const small_files in_force(20000);
        site.keep(QByteArray(100000, 'x'));
    }
    QVERIFY(site.knows("one"));
    QVERIFY(!site.knows(QByteArray(100000, 'x')));
    site.keep("three");
    QVERIFY(site.knows("three"));
}

void mail_memories_test::what_one_fetch_keeps_it_finds_again_beside_a_lock()
{
    const remembering site(kind::pop3);
    site.keep("one");
    other_hand other(site.path());
    QVERIFY(other.does("begin immediate"));
    pop3::mail_memory memory(site.path(), "ann");
    memory.keep("two", {"bob@example.net", "Two", "ann@example.org", QDateTime(), QString(), QString()});
    memory.commit();
    QCOMPARE(memory.keys(), QSet<QByteArray>{"two"});
    QCOMPARE(memory.facts("two")->subject, "Two");
}

// The number of mails tells whether a list is right; a list with a gap and a mail too many would pass.
void mail_memories_test::behind_a_missed_write_no_gap_is_written()
{
    const remembering site(kind::imap);
    imap::listed_mail first, second, third;
    first.uid = 1;
    second.uid = 2;
    third.uid = 3;
    imap::mail_list list;
    imap::mail_cache cache(site.path());
    cache.write("INBOX", {7, 2, 10}, {&first}, {});
    {
        other_hand other(site.path());
        QVERIFY(other.does("begin immediate"));
        cache.write("INBOX", {7, 3, 11}, {&second}, {1});
    }
    cache.write("INBOX", {7, 4, 12}, {&third}, {});
    QCOMPARE(imap::mail_cache(site.path()).read("INBOX", list), (imap::folder_state{7, 2, 10}));
    QVERIFY(list.find(1) && !list.find(2) && !list.find(3));

    QCOMPARE(cache.read("INBOX", list), (imap::folder_state{7, 2, 10}));
    cache.write("INBOX", {7, 4, 12}, {&second, &third}, {1});
    QCOMPARE(imap::mail_cache(site.path()).read("INBOX", list), (imap::folder_state{7, 4, 12}));
    QVERIFY(!list.find(1) && list.find(2) && list.find(3));
}

void mail_memories_test::a_spoilt_file_is_begun_anew_data()
{
    QTest::addColumn<kind>("which");
    QTest::addColumn<QByteArray>("left");
    for (const auto &[name, which] : {std::pair("POP3", kind::pop3), std::pair("IMAP", kind::imap)}) {
        const QByteArray of = QByteArray(" of ") + name;
        QTest::newRow("no database" + of) << which << QByteArray("a letter\n").repeated(100);
        QTest::newRow("the head of one" + of)
            << which << QByteArray("SQLite format 3\0", 16) + QByteArray(4080, '\x55');
        QTest::newRow("other tables" + of) << which << QByteArray();
    }
}

void mail_memories_test::a_spoilt_file_is_begun_anew()
{
    QFETCH(kind, which);
    QFETCH(QByteArray, left);
    const remembering site(which);
    if (left.isEmpty()) {
        QVERIFY(other_hand(site.path()).does("create table mail(x); create table folder(x)"));
    } else {
        QFile file(site.path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(left);
    }
    QVERIFY(!site.knows("one"));
    site.keep("one");
    QVERIFY(site.knows("one"));
    QCOMPARE(mode_of(site.path()), 0600);
}

void mail_memories_test::only_the_owner_reads_it()
{
    QFETCH(kind, which);
    const remembering site(which);
    const mode_t before = ::umask(0);
    site.keep("one");
    QCOMPARE(mode_of(site.path()), 0600);
    // One of looser days.
    QVERIFY(QFile::setPermissions(site.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    QVERIFY(site.knows("one"));
    QCOMPARE(mode_of(site.path()), 0600);
    ::umask(before);
}

void mail_memories_test::an_open_one_is_closed_to_others()
{
    QFETCH(kind, which);
    const remembering site(which);
    const mode_t before = ::umask(0);
    site.keep("one");
    const other_hand other(site.path());
    other_hand reader(site.path());
    QVERIFY(reader.does("begin; select * from mail")); // keeps what lies beside the file there
    site.keep("two");
    QCOMPARE(mode_of(site.path() + "-wal"), 0600);
    QCOMPARE(mode_of(site.path() + "-shm"), 0600);
    ::umask(before);
}

void mail_memories_test::another_usual_port_leads_to_the_same_mails()
{
    const QByteArray plain = pop3::name_of_mailbox(server_at(110));
    QCOMPARE(pop3::name_of_mailbox(server_at(995)), plain);
    QCOMPARE(pop3::name_of_mailbox(server_at(0)), plain);
    QCOMPARE(pop3::name_of_mailbox(server_at(995, " Mail.Example.ORG ")), plain);
}

void mail_memories_test::another_port_leads_to_another_mailbox_data()
{
    QTest::addColumn<int>("port");
    QTest::addColumn<QString>("host");
    QTest::newRow("the end of a tunnel") << 1110 << "mail.example.org";
    QTest::newRow("the end of another tunnel") << 2110 << "mail.example.org";
    QTest::newRow("another host") << 995 << "pop.example.org";
}

void mail_memories_test::another_port_leads_to_another_mailbox()
{
    QFETCH(int, port);
    QFETCH(QString, host);
    const QByteArray name = pop3::name_of_mailbox(server_at(port, host));
    QVERIFY(name != pop3::name_of_mailbox(server_at(995)));
    QVERIFY(name != pop3::name_of_mailbox(server_at(3110)));
    if (host == "mail.example.org")
        QCOMPARE(pop3::former_names_of_mailbox(server_at(port, host)), QByteArrayList());
}

void mail_memories_test::what_was_remembered_with_the_port_is_taken_over()
{
    const remembering site(kind::pop3);
    remember(site.path(), "mail.example.org\n110\nann", "one", "of 110");
    remember(site.path(), "mail.example.org\n995\nann", "two", "of 995");
    remember(site.path(), "mail.example.org\n995\nbob", "three", "of another user");
    for (int time = 1; time <= 2; ++time) { // the second time there is nothing left to take over
        pop3::mail_memory memory(site.path(), pop3::name_of_mailbox(server_at(995)));
        for (const QByteArray &former : pop3::former_names_of_mailbox(server_at(995)))
            memory.take_over(former);
        QCOMPARE(memory.keys(), (QSet<QByteArray>{"one", "two"}));
        QCOMPARE(subject_of(memory, "one"), QString("of 110"));
        QCOMPARE(subject_of(memory, "two"), QString("of 995"));
        memory.commit();
    }
    pop3::mail_memory another(site.path(), "mail.example.org\n995\nbob");
    QCOMPARE(subject_of(another, "three"), QString("of another user"));
}

void mail_memories_test::what_a_mailbox_knows_itself_is_not_taken_over()
{
    const remembering site(kind::pop3);
    remember(site.path(), pop3::name_of_mailbox(server_at(110)), "one", "its own");
    remember(site.path(), "mail.example.org\n110\nann", "one", "the former");
    pop3::mail_memory memory(site.path(), pop3::name_of_mailbox(server_at(110)));
    memory.take_over("mail.example.org\n110\nann");
    QCOMPARE(subject_of(memory, "one"), QString("its own"));
}

QTEST_GUILESS_MAIN(mail_memories_test)
#include "mail_memories_test.moc"
