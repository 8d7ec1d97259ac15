// The fields of the page "Mail Client" as values and back, and what fills itself in while the address is typed: only
// where the user has typed nothing of their own (mail_client_filling.cpp). The page and its buttons: mail_client_frm.h.
#pragma once
#include "frame/mail_client_page.h"
#include <QObject>
#include <QSet>

namespace Ui {
class mail_client_frm;
}
class QComboBox;
class QLineEdit;
class QSpinBox;

class mail_client_fields : public QObject {
    Q_OBJECT
public:
    mail_client_fields(Ui::mail_client_frm &page, QObject *parent);

    void show_entries(const mail_page::entries &stored); // but for the passwords
    void show_passwords(const mail_page::entries &stored);
    void show_asking(bool asks); // passwords cannot be typed while the keyring is asked for them
    mail_page::entries typed_entries() const;
    void show_found(const mail::client_settings &found); // what a test has found out
    mail::client_kind kind() const;
    bool sending_is_guessed() const; // nothing of it was chosen or typed here

private:
    struct server_fields { // of fetching, or of sending
        QLineEdit *host;
        QComboBox *security;
        QSpinBox *port;
        QLineEdit *user;
    };
    void connect_fields();
    void mark_as_own(QLineEdit &field);
    void mark_stored_as_own(const server_fields &fields, const std::vector<mail::server_guess> &guesses,
                            const QString &address);
    void show_server(const server_fields &fields, const mail::server &place);
    mail::server typed_server(const server_fields &fields) const;
    void fill_text(QLineEdit &field, const QString &value);
    void fill_server(const server_fields &fields, const std::vector<mail::server_guess> &guesses, const QString &user);
    void fill_by_address();
    void kind_Click();
    void show_what_applies();
    void show_sending_that_applies();
    void show_file_warning();
    void show_ports();

    Ui::mail_client_frm &ui;
    server_fields fetching, sending;
    QSet<const QObject *> own; // fields that the user filled
    mail::client_kind shown_kind = mail::client_kind::imap;
    QString maildir, mbox; // of the one that is not shown
    bool filling = false, asks_keyring = false;
    bool lies_in_file = false; // a password that is typed, as far as is known
};
