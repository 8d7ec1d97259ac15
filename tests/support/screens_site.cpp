#include "support/screens_site.h"
#include "frame/status.h"
#include "frame/store.h"
#include "platform/app_folder.h"
#include "platform/services.h"
#include "platform/settings.h"
#include "support/maildir_files.h"
#include "support/plain_files.h"
#include "support/screens_driver.h"

#include <QDir>
#include <QFile>

screens_site::screens_site()
{
    forget_screens();
    set_app_folder(store.folder());
    QDir().mkpath(maildir());
    SaveSetting("mail_client", "kind", "maildir");
    SaveSetting("mail_client", "maildir", maildir());
    services.mail_client = &mail;
    services.mail_session = &mail_session;
    set_status_sink([this](const QString &line) { status_lines += line; });
    open_store();
}

screens_site::~screens_site()
{
    set_status_sink({});
    forget_screens();
    services = {};
    set_app_folder({});
}

void screens_site::deliver_mail(const QString &to, const QString &subject, const QString &body)
{
    deliver(maildir(), simple_mail{to, "ann@mail.example", subject, body}, next_delivery);
    next_delivery += 60;
}

QString screens_site::last_logged() const
{
    QFile log(file("errorlog.txt"));
    if (!log.open(QIODevice::ReadOnly))
        return {};
    const QStringList lines = QString::fromUtf8(log.readAll()).trimmed().split("\r\n");
    return lines.size() % 5 == 0 ? lines.sliced(lines.size() - 2).join(u'|') : QString("not five lines an entry");
}

void screens_site::spoil_store()
{
    close_store();
    store.connection().Close(); // the handle on one file is shared
    put_file(store.path(), QByteArray(8192, 'x'));
}

qint64 screens_site::rows_of(const QString &table)
{
    return store.cell("select count(*) from " + table).toLongLong();
}
