#include "support/intake_site.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "intake/fetch.h"
#include "intake/fetch_session.h"
#include "intake/mail_source.h"
#include "make_store/store_maker.h"
#include "platform/app_folder.h"
#include "platform/services.h"
#include "platform/settings.h"

#include <QDir>
#include <QFile>
#include <string>

namespace {

// As delivered; made once a process.
const QByteArray &delivered_store()
{
    static const QByteArray bytes = [] {
        const QTemporaryDir place;
        const QString path = place.filePath("fresh.mdb");
        const std::string failure = make_store(path.toStdString(), SOURCE_ROOT "/delivered");
        if (!failure.empty())
            qFatal("no store: %s", failure.c_str());
        return bytes_of_file(path);
    }();
    return bytes;
}

void write_bytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

QString shown_value(const ado::Value &value)
{
    return value.is_null() ? QStringLiteral("(null)") : value.to_text();
}

QString yes_or_no(bool flag)
{
    return flag ? QStringLiteral("yes") : QStringLiteral("no");
}

}

intake_site::intake_site()
{
    set_app_folder(folder.path());
    write_bytes(folder.filePath("mailapp.mdb"), delivered_store());
    QDir().mkpath(maildir());
    SaveSetting("mail_client", "kind", "maildir");
    SaveSetting("mail_client", "maildir", maildir());
    SaveSetting("main", "enabledUnsubDate", QString());
    session = {};
    intake::fetching = {};
    services = {&client, nullptr, nullptr};
    set_status_sink([this](const QString &line) { status_lines += line; });
    open_store();
    run("update install_tbl set install=yes");
}

intake_site::~intake_site()
{
    intake::close_mail_source();
    session = {};
    services = {};
    set_status_sink({});
    set_app_folder({});
}

void intake_site::add_account(const QString &name, const QString &address)
{
    run("insert into email_tbl(query,email,table_name) values(" + quote_sql(name) + "," + quote_sql(address) + "," +
        quote_sql(name) + ")");
    run("select * into [" + name + "] from model_for_first");
}

void intake_site::add_map(const QString &name, int account, const QString &subject, const QString &separator,
                          const std::vector<site_field> &fields)
{
    run("insert into table_list_tbl (table_name,date_created,query_id,lastformat,seperator,subject) values(" +
        quote_sql(name) + ",now," + QString::number(account) + ",no," + quote_sql(separator) + "," +
        quote_sql(subject) + ")");
    run("select * into [" + name + "] from model_tbl");
    const QString id = column("select max(table_id) from table_list_tbl").value(0);
    for (const site_field &field : fields) {
        run("alter table " + name + " add column " + field.name + " text(255)");
        run("insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values(" +
            quote_sql(field.name) + "," + quote_sql(field.position) + "," + quote_sql(field.texts) + "," +
            yes_or_no(field.label_left_out) + "," + id + ",0)");
    }
}

void intake_site::enable_unsubscribing(const QDateTime &since)
{
    SaveSetting("main", "enabledUnsubDate", us_date_time(since));
    run("delete from unsub_detail");
    run("insert into unsub_detail values('','unsubscribe','','',yes,0,'',1)");
    run("delete from unsub_entryno");
    run("insert into unsub_entryno (email,entryno) values('ann@example.net','1037')");
    run("delete from unsubconfirm_tbl");
    run("insert into unsubconfirm_tbl values('You are off the list','Goodbye.',no,'-1')");
}

qint64 intake_site::add_stored_mail(const QString &table, const QString &subject, const QString &body)
{
    run("insert into " + table + " (tsl_subject,tsl_recdate,tsl_Email,tsl_Status,tsl_body) values(" +
        quote_sql(subject) + ",now,'bob@example.net','new'," + quote_sql(body) + ")");
    return column("select max(message_id) from " + table).value(0).toLongLong();
}

QString intake_site::put(const simple_mail &mail)
{
    return deliver(maildir(), mail, next_delivery++);
}

QStringList intake_site::inbox() const
{
    return files_in(maildir());
}

QStringList intake_site::moved() const
{
    return files_in(maildir() + "/.Tessaly_Inbox");
}

void intake_site::put_back()
{
    const QString from = maildir() + "/.Tessaly_Inbox/";
    for (const QString &file : moved()) {
        if (!QFile::rename(from + file, maildir() + u'/' + file))
            qFatal("cannot put back %s", qPrintable(file));
    }
}

bool intake_site::fetch()
{
    return intake::fetch_and_parse();
}

QStringList intake_site::column(const QString &sql) const
{
    ado::Recordset found;
    QStringList values;
    for (found.Open(sql, *session.store_connection); !found.EOF_(); found.MoveNext())
        values += shown_value(found[0]);
    return values;
}

QStringList intake_site::rows(const QString &sql) const
{
    ado::Recordset found;
    QStringList lines;
    for (found.Open(sql, *session.store_connection); !found.EOF_(); found.MoveNext()) {
        QStringList values;
        for (int index = 0; index < found.field_count(); ++index)
            values += shown_value(found[index]);
        lines += values.join(u'|');
    }
    return lines;
}

void intake_site::run(const QString &sql) const
{
    run_sql(sql);
}

QString intake_site::log_text() const
{
    QFile file(folder.filePath("errorlog.txt"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList intake_site::log_entries() const
{
    const QStringList lines = log_text().split("\r\n");
    QStringList entries;
    for (qsizetype at = 0; at + 4 < lines.size(); at += 5)
        entries += lines.sliced(at + 1, 4).join(u'|');
    return entries;
}
