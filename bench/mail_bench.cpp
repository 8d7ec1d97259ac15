// The mail client alone: walks a Maildir of form mails, reads To, Subject, sender, time and body of each and moves it;
// then ticks over what stays. Prints microseconds a mail.
//   mail_bench FOLDER NUMBER        FOLDER is made, and is removed by whoever called
#include "platform/app_folder.h"
#include "platform/real/mail/real_mail_client.h"
#include "platform/settings.h"
#include "support/maildir_files.h"
#include <QDir>
#include <QElapsedTimer>
#include <cstdio>

namespace {

constexpr qint64 first_delivery = 1767268800;

void fill(const QString &maildir, int count)
{
    for (const char *part : {"/new", "/cur", "/tmp"})
        QDir().mkpath(maildir + QString::fromLatin1(part));
    for (int number = 0; number < count; ++number) {
        const QString body = QStringLiteral("Name: Customer %1\nStreet: Main Street %1\nCity: Paris\n").arg(number) +
                             QStringLiteral("Remark: the quick brown fox jumps over the lazy dog\n").repeated(14);
        deliver_as(
            maildir, QStringLiteral("new/%1.M%2.host").arg(first_delivery + number).arg(number),
            mail_bytes({"Orders <orders@example.org>", "Ann <ann@example.net>", "Order " + QString::number(number),
                        body, "Date: Thu, 01 Jan 2026 12:00:00 +0000\nMessage-ID: <1@x>\n"}));
    }
}

qint64 walk(outlook::MailFolder &inbox, bool wanted, outlook::MailFolder *target, qint64 &letters)
{
    const auto items = inbox.items();
    const outlook::wanted_mails test{wanted ? "all" : "none",
                                     [wanted](const QString &, const QString &) { return wanted; }};
    qint64 seen = 0;
    for (outlook::MailItem *item = items->Find({}, test); item; item = items->FindNext(), ++seen) {
        letters += item->body().size() + item->SenderName().size() + item->ReceivedTime().time().second();
        if (target)
            item->Move(*target);
    }
    return seen;
}

void report(const char *what, const QElapsedTimer &timer, int count)
{
    std::printf("%-28s %8.2f us a mail, %8.1f ms\n", what, double(timer.nsecsElapsed()) / 1000 / count,
                double(timer.nsecsElapsed()) / 1e6);
}

}

int main(int arguments, char **argument)
{
    if (arguments != 3)
        return 2;
    const QString folder = QString::fromLocal8Bit(argument[1]);
    const int count = QByteArray(argument[2]).toInt();
    QDir().mkpath(folder);
    set_app_folder(folder);
    fill(folder + "/mail", count);
    SaveSetting("mail_client", "maildir", folder + "/mail");
    real_mail_client client;
    const auto application = client.CreateObject();
    const auto inbox = application->GetNamespace("MAPI")->GetDefaultFolder();
    qint64 letters = 0;
    QElapsedTimer timer;
    timer.start();
    walk(*inbox, false, nullptr, letters);
    report("first look, none wanted", timer, count);
    timer.start();
    walk(*inbox, false, nullptr, letters);
    report("tick over the same", timer, count);
    const auto target = inbox->add("Tessaly_Inbox");
    timer.start();
    walk(*inbox, true, target.get(), letters);
    report("read whole and move", timer, count);
    return letters > 0 ? 0 : 1;
}
