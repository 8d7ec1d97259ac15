// Looks at an IMAP Inbox as often as it is told, over one connection, wanting no mail. At its start and for each line
// "walk" on stdin: one line of JSON with the CPU milliseconds of the walk and the memory of the process.
//   imap_bench FOLDER PORT        FOLDER holds the program folder and the settings; user ann, password secret
#include "platform/app_folder.h"
#include "platform/real/mail/real_mail_client.h"
#include "platform/settings.h"
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <ctime>
#include <iostream>
#include <string>

namespace {

double cpu_ms()
{
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return double(used.tv_sec) * 1e3 + double(used.tv_nsec) / 1e6;
}

double memory_mib()
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024;
    return 0;
}

void tell(double cpu, qint64 count)
{
    std::cout << "{\"cpu_ms\": " << cpu << ", \"count\": " << count << ", \"memory_mib\": " << memory_mib() << "}"
              << std::endl;
}

qint64 walk(real_mail_client &client)
{
    const auto application = client.CreateObject();
    const auto inbox = application->GetNamespace("MAPI")->GetDefaultFolder();
    inbox->Folders();
    const auto items = inbox->items();
    const qint64 count = items->Count();
    items->Find({}, {"none", [](const QString &, const QString &) { return false; }});
    items->finish_moves();
    return count;
}

void configure(const QString &folder, const QString &port)
{
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder + "/config"));
    QDir().mkpath(folder + "/tessaly");
    set_app_folder(folder + "/tessaly");
    const QHash<QString, QString> settings{{"host", "127.0.0.1"}, {"port", port},         {"security", "none"},
                                           {"user", "ann"},       {"password", "secret"}, {"kind", "imap"}};
    for (auto each = settings.begin(); each != settings.end(); ++each)
        SaveSetting("mail_client", each.key(), each.value());
}

}

int main(int count, char **argument)
{
    const QCoreApplication application(count, argument);
    if (count != 3)
        return 2;
    configure(QString::fromLocal8Bit(argument[1]), QString::fromLocal8Bit(argument[2]));
    real_mail_client client;
    tell(0, 0);
    for (std::string word; std::getline(std::cin, word);) {
        const double begin = cpu_ms();
        const qint64 mails = walk(client);
        tell(cpu_ms() - begin, mails);
    }
}
