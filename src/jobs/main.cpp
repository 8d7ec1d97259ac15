// The headless driver: one long job of the program without a window, for tests and benches.
//   tessaly_jobs JOB --folder PROGRAM_FOLDER [--timeout SECONDS]
// The timeout is for a mail server: to be reached, and to answer. Passwords come from where the program has them.
// Status 0: done; 1: not done, a line on stderr says why; 2: a question came up. It takes the same lock and reads the
// same settings as the program.
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/start_up.h"
#include "frame/status.h"
#include "frame/store.h"
#include "jobs/deliver_job.h"
#include "jobs/fetch_job.h"
#include "jobs/job_messages.h"
#include "jobs/test_mail_client_job.h"
#include "platform/app_folder.h"
#include "platform/network.h"
#include "platform/process.h"
#include "platform/real/mail/real_mail_client.h"
#include "platform/real/mail_session/real_mail_session.h"
#include "platform/services.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QHash>
#include <cstdio>
#include <optional>

namespace {

const QHash<QString, int (*)()> jobs{
    {"deliver", deliver_job}, {"fetch", fetch_job}, {"test-mail-client", test_mail_client_job}};
constexpr int longest_timeout = 24 * 60 * 60;

int fail(const QString &why)
{
    std::fprintf(stderr, "%s\n", qPrintable(why));
    return 1;
}

QString job_names()
{
    QStringList names = jobs.keys();
    names.sort();
    return names.join(QStringLiteral(", "));
}

// Nothing where the text is no timeout; the usual one where there is no text.
std::optional<net::patience> patience_for(const QString &seconds)
{
    net::patience patience = net::present_patience();
    if (seconds.isEmpty())
        return patience;
    bool is_number = false;
    const int count = seconds.toInt(&is_number);
    if (!is_number || count < 1 || count > longest_timeout)
        return std::nullopt;
    patience.connect_ms = patience.answer_ms = count * 1000;
    return patience;
}

int run(const QString &job)
{
    real_mail_client mail_client;
    real_mail_session mail_session;
    services = {&mail_client, &mail_session, nullptr};
    switch (start_up()) {
    case start::another_instance:
        return 1;
    case start::first_run:
        return fail("The setup of this program folder has not been done.");
    case start::console:
        break;
    }
    const int status = jobs[job]();
    close_store();
    return status;
}

}

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser line;
    const QCommandLineOption folder("folder", "The program folder.", "PROGRAM_FOLDER");
    const QCommandLineOption timeout("timeout", "How long to wait for a mail server.", "SECONDS");
    line.addOption(folder);
    line.addOption(timeout);
    line.addHelpOption();
    line.addPositionalArgument("JOB", job_names());
    line.process(application);
    const QStringList words = line.positionalArguments();
    if (words.size() != 1 || !jobs.contains(words[0]) || !line.isSet(folder))
        return fail("usage: tessaly_jobs JOB --folder PROGRAM_FOLDER [--timeout SECONDS]   (JOB: " + job_names() + ")");
    const std::optional<net::patience> patience = patience_for(line.value(timeout));
    if (!patience)
        return fail("The timeout must be a number of seconds, from 1.");
    const net::patience_scope in_force(*patience);
    set_app_folder(line.value(folder));
    job_messages boxes;
    set_message_service(&boxes);
    set_status_sink([](const QString &text) { std::fprintf(stderr, "%s\n", qPrintable(text)); });
    int status = 1;
    if (!guarded("mail_module.bas", "Main", [&] { status = run(words[0]); }))
        status = fail(session.err_description);
    end_process(status);
}
