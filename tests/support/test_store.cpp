#include "support/test_store.h"
#include "make_store/store_maker.h"
#include <QFile>
#include <QVariant>
#include <cstdlib>

namespace {

QString quoted(const QString &text)
{
    return "'" + QString(text).replace("'", "''") + "'";
}

[[noreturn]] void give_up(const QString &why)
{
    qFatal("test_store: %s", qPrintable(why));
    std::abort();
}

// Made once a process; every test store is a copy of it.
const QByteArray &fresh_store()
{
    static const QByteArray bytes = [] {
        const QTemporaryDir place;
        const QString path = place.filePath("fresh.mdb");
        const std::string failure = make_store(path.toStdString(), SOURCE_ROOT "/delivered");
        QFile file(path);
        if (!failure.empty() || !file.open(QIODevice::ReadOnly))
            give_up(QString::fromStdString(failure));
        return file.readAll();
    }();
    return bytes;
}

}

test_store::test_store(setup first_run)
{
    QFile file(path());
    if (!file.open(QIODevice::WriteOnly) || file.write(fresh_store()) != fresh_store().size())
        give_up(file.errorString());
    file.close();
    open(opened);
    if (first_run == setup::done)
        run("update install_tbl set install=yes");
}

void test_store::open(ado::Connection &another) const
{
    another.Provider = "microsoft.jet.oledb.4.0";
    another.ConnectionString = path();
    another.Open();
}

QVariantList test_store::column(const QString &sql)
{
    QVariantList texts;
    ado::Recordset rows;
    for (rows.Open(sql, opened); !rows.EOF_(); rows.MoveNext())
        texts.append(rows[0].is_null() ? QVariant() : QVariant(rows[0].to_text()));
    return texts;
}

QString test_store::cell(const QString &sql)
{
    ado::Recordset rows;
    rows.Open(sql, opened);
    return rows.EOF_() ? QString() : rows[0].text_or_empty();
}

qint64 test_store::add_account(const QString &name, const QString &address)
{
    run("insert into email_tbl(query,email,table_name) values(" + quoted(name) + "," + quoted(address) + "," +
        quoted(name) + ")");
    run("select * into [" + name + "] from model_for_first");
    return cell("select max(id) from email_tbl").toLongLong();
}

qint64 test_store::add_map(const QString &name, qint64 account, const QString &subject, const QList<map_field> &fields,
                           const QString &separator)
{
    run("insert into table_list_tbl (table_name,date_created,query_id,lastformat,seperator,subject) values(" +
        quoted(name) + ",date()," + QString::number(account) + ",no," + quoted(separator) + "," + quoted(subject) +
        ")");
    const QString id = cell("select max(table_id) from table_list_tbl");
    run("select * into " + name + " from model_tbl");
    for (const map_field &field : fields) {
        run("insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values(" + quoted(field.name) +
            "," + quoted("Line" + QString::number(field.piece)) + "," + quoted(field.supporting) + "," +
            (field.label_left_out ? "yes" : "no") + "," + id + ",0)");
        run("alter table " + name + " add column " + field.name + " text(255)");
    }
    return id.toLongLong();
}
