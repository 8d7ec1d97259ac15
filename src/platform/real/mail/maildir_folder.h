// A Maildir and its sub-folders as a mail client: Maildir++, where the folder A.B is the directory ".A.B".
#pragma once
#include "platform/mail_client.h"
#include "platform/real/mail/maildir_listing.h"
#include "platform/real/mail/new_mail.h"
#include <map>

namespace maildir {

// What is remembered of the folders, for as long as the process lives.
class client_memory {
public:
    std::shared_ptr<folder_memory> of(const QByteArray &path);

private:
    std::map<QByteArray, std::shared_ptr<folder_memory>> folders;
};

class folder : public outlook::MailFolder {
public:
    // prefix "" is the Inbox, else it begins with a dot.
    folder(QByteArray maildir, QByteArray prefix, std::shared_ptr<client_memory> known);

    QString Name() const override;
    std::vector<std::unique_ptr<outlook::MailFolder>> Folders() override;
    // 52 "Bad file name" for a name that cannot be a folder's: empty, or with "/", "." or a control character.
    std::unique_ptr<outlook::MailFolder> add(const QString &name) override;
    std::unique_ptr<outlook::Items> items() override;

    QByteArray prepared_path(); // with cur, new and tmp in it

private:
    QByteArray path() const;

    QByteArray root, prefix;
    std::shared_ptr<client_memory> memory;
    bool prepared = false;
};

class application : public outlook::Application {
public:
    // A Maildir that is not there and is not to be made fails with 76 "Path not found" when its Inbox is asked for.
    application(QByteArray maildir, bool made_on_demand, std::shared_ptr<client_memory> known);
    std::unique_ptr<outlook::NameSpace> GetNamespace(const QString &type) override;
    std::unique_ptr<outlook::NewMail> CreateItem(int type) override { return mail::new_mail(type); }

private:
    QByteArray root;
    bool make_root;
    std::shared_ptr<client_memory> memory;
};

}
