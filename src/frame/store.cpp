#include "frame/store.h"
#include "frame/messages.h"
#include "frame/text.h"
#include "platform/app_folder.h"
#include "platform/process.h"
#include "platform/text_file.h"

void open_store()
{
    const QString path = app_path(u"\\mailapp.mdb");
    if (!FileExists(path)) {
        say(QStringLiteral("Required Database file missing. Please make sure the files exists"));
        end_process(1);
    }
    session.store_connection->Provider = QStringLiteral("microsoft.jet.oledb.4.0");
    session.store_connection->ConnectionString = path;
    session.store_connection->Open();
}

void open_store_if_closed()
{
    if (session.store_connection->State() == 0)
        open_store();
}

void close_store()
{
    if (session.store_connection->State() != 0)
        session.store_connection->Close();
}

QString quote_sql(const QString &value)
{
    QString trimmed = trim(value);
    if (trimmed.contains(u'\''))
        trimmed.replace(QStringLiteral("'"), QStringLiteral("''"));
    return u'\'' + trimmed + u'\'';
}

void run_sql(const QString &sql)
{
    session.store_connection->Execute(sql);
}

ado::Value first_value(const QString &sql)
{
    ado::Recordset rows;
    rows.Open(sql, *session.store_connection);
    return rows[0];
}

bool finds_row(const QString &sql)
{
    ado::Recordset rows;
    rows.Open(sql, *session.store_connection);
    return !rows.EOF_();
}

qint64 row_count(const QString &sql)
{
    ado::Recordset rows;
    rows.Open(sql, *session.store_connection);
    return rows.RecordCount();
}

// Opened as for adding.
QStringList column_names(const QString &table)
{
    ado::Recordset rows;
    rows.Open("select * from " + table, *session.store_connection, ado::cursor_type::keyset,
              ado::lock_type::optimistic);
    QStringList names;
    for (int index = 0; index < rows.field_count(); ++index)
        names += rows.Fields(index).Name();
    return names;
}

quint32 error_of(const QString &sql)
{
    try {
        run_sql(sql);
        return 0;
    } catch (const run_time_error &error) {
        return error.number;
    }
}
