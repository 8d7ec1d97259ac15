#include "platform/real/mail/real_mail_client.h"
#include "platform/mail_settings.h"
#include "platform/real/mail/maildir_folder.h"
#include <QFile>

real_mail_client::real_mail_client() : memory(std::make_shared<maildir::client_memory>()) {}

real_mail_client::~real_mail_client() = default;

std::unique_ptr<outlook::Application> real_mail_client::GetObject()
{
    return nullptr;
}

std::unique_ptr<outlook::Application> real_mail_client::CreateObject()
{
    if (mail::configured_kind() != mail::client_kind::maildir)
        return nullptr;
    const mail::maildir_place place = mail::maildir_path();
    return std::make_unique<maildir::application>(QFile::encodeName(place.path), place.made_on_demand, memory);
}
