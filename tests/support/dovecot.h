// Dovecot with IMAP and POP3 on free ports of 127.0.0.1, with a folder, users and mails of its own.
// README.md beside this file shows how a test uses it; dovecot_configuration.cpp makes its settings.
#pragma once
#include "support/certificates.h"
#include "support/maildir_files.h"
#include "support/server_process.h"
#include <QList>
#include <QTemporaryDir>

struct dovecot_user {
    QString name, password;
    QString token = {}; // what XOAUTH2 and OAUTHBEARER accept for this user
};

struct dovecot_options {
    QList<dovecot_user> users{{"ann", "apple tree", "token-of-ann"}, {"bob", "pear tree", "token-of-bob"}};

    certificate_files certificate = {}; // with one: STARTTLS on the plain ports, and TLS ports
    bool plain_ports = true;
    bool tls_ports = true; // only with a certificate
    // Dovecot takes a connection from its own address for a safe one; so it then listens on 127.0.0.2: see host().
    bool refuse_plain_logins = false;
    QStringList mechanisms{"plain", "login"}; // also "xoauth2", "oauthbearer"

    // Not offered, neither before nor after the login: {"MOVE", "UIDPLUS"}. The commands themselves still work.
    QStringList hidden_capabilities = {};
    QString prefix = {};         // "INBOX.": every folder stands below the Inbox
    QString separator = ".";     // "/": another one in names; the folders on disk stay Maildir++
    QString fsync = "never";     // or "optimized", as servers in the world have it
    QString uidl = "%08Xu%08Xv"; // the form of POP3's UIDL; "%g" is the name of the file
    QString mail_location = "maildir:~/Maildir";
    QStringList more = {}; // further lines of the configuration
};

class dovecot_server {
public:
    explicit dovecot_server(const dovecot_options &options = {}); // answers when it is made; else the test ends
    ~dovecot_server() = default;

    QString host() const; // 127.0.0.1, or 127.0.0.2 where plain logins are refused
    quint16 imap_port = 0, imaps_port = 0, pop3_port = 0, pop3s_port = 0; // 0: not there

    // Where the mails lie; a folder as on disk, "Tessaly_Inbox" or "" for the Inbox. Need not exist.
    QString maildir(const QString &user, const QString &folder = {}) const;
    // Makes the folder as a program on the server would, for INBOX's siblings or children alike.
    void make_folder(const QString &user, const QString &folder);
    // Drops a mail into a folder that is there; the name of its file comes back. Delivered: seconds since 1970.
    QString deliver(const QString &user, const QByteArray &bytes, qint64 delivered, const QString &folder = {});
    QString deliver(const QString &user, const simple_mail &mail, qint64 delivered, const QString &folder = {});

    void start(); // after stop, on the same ports
    void stop();  // as an administrator would; connections are told BYE
    void kill();  // at once
    void set_password(const QString &user, const QString &password); // for logins from now on
    QString log() const;
    pid_t pid() const { return process.pid(); }
    QString folder_path() const { return folder.path(); }

private:
    QString path(const char *name) const { return folder.filePath(QString::fromLatin1(name)); }
    void choose_ports();
    void write_users() const;
    void write_file(const char *name, const QByteArray &bytes) const;
    bool try_start();
    QString file_text(const char *name) const;

    dovecot_options options;
    QTemporaryDir folder;
    server_user user;
    server_process process; // ends before its folder goes
    qint64 delivered_mails = 0;
};
