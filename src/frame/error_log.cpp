#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/text.h"
#include "platform/app_folder.h"
#include "platform/clock.h"
#include "platform/network.h"
#include "platform/outside_effects.h"
#include "platform/text_file.h"

#include <QFile>

namespace {

void close_shared_recordsets()
{
    for (const auto *recordset : {&session.shared_rs, &session.format_rs, &session.mail_rs, &session.map_rs}) {
        if ((*recordset)->State() != 0)
            (*recordset)->Close();
    }
}

void let_go_of_recordsets()
{
    try {
        close_shared_recordsets();
    } catch (const run_time_error &) {
        // Closing drops what was not updated; the failure that matters is another one.
    }
}

void keep_error(const run_time_error &error, const char *form, const char *routine)
{
    session.err_number = error.number;
    session.err_description = error.description;
    session.err_form = QString::fromLatin1(form);
    session.err_routine = QString::fromLatin1(routine);
}

bool is_logged(const run_time_error &error)
{
    if (net::is(error, net::trouble::cancelled))
        return false;
    return !(net::present_patience().is_tick && net::is_network_failure(error));
}

// One line of the log is one line: a line end inside a text would shift all that follows.
QString as_log_line(QString text)
{
    return text.replace(QStringLiteral("\r\n"), QStringLiteral(" ")).replace(u'\r', u' ').replace(u'\n', u' ');
}

// The former text ends its last line before the new entry begins; of it only the last two bytes are looked at.
QByteArray line_end_before_entry(const QString &path)
{
    QFile log(path);
    if (!log.open(QIODevice::ReadOnly) || log.size() == 0)
        return {};
    log.seek(qMax<qint64>(0, log.size() - 2));
    return log.read(2) == "\r\n" ? QByteArray() : QByteArray("\r\n");
}

}

bool guarded(const char *form, const char *routine, const std::function<void()> &body)
{
    const busy_scope while_running;
    try {
        body();
        return true;
    } catch (const run_time_error &error) {
        keep_error(error, form, routine);
    }
    if (is_logged({session.err_number, session.err_description}))
        write_error_log();
    else
        let_go_of_recordsets();
    return false;
}

bool guarded_step(const char *form, const char *routine, const std::function<void()> &body)
{
    const busy_scope while_running;
    try {
        body();
        return true;
    } catch (const run_time_error &error) {
        if (net::is_network_failure(error))
            throw;
        keep_error(error, form, routine);
    }
    write_error_log();
    return false;
}

void write_error_log()
{
    const QString path = app_path(u"\\errorlog.txt");
    let_go_of_recordsets();
    try {
        before_outside_effect();
    } catch (const run_time_error &error) {
        status_line(QStringLiteral("The store cannot be written: ") + as_log_line(error.description));
    }
    const QStringList entry{us_date_time(now()), QString::number(qint32(session.err_number)),
                            as_log_line(session.err_description), session.err_form, session.err_routine};
    try {
        Append(path, line_end_before_entry(path) + entry.join(QStringLiteral("\r\n")).toUtf8());
    } catch (const run_time_error &) {
        status_line(QStringLiteral("The error log cannot be written. ") + session.err_routine + QStringLiteral(": ") +
                    as_log_line(session.err_description));
    }
}
