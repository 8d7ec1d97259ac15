// The part of mail_client_fields that fills itself in by the address.
#include "screens/preferences/mail_client_choices.h"
#include "screens/preferences/mail_client_fields.h"
#include "ui_mail_client_frm.h"

namespace {

bool is_whole_address(const QString &address)
{
    const qsizetype at = address.lastIndexOf(u'@');
    return at > 0 && address.indexOf(u'.', at) > at + 1 && !address.endsWith(u'.');
}

}

bool mail_client_fields::sending_is_guessed() const
{
    const std::initializer_list<const QObject *> fields{ui.send_c, sending.host, sending.security, sending.port,
                                                        sending.user};
    const bool is_touched =
        std::any_of(fields.begin(), fields.end(), [this](const QObject *field) { return own.contains(field); });
    return !is_touched && !ui.other_password_c->isChecked() && !ui.no_login_c->isChecked();
}

// What was saved is the user's own, unless it is what the address says: then it goes with the address.
void mail_client_fields::mark_stored_as_own(const server_fields &fields, const std::vector<mail::server_guess> &guesses,
                                            const QString &address)
{
    const mail::server place = typed_server(fields);
    const bool is_guessed = std::any_of(guesses.begin(), guesses.end(), [&](const mail::server_guess &one) {
        return one.place.host == place.host && one.place.secured == place.secured &&
               (place.port == 0 || place.port == one.place.port);
    });
    if (!place.host.isEmpty() && !is_guessed)
        for (const QObject *one : std::initializer_list<const QObject *>{fields.host, fields.security, fields.port})
            own += one;
    const QString usual_user = guesses.empty() ? address : guesses.front().place.user;
    if (!place.user.isEmpty() && place.user != usual_user)
        own += fields.user;
}

void mail_client_fields::fill_text(QLineEdit &field, const QString &value)
{
    if (!own.contains(&field))
        field.setText(value);
}

// A provider's server is filled in. A name that is only likely is shown as what Test will try.
void mail_client_fields::fill_server(const server_fields &fields, const std::vector<mail::server_guess> &guesses,
                                     const QString &user)
{
    const bool is_known = !guesses.empty() && guesses.front().is_known;
    const QString shown = text_in(*fields.host);
    const bool was_found = !is_known && std::any_of(guesses.begin(), guesses.end(), [&](const auto &one) {
        return one.place.host == shown; // by an earlier test
    });
    const mail::server place = is_known ? guesses.front().place : mail::server();
    if (!was_found && !own.contains(fields.security))
        fields.security->setCurrentIndex(line_of(securities, place.secured));
    if (!was_found && !own.contains(fields.port))
        fields.port->setValue(place.port);
    if (!was_found)
        fill_text(*fields.host, place.host);
    fill_text(*fields.user, user);
    fields.host->setPlaceholderText(
        is_known || guesses.empty() ? QString() : "found by Test: " + guesses.front().place.host + " ...");
}

void mail_client_fields::fill_by_address()
{
    const QString address = text_in(*ui.address_t);
    const bool is_whole = is_whole_address(address);
    const mail::address_guess guess = is_whole ? mail::guess_from_address(address) : mail::address_guess();
    const auto &incoming = kind() == mail::client_kind::pop3 ? guess.pop3 : guess.imap;
    const QString user = is_whole && !incoming.empty() ? incoming.front().place.user : QString();
    const bool is_alone = !mail_page::needs_server(kind()); // no login of a mailbox that would do for sending
    filling = true;
    if (is_whole && !own.contains(ui.send_c))
        ui.send_c->setCurrentIndex(line_of(roads, mail::send_by::smtp));
    fill_server(fetching, incoming, user.isEmpty() && is_whole ? address : user);
    fill_server(sending, guess.smtp, is_alone && is_whole ? address : QString());
    fill_text(*ui.from_t, is_whole ? address : QString());
    filling = false;
    ui.provider_l->setText(guess.note);
    ui.provider_l->setVisible(!guess.note.isEmpty());
    show_what_applies();
}
