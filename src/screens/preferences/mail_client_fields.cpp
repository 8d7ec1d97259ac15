#include "screens/preferences/mail_client_fields.h"
#include "frame/text.h"
#include "screens/preferences/mail_client_choices.h"
#include "ui_mail_client_frm.h"

namespace {

const char *const in_file =
    "\u26a0 No keyring answers here: the password will lie unencrypted in the settings file, which "
    "only your own login may open.";
const char *const readable = "\u26a0 Not encrypted: the password and every mail can be read on their way.";

}

mail_client_fields::mail_client_fields(Ui::mail_client_frm &page, QObject *parent)
    : QObject(parent),
      ui(page),
      fetching{ui.host_t, ui.security_c, ui.port_s, ui.user_t},
      sending{ui.smtp_host_t, ui.smtp_security_c, ui.smtp_port_s, ui.smtp_user_t}
{
    for (QComboBox *list : {ui.security_c, ui.smtp_security_c})
        list->addItems({"TLS from the start", "STARTTLS", "None"});
    ui.send_c->addItems({"By a sending server (SMTP)", "By this machine's sendmail", "Not now: keep it in the Outbox"});
    connect_fields();
}

void mail_client_fields::connect_fields()
{
    connect(ui.address_t, &QLineEdit::textEdited, this, &mail_client_fields::fill_by_address);
    for (QLineEdit *field : {ui.host_t, ui.user_t, ui.smtp_host_t, ui.smtp_user_t, ui.from_t})
        connect(field, &QLineEdit::textEdited, this, [this, field] { mark_as_own(*field); });
    for (QComboBox *list : {ui.security_c, ui.smtp_security_c, ui.send_c}) {
        connect(list, &QComboBox::activated, this, [this, list] { own += list; });
        connect(list, &QComboBox::currentIndexChanged, this, &mail_client_fields::show_what_applies);
    }
    for (QSpinBox *field : {ui.port_s, ui.smtp_port_s})
        connect(field, &QSpinBox::valueChanged, this, [this, field] {
            if (!filling)
                own += field;
        });
    for (QRadioButton *choice : {ui.imap_o, ui.pop3_o, ui.maildir_o, ui.mbox_o})
        connect(choice, &QRadioButton::clicked, this, &mail_client_fields::kind_Click);
    for (QCheckBox *box : {ui.other_password_c, ui.no_login_c, ui.token_c})
        connect(box, &QCheckBox::toggled, this, &mail_client_fields::show_what_applies);
    for (QLineEdit *field : std::initializer_list<QLineEdit *>{ui.password_t, ui.smtp_password_t, ui.token_command_t,
                                                               ui.host_t, ui.smtp_host_t})
        connect(field, &QLineEdit::textChanged, this, &mail_client_fields::show_what_applies);
}

void mail_client_fields::mark_as_own(QLineEdit &field)
{
    if (field.text().isEmpty())
        own -= &field; // free again for what the address says
    else
        own += &field;
}

void mail_client_fields::show_server(const server_fields &fields, const mail::server &place)
{
    fields.host->setText(place.host);
    fields.security->setCurrentIndex(line_of(securities, place.secured));
    fields.port->setValue(place.port);
    fields.user->setText(place.user);
}

