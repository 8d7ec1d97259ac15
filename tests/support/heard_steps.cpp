#include "support/heard_steps.h"
#include <QElapsedTimer>
#include <utility>

heard_steps::heard_steps(const mail::check_request &request, net::patience patience, const QString &give_up_at)
{
    if (!give_up_at.isEmpty())
        patience.give_up = [this, give_up_at] { return begun == give_up_at; };
    QElapsedTimer since;
    since.start();
    outcome = mail::check_mail_client(request, patience, [this](const mail::check_line &line) { hear(line); });
    ms = since.elapsed();
    if (!begun.isEmpty())
        qFatal("without an end: %s", qPrintable(begun));
    for (const QString &secret : {request.password, request.smtp_password})
        if (!secret.isEmpty() && text().contains(secret))
            qFatal("a password was told: %s", qPrintable(text()));
}

void heard_steps::hear(const mail::check_line &line)
{
    const bool begins = line.state == mail::check_state::running;
    if (begins ? !begun.isEmpty() : begun != line.step)
        qFatal("out of order: %s", qPrintable(line.step));
    begun = begins ? line.step : QString();
    if (!begins)
        ended.append(line);
}

QStringList heard_steps::steps() const
{
    QStringList names;
    for (const mail::check_line &line : ended)
        names.append(line.step);
    return names;
}

QString heard_steps::words(const QString &step) const
{
    for (const mail::check_line &line : ended)
        if (line.step == step)
            return line.words;
    return {};
}

mail::check_state heard_steps::state(const QString &step) const
{
    for (const mail::check_line &line : ended)
        if (line.step == step)
            return line.state;
    return mail::check_state::running;
}

QString heard_steps::text() const
{
    QString all;
    for (const mail::check_line &line : ended)
        all += QStringLiteral("%1 (%2): %3\n").arg(line.step, QString::number(int(line.state)), line.words);
    return all;
}
