#include "frame/outbox_words.h"
#include "frame/text.h"
#include "platform/mail_text.h"

#include <algorithm>

namespace outbox_words {

namespace {

constexpr qsizetype most_shown = 100000;

const char *const sending_off = "Sending is switched off in Preferences > Mail Client.";

// What holds up all comes first: the mail's own turn comes only behind it.
QString why_it_waits(const outbox::kept_mail &mail, const hold_up &all)
{
    QStringList reasons;
    if (all.sending_is_off)
        reasons += sending_off;
    else if (!all.trouble.isEmpty())
        reasons += all.trouble;
    if (!mail.reason.isEmpty())
        reasons += mail.reason;
    if (reasons.isEmpty())
        return "It goes out when its turn comes.";
    if (mail.next_try.isValid() && !all.sending_is_off && all.trouble.isEmpty())
        reasons += "It is tried again at " + us_date_time(mail.next_try) + '.';
    return reasons.join(u'\n');
}

QString mails_text(qsizetype count)
{
    return count == 1 ? QStringLiteral("this mail") : QStringLiteral("these %1 mails").arg(count);
}

}

QString state_word(outbox::mail_state state)
{
    switch (state) {
    case outbox::mail_state::held:
        return "Held";
    case outbox::mail_state::refused:
        return "Refused";
    case outbox::mail_state::unknown:
        return "Unknown";
    case outbox::mail_state::waiting:
        break;
    }
    return "Waiting";
}

QString why(const outbox::kept_mail &mail, const hold_up &all)
{
    if (mail.state == outbox::mail_state::waiting)
        return why_it_waits(mail, all);
    if (!mail.reason.isEmpty())
        return mail.reason;
    switch (mail.state) {
    case outbox::mail_state::held:
        return "Many answers to one address within an hour: you decide whether it goes out.";
    case outbox::mail_state::refused:
        return "It was refused for good.";
    case outbox::mail_state::unknown:
        return "The line broke before the server's last word: perhaps it was sent.";
    case outbox::mail_state::waiting:
        break;
    }
    return {};
}

QString why_not_now(const outbox::counts &left, const hold_up &all)
{
    if (left.waiting > 0)
        return all.sending_is_off ? QString(sending_off) : QString();
    if (left.held + left.refused + left.unknown > 0)
        return "No mail waits for its turn. Send Again is for those that are held, refused or unknown.";
    return "No mail waits to be sent.";
}

QString recipients(const outbox::kept_mail &mail)
{
    return mail.To.join(QStringLiteral("; "));
}

QString send_again_question(const std::vector<outbox::kept_mail> &mails)
{
    const auto unknown = std::count_if(mails.begin(), mails.end(), [](const outbox::kept_mail &mail) {
        return mail.state == outbox::mail_state::unknown;
    });
    if (unknown == 0)
        return {};
    if (mails.size() == 1)
        return "Nobody knows whether this mail has arrived. If it has, it arrives twice now.\n\nSend it again?";
    return "Of " + QString::number(unknown) + " of the " + QString::number(mails.size()) +
           " mails nobody knows whether they have arrived. Those that have arrive twice now.\n\nSend them all again?";
}

QString delete_question(const std::vector<outbox::kept_mail> &mails)
{
    return "Delete " + mails_text(qsizetype(mails.size())) + " from the Outbox? What has not gone out never will.";
}

QString to_go_text(qsizetype count)
{
    return QString::number(count) + (count == 1 ? " mail to go." : " mails to go.");
}

QString to_go_before_closing_text(qsizetype count)
{
    return to_go_text(count).chopped(1) + ", then the Outbox closes.";
}

QString broken_off_text(qsizetype left, const QString &failure)
{
    return "This broke off with " + to_go_text(left) + "\n\n" + failure;
}

QString left_alone_text(qsizetype count)
{
    return QString::number(count) + (count == 1 ? " mail was" : " mails were") +
           " left alone: being sent at this moment, or gone already.";
}

QString text_to_read(const QString &id)
{
    const QByteArray bytes = outbox::bytes_of(id);
    if (bytes.isEmpty())
        return "This mail is gone: it was sent, or deleted.";
    const QString whole = mail::readable_text(bytes);
    if (trim(whole).isEmpty())
        return "(This mail has no text.)";
    if (whole.size() <= most_shown)
        return whole;
    return left(whole, most_shown) + "\n\n(The text is longer than what is shown here.)";
}

}
