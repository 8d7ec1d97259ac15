// A check of mail settings that was carried out, and what it told. Ends the test when it told a password, or a step
// that did not begin or end as it should.
#pragma once
#include "platform/mail_client_check.h"
#include <QStringList>

class heard_steps {
public:
    // give_up_at: the step at whose beginning the user gives up.
    explicit heard_steps(const mail::check_request &request, net::patience patience = {},
                         const QString &give_up_at = {});

    QStringList steps() const; // in their order
    QString words(const QString &step) const;
    mail::check_state state(const QString &step) const; // running: there was none
    QString text() const;                               // all of it, for a failing test

    mail::check_outcome outcome;
    qint64 ms = 0;

private:
    void hear(const mail::check_line &line);
    QList<mail::check_line> ended;
    QString begun;
};
