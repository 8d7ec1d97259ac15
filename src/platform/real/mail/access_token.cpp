#include "platform/real/mail/access_token.h"
#include <QElapsedTimer>
#include <QMutex>
#include <QProcess>
#include <algorithm>
#include <csignal>
#include <unistd.h>

namespace mail {

namespace {

constexpr qint64 longest_life_ms = 50 * 60 * 1000; // most providers give an hour
constexpr int slice_ms = 50;
constexpr qsizetype most_printed = 64 * 1024;
constexpr qsizetype longest_words = 200;

struct token_state {
    QMutex mutex;
    QString command, token;
    QElapsedTimer since;
} state;

QString remembered_token(const QString &command)
{
    const QMutexLocker lock(&state.mutex);
    const bool fresh = state.since.isValid() && state.since.elapsed() < longest_life_ms;
    return fresh && state.command == command ? state.token : QString();
}

void remember(const QString &command, const QString &token)
{
    const QMutexLocker lock(&state.mutex);
    state.command = command;
    state.token = token;
    state.since.start();
}

QString first_line(const QByteArray &text)
{
    return QString::fromUtf8(text.trimmed().split('\n').constFirst()).trimmed();
}

QString printable(QString words)
{
    for (QChar &letter : words)
        if (letter.category() == QChar::Other_Control)
            letter = u' ';
    return words.left(longest_words);
}

bool is_token(const QString &text)
{
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](QChar letter) { return letter > u' ' && letter < u'\x7f'; });
}

class command_run {
public:
    command_run()
    {
        process.setStandardInputFile(QProcess::nullDevice());
        process.setChildProcessModifier([] { setpgid(0, 0); }); // what the shell starts shall end with it
    }
    ~command_run() { end(); }
    command_run(const command_run &) = delete;
    command_run &operator=(const command_run &) = delete;

    void run(const QString &command, const net::patience &patience)
    {
        QElapsedTimer since;
        since.start();
        process.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command});
        while (process.state() != QProcess::NotRunning && !process.waitForFinished(slice_ms)) {
            take_output();
            if (patience.give_up && patience.give_up())
                throw net::failure(net::trouble::cancelled, QStringLiteral("Cancelled."));
            if (since.elapsed() > patience.connect_ms || printed.size() > most_printed)
                throw net::failure(
                    net::trouble::timed_out,
                    QStringLiteral("The command that fetches the access token did not come to an end in time."));
        }
        take_output();
    }

    QProcess process;
    QByteArray printed, complained;

private:
    void take_output()
    {
        printed += process.readAllStandardOutput();
        complained = (complained + process.readAllStandardError()).left(most_printed);
    }

    void end()
    {
        if (process.state() == QProcess::NotRunning)
            return;
        kill(-pid_t(process.processId()), SIGKILL);
        process.waitForFinished();
    }
};

QString why_none(const command_run &run)
{
    const QProcess &process = run.process;
    const QString complaint = printable(first_line(run.complained));
    const QString said = complaint.isEmpty() ? QString() : QStringLiteral(" It said: ") + complaint;
    if (process.error() == QProcess::FailedToStart)
        return QStringLiteral("The command that fetches the access token cannot be started.");
    if (process.exitStatus() == QProcess::CrashExit)
        return QStringLiteral("The command that fetches the access token was ended by a signal.") + said;
    if (process.exitCode() != 0)
        return QStringLiteral("The command that fetches the access token ended with status %1.%2")
            .arg(QString::number(process.exitCode()), said);
    return QStringLiteral("The command that fetches the access token printed none.") + said;
}

bool ended_well(const QProcess &process)
{
    return process.error() != QProcess::FailedToStart && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

}

QString access_token(const client_settings &settings, const net::patience &patience)
{
    const QString command = settings.token_command;
    if (command.trimmed().isEmpty())
        throw net::failure(net::trouble::not_configured, QStringLiteral("There is no access token."));
    const QString known = remembered_token(command);
    if (!known.isEmpty())
        return known;
    command_run run;
    run.run(command, patience);
    const QString token = first_line(run.printed);
    if (!ended_well(run.process) || !is_token(token))
        throw net::failure(net::trouble::not_configured, why_none(run));
    remember(command, token);
    return token;
}

void access_token_refused(const QString &token)
{
    const QMutexLocker lock(&state.mutex);
    if (state.token == token)
        state.token.clear();
}

void set_login(net::place &place, const client_settings &settings, const QString &password,
               const net::patience &patience)
{
    if (!settings.use_token)
        place.password = password;
    else if (settings.token_command.trimmed().isEmpty())
        place.token = password.trimmed();
    else
        place.token = access_token(settings, patience);
    if (settings.use_token && place.token.isEmpty())
        throw net::failure(net::trouble::not_configured, QStringLiteral("There is no access token."));
}

}
