// An IMAP server that lies, at each step of a fetch: the fetch ends in time, cleanly, in bounded memory, and stores
// nothing but the mails that the server gave. Lines that break: imap_fault_test.cpp.
#include "platform/real/imap/imap_folder.h"
#include "support/imap_fault_site.h"
#include "support/in_lanes.h"
#include "support/mailbox.h"
#include "support/scripted_server.h"

#include <QElapsedTimer>
#include <QTest>
#include <sys/resource.h>

using namespace scripted;

namespace {

constexpr qint64 grace_ms = 5000;
#ifdef __SANITIZE_ADDRESS__
constexpr long most_kib = 768 * 1024; // the sanitizer keeps what was freed
#else
constexpr long most_kib = 256 * 1024; // 32 MiB of literals, a buffer that doubled, and the program itself
#endif

enum step { greeting, capability, login, shape, selecting, heads, folders, other_folders, noop, bodies, moves, steps };

QByteArray literal(const QByteArray &bytes)
{
    return '{' + QByteArray::number(bytes.size()) + "}\r\n" + bytes;
}

QByteArray head(int number, const QByteArray &uid)
{
    return "* " + QByteArray::number(number) + " FETCH (UID " + uid + " INTERNALDATE \"01-Jan-2026 12:00:0" +
           QByteArray::number(number % 10) + " +0000\" RFC822.SIZE 200 BODY[HEADER.FIELDS (TO SUBJECT)] " +
           literal("To: orders@example.org\r\nSubject: Order form\r\n\r\n") + ")\r\n";
}

QByteArray body(int number, const QByteArray &uid)
{
    return "* " + QByteArray::number(number) + " FETCH (UID " + uid + " BODY[] " +
           literal("To: orders@example.org\r\nFrom: bob@example.net\r\nSubject: Order form\r\n\r\n" +
                   order_body(number).toUtf8().replace("\n", "\r\n")) +
           ")\r\n";
}

// What an honest server with two mails says; "%t OK done" ends each answer.
QByteArray honest(int at)
{
    switch (at) {
    case greeting:
        return "* OK hello\r\n";
    case capability:
        return "* CAPABILITY IMAP4rev1 SASL-IR AUTH=PLAIN\r\n%t OK done\r\n";
    case login:
        return "%t OK [CAPABILITY IMAP4rev1 MOVE UIDPLUS] in\r\n";
    case shape:
        return "* LIST (\\Noselect) \".\" \"\"\r\n%t OK done\r\n";
    case selecting:
        return "* 2 EXISTS\r\n* OK [UIDVALIDITY 7] .\r\n* OK [UIDNEXT 3] .\r\n%t OK [READ-WRITE] done\r\n";
    case heads:
        return head(1, "1") + head(2, "2") + "%t OK done\r\n";
    case other_folders:
        return "* LIST () \".\" Tessaly_Inbox\r\n%t OK done\r\n";
    case bodies:
        return body(1, "1") + body(2, "2") + "%t OK done\r\n";
    case moves:
        return "%t OK [COPYUID 9 1:2 1:2] done\r\n";
    default:
        return "%t OK done\r\n";
    }
}

script honest_until(int at)
{
    script steps;
    for (int each = 0; each < at; ++each) {
        if (each > greeting)
            steps += expect("");
        steps += say(honest(each));
    }
    return at > greeting ? steps += expect("") : steps;
}

script lie_instead(int at, const QByteArray &lie)
{
    return honest_until(at) << say(lie) << answer_all("%t OK fine\r\n");
}

script lie_before(int at, const QByteArray &lie)
{
    script all = honest_until(at);
    all << say(lie + honest(at));
    for (int each = at + 1; each < steps; ++each)
        all << expect("") << say(honest(each));
    return all << answer_all("%t OK fine\r\n");
}

script talk_for_ever(int at, const QByteArray &text)
{
    return honest_until(at) << say_for_ever(text);
}

// Of the hungriest child so far.
long peak_kib()
{
    rusage used{};
    ::getrusage(RUSAGE_CHILDREN, &used);
    return used.ru_maxrss;
}

enum class outcome { good, failed, either };
using enum outcome;

struct lie {
    QString name;
    script lies;
    outcome wanted;
};

}

class imap_hostile_test : public QObject {
    Q_OBJECT
private slots:
    void no_lie_harms();
    void cancel_ends_endless_talk();

private:
    static QString what_is_wrong(const lie &one);
    void harmless_lies();
    void deadly_lies();
    void odd_lies();
    void endless_lies();
    void moving_lies();
    QList<lie> all;
};

