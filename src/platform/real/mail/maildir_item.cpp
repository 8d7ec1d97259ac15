#include "platform/real/mail/maildir_item.h"
#include "platform/clock.h"
#include "platform/real/mail/maildir_folder.h"

namespace maildir {

item::item(const QByteArray &in_folder, const listed_mail &mail, QByteArray file,
           const std::shared_ptr<move_queue> &queue)
    : read_item(std::move(file), wall_clock(mail.delivered), [queue] { queue->finish(); }),
      lies_in(in_folder),
      name(mail.name),
      is_new(mail.is_new),
      moves(queue)
{
}

void item::Move(outlook::MailFolder &target)
{
    moves->ask(lies_in, name, is_new, mail::own_folder<maildir::folder>(target).prepared_path());
}

}
