#include "support/fault_site.h"
#include "frame/session.h"
#include "platform/settings.h"
#include "support/intake_site.h"
#include "support/read_store.h"

#include <QDir>
#include <QFile>
#include <cstring>
#include <memory>

namespace {

constexpr int orders = 130; // more than are moved at a time
constexpr int all_mails = orders + 5;
constexpr int mails_to_account = orders + 1; // a duplicate

void copy_folder(const QString &from, const QString &to)
{
    QDir().mkpath(to);
    for (const QFileInfo &entry : QDir(from).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        const QString target = to + u'/' + entry.fileName();
        if (entry.isDir())
            copy_folder(entry.filePath(), target);
        else if (!QFile::copy(entry.filePath(), target))
            qFatal("cannot copy %s", qPrintable(entry.filePath()));
    }
}

void fill_inbox(intake_site &site)
{
    for (int number = 1; number <= orders; ++number) {
        const QString subject = number % 2 ? QString("Order form") : QString("Order %1").arg(number);
        site.put({"orders@example.org", "bob@example.net", subject,
                  QString("full_name: Customer %1\ncity: Rome\n").arg(number)});
        if (number % 50 == 0)
            site.put({"private@example.org", "eva@example.net", "A letter", "Dear Ann\n"});
    }
    --site.next_delivery;
    site.put({"orders@example.org", "bob@example.net", QString("Order %1").arg(orders),
              QString("full_name: Customer %1\ncity: Rome\n").arg(orders)});
    site.put({"private@example.org", "ann@example.net", "Unsubscribe 1037", "Please.\n"});
    site.put({"private@example.org", "eva@example.net", "Unsubscribe 9999", "Please.\n"});
}

// Made once a process. The settings (where the Maildir is, since when unsubscribing applies) are the process's own.
const QTemporaryDir &pattern()
{
    static const auto made = [] {
        auto place = std::make_unique<QTemporaryDir>();
        intake_site site;
        site.add_account("orders", "orders@example.org");
        site.add_map("names", 1, "Order form", "Line", {{"full_name", "Line1", ":"}, {"city", "Line2", ":"}});
        site.enable_unsubscribing();
        fill_inbox(site);
        session.store_connection->Close();
        copy_folder(site.folder.path(), place->path());
        return place;
    }();
    return *made;
}

// The customer that an order names in its first line.
QString customer_in(const QString &body)
{
    return body.section("full_name: ", 1, 1).section(u'\n', 0, 0).trimmed();
}

QStringList customers_in_folder(const QString &maildir)
{
    QStringList customers;
    for (const QString &file : files_in(maildir))
        customers += customer_in(QString::fromUtf8(bytes_of_file(maildir + u'/' + file)));
    return customers;
}

QStringList stored_customers(const QString &store)
{
    QStringList customers;
    for (const QString &body : read_store(store, "select tsl_body from orders order by message_id"))
        customers += customer_in(body);
    return customers;
}

}

fault_site::fault_site()
{
    copy_folder(pattern().path(), folder.path());
}

driver_run fault_site::fetch() const
{
    return run({}, driver_rights::usual);
}

driver_run fault_site::fetch_bound_by_modes() const
{
    return run({}, driver_rights::bound_by_modes);
}

driver_run fault_site::run(const QStringList &variables, driver_rights rights) const
{
    SaveSetting("mail_client", "maildir", path("mailbox"));
    QFile::remove(path("count"));
    return run_driver(folder.path(), variables, rights);
}

driver_run fault_site::fetch_with(const QString &calls, const QStringList &shim_settings) const
{
    QStringList variables{"LD_PRELOAD=" + qEnvironmentVariable("DISK_SHIM"), "DISK_SHIM_CALLS=" + calls,
                          "DISK_SHIM_COUNT=" + path("count")};
    // A driver with the sanitizers in it does not ask to be loaded first then.
    variables += "ASAN_OPTIONS=verify_asan_link_order=0";
    for (const QString &setting : shim_settings)
        variables += "DISK_SHIM_" + setting;
    return run(variables, driver_rights::usual);
}

int fault_site::calls_of_a_whole_fetch(const QString &calls) const
{
    const driver_run fetched = fetch_with(calls, {});
    long count = 0;
    const QByteArray bytes = bytes_of_file(path("count"));
    if (fetched.status == 0 && bytes.size() == sizeof count)
        std::memcpy(&count, bytes.constData(), sizeof count);
    return int(count);
}

QString fault_site::what_is_missing() const
{
    const QStringList left = files_in(path("mailbox"));
    const QStringList moved = files_in(path("mailbox/.Tessaly_Inbox"));
    if (left.size() + moved.size() != all_mails)
        return QString("%1 mails in the Inbox and %2 moved").arg(left.size()).arg(moved.size());
    const QStringList stored = stored_customers(path("mailapp.mdb"));
    for (const QString &customer : customers_in_folder(path("mailbox/.Tessaly_Inbox"))) {
        if (!customer.isEmpty() && !stored.contains(customer))
            return customer + " left the Inbox without a row";
    }
    const bool unsubscribed = !read_store(path("mailapp.mdb"), "select email from unsubscribe_tbl").isEmpty();
    if (customers_in_folder(path("mailbox/.Tessaly_Inbox")).contains(QString()) && !unsubscribed)
        return "the unsubscribe left the Inbox without an effect";
    return {};
}

QString fault_site::what_is_wrong_after_fetch() const
{
    const QString missing = what_is_missing();
    if (!missing.isEmpty())
        return missing;
    // The unsubscribe may have been acted on before the end came: then it is not acted on again and stays.
    const qsizetype moved = files_in(path("mailbox/.Tessaly_Inbox")).size();
    if (moved != mails_to_account && moved != mails_to_account + 1)
        return QString("%1 mails moved").arg(moved);
    QStringList expected;
    QStringList expected_in_map;
    for (int number = 1; number <= orders; ++number) {
        expected += QString("Customer %1").arg(number);
        if (number % 2)
            expected_in_map += expected.last();
    }
    if (stored_customers(path("mailapp.mdb")) != expected)
        return "not each mail is stored once: " + stored_customers(path("mailapp.mdb")).join(", ");
    QStringList in_map = read_store(path("mailapp.mdb"), "select full_name from names order by message_id");
    in_map.removeDuplicates(); // a pass that was ended may repeat rows, but not lose one
    if (in_map != expected_in_map)
        return "the map's table: " + in_map.join(", ");
    const QString unmarked = read_store(path("mailapp.mdb"), "select count(*) from orders where tsl_processed=0 and "
                                                             "tsl_subject='Order form'")
                                 .value(0);
    if (unmarked != "0")
        return unmarked + " fitting mails are not marked";
    const QStringList blocked = read_store(path("mailapp.mdb"), "select email from unsubscribe_tbl");
    return blocked == QStringList{"ann@example.net"} ? QString() : "the block list: " + blocked.join(", ");
}

QString fault_site::store_damage() const
{
    const QString answer = read_store(path("mailapp.mdb"), "PRAGMA integrity_check").join(", ");
    return answer == "ok" ? QString() : answer;
}
