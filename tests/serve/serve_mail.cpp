// Dovecot for scripts (benches, the tour): serve_mail [--delay MS] [--tls]
// One user, ann, with the password "secret". Says its ports and folders in one line of JSON, then answers a line of
// JSON to each word on stdin, and ends with it:
//   own     the mails that were put into the folder belong to the server's user now
//   count   the round trips and bytes that passed on the IMAP port since the last "count"
// --delay: IMAP goes through a proxy that adds so much to each round trip and counts. --tls: the IMAP port is the one
// with TLS; "authority" is the certificate to trust, for the host localhost.
#include "support/dovecot.h"
#include "support/wire_proxy.h"
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDirIterator>
#include <QJsonDocument>
#include <QJsonObject>
#include <iostream>
#include <optional>
#include <string>

namespace {

void tell(const QJsonObject &facts)
{
    std::cout << QJsonDocument(facts).toJson(QJsonDocument::Compact).toStdString() << std::endl;
}

void own(const QString &folder)
{
    const server_user user = server_user::ours();
    for (QDirIterator each(folder, QDir::Files, QDirIterator::Subdirectories); each.hasNext();)
        user.give(each.next());
}

void answer(const std::string &word, const dovecot_server &server, wire_proxy *line)
{
    if (word == "own")
        own(server.maildir("ann"));
    if (word != "count" || !line)
        return tell({});
    const wire_counts counts = line->counts();
    line->forget();
    tell({{"connections", counts.connections},
          {"round_trips", counts.round_trips},
          {"to_server", counts.to_server},
          {"to_client", counts.to_client}});
}

}

int main(int count, char **argument)
{
    const QCoreApplication application(count, argument);
    QCommandLineParser words;
    words.addOptions({{"delay", "Added to each round trip, in milliseconds.", "MS"}, {"tls", "IMAP over TLS."}});
    words.process(application);
    std::optional<certificates> made;
    dovecot_options options;
    options.users = {{"ann", "secret"}};
    if (words.isSet("tls"))
        options.certificate = made.emplace().good();
    const dovecot_server server(options);
    quint16 port = words.isSet("tls") ? server.imaps_port : server.imap_port;
    std::optional<wire_proxy> line;
    if (words.isSet("delay")) {
        line.emplace(port, wire_options{std::chrono::milliseconds(words.value("delay").toInt())});
        port = line->port;
    }
    tell({{"imap", port},
          {"pop3", server.pop3_port},
          {"maildir", server.maildir("ann")},
          {"authority", made ? made->authority() : QString()}});
    for (std::string word; std::getline(std::cin, word);)
        answer(word, server, line ? &*line : nullptr);
}
