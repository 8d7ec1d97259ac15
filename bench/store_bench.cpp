// What the store costs a mail: looking for a duplicate, storing it, cutting it into a map of 12 fields. Beside it, bare
// SQLite doing one insert a mail in synced batches of 100.
#include "support/test_store.h"
#include <benchmark/benchmark.h>
#include <sqlite3.h>

namespace {

const QString body = QString("Name: Ann Bee\r\nCity: Paris\r\n").repeated(36).toUpper();
constexpr int fields = 12;

QString stored_body()
{
    return body + "\r\n";
}

QString duplicate_select(int mail)
{
    return "select * from orders where ucase(tsl_subject)='ORDER' and month(tsl_recdate)=8 and day(tsl_recdate)=" +
           QString::number(1 + mail / 86400 % 28) +
           " and year(tsl_recdate)=2026 and hour(tsl_recdate)=" + QString::number(mail / 3600 % 24) +
           " and minute(tsl_recdate)=" + QString::number(mail / 60 % 60) +
           " and second(tsl_recdate)=" + QString::number(mail % 60) +
           " and ucase(tsl_Email) ='ANN@B.ORG' and "
           "ucase(tsl_body) ='" +
           body + "'";
}

QDateTime received(int mail)
{
    return QDateTime(QDate(2026, 8, 1 + mail / 86400 % 28), QTime(mail / 3600 % 24, mail / 60 % 60, mail % 60),
                     Qt::UTC);
}

void fetch_one(test_store &store, int mail)
{
    ado::Recordset duplicates;
    duplicates.Open(duplicate_select(mail), store.connection());
    benchmark::DoNotOptimize(duplicates.EOF_());
    ado::Recordset mails;
    mails.Open("select * from orders", store.connection(), ado::cursor_type::keyset, ado::lock_type::optimistic);
    mails.AddNew();
    mails.Fields("tsl_subject").set_value(QString("Order"));
    mails.Fields("tsl_recdate").set_value(received(mail));
    mails.Fields("tsl_Email").set_value(QString("ann@b.org"));
    mails.Fields("tsl_Status").set_value(QString("new"));
    mails.Fields("tsl_body").set_value(stored_body());
    mails.Update();
}

void parse_one(test_store &store, int mail)
{
    ado::Recordset rows;
    rows.Open("select * from cust", store.connection(), ado::cursor_type::keyset, ado::lock_type::optimistic);
    rows.AddNew();
    rows.Fields("tsl_subject").set_value(QString("Order"));
    rows.Fields("tsl_recdate").set_value(received(mail));
    rows.Fields("tsl_Email").set_value(QString("ann@b.org"));
    rows.Fields("tsl_Status").set_value(QString("new"));
    rows.Update();
    rows.Close();
    for (int i = 0; i < fields; ++i)
        store.run("update cust set field" + QString::number(i) + "='Value number " + QString::number(i) +
                  " of the mail' where message_id=(select max(message_id) from cust)");
}

void make_tables(test_store &store)
{
    const qint64 account = store.add_account("orders", "jo@site.org");
    QList<test_store::map_field> columns;
    for (int i = 0; i < fields; ++i)
        columns.append({"field" + QString::number(i), i + 1, true, {}});
    store.add_map("cust", account, "Order", columns);
}

// A barrier each 100 mails, as the fetch has before it moves them.
void fetch_and_parse(benchmark::State &state)
{
    for (auto _ : state) {
        test_store store;
        make_tables(store);
        for (int mail = 0; mail < state.range(0); ++mail) {
            fetch_one(store, mail);
            if (mail % 100 == 99)
                store.connection().barrier();
        }
        for (int mail = 0; mail < state.range(0); ++mail)
            parse_one(store, mail);
        store.connection().barrier();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void fetch_only(benchmark::State &state)
{
    for (auto _ : state) {
        test_store store;
        make_tables(store);
        for (int mail = 0; mail < state.range(0); ++mail) {
            fetch_one(store, mail);
            if (mail % 100 == 99)
                store.connection().barrier();
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void bare_sqlite(benchmark::State &state)
{
    for (auto _ : state) {
        QTemporaryDir folder;
        sqlite3 *db = nullptr;
        sqlite3_open(folder.filePath("bare.db").toUtf8().constData(), &db);
        sqlite3_exec(db, "create table t(id integer primary key, subject, date, mail, body, a,b,c,d,e,f,g,h,i,j,k,l)",
                     nullptr, nullptr, nullptr);
        sqlite3_stmt *insert = nullptr;
        sqlite3_prepare_v2(db, "insert into t values(null,'Order',?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)", -1, &insert,
                           nullptr);
        const QByteArray text = stored_body().toUtf8();
        for (int mail = 0; mail < state.range(0); ++mail) {
            if (mail % 100 == 0)
                sqlite3_exec(db, "begin", nullptr, nullptr, nullptr);
            for (int place = 1; place <= 15; ++place)
                sqlite3_bind_text(insert, place, place == 3 ? text.constData() : "Value number of the mail", -1,
                                  SQLITE_STATIC);
            sqlite3_step(insert);
            sqlite3_reset(insert);
            if (mail % 100 == 99)
                sqlite3_exec(db, "commit", nullptr, nullptr, nullptr);
        }
        sqlite3_finalize(insert);
        sqlite3_close(db);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void one_update(benchmark::State &state)
{
    test_store store;
    make_tables(store);
    store.run("insert into cust(tsl_subject) values('x')");
    for (auto _ : state)
        store.run("update cust set field1='Value number 1 of the mail' where message_id=(select max(message_id) from "
                  "cust)");
}

}

BENCHMARK(bare_sqlite)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(fetch_only)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(fetch_and_parse)->Arg(10000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK(one_update);
BENCHMARK_MAIN();
