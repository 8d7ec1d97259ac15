// The real mail client that reads and leaves, over settings of a test's own, in a folder of its own.
#pragma once
#include "platform/app_folder.h"
#include "platform/passwords.h"
#include "platform/real/mail_session/real_mail_session.h"
#include "platform/settings.h"
#include "support/certificates.h"
#include <QTemporaryDir>

// Into the settings file, as if typed on the page. authority "" is none.
inline void set_pop3_mailbox(const QString &host, quint16 port, const QString &security = "none",
                             const QString &authority = {}, const QString &password = "apple tree")
{
    SaveSettings("mail_client", {{"kind", "pop3"},
                                 {"host", host},
                                 {"port", QString::number(port)},
                                 {"security", security},
                                 {"user", "ann"},
                                 {"authority_file", authority},
                                 {"password", password}});
    passwords::forget_remembered();
}

inline void set_mbox(const QString &path)
{
    SaveSettings("mail_client", {{"kind", "mbox"}, {"mbox", path}});
}

struct read_message {
    QString recipients, subject, sender, text;
    QDateTime received;
};

class open_mailbox_folder {
public:
    open_mailbox_folder() { set_app_folder(folder.path()); }
    ~open_mailbox_folder() { set_app_folder({}); }
    open_mailbox_folder(const open_mailbox_folder &) = delete;
    open_mailbox_folder &operator=(const open_mailbox_folder &) = delete;

    void sign_on()
    {
        sign_off();
        session = client.session();
        session->SignOn();
        messages = client.messages();
        messages->SessionID = session->SessionID();
        messages->Fetch();
    }
    void sign_off()
    {
        messages.reset();
        if (session)
            session->SignOff();
        session.reset();
    }
    read_message at(int index)
    {
        messages->MsgIndex = index;
        return {messages->RecipAddress(), messages->MsgSubject(), messages->MsgOrigAddress(), messages->MsgNoteText(),
                messages->MsgDateReceived()};
    }
    QStringList subjects()
    {
        QStringList all;
        for (int index = 0; index < messages->MsgCount(); ++index) {
            messages->MsgIndex = index;
            all += messages->MsgSubject();
        }
        return all;
    }
    QString path(const char *name) const { return folder.filePath(QString::fromLatin1(name)); }

    QTemporaryDir folder;
    real_mail_session client;
    std::unique_ptr<mapi::MAPISession> session;
    std::unique_ptr<mapi::MAPIMessages> messages;
};

// The number of the failure that a call ends with; 0: none.
template <typename Call>
quint32 failure_of_call(Call call)
{
    try {
        call();
    } catch (const run_time_error &failure) {
        return failure.number;
    }
    return 0;
}