void imap_hostile_test::harmless_lies()
{
    all += lie{"none", lie_before(greeting, {}), good};
    all += lie{"mails never asked for", lie_before(bodies, body(7, "77") + head(8, "88")), good};
    all += lie{"a mail twice", lie_before(bodies, body(1, "1")), good};
    all += lie{"an answer without UID", lie_before(bodies, "* 1 FETCH (FLAGS (\\Seen))\r\n"), good};
    all += lie{"answers to nobody", lie_before(bodies, "x77 OK done\r\nt999 NO never\r\n"), good};
    all += lie{"NUL bytes", lie_before(noop, QByteArray("* OK a\0b\0\r\n", 11)), good};
    all += lie{"a folder in broken modified UTF-7",
               lie_before(other_folders, "* LIST () \".\" \"&\"\r\n* LIST () \".\" \"&AAA&-&!!!-\"\r\n"), good};
    all += lie{"a folder with control characters",
               lie_before(other_folders, "* LIST () \".\" \"a\x01\x7f b\"\r\n* LIST () \".\" {3}\r\na\r\n\r\n"), good};
}

void imap_hostile_test::deadly_lies()
{
    all += lie{"a literal of 4 GiB", lie_instead(bodies, "* 1 FETCH (UID 1 BODY[] {4294967296}\r\nabc"), failed};
    all += lie{"a literal of all numbers",
               lie_instead(bodies, "* 1 FETCH (UID 1 BODY[] {99999999999999999999999}\r\nabc"), failed};
    all += lie{"a line of 10 MiB", lie_instead(heads, "* 1 FETCH (" + QByteArray(10 << 20, 'a')), failed};
    all += lie{"a million parentheses",
               lie_instead(heads, "* 1 FETCH " + QByteArray(1 << 20, '(') + "\r\n%t OK done\r\n"), failed};
    all += lie{"4294967295 mails",
               lie_instead(selecting, "* 4294967295 EXISTS\r\n* OK [UIDVALIDITY 7] .\r\n%t OK done\r\n"), failed};
    all += lie{"no IMAP at all", lie_instead(greeting, "220 hello\r\n"), failed};
    all += lie{"a page of the web", lie_instead(heads, "<html>\r\n<p>%t OK\r\n"), failed};
    all += lie{"SELECT refused", lie_instead(selecting, "%t NO not today\r\n"), failed};
    for (int at = capability; at < moves; ++at)
        all += lie{QString("goodbye at step %1").arg(at), (honest_until(at) << say("* BYE enough\r\n") << hang_up()),
                   (at < folders ? failed : either)};
}

void imap_hostile_test::odd_lies()
{
    const QByteArray end = "%t OK done\r\n";
    all += lie{"UIDs that descend", lie_instead(heads, head(1, "2") + head(2, "1") + end), either};
    all += lie{"a UID twice", lie_instead(heads, head(1, "1") + head(2, "1") + end), either};
    all += lie{"UID zero", lie_instead(heads, head(1, "0") + head(2, "0") + end), either};
    all += lie{"UIDs over 32 bits", lie_instead(heads, head(1, "4294967296") + head(2, "18446744073709551617") + end),
               either};
    all += lie{"the last UID of all", lie_instead(heads, head(1, "1") + head(2, "4294967295") + end), either};
    all += lie{"logged in already", lie_instead(greeting, "* PREAUTH [CAPABILITY IMAP4rev1] in\r\n"), either};
    all +=
        lie{"more mails than told", lie_instead(selecting, "* 1 EXISTS\r\n* OK [UIDVALIDITY 7] .\r\n" + end), either};
    all += lie{"nothing is done", lie_instead(greeting, "* OK hello\r\n"), either};
    all += lie{"UIDs found that nobody can list",
               (honest_until(heads) << say(end) << answer_all("* SEARCH 1:4294967295\r\n%t OK done\r\n")), either};
}

