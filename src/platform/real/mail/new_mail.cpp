#include "platform/real/mail/new_mail.h"

namespace mail {

namespace {

constexpr int mail_item_type = 0;

// Only what joins the addresses is taken away: an address is never mended.
QStringList joined_addresses(const QString &line)
{
    QStringList addresses;
    for (QStringView piece : QStringView(line).split(u';')) {
        while (!addresses.isEmpty() && piece.startsWith(u' '))
            piece = piece.sliced(1);
        addresses.append(piece.toString());
    }
    if (addresses.size() > 1 && addresses.last().isEmpty())
        addresses.removeLast();
    return addresses;
}

class new_item : public outlook::NewMail {
public:
    void Send() override
    {
        outbox::outgoing_mail mail;
        mail.Kind = Kind;
        mail.SendingAccount = SendingAccount;
        mail.To = joined_addresses(To);
        mail.Subject = Subject;
        mail.body = Body;
        mail.HTMLBody = HTMLBody;
        mail.Headers = Headers;
        outbox::hand_over(mail);
    }
};

}

std::unique_ptr<outlook::NewMail> new_mail(int type)
{
    if (type != mail_item_type)
        throw run_time_error{5, QStringLiteral("Invalid procedure call or argument")};
    return std::make_unique<new_item>();
}

}
