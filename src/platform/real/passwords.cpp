#include "platform/passwords.h"
#include "platform/mail_settings.h"
#include "platform/settings.h"
#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <map>
#include <memory>
#include <qt6keychain/keychain.h>

namespace passwords {

namespace {

const QString group = QStringLiteral("mail_client");

struct known {
    QString password;
    bool in_keyring = false;
};

struct password_state {
    std::map<of, known> remembered;
    std::map<of, bool> asked; // the keyring was, and has not answered yet: perhaps it waits for the user
    int longest_wait_ms = 5000;
    int generation = 0; // an answer that belongs to an older one is not remembered
} state;

QString key_in_file(of which)
{
    return which == of::mailbox ? QStringLiteral("password") : QStringLiteral("smtp_password");
}

QString key_in_keyring(of which)
{
    return which == of::mailbox ? QStringLiteral("mailbox") : QStringLiteral("sending");
}

// Without a bus there is no keyring; asking for one would start a bus that nobody else is on.
bool may_have_keyring()
{
    return QCoreApplication::instance() &&
           (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
            QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus")));
}

// Begins the job and waits for its end, or as long as one may wait. The job goes on by itself after that, and its
// answer, heard late, is still of use.
template <typename job_type, typename heard>
void run_job(job_type *job, of which, const heard &hear)
{
    job->setKey(key_in_keyring(which));
    const auto loop = std::make_shared<QEventLoop>(); // the job may be deleted while the loop still runs
    QObject::connect(job, &QKeychain::Job::finished, job, [job, loop, hear] {
        hear(*job);
        loop->quit();
    });
    QTimer::singleShot(state.longest_wait_ms, loop.get(), &QEventLoop::quit);
    job->start();
    loop->exec(QEventLoop::ExcludeUserInputEvents);
}

void ask_keyring(of which)
{
    if (!may_have_keyring() || state.asked[which])
        return;
    state.asked[which] = true;
    run_job(new QKeychain::ReadPasswordJob(QStringLiteral("Tessaly")), which,
            [which, generation = state.generation](const QKeychain::ReadPasswordJob &job) {
                if (generation != state.generation)
                    return;
                state.asked[which] = false;
                if (job.error() == QKeychain::NoError)
                    state.remembered[which] = {job.textData(), !job.textData().isEmpty()};
                else if (job.error() == QKeychain::EntryNotFound)
                    state.remembered[which] = {};
            });
}

// Whether the keyring said in time that it is done.
template <typename job_type>
bool keyring_does(job_type *job, of which)
{
    const auto done = std::make_shared<bool>(false);
    run_job(job, which, [done](const QKeychain::Job &one) {
        *done = one.error() == QKeychain::NoError || one.error() == QKeychain::EntryNotFound;
    });
    return *done;
}

bool write_to_keyring(of which, const QString &password)
{
    if (!may_have_keyring())
        return false;
    auto *job = new QKeychain::WritePasswordJob(QStringLiteral("Tessaly"));
    job->setTextData(password);
    return keyring_does(job, which);
}

void take_from_keyring(of which)
{
    if (may_have_keyring())
        keyring_does(new QKeychain::DeletePasswordJob(QStringLiteral("Tessaly")), which);
}

// The file comes first: a change-over is done only when its key is gone or new, whenever the process was killed.
QString own(of which)
{
    const QString in_file = GetSetting(group, key_in_file(which));
    if (!in_file.isEmpty())
        return in_file;
    if (!state.remembered.contains(which))
        ask_keyring(which);
    return state.remembered.contains(which) ? state.remembered[which].password : QString();
}

}

QString read(of which)
{
    const QString password = own(which);
    if (which == of::mailbox || !password.isEmpty())
        return password;
    const mail::client_settings settings = mail::read_client_settings();
    const bool same_login = settings.smtp.user.isEmpty() || settings.smtp.user == settings.incoming.user;
    return same_login ? own(of::mailbox) : QString();
}

place save(of which, const QString &password)
{
    forget_remembered();
    if (password.isEmpty()) {
        take_from_keyring(which);
        DeleteSetting(group, key_in_file(which));
        return where(which); // a keyring that did not answer still has it
    }
    if (write_to_keyring(which, password)) {
        DeleteSetting(group, key_in_file(which));
        state.remembered[which] = {password, true};
        return place::keyring;
    }
    SaveSetting(group, key_in_file(which), password);
    return place::settings_file;
}

place where(of which)
{
    if (!GetSetting(group, key_in_file(which)).isEmpty())
        return place::settings_file;
    return own(which).isEmpty() ? place::nowhere : place::keyring;
}

place will_lie()
{
    return may_have_keyring() ? place::keyring : place::settings_file;
}

void forget_remembered()
{
    state.remembered.clear();
    state.asked.clear();
    ++state.generation;
}

void set_longest_wait(int ms)
{
    state.longest_wait_ms = ms;
}

}
