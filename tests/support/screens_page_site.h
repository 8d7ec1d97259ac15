// A site with nothing set up, for the page "Mail Client". The hands on the page: screens_mail_page.h.
#pragma once
#include "platform/mail_settings.h"
#include "platform/passwords.h"
#include "platform/settings.h"
#include "screens/preferences/mail_client_frm.h"
#include "screens/screen.h"
#include "support/screens_mail_page.h"
#include "support/screens_site.h"
#include <QFile>

inline const char *const secret = "sesame-4711";

struct page_site : screens_site {
    page_site()
    {
        SaveSetting("mail_client", "kind", {});
        SaveSetting("mail_client", "maildir", {});
        passwords::forget_remembered();
        QFile::copy(SOURCE_ROOT "/delivered/mail_providers.tsv", file("mail_providers.tsv"));
    }
    void open() { the<mail_client_frm>().show(); }
    mail::client_settings saved() const { return mail::read_client_settings(); }
};

inline void type_address_and_password()
{
    page::type("address_t", "ann@shop.example");
    page::type("password_t", secret);
}

inline void type_good_settings()
{
    type_address_and_password();
    page::type("host_t", "mail.shop.example");
    page::type("smtp_host_t", "smtp.shop.example");
}
