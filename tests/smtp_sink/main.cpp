// The SMTP server of the tests as a program, for benches and by hand:
//   smtp_sink --folder RECORDED [--fault final:7:close] [--refuse '*@example.net=550 5.1.1 No such user'] ...
// Says "port N" when it listens, and runs until it is told to end, or its parent has ended.
#include "support/smtp_sink.h"
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <csignal>
#include <cstdio>
#include <sys/prctl.h>

static const QStringList step_names{"connect", "ehlo", "starttls", "auth",     "mail", "rcpt",
                                    "data",    "body", "final",    "recorded", "quit"};
static const QStringList deed_names{"close", "reset", "stall", "answer"};

// STEP:MAILS:DEED or STEP:MAILS:TEXT OF AN ANSWER
static smtp_fault fault_of(const QString &text)
{
    smtp_fault fault;
    const QString deed = text.section(u':', 2);
    const qsizetype step = step_names.indexOf(text.section(u':', 0, 0));
    if (step < 0 || deed.isEmpty())
        qFatal("not a fault: %s", qPrintable(text));
    fault.at = static_cast<smtp_step>(step);
    fault.after_mails = text.section(u':', 1, 1).toInt();
    const qsizetype known = deed_names.indexOf(deed);
    fault.deed = known < 0 ? smtp_fault::answer : static_cast<smtp_fault::deed_of>(known);
    fault.text = deed.toUtf8();
    return fault;
}

static QString first_line_of(const QString &path)
{
    QFile file(path);
    if (!path.isEmpty() && !file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    return path.isEmpty() ? QString() : QString::fromUtf8(file.readLine()).remove(u'\n');
}

static void describe(QCommandLineParser &parser)
{
    parser.addHelpOption();
    parser.addOptions({{"folder", "Where mails are recorded.", "folder"},
                       {"port", "0 takes a free one.", "number", "0"},
                       {"certificate", "PEM; then STARTTLS is offered.", "file"},
                       {"key", "PEM.", "file"},
                       {"tls-at-once", "TLS from the first byte."},
                       {"user", "Nobody sends without a login.", "name"},
                       {"password-file", "Its first line.", "file"},
                       {"token-file", "For XOAUTH2: its first line.", "file"},
                       {"without", "PIPELINING, 8BITMIME, SMTPUTF8 or SIZE; may be repeated.", "name"},
                       {"size", "Most bytes of a mail.", "number"},
                       {"fault", "STEP:MAILS:close|reset|stall|TEXT; may be repeated.", "fault"},
                       {"refuse", "PATTERN=REPLY to RCPT; may be repeated.", "refusal"},
                       {"delay-ms", "Before each answer.", "number", "0"}});
}

static smtp_options options_of(const QCommandLineParser &parser)
{
    smtp_options options;
    options.folder = parser.value("folder");
    options.port = parser.value("port").toUShort();
    options.certificate = {parser.value("certificate"), parser.value("key")};
    options.tls_at_once = parser.isSet("tls-at-once");
    options.user = parser.value("user");
    options.password = first_line_of(parser.value("password-file"));
    options.token = first_line_of(parser.value("token-file"));
    const QStringList without = parser.values("without");
    options.pipelining = !without.contains("PIPELINING");
    options.eight_bit = !without.contains("8BITMIME");
    options.utf8 = !without.contains("SMTPUTF8");
    if (parser.isSet("size"))
        options.size = parser.value("size").toLongLong();
    if (without.contains("SIZE"))
        options.size = 0;
    for (const QString &each : parser.values("fault"))
        options.faults += fault_of(each);
    for (const QString &each : parser.values("refuse"))
        options.refusals += {each.section(u'=', 0, 0), each.section(u'=', 1).toUtf8()};
    options.delay = std::chrono::milliseconds(parser.value("delay-ms").toInt());
    return options;
}

int main(int count, char **words)
{
    sigset_t ends;
    sigemptyset(&ends);
    for (const int each : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&ends, each);
    ::sigprocmask(SIG_BLOCK, &ends, nullptr); // before any thread, so that only sigwait sees them
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    QCoreApplication application(count, words);
    QCommandLineParser parser;
    describe(parser);
    parser.process(application);
    const smtp_sink sink(options_of(parser));
    std::printf("port %d\n", sink.port());
    std::fflush(stdout);
    int ended_by = 0;
    ::sigwait(&ends, &ended_by);
    return 0;
}
