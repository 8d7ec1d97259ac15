#include "platform/real/outbox/sendmail_road.h"
#include "platform/real/mail/mail_address.h"
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <array>

namespace outbox {

namespace {

constexpr int slice_ms = 100; // how often it is asked whether to give up
constexpr qsizetype longest_words = 300;
// The statuses of sysexits.h that will not be otherwise another time: usage, data, user, host, permission.
constexpr std::array<int, 5> for_good{64, 65, 67, 68, 77};

smtp::outcome all_the_same(const QStringList &to, smtp::fate fate, const QString &words)
{
    smtp::outcome outcome;
    for (const QString &address : to)
        outcome.recipients.push_back({address, fate, words});
    return outcome;
}

QString words_of(QProcess &process)
{
    QString said = QString::fromUtf8(process.readAllStandardError()).simplified();
    for (QChar &letter : said)
        if (letter.category() == QChar::Other_Control)
            letter = u' ';
    said.truncate(longest_words);
    return said.isEmpty() ? said : QStringLiteral(" It said: ") + said;
}

// A file, not a pipe: a pipe that our own end cuts would look like a mail that is whole.
void put_with_plain_line_ends(const QByteArray &eml, QTemporaryFile &file)
{
    const QByteArray bytes = QByteArray(eml).replace("\r\n", "\n");
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush())
        throw run_time_error{61, QStringLiteral("Disk full: ") + file.fileTemplate()};
}

bool ends_in_time(QProcess &process, const net::patience &patience)
{
    const QDeadlineTimer limit(patience.answer_ms);
    while (!process.waitForFinished(slice_ms))
        if (process.state() == QProcess::NotRunning || limit.hasExpired() || (patience.give_up && patience.give_up()))
            return process.state() == QProcess::NotRunning;
    return true;
}

smtp::outcome fate_of(const QStringList &to, QProcess &process)
{
    const int status = process.exitCode();
    if (process.exitStatus() == QProcess::CrashExit)
        return all_the_same(to, smtp::fate::unknown,
                            QStringLiteral("sendmail was ended by a signal: the mail may or may not have gone.") +
                                words_of(process));
    if (status == 0)
        return all_the_same(to, smtp::fate::sent, {});
    const bool is_final = std::find(for_good.begin(), for_good.end(), status) != for_good.end();
    return all_the_same(
        to, is_final ? smtp::fate::refused : smtp::fate::later,
        QStringLiteral("sendmail ended with status %1.%2").arg(QString::number(status), words_of(process)));
}

}

QString sendmail_program()
{
    const QString name = QStringLiteral("sendmail");
    const QString found = QStandardPaths::findExecutable(name);
    if (!found.isEmpty())
        return found;
    // Mostly not in a user's search path.
    return QStandardPaths::findExecutable(name, {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/lib")});
}

smtp::outcome sendmail_road::send(const smtp::parcel &what, const std::function<void()> &last_moment,
                                  const smtp::parcel * /*next*/)
{
    if (!QFileInfo(program).isExecutable())
        throw net::failure(net::trouble::not_configured,
                           QStringLiteral("There is no %1 on this machine.")
                               .arg(program.isEmpty() ? QStringLiteral("program sendmail") : program));
    QStringList arguments{QStringLiteral("-i"), QStringLiteral("-f"), mail::wire_address(what.from),
                          QStringLiteral("--")};
    for (const QString &address : what.to)
        arguments.append(mail::wire_address(address));
    QTemporaryFile file;
    put_with_plain_line_ends(what.mail, file);
    QProcess process;
    process.setStandardInputFile(file.fileName());
    process.setStandardOutputFile(QProcess::nullDevice());
    last_moment();
    process.start(program, arguments);
    if (!process.waitForStarted())
        return all_the_same(what.to, smtp::fate::later, QStringLiteral("%1 cannot be started.").arg(program));
    if (ends_in_time(process, patience))
        return fate_of(what.to, process);
    process.kill();
    process.waitForFinished();
    return all_the_same(what.to, smtp::fate::unknown,
                        QStringLiteral("sendmail did not end in time: the mail may or may not have gone."));
}

}
