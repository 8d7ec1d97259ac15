#include "platform/real/mail_session/mailbox.h"
#include "platform/real/mail/arrival.h"
#include "platform/real/mail/mime_parse.h"

namespace reading {

mail_facts facts_in(const mime::header_block &head)
{
    return {mime::to_line(head),      mime::subject_of(head),    mime::answer_address(head),
            mime::arrival_time(head), mime::message_id_of(head), mime::references_of_answer(head)};
}

}
