#include "support/dovecot.h"

#include "support/dovecot_configuration.h"
#include "support/loopback.h"
#include "support/open_folder.h"
#include <QDebug>
#include <QDir>
#include <QFile>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

dovecot_server::dovecot_server(const dovecot_options &wanted)
    : options(wanted), folder(folder_template("dovecot")), user(server_user::ours())
{
    open_to_servers(folder);
    write_users();
    user.give(folder.path());
    start();
}

void dovecot_server::write_file(const char *name, const QByteArray &bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    user.give(file.fileName());
}

void dovecot_server::write_users() const
{
    QByteArray users, tokens;
    QDir().mkpath(path("home"));
    user.give(path("home"));
    for (const dovecot_user &each : options.users) {
        users += (each.name + QStringLiteral(":{PLAIN}") + each.password + u'\n').toUtf8();
        if (!each.token.isEmpty())
            tokens += (each.name + QStringLiteral(":{PLAIN}") + each.token + u'\n').toUtf8();
        const QString home = path("home") + u'/' + each.name;
        for (const QString &made : {home, home + QStringLiteral("/Maildir"), home + QStringLiteral("/Maildir/cur"),
                                    home + QStringLiteral("/Maildir/new"), home + QStringLiteral("/Maildir/tmp")}) {
            QDir().mkdir(made);
            user.give(made);
        }
    }
    write_file("users", users);
    write_file("tokens", tokens);
}

void dovecot_server::choose_ports()
{
    const bool tls = options.tls_ports && !options.certificate.empty();
    imap_port = options.plain_ports ? free_loopback_port() : 0;
    pop3_port = options.plain_ports ? free_loopback_port() : 0;
    imaps_port = tls ? free_loopback_port() : 0;
    pop3s_port = tls ? free_loopback_port() : 0;
}

// Another test may take a port between its choice and its use: then others are chosen, but never behind a stop, as
// somebody knows them by then.
void dovecot_server::start()
{
    const bool again = imap_port || imaps_port;
    for (int attempt = 0; attempt < 5; ++attempt) {
        if (!again)
            choose_ports();
        if (try_start())
            return;
        if (!log().contains(QStringLiteral("Address already in use")))
            break;
    }
    qFatal("Dovecot does not start:\n%s", qPrintable(log()));
}

bool dovecot_server::try_start()
{
    write_file("dovecot.conf", dovecot_configuration(
                                   options, {folder.path(), host(), user, imap_port, imaps_port, pop3_port, pop3s_port})
                                   .toUtf8());
    const QString before = file_text("dovecot.log");
    process.start({"dovecot", "-F", "-c", path("dovecot.conf")}, path("start.log"), user);
    // It says so behind its last listen(); with any earlier connection another server could be meant.
    while (!file_text("dovecot.log").mid(before.size()).contains(QStringLiteral("starting up for"))) {
        if (process.ends_within(5)) {
            process.end(SIGKILL);
            return false;
        }
    }
    for (const quint16 port : {imap_port, imaps_port, pop3_port, pop3s_port}) {
        const int reached = port ? connect_loopback(port, host()) : -1;
        if (port && reached < 0)
            qFatal("Dovecot does not listen:\n%s", qPrintable(log()));
        if (port)
            ::close(reached);
    }
    return true;
}

void dovecot_server::stop()
{
    process.end(SIGTERM);
}

void dovecot_server::kill()
{
    process.end(SIGKILL);
}

QString dovecot_server::host() const
{
    return options.refuse_plain_logins ? QStringLiteral("127.0.0.2") : QStringLiteral("127.0.0.1");
}

QString dovecot_server::maildir(const QString &name, const QString &mail_folder) const
{
    const QString inbox = path("home") + u'/' + name + QStringLiteral("/Maildir");
    return mail_folder.isEmpty() ? inbox : inbox + QStringLiteral("/.") + mail_folder;
}

void dovecot_server::make_folder(const QString &name, const QString &mail_folder)
{
    const QString at = maildir(name, mail_folder);
    for (const QString &made :
         {at, at + QStringLiteral("/cur"), at + QStringLiteral("/new"), at + QStringLiteral("/tmp")}) {
        QDir().mkdir(made);
        user.give(made);
    }
}

QString dovecot_server::deliver(const QString &name, const QByteArray &bytes, qint64 delivered,
                                const QString &mail_folder)
{
    const QString file = QStringLiteral("%1.M%2P1.host").arg(delivered).arg(++delivered_mails, 7, 10, QChar(u'0'));
    const QByteArray whole = (maildir(name, mail_folder) + QStringLiteral("/new/") + file).toLocal8Bit();
    // By hand: fifty thousand mails are dropped in at once.
    const int opened = ::open(whole.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    const timespec times[] = {{delivered, 0}, {delivered, 0}}; // which Dovecot gives as INTERNALDATE
    const bool done = opened >= 0 && ::write(opened, bytes.constData(), size_t(bytes.size())) == bytes.size() &&
                      (::geteuid() != 0 || ::fchown(opened, user.uid, user.gid) == 0) && ::futimens(opened, times) == 0;
    if (!done)
        qFatal("cannot deliver %s", whole.constData());
    ::close(opened);
    return file;
}

QString dovecot_server::deliver(const QString &name, const simple_mail &mail, qint64 delivered,
                                const QString &mail_folder)
{
    return deliver(name, mail_bytes(mail), delivered, mail_folder);
}

QString dovecot_server::file_text(const char *name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void dovecot_server::set_password(const QString &name, const QString &password)
{
    for (dovecot_user &each : options.users)
        if (each.name == name)
            each.password = password;
    write_users();
}

QString dovecot_server::log() const
{
    return file_text("start.log") + file_text("dovecot.log");
}