void mail_client_fields::show_entries(const mail_page::entries &stored)
{
    filling = true;
    const mail::client_settings &settings = stored.settings;
    const auto kind = settings.configured ? settings.kind : mail::client_kind::imap; // what is recommended
    (kind == mail::client_kind::imap      ? ui.imap_o
     : kind == mail::client_kind::pop3    ? ui.pop3_o
     : kind == mail::client_kind::maildir ? ui.maildir_o
                                          : ui.mbox_o)
        ->setChecked(true);
    shown_kind = kind;
    maildir = settings.maildir;
    mbox = settings.mbox;
    ui.path_t->setText(kind == mail::client_kind::mbox ? mbox : maildir);
    ui.address_t->setText(stored.address);
    show_server(fetching, settings.incoming);
    show_server(sending, settings.smtp);
    ui.send_c->setCurrentIndex(line_of(roads, settings.sending));
    ui.from_t->setText(settings.from);
    ui.per_hour_s->setValue(settings.mailings_per_hour);
    ui.no_login_c->setChecked(!settings.smtp_logs_in);
    ui.token_c->setChecked(settings.use_token);
    ui.token_command_t->setText(settings.token_command);
    ui.authority_t->setText(settings.authority_file);
    filling = false;
    own.clear();
    if (settings.configured)
        own += ui.send_c;
    const mail::address_guess guess = mail::guess_from_address(stored.address);
    mark_stored_as_own(fetching, kind == mail::client_kind::pop3 ? guess.pop3 : guess.imap, stored.address);
    mark_stored_as_own(sending, guess.smtp, stored.address);
    if (!settings.from.isEmpty() && settings.from != stored.address)
        own += ui.from_t;
    show_what_applies();
    fill_by_address();
}

void mail_client_fields::show_passwords(const mail_page::entries &stored)
{
    ui.password_t->setText(stored.password);
    ui.other_password_c->setChecked(stored.smtp_password.has_value());
    ui.smtp_password_t->setText(stored.smtp_password.value_or(QString()));
    using passwords::place;
    const place before = passwords::where(passwords::of::mailbox);
    lies_in_file = (before == place::nowhere ? passwords::will_lie() : before) == place::settings_file;
    show_what_applies();
}

void mail_client_fields::show_asking(bool asks)
{
    asks_keyring = asks;
    for (QLineEdit *field : {ui.password_t, ui.smtp_password_t})
        field->setPlaceholderText(asks ? "asking the keyring ..." : QString());
    show_what_applies();
}

mail::server mail_client_fields::typed_server(const server_fields &fields) const
{
    return {text_in(*fields.host), fields.port->value(), securities[size_t(fields.security->currentIndex())],
            text_in(*fields.user)};
}

mail::client_kind mail_client_fields::kind() const
{
    return ui.imap_o->isChecked()      ? mail::client_kind::imap
           : ui.pop3_o->isChecked()    ? mail::client_kind::pop3
           : ui.maildir_o->isChecked() ? mail::client_kind::maildir
                                       : mail::client_kind::mbox;
}

mail_page::entries mail_client_fields::typed_entries() const
{
    mail_page::entries typed;
    mail::client_settings &settings = typed.settings;
    settings.configured = true;
    settings.kind = kind();
    settings.maildir = settings.kind == mail::client_kind::maildir ? text_in(*ui.path_t) : maildir;
    settings.mbox = settings.kind == mail::client_kind::mbox ? text_in(*ui.path_t) : mbox;
    settings.incoming = typed_server(fetching);
    settings.sending = roads[size_t(ui.send_c->currentIndex())];
    settings.smtp = typed_server(sending);
    settings.smtp_logs_in = !ui.no_login_c->isChecked();
    settings.from = text_in(*ui.from_t);
    settings.use_token = ui.token_c->isChecked();
    settings.token_command = text_in(*ui.token_command_t);
    settings.authority_file = text_in(*ui.authority_t);
    settings.mailings_per_hour = ui.per_hour_s->value();
    typed.address = text_in(*ui.address_t);
    typed.password = ui.password_t->text();
    if (ui.other_password_c->isChecked() || !mail_page::needs_server(settings.kind))
        typed.smtp_password = ui.smtp_password_t->text();
    return typed;
}

void mail_client_fields::show_found(const mail::client_settings &found)
{
    filling = true;
    if (mail_page::needs_server(found.kind))
        show_server(fetching, found.incoming);
    ui.send_c->setCurrentIndex(line_of(roads, found.sending));
    if (found.sending == mail::send_by::smtp)
        show_server(sending, found.smtp);
    filling = false;
    show_what_applies();
}

