#include "platform/real/mail/real_mail_client.h"
#include "platform/app_folder.h"
#include "platform/mail_settings.h"
#include "platform/passwords.h"
#include "platform/real/imap/imap_folder.h"
#include "platform/real/mail/access_token.h"
#include "platform/real/mail/maildir_folder.h"
#include <QFile>

namespace {

// Password or token are looked up for each connection: the user may have typed another one.
net::place imap_place()
{
    const mail::client_settings settings = mail::read_client_settings();
    net::place place;
    place.speaks = net::protocol::imap;
    place.server = settings.incoming;
    place.authority_file = settings.authority_file;
    mail::set_login(place, settings, passwords::read(passwords::of::mailbox), net::present_patience());
    return place;
}

QByteArray account_name(const mail::server &server)
{
    return (server.user + u'@' + server.host + u':' + QString::number(server.port)).toUtf8();
}

// Whether a line that one of them opened is what the other one would open.
bool same_line(const mail::client_settings &a, const mail::client_settings &b)
{
    return a.incoming == b.incoming && a.authority_file == b.authority_file && a.use_token == b.use_token &&
           a.token_command == b.token_command;
}

}

real_mail_client::real_mail_client() : memory(std::make_shared<maildir::client_memory>()) {}

real_mail_client::~real_mail_client() = default;

std::unique_ptr<outlook::Application> real_mail_client::GetObject()
{
    return nullptr;
}

std::unique_ptr<outlook::Application> real_mail_client::CreateObject()
{
    const mail::client_kind kind = mail::configured_kind();
    if (kind == mail::client_kind::imap)
        return imap_client();
    if (kind != mail::client_kind::maildir)
        return nullptr;
    const mail::maildir_place place = mail::maildir_path();
    return std::make_unique<maildir::application>(QFile::encodeName(place.path), place.made_on_demand, memory);
}

// Other settings hang up: a line that was opened without encryption must not outlive the choice of it.
std::unique_ptr<outlook::Application> real_mail_client::imap_client()
{
    const mail::client_settings settings = mail::read_client_settings();
    if (!imap_memory || !same_line(connected_by, settings))
        imap_memory = std::make_shared<imap::account_memory>(account_name(settings.incoming), imap_place,
                                                             app_path(u"\\mailcache.sqlite"));
    connected_by = settings;
    return std::make_unique<imap::application>(imap_memory);
}
