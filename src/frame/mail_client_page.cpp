#include "frame/mail_client_page.h"
#include "frame/text.h"
#include "platform/folders.h"
#include "platform/mail_delivery.h"
#include "platform/text_file.h"

namespace mail_page {

namespace {

QString address_in(const mail::client_settings &settings)
{
    return settings.incoming.user.contains(u'@') ? settings.incoming.user : settings.from;
}

QString receiving_text(const mail::client_settings &settings)
{
    switch (settings.kind) {
    case mail::client_kind::imap:
        return "mail is fetched from " + settings.incoming.host + " (IMAP)";
    case mail::client_kind::pop3:
        return "mail is read from " + settings.incoming.host + " (POP3)";
    case mail::client_kind::mbox:
        return "mail is read from the file " + mail::mbox_path();
    case mail::client_kind::maildir:
        break;
    }
    return "mail is read from the local folder " + mail::maildir_path().path;
}

QString sending_text(const mail::client_settings &settings)
{
    switch (settings.sending) {
    case mail::send_by::smtp:
        return "what is sent goes out by " + settings.smtp.host;
    case mail::send_by::sendmail:
        return "what is sent goes out by this machine's sendmail";
    case mail::send_by::keep:
        break;
    }
    return "what is sent stays in the Outbox";
}

bool is_host(const QString &text)
{
    for (const QChar letter : text)
        if (letter.isSpace() || letter == u'@' || letter == u'/' || letter < u' ')
            return false;
    return !text.isEmpty();
}

// Wider than the check of an account's address: any address that a provider gives out.
bool is_address(const QString &text)
{
    const qsizetype at = text.indexOf(u'@');
    return at > 0 && at == text.lastIndexOf(u'@') && at + 1 < text.size() && is_host(text.sliced(at + 1)) &&
           !text.contains(u' ') && !text.contains(u'<');
}

std::optional<fault> host_fault(const QString &field, const QString &host, const QString &what)
{
    if (host.isEmpty())
        return fault{field,
                     "The name of the " + what + " is missing. Type it, or press Test: it tries the usual names."};
    if (!is_host(host))
        return fault{field,
                     "\"" + left(host, 80) + "\" cannot be the name of a server. It looks like mail.example.org."};
    return std::nullopt;
}

std::optional<fault> path_fault(const mail::client_settings &settings)
{
    if (settings.kind == mail::client_kind::mbox) {
        if (settings.mbox.isEmpty())
            return fault{"path_t", "Choose the mbox file that your mail lies in."};
        const QString file = mail::mbox_path(settings.mbox);
        if (FolderExists(GetAbsolutePathName(file)))
            return fault{"path_t", file + " is a folder. An mbox is one file; for a folder choose Maildir."};
        if (!FileExists(file))
            return fault{"path_t", "There is no file " + file + "."};
        return std::nullopt;
    }
    if (settings.maildir.isEmpty()) // the usual one
        return std::nullopt;
    const QString folder = mail::maildir_path(settings.maildir).path;
    if (!FolderExists(GetAbsolutePathName(folder))) // a link to one will do
        return fault{"path_t", "There is no folder " + folder + "."};
    return std::nullopt;
}

bool login_is_missing(const mail::client_settings &settings, const QString &password)
{
    return password.isEmpty() && !(settings.use_token && !trim(settings.token_command).isEmpty());
}

std::optional<fault> receiving_fault(const entries &typed)
{
    const mail::client_settings &settings = typed.settings;
    if (!needs_server(settings.kind))
        return path_fault(settings);
    if (const auto found = host_fault("host_t", settings.incoming.host, "mail server"))
        return found;
    if (settings.incoming.user.isEmpty())
        return fault{"user_t", "The user name for the mail server is missing. Mostly it is your address."};
    if (login_is_missing(settings, typed.password))
        return fault{"password_t", "The password is missing."};
    return std::nullopt;
}

std::optional<fault> sending_fault(const entries &typed)
{
    const mail::client_settings &settings = typed.settings;
    if (!settings.from.isEmpty() && !is_address(settings.from))
        return fault{"from_t", "\"" + left(settings.from, 80) + "\" is no address that mail can go out from."};
    if (settings.sending == mail::send_by::keep)
        return std::nullopt;
    if (settings.from.isEmpty())
        return fault{"from_t", "The address that mail goes out from is missing."};
    if (settings.sending == mail::send_by::sendmail)
        return std::nullopt;
    if (const auto found = host_fault("smtp_host_t", settings.smtp.host, "sending server"))
        return found;
    if (!settings.smtp_logs_in)
        return std::nullopt;
    const bool is_alone = !needs_server(settings.kind); // there is no mailbox whose login would do
    if (is_alone && settings.smtp.user.isEmpty())
        return fault{"smtp_user_t", "The user name for the sending server is missing. Mostly it is your address."};
    if ((is_alone || typed.smtp_password) && login_is_missing(settings, typed.smtp_password.value_or(QString())))
        return fault{"smtp_password_t", "The password for the sending server is missing."};
    return std::nullopt;
}

std::optional<fault> authority_fault(const QString &path)
{
    if (path.isEmpty() || CanRead(path))
        return std::nullopt;
    return fault{"authority_t", "The file of certificates " + path + " cannot be read."};
}

// A keyring may ask its user each time: what is there already stays there.
passwords::place keep_password(passwords::of which, const QString &typed)
{
    const passwords::place before = passwords::where(which);
    const QString stored = before == passwords::place::nowhere ? QString() : passwords::read(which);
    return typed == stored ? before : passwords::save(which, typed);
}

// By itself the sending server gets the mailbox's password only where its user is the same. One that was typed for two
// users is kept for each.
QString password_to_send(const entries &typed)
{
    const mail::client_settings &settings = typed.settings;
    if (typed.smtp_password)
        return *typed.smtp_password;
    const bool same_user = settings.smtp.user.isEmpty() || settings.smtp.user == settings.incoming.user;
    return same_user || settings.sending != mail::send_by::smtp || !settings.smtp_logs_in ? QString() : typed.password;
}

}

entries stored_settings()
{
    entries found;
    found.settings = mail::read_client_settings();
    found.address = address_in(found.settings);
    return found;
}

void add_passwords(entries &stored)
{
    stored.password = passwords::read(passwords::of::mailbox);
    if (passwords::where(passwords::of::sending) != passwords::place::nowhere)
        stored.smtp_password = passwords::read(passwords::of::sending);
    if (needs_server(stored.settings.kind) && stored.smtp_password == stored.password)
        stored.smtp_password.reset();
}

QString in_force_text()
{
    const mail::client_settings settings = mail::read_client_settings();
    const QString roads = receiving_text(settings) + " and " + sending_text(settings) + ".";
    return (settings.configured ? "In force now: " : "Nothing is set up: ") + roads;
}

std::optional<fault> untestable(const entries &typed)
{
    if (!needs_server(typed.settings.kind))
        return std::nullopt;
    if (typed.address.isEmpty() && typed.settings.incoming.host.isEmpty())
        return fault{"address_t", "Please type your mail address first."};
    if (!typed.settings.use_token && typed.password.isEmpty())
        return fault{"password_t", "Please type your password first."};
    return std::nullopt;
}

std::optional<fault> first_fault(const entries &typed)
{
    if (!typed.address.isEmpty() && !is_address(typed.address))
        return fault{"address_t", "\"" + left(typed.address, 80) + "\" is no mail address."};
    if (const auto found = receiving_fault(typed))
        return found;
    if (const auto found = sending_fault(typed))
        return found;
    return authority_fault(typed.settings.authority_file);
}

passwords::place save(const entries &typed)
{
    // The passwords first: the settings become valid by one write, and then their passwords must be there.
    const auto mailbox = keep_password(passwords::of::mailbox, typed.password);
    const auto sending = keep_password(passwords::of::sending, password_to_send(typed));
    mail::write_client_settings(typed.settings);
    delivery::wake();
    for (const auto place : {passwords::place::settings_file, passwords::place::keyring})
        if (mailbox == place || sending == place)
            return place;
    return passwords::place::nowhere;
}

bool needs_server(mail::client_kind kind)
{
    return kind == mail::client_kind::imap || kind == mail::client_kind::pop3;
}

QString usual_port_text(int port)
{
    return "usual (" + QString::number(port) + ")";
}

bool is_readable_on_the_way(const mail::server &place)
{
    const bool is_here = place.host == u"localhost" || place.host.startsWith(u"127.") || place.host == u"::1";
    return place.secured == mail::security::none && !place.host.isEmpty() && !is_here;
}

}
