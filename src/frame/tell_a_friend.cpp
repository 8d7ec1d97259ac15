#include "frame/tell_a_friend.h"
#include "platform/winopen.h"

#include <QUrl>

namespace {

const char *const friend_recipient = "friends email-id"; // no address: it shows where one belongs
const char *const friend_subject = "Your friend has recommended";
const char *const friend_body =
    "I use Tessaly, a program for the owner of a small web site.\r\n"
    "It takes the mail that my forms send, makes tables of contacts of it, and answers by itself.";

QString url_part(const char *text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

}

QString friend_mail()
{
    return "mailto:" + url_part(friend_recipient) + "?subject=" + url_part(friend_subject) +
           "&body=" + url_part(friend_body);
}

bool tell_a_friend()
{
    return winopen(friend_mail());
}
