#include "support/delivery_site.h"
#include "platform/app_folder.h"
#include "support/maildir_files.h"
#include <QDir>
#include <QFile>

delivery_site::delivery_site(quint16 port)
{
    set_app_folder(folder.path());
    settings.configured = true;
    settings.sending = port == 0 ? mail::send_by::keep : mail::send_by::smtp;
    settings.smtp = {QStringLiteral("127.0.0.1"), port, mail::security::none, {}};
    settings.smtp_logs_in = false;
    settings.mailings_per_hour = 0;
    set(settings);
}

delivery_site::~delivery_site()
{
    delivery::stop();
    set_app_folder({});
    mail::write_client_settings({});
}

void delivery_site::set(const mail::client_settings &changed)
{
    settings = changed;
    mail::write_client_settings(settings);
}

QString delivery_site::hand_over(const QString &to, outbox::mail_kind kind)
{
    outbox::outgoing_mail mail;
    mail.Kind = kind;
    mail.SendingAccount = QStringLiteral("orders@example.org");
    mail.To = to.split(QStringLiteral("; "));
    mail.Subject = QStringLiteral("Hello");
    mail.body = QStringLiteral("A line of text.\n").repeated(20);
    return outbox::hand_over(mail);
}

void delivery_site::hand_over_many(int count)
{
    const QString model = hand_over(QStringLiteral("model@example.net"), outbox::mail_kind::mailing);
    const QByteArray eml = outbox::bytes_of(model);
    const QByteArray state = bytes_of_file(path(QStringLiteral("outbox/") + model + QStringLiteral(".json")));
    const auto write = [this](const QString &name, QByteArray bytes, int number) {
        QFile file(path(name));
        bytes.replace("model@example.net", QByteArray::number(number) + "@example.net");
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("a mail of the test cannot be written");
    };
    for (int number = 1; number <= count; ++number) {
        const QString id = QStringLiteral("outbox/1767268800%1-a").arg(number, 6, 10, QChar(u'0'));
        write(id + QStringLiteral(".eml"), eml, number);
        write(id + QStringLiteral(".json"), state, number);
    }
    outbox::discard(model);
    begin_a_new_run();
}

QString delivery_site::deliver()
{
    net::patience patience;
    patience.connect_ms = patience.answer_ms = 2000;
    try {
        delivery::deliver_all(patience);
    } catch (const run_time_error &error) {
        return error.description;
    }
    return {};
}

QStringList delivery_site::outbox_files() const
{
    return QDir(path(QStringLiteral("outbox"))).entryList(QDir::Files, QDir::Name);
}

void delivery_site::begin_a_new_run() const
{
    set_app_folder(QStringLiteral("/nowhere"));
    outbox::count();
    set_app_folder(folder.path());
}

QStringList waiting_addresses()
{
    QStringList addresses;
    for (const outbox::kept_mail &mail : outbox::contents())
        if (mail.state == outbox::mail_state::waiting)
            addresses += mail.To;
    return addresses;
}

outbox::kept_mail only_mail()
{
    const auto mails = outbox::contents();
    if (mails.size() != 1)
        qFatal("there are %zu mails in the Outbox, not one", mails.size());
    return mails.front();
}
