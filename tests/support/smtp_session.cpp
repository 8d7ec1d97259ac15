#include "support/smtp_session.h"

namespace {

bool is_command(const QByteArray &text, const char *name)
{
    const QByteArray word = text.left(qsizetype(qstrlen(name)));
    return word.compare(name, Qt::CaseInsensitive) == 0 && (text.size() == word.size() || text[word.size()] == ' ');
}

}

std::optional<smtp_fault> smtp_shared::due(smtp_step step, qint64 body_bytes)
{
    const std::lock_guard lock(in_use);
    for (smtp_fault &each : faults) {
        if (each.at != step || each.times == 0 || recorder.taken() < each.after_mails ||
            (step == smtp_step::body && body_bytes < each.body_bytes))
            continue;
        each.times -= each.times > 0 ? 1 : 0;
        return each;
    }
    return std::nullopt;
}

void smtp_shared::complain(const QByteArray &about)
{
    const std::lock_guard lock(in_use);
    complaints += about;
}

// True: the step is not to be taken any more.
bool smtp_session::struck(smtp_step step, qint64 body_bytes)
{
    const std::optional<smtp_fault> fault = shared.due(step, body_bytes);
    if (!fault)
        return false;
    switch (fault->deed) {
    case smtp_fault::answer:
        answer(fault->text);
        over = fault->text.startsWith("421") || step == smtp_step::body;
        return true;
    case smtp_fault::reset:
        line.reset_at_end();
        break;
    case smtp_fault::stall:
        line.wait_for_end();
        break;
    case smtp_fault::close:
        line.end_softly(false);
        break;
    }
    over = polite = true; // ended already
    return true;
}

void smtp_session::run()
{
    if (options.tls_at_once && !line.start_tls(shared.context))
        return;
    greet();
    QByteArray text;
    while (!over && line.read_line(text)) {
        if (!text.endsWith("\r\n"))
            shared.complain("bare LF behind a command");
        if (!options.pipelining && !line.received.isEmpty())
            shared.complain("pipelined unasked");
        command(text.trimmed());
    }
    if (over && !polite)
        line.end_softly(true);
}

void smtp_session::greet()
{
    if (!struck(smtp_step::connect))
        answer("220 localhost ESMTP");
}

void smtp_session::command(const QByteArray &text)
{
    if (is_command(text, "EHLO") || is_command(text, "HELO"))
        return ehlo(is_command(text, "EHLO"));
    if (is_command(text, "STARTTLS"))
        return starttls();
    if (is_command(text, "AUTH"))
        return auth(text.mid(5));
    if (is_command(text, "MAIL"))
        return mail(text.mid(5));
    if (is_command(text, "RCPT"))
        return rcpt(text.mid(5));
    if (is_command(text, "DATA"))
        return data();
    if (is_command(text, "QUIT"))
        return quit();
    if (is_command(text, "RSET")) {
        mail_open = false;
        return answer("250 2.0.0 Forgotten");
    }
    answer(is_command(text, "NOOP") ? "250 2.0.0 Here" : "500 5.5.1 Not understood");
}

bool smtp_session::login_offered() const
{
    return !options.user.isEmpty() && (line.secured() || options.certificate.empty() || options.login_without_tls);
}

void smtp_session::ehlo(bool extended)
{
    mail_open = false;
    if (struck(smtp_step::ehlo))
        return;
    QByteArrayList offers{"localhost"};
    if (extended) {
        offers += "ENHANCEDSTATUSCODES";
        if (options.pipelining)
            offers += "PIPELINING";
        if (options.eight_bit)
            offers += "8BITMIME";
        if (options.utf8)
            offers += "SMTPUTF8";
        if (options.size > 0)
            offers += "SIZE " + QByteArray::number(options.size);
        if (!options.certificate.empty() && !line.secured())
            offers += "STARTTLS";
        if (login_offered())
            offers += "AUTH " + options.mechanisms.join(u' ').toLatin1();
    }
    for (qsizetype at = 0; at < offers.size(); ++at)
        answer((at + 1 < offers.size() ? "250-" : "250 ") + offers[at]);
}

void smtp_session::starttls()
{
    if (struck(smtp_step::starttls))
        return;
    if (options.certificate.empty() || line.secured())
        return answer("502 5.5.1 No TLS");
    if (!line.received.isEmpty())
        shared.complain("plain text behind STARTTLS");
    answer("220 2.0.0 Go ahead");
    logged_in = mail_open = false;
    over = polite = !line.start_tls(shared.context); // a client that refused the certificate is told nothing more
}

QByteArray smtp_session::ask(const QByteArray &prompt)
{
    answer("334 " + prompt.toBase64());
    QByteArray text;
    over = over || !line.read_line(text);
    return text.trimmed();
}

bool smtp_session::credentials_right(const QByteArray &mechanism, const QByteArray &first)
{
    const QByteArray user = options.user.toUtf8(), password = options.password.toUtf8();
    if (mechanism == "LOGIN") {
        const QByteArray name = QByteArray::fromBase64(first.isEmpty() ? ask("Username:") : first);
        return QByteArray::fromBase64(ask("Password:")) == password && name == user;
    }
    const QByteArray sent = QByteArray::fromBase64(first.isEmpty() ? ask({}) : first);
    if (mechanism == "PLAIN")
        return sent == '\0' + user + '\0' + password || sent == user + '\0' + user + '\0' + password;
    const bool right = sent == "user=" + user + "\1auth=Bearer " + options.token.toUtf8() + "\1\1";
    if (!right)
        ask("{\"status\":\"401\"}"); // the client answers with an empty line and then learns of the failure
    return right;
}

void smtp_session::auth(const QByteArray &words)
{
    if (struck(smtp_step::auth))
        return;
    const qsizetype blank = words.indexOf(' ');
    const QByteArray mechanism = words.left(blank < 0 ? words.size() : blank).toUpper();
    if (!login_offered())
        return answer("538 5.7.11 Not without TLS");
    if (!options.mechanisms.contains(QString::fromLatin1(mechanism)))
        return answer("504 5.5.4 Not this mechanism");
    logged_in = credentials_right(mechanism, blank < 0 ? QByteArray() : words.mid(blank + 1));
    answer(logged_in ? "235 2.7.0 Welcome" : "535 5.7.8 Not the right user or password");
    const std::lock_guard lock(shared.in_use);
    shared.logins += logged_in ? 1 : 0;
}

void smtp_session::quit()
{
    if (struck(smtp_step::quit))
        return;
    answer("221 2.0.0 Goodbye");
    over = true;
}
