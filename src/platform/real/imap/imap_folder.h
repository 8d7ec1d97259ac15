// An IMAP mailbox and its folders as a mail client.
#pragma once
#include "platform/mail_client.h"
#include "platform/real/imap/mailbox.h"
#include "platform/real/mail/new_mail.h"
#include <map>

namespace imap {

// What is kept of one account for as long as the process lives: its folders, each with its connection.
class account_memory {
public:
    // name: server and user in one text, for the cache.
    account_memory(QByteArray name, place_source where, const QString &cache_file);

    const std::shared_ptr<mailbox> &of(const QByteArray &wire_name);
    const std::shared_ptr<mailbox> &inbox() { return of(inbox_name); }

private:
    QByteArray account;
    place_source place;
    std::shared_ptr<mail_cache> cache;
    std::map<QByteArray, std::shared_ptr<mailbox>> folders;
};

class folder : public outlook::MailFolder {
public:
    folder(std::shared_ptr<account_memory> of, QByteArray wire_name);

    QString Name() const override;
    std::vector<std::unique_ptr<outlook::MailFolder>> Folders() override;
    // 52 "Bad file name" for a name that cannot be a folder's.
    std::unique_ptr<outlook::MailFolder> add(const QString &name) override;
    std::unique_ptr<outlook::Items> items() override;

    const QByteArray &wire_name() const { return name; }

private:
    std::shared_ptr<account_memory> account;
    QByteArray name;
};

class application : public outlook::Application {
public:
    explicit application(std::shared_ptr<account_memory> of) : account(std::move(of)) {}
    std::unique_ptr<outlook::NameSpace> GetNamespace(const QString &type) override;
    std::unique_ptr<outlook::NewMail> CreateItem(int type) override { return mail::new_mail(type); }

private:
    std::shared_ptr<account_memory> account;
};

}
