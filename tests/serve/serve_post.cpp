// A post office for the roads: serve_post ADDRESS...
// An SMTP server in front of Dovecot: what it takes goes into the mailboxes of its recipients. Each address has one,
// under its own name, with the password "secret". Says its ports in one line of JSON, then answers a line of JSON to
// each word on stdin, and ends with it:
//   deliver   what was taken since the last time goes into the mailboxes, by Dovecot's own hand;
//             "taken": so many so far
//   down      nobody answers at the SMTP port any more
//   up        the same server again
#include "support/dovecot.h"
#include "support/smtp_sink.h"
#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <iostream>
#include <string>

namespace {

dovecot_options mailboxes_of(const QStringList &addresses)
{
    dovecot_options options;
    options.users.clear();
    for (const QString &address : addresses)
        options.users += dovecot_user{address, "secret"};
    return options;
}

void hand_to_dovecot(const dovecot_server &server, const QString &recipient, const recorded_mail &mail)
{
    QProcess agent;
    agent.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    agent.start("/usr/lib/dovecot/dovecot-lda",
                {"-c", server.folder_path() + "/dovecot.conf", "-d", recipient, "-f", QString::fromUtf8(mail.from)});
    agent.write(mail.bytes);
    agent.closeWriteChannel();
    if (!agent.waitForFinished() || agent.exitCode() != 0)
        qFatal("Dovecot does not take a mail for %s:\n%s", qPrintable(recipient), qPrintable(server.log()));
}

class post_office {
public:
    explicit post_office(const QStringList &addresses) : server(mailboxes_of(addresses)) {}
    QJsonObject ports() const { return {{"imap", server.imap_port}, {"smtp", sink.port()}}; }
    QJsonObject answer(const std::string &word)
    {
        if (word == "down")
            sink.stop();
        if (word == "up")
            sink.start();
        if (word == "deliver")
            deliver();
        return {{"taken", int(delivered)}};
    }

private:
    void deliver()
    {
        const QList<recorded_mail> mails = sink.mails();
        for (; delivered < mails.size(); ++delivered)
            for (const QByteArray &recipient : mails[delivered].recipients)
                hand_to_dovecot(server, QString::fromUtf8(recipient), mails[delivered]);
    }
    dovecot_server server;
    smtp_sink sink;
    qsizetype delivered = 0;
};

void tell(const QJsonObject &facts)
{
    std::cout << QJsonDocument(facts).toJson(QJsonDocument::Compact).toStdString() << std::endl;
}

}

int main(int count, char **argument)
{
    const QCoreApplication application(count, argument);
    post_office office(QCoreApplication::arguments().mid(1));
    tell(office.ports());
    for (std::string word; std::getline(std::cin, word);)
        tell(office.answer(word));
}
