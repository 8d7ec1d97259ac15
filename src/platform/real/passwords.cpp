#include "platform/passwords.h"
#include "platform/mail_settings.h"
#include "platform/network.h"
#include "platform/settings.h"
#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QPointer>
#include <QTimer>
#include <map>
#include <memory>
#include <qt6keychain/keychain.h>

namespace passwords {

namespace {

const QString group = QStringLiteral("mail_client");
constexpr int cancel_ms = 50;

struct known {
    QString password;
    bool in_keyring = false;
};

struct password_state {
    std::map<of, known> remembered;
    std::map<of, bool> asked; // the keyring was, and has not answered yet: perhaps it waits for the user
    std::vector<std::function<void()>> waiters; // of ask: called when nothing is asked any more
    int longest_wait_ms = 5000;
    int generation = 0;     // an answer that belongs to an older one is not remembered
    bool is_silent = false; // it let one wait in vain, and has said nothing since
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

// The job goes on by itself when nobody waits for it any more, and its answer, heard late, is still of use.
template <typename job_type, typename heard>
job_type *begin_job(job_type *job, of which, const heard &hear)
{
    job->setKey(key_in_keyring(which));
    QObject::connect(job, &QKeychain::Job::finished, job, [job, hear] {
        state.is_silent = false;
        hear(*job);
    });
    job->start();
    return job;
}

// For as long as one may wait. A keyring that is silent has been waited for already.
void wait_for(QKeychain::Job *job)
{
    if (state.is_silent)
        return;
    QEventLoop loop;
    QObject::connect(job, &QKeychain::Job::finished, &loop, &QEventLoop::quit);
    QTimer end, cancel;
    bool is_over = false;
    QObject::connect(&end, &QTimer::timeout, &loop, [&] {
        is_over = true;
        loop.quit();
    });
    QObject::connect(&cancel, &QTimer::timeout, &loop, [&loop, give_up = net::present_patience().give_up] {
        if (give_up && give_up())
            loop.quit();
    });
    end.start(state.longest_wait_ms);
    cancel.start(cancel_ms);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    state.is_silent = state.is_silent || is_over;
}

void end_asking(of which)
{
    state.asked[which] = false;
    if (state.asked[of::mailbox] || state.asked[of::sending])
        return;
    for (const auto &answered : std::exchange(state.waiters, {}))
        answered();
}

// nullptr where there is none to ask, or it was asked.
QKeychain::Job *ask_keyring(of which)
{
    if (!may_have_keyring() || state.asked[which])
        return nullptr;
    state.asked[which] = true;
    return begin_job(new QKeychain::ReadPasswordJob(QStringLiteral("Tessaly")), which,
                     [which, generation = state.generation](const QKeychain::ReadPasswordJob &job) {
                         if (generation != state.generation)
                             return;
                         if (job.error() == QKeychain::NoError)
                             state.remembered[which] = {job.textData(), !job.textData().isEmpty()};
                         else if (job.error() == QKeychain::EntryNotFound)
                             state.remembered[which] = {};
                         end_asking(which);
                     });
}

// The file has it until then, and keeps it where it cannot be written.
void keyring_has(of which, const QString &password)
{
    if (GetSetting(group, key_in_file(which)) != password)
        return;
    try {
        DeleteSetting(group, key_in_file(which));
        state.remembered[which] = {password, true};
    } catch (const run_time_error &) {
    }
}

// Whether the keyring said in time that it has it. One that asks its user first may say so later; then it leaves the
// file.
bool write_to_keyring(of which, const QString &password)
{
    if (!may_have_keyring())
        return false;
    auto *job = new QKeychain::WritePasswordJob(QStringLiteral("Tessaly"));
    job->setTextData(password);
    const auto is_done = std::make_shared<bool>(false);
    wait_for(begin_job(job, which, [=, generation = state.generation](const QKeychain::Job &one) {
        *is_done = one.error() == QKeychain::NoError;
        if (*is_done && generation == state.generation)
            keyring_has(which, password);
    }));
    return *is_done;
}

void take_from_keyring(of which)
{
    if (may_have_keyring())
        wait_for(begin_job(new QKeychain::DeletePasswordJob(QStringLiteral("Tessaly")), which,
                           [](const QKeychain::Job &) {}));
}

bool is_known(of which)
{
    return state.remembered.contains(which) || !GetSetting(group, key_in_file(which)).isEmpty() || !may_have_keyring();
}

void begin_anew()
{
    state.remembered.clear();
    state.asked.clear();
    state.waiters.clear();
    ++state.generation;
}

// The file comes first: a change-over is done only when its key is gone or new, whenever the process was killed.
QString own(of which)
{
    const QString in_file = GetSetting(group, key_in_file(which));
    if (!in_file.isEmpty())
        return in_file;
    if (!state.remembered.contains(which))
        if (QKeychain::Job *job = ask_keyring(which))
            wait_for(job);
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

bool ask(const QObject *whose, const std::function<void()> &answered)
{
    if (is_known(of::mailbox) && is_known(of::sending))
        return false;
    const auto told = std::make_shared<bool>(false); // the keyring's word or the end of waiting, whichever is first
    const auto tell = [told, answered] {
        if (!std::exchange(*told, true))
            answered();
    };
    const QPointer<const QObject> asker(whose);
    state.waiters.push_back([asker, tell] {
        if (asker)
            tell();
    });
    QTimer::singleShot(state.is_silent ? 0 : state.longest_wait_ms, whose, [told, tell] {
        state.is_silent = state.is_silent || !*told;
        tell();
    });
    for (const of which : {of::mailbox, of::sending})
        if (!is_known(which))
            ask_keyring(which);
    return true;
}

place save(of which, const QString &password)
{
    begin_anew();
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
    begin_anew();
    state.is_silent = false;
}

void set_longest_wait(int ms)
{
    state.longest_wait_ms = ms;
}

}
