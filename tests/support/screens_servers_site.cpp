#include "support/screens_servers_site.h"
#include "platform/mail_delivery.h"
#include "platform/passwords.h"
#include "platform/settings.h"
#include "screens/preferences/mail_client_frm.h"
#include "screens/screen.h"
#include "support/screens_mail_page.h"

namespace {

constexpr int starttls_line = 1;
constexpr int smtp_line = 0;
constexpr qint64 noon = 1786017600; // 6 August 2026

dovecot_options secured(const certificates &made)
{
    dovecot_options options;
    options.certificate = made.good();
    return options;
}

smtp_options with_login(const certificates &made)
{
    smtp_options options;
    options.certificate = made.good();
    options.user = "ann";
    options.password = "apple tree";
    return options;
}

}

servers_site::servers_site() : mailbox(secured(made)), sink(with_login(made))
{
    SaveSetting("mail_client", "kind", {});
    passwords::forget_remembered();
}

servers_site::~servers_site()
{
    delivery::stop();
}

void servers_site::type_settings(const QString &password, const char *kind, quint16 port) const
{
    the<mail_client_frm>().show();
    page::type("address_t", "ann@localhost");
    page::choose(kind);
    page::type("password_t", password);
    page::type("host_t", "localhost");
    page::type("user_t", "ann");
    page::pick("security_c", starttls_line);
    const bool is_pop3 = QByteArrayView(kind) == "pop3_o";
    page::set_port("port_s", port != 0 ? port : is_pop3 ? mailbox.pop3_port : mailbox.imap_port);
    page::pick("send_c", smtp_line);
    page::type("smtp_host_t", "localhost");
    page::pick("smtp_security_c", starttls_line);
    page::set_port("smtp_port_s", sink.port());
    page::type("from_t", "ann@localhost");
    page::type("authority_t", made.authority());
}

void servers_site::put_order(int number, const QString &text)
{
    mailbox.deliver(
        "ann", simple_mail{"orders@shop.example", "visitor@mail.example", "Order " + QString::number(number), text},
        noon + number);
}