void imap_hostile_test::endless_lies()
{
    all += lie{"talk before the login without end", talk_for_ever(login, "* OK wait\r\n"), failed};
    all += lie{"talk without end", talk_for_ever(heads, "* OK wait\r\n"), failed};
    all += lie{"talk of the bodies without end", talk_for_ever(bodies, "* OK wait\r\n"), failed};
    all += lie{"a count without end", talk_for_ever(noop, "* 2 EXISTS\r\n"), failed};
    all += lie{"a mail without end", talk_for_ever(bodies, body(2, "2")), failed};
    all += lie{"one list without end", talk_for_ever(folders, "* LIST () \".\" INBOX.a\r\n"), failed};
    all += lie{"heads without end", talk_for_ever(heads, head(1, "1") + head(2, "2") + head(3, "3")), failed};
    all += lie{"a literal without end",
               (honest_until(bodies) << say("* 1 FETCH (UID 1 BODY[] {200000000}\r\n")
                                     << say_for_ever(QByteArray(65536, 'a'))),
               failed};
    all += lie{"answers to nobody without end", talk_for_ever(heads, "x1 OK done\r\n"), failed};
    all += lie{"moved without end", talk_for_ever(moves, "* OK [COPYUID 9 1:2 1:2] .\r\n"), failed};
}

void imap_hostile_test::moving_lies()
{
    all += lie{"moving refused", lie_instead(moves, "%t NO not today\r\n"), failed};
    all += lie{"moving not understood", lie_instead(moves, "%t BAD what\r\n"), failed};
    all += lie{"moved others", lie_instead(moves, "%t OK [COPYUID 9 8:9 8:9] done\r\n"), failed};
    all += lie{"moved everything", lie_instead(moves, "%t OK [COPYUID 9 1:4294967295 1:4294967295] done\r\n"), good};
}

// "" when the fetch ends as it should.
QString imap_hostile_test::what_is_wrong(const lie &one)
{
    const imap_program site;
    scripted_server server(one.lies);
    const timed_run fetched = site.fetch(server.port);
    const QString told = QString("\n%1\nafter %2 ms\n").arg(fetched.run.errors).arg(fetched.ms) +
                         QString::fromUtf8(server.received().left(2000));
    const int status = fetched.run.status;
    if ((status != 0 && status != 1) || (one.wanted != either && status != (one.wanted == good ? 0 : 1)))
        return QString("ended with %1: ").arg(status) + told;
    if (status == 1 && fetched.run.errors.isEmpty())
        return "failed without a word: " + told;
    if (fetched.ms > imap_program::timeout_seconds * 1000 + grace_ms)
        return "took too long: " + told;
    const QStringList stored = site.stored_bodies(), given{order_body(1), order_body(2)};
    const bool all = stored == given;
    const bool is_part = all || stored == given.mid(0, 1) || stored == given.mid(1) || stored.isEmpty();
    if (!is_part || (one.wanted == good && !all))
        return "stored " + stored.join("; ") + told;
    return site.store_damage();
}

void imap_hostile_test::no_lie_harms()
{
    harmless_lies();
    deadly_lies();
    odd_lies();
    endless_lies();
    moving_lies();
    const QStringList wrong = in_lanes(int(all.size()), [this](int number) {
        const QString found = what_is_wrong(all[number]);
        return found.isEmpty() ? found : all[number].name + ": " + found;
    });
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join("\n\n")));
    QVERIFY2(peak_kib() < most_kib, QByteArray::number(qint64(peak_kib())) + " KiB");
    qInfo("%d lies, the hungriest fetch took %ld KiB", int(all.size()), peak_kib());
}

void imap_hostile_test::cancel_ends_endless_talk()
{
    const QTemporaryDir folder;
    scripted_server server(talk_for_ever(heads, "* OK wait\r\n"));
    net::place place;
    place.server = {"127.0.0.1", server.port, mail::security::none, "ann"};
    place.password = "apple tree";
    const auto account = std::make_shared<imap::account_memory>(
        "ann@test", [place] { return place; }, folder.filePath("mailcache.sqlite"));
    QElapsedTimer taken;
    taken.start();
    net::patience patience;
    patience.give_up = [&taken] { return taken.elapsed() > 500; };
    const net::patience_scope in_force(patience);
    std::optional<run_time_error> failure;
    try {
        imap::application(account).GetNamespace("MAPI")->GetDefaultFolder();
    } catch (const run_time_error &met) {
        failure = met;
    }
    QVERIFY(failure && net::is(*failure, net::trouble::cancelled));
    QVERIFY2(taken.elapsed() < 3000, QByteArray::number(taken.elapsed()));
}

QTEST_GUILESS_MAIN(imap_hostile_test)
#include "imap_hostile_test.moc"