void mail_client_fields::kind_Click()
{
    (shown_kind == mail::client_kind::mbox ? mbox : maildir) = text_in(*ui.path_t);
    shown_kind = kind();
    ui.path_t->setText(shown_kind == mail::client_kind::mbox ? mbox : maildir);
    fill_by_address();
}

void mail_client_fields::show_what_applies()
{
    if (filling)
        return;
    const bool is_server = mail_page::needs_server(kind());
    const bool is_file = kind() == mail::client_kind::mbox;
    ui.qt_places->setCurrentWidget(is_server ? ui.server_fr : ui.file_fr);
    ui.path_lb->setText(is_file ? "Fil&e:" : "Fold&er:");
    ui.path_t->setAccessibleName(is_file ? "File" : "Folder");
    ui.path_t->setPlaceholderText(is_file ? QString() : "empty: ~/Maildir, else the program's own folder");
    for (QWidget *one : std::initializer_list<QWidget *>{ui.password_lb, ui.password_t, ui.show_c})
        one->setVisible(is_server);
    const bool prints_token = ui.token_c->isChecked() && !text_in(*ui.token_command_t).isEmpty();
    ui.password_t->setEnabled(!prints_token && !asks_keyring);
    ui.password_lb->setText(ui.token_c->isChecked() ? "Access to&ken:" : "Passwo&rd:");
    ui.password_t->setAccessibleName(ui.token_c->isChecked() ? "Access token" : "Password");
    ui.token_command_lb->setEnabled(ui.token_c->isChecked());
    ui.token_command_t->setEnabled(ui.token_c->isChecked());
    ui.readable_l->setText(readable);
    ui.readable_l->setVisible(mail_page::is_readable_on_the_way(typed_server(fetching)));
    show_sending_that_applies();
    show_file_warning();
    show_ports();
}

void mail_client_fields::show_sending_that_applies()
{
    const bool is_smtp = roads[size_t(ui.send_c->currentIndex())] == mail::send_by::smtp;
    const bool is_alone = !mail_page::needs_server(kind());
    const bool logs_in = is_smtp && !ui.no_login_c->isChecked();
    const bool own_password = logs_in && (is_alone || ui.other_password_c->isChecked());
    for (QWidget *one :
         std::initializer_list<QWidget *>{ui.smtp_host_lb, ui.smtp_host_t, ui.smtp_security_lb, ui.smtp_security_c,
                                          ui.smtp_port_lb, ui.smtp_port_s, ui.no_login_c})
        one->setEnabled(is_smtp);
    ui.smtp_user_lb->setEnabled(logs_in);
    ui.smtp_user_t->setEnabled(logs_in);
    ui.smtp_user_t->setPlaceholderText(is_alone ? QString() : "as for fetching");
    ui.other_password_c->setEnabled(logs_in && !asks_keyring);
    ui.smtp_password_t->setEnabled(!asks_keyring);
    ui.other_password_c->setVisible(!is_alone);
    ui.smtp_password_lb->setVisible(own_password);
    ui.smtp_password_t->setVisible(own_password);
    ui.smtp_readable_l->setText(readable);
    ui.smtp_readable_l->setVisible(is_smtp && mail_page::is_readable_on_the_way(typed_server(sending)));
}

void mail_client_fields::show_file_warning()
{
    const bool is_typed = (!ui.password_t->isHidden() && !ui.password_t->text().isEmpty()) ||
                          (!ui.smtp_password_t->isHidden() && !ui.smtp_password_t->text().isEmpty());
    ui.file_warning_l->setText(in_file);
    ui.file_warning_l->setVisible(lies_in_file && is_typed);
}

void mail_client_fields::show_ports()
{
    const int incoming = mail::usual_port(kind(), typed_server(fetching).secured);
    ui.port_s->setSpecialValueText(mail_page::usual_port_text(incoming));
    ui.smtp_port_s->setSpecialValueText(
        mail_page::usual_port_text(mail::usual_smtp_port(typed_server(sending).secured)));
}
