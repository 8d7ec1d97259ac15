// Spoiled copies of a store: cut, with bytes turned, with pages of zeros, of another place, or wrongly called free.
// Starting, listing and fetching end with a message or go well, never by a crash or without an end, and what could be
// read of the file before can be read after it. 40 copies, 200 when TESSALY_LONG is set; the seed is printed, and
// TESSALY_SEED repeats a run.
#include "frame/error_log.h"
#include "frame/session.h"
#include "frame/start_up.h"
#include "frame/store.h"
#include "intake/mail_lines.h"
#include "platform/app_folder.h"
#include "support/intake_site.h"
#include "support/store_spoiler.h"

#include <QFile>
#include <QSet>
#include <QtEndian>
#include <QtTest/QTest>
#include <algorithm>
#include <csignal>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr quint32 usual_seed = 20261121;
constexpr unsigned longest_run_s = 60;

enum outcome { all_well = 0, refused_at_start = 1, failed_later = 2, failed_silently = 3 };

QByteArray read_file(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write_file(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

// --- what can be read of a file, by another program's eyes

QByteArray quoted_row(sqlite3_stmt *row)
{
    QByteArray text;
    for (int column = 0; column < sqlite3_column_count(row); ++column)
        text +=
            QByteArray(static_cast<const char *>(sqlite3_column_blob(row, column)), sqlite3_column_bytes(row, column)) +
            '\x1f';
    return text;
}

// Every row of every table that can be reached, as "table", its key and its values.
QSet<QByteArray> readable_rows(const QString &path, const QStringList &tables)
{
    QSet<QByteArray> rows;
    sqlite3 *db = nullptr;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        for (const QString &table : tables) {
            sqlite3_stmt *found = nullptr;
            const QByteArray sql = "SELECT rowid,* FROM \"" + table.toUtf8() + '"';
            if (sqlite3_prepare_v2(db, sql.constData(), -1, &found, nullptr) != SQLITE_OK)
                continue;
            while (sqlite3_step(found) == SQLITE_ROW)
                rows += table.toUtf8() + '\x1f' + quoted_row(found);
            sqlite3_finalize(found);
        }
    }
    sqlite3_close(db);
    return rows;
}

QStringList tables_of(const QString &path)
{
    QStringList names;
    sqlite3 *db = nullptr;
    sqlite3_open_v2(QFile::encodeName(path).constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    const auto add = [](void *into, int, char **texts, char **) {
        *static_cast<QStringList *>(into) += QString::fromUtf8(texts[0]);
        return 0;
    };
    sqlite3_exec(db, "SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite%'", add, &names,
                 nullptr);
    sqlite3_close(db);
    return names;
}

// --- the program, in a process of its own

bool ends_with_a_message(const intake_site &site)
{
    return !session.err_description.isEmpty() && (!site.log_entries().isEmpty() || !site.status_lines.isEmpty());
}

int start_list_and_fetch(intake_site &site)
{
    start begun = start::another_instance;
    if (!guarded("mail_module.bas", "Main", [&] { begun = start_up(); }))
        return ends_with_a_message(site) ? refused_at_start : failed_silently;
    int left_out = 0;
    bool listed = guarded("Mailfrm.frm", "Form_load", [&] {
        for (const intake::mail_line &line : intake::stored_mail_lines(left_out))
            intake::stored_mail_text(line);
        intake::sent_mail_lines();
    });
    listed = listed && left_out == 0;
    const bool fetched = site.fetch();
    const bool closed = guarded("menuFrm.frm", "Form_Unload", close_store);
    if (listed && fetched && closed && session.err_description.isEmpty())
        return all_well;
    return ends_with_a_message(site) ? failed_later : failed_silently;
}

// The exit status, or minus the signal: SIGALRM means that it did not end.
int in_child(intake_site &site)
{
    const pid_t child = fork();
    if (child == 0) {
        alarm(longest_run_s);
        _exit(start_list_and_fetch(site));
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

struct spoiled_site : intake_site {
    spoiled_site()
    {
        add_account("orders", "orders@shop.example");
        add_account("contact", "hello@shop.example");
        add_map("order_map", 1, "Order", "Line", {{"full_name", "Line1", ":"}, {"city", "Line2", ":"}});
        for (int number = 0; number < 300; ++number)
            add_stored_mail(number % 2 ? "orders" : "contact", QString("Mail %1").arg(number),
                            QString("Name: Ann\r\nCity: Rome\r\n").repeated(number % 7 == 0 ? 400 : 4));
        run("update orders set tsl_processed=yes");
        run("update contact set tsl_processed=yes");
        run("delete from orders where message_id<40"); // so that there are free pages
        session.store_connection->Close();
        put({"orders@shop.example", "bob@shop.example", "Something else",
             QString("No map takes this one. ").repeated(4000)});
        put({"hello@shop.example", "eve@shop.example", "A question", "Which roses grow in the shade?"});
    }
    const QString store = folder.filePath("mailapp.mdb");
};

}

class spoiled_store_test : public QObject {
    Q_OBJECT
private slots:
    void a_sound_store_is_fetched_into();
    void start_list_and_fetch_end_with_a_message_and_spoil_nothing_more();
};

void spoiled_store_test::a_sound_store_is_fetched_into()
{
    spoiled_site site;
    const QStringList tables = tables_of(site.store);
    const QSet<QByteArray> before = readable_rows(site.store, tables);
    QVERIFY(before.size() > 250);
    QCOMPARE(in_child(site), int(all_well));
    const QSet<QByteArray> after = readable_rows(site.store, tables);
    QCOMPARE((before - after).size(), 0);
    QCOMPARE(after.size(), before.size() + 2);
}

void spoiled_store_test::start_list_and_fetch_end_with_a_message_and_spoil_nothing_more()
{
    const quint32 seed =
        qEnvironmentVariableIsSet("TESSALY_SEED") ? qEnvironmentVariable("TESSALY_SEED").toUInt() : usual_seed;
    const int copies = qEnvironmentVariableIsSet("TESSALY_LONG") ? 200 : 40;
    qInfo("%d copies, seed %u", copies, seed);
    spoiled_site site;
    const QByteArray sound = read_file(site.store);
    QVERIFY(qFromBigEndian<qint32>(sound.constData() + store_spoiler::first_free_page) > 0);
    const QStringList tables = tables_of(site.store);
    store_spoiler spoil{QRandomGenerator(seed)};
    int counts[4] = {};
    for (int copy = 0; copy < copies; ++copy) {
        QByteArray bytes = sound;
        const QString told = QString("copy %1, %2").arg(copy).arg(spoil.spoil(bytes, copy % 6));
        write_file(site.store, bytes);
        QFile::remove(site.folder.filePath("errorlog.txt"));
        const QSet<QByteArray> before = readable_rows(site.store, tables);
        const int ended = in_child(site);
        site.put_back();
        QVERIFY2(ended == all_well || ended == refused_at_start || ended == failed_later,
                 qPrintable(QString("%1: ended with %2").arg(told).arg(ended)));
        ++counts[ended];
        if (ended == refused_at_start)
            QVERIFY2(read_file(site.store) == bytes, qPrintable(told + ": refused, and yet written to"));
        const QSet<QByteArray> lost = before - readable_rows(site.store, tables);
        QVERIFY2(lost.isEmpty(),
                 qPrintable(QString("%1: %2 rows lost, such as %3")
                                .arg(told)
                                .arg(lost.size())
                                .arg(QString::fromUtf8(lost.isEmpty() ? QByteArray() : *lost.begin()))));
    }
    qInfo("%d refused at the start, %d with a message later, %d without any", counts[refused_at_start],
          counts[failed_later], counts[all_well]);
    QVERIFY(counts[refused_at_start] > copies / 4);
}

QTEST_GUILESS_MAIN(spoiled_store_test)
#include "spoiled_store_test.moc"
