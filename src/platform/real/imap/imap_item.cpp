#include "platform/real/imap/imap_item.h"
#include "platform/real/imap/imap_folder.h"

namespace imap {

item::item(const listed_mail &mail, QByteArray fetched, const std::shared_ptr<move_queue> &queue)
    : read_item(std::move(fetched), QDateTime::fromSecsSinceEpoch(mail.received, Qt::UTC), [queue] { queue->send(); }),
      uid(mail.uid),
      moves(queue)
{
}

void item::Move(outlook::MailFolder &target)
{
    moves->ask(uid, mail::own_folder<imap::folder>(target).wire_name());
}

}
