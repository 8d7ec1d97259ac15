// The answer to a mail of any client.
#pragma once
#include "platform/mail_client.h"
#include "platform/real/mail/header_block.h"

namespace mail {

// Goes out as the address that the mail was sent to: the first one of its To header. before_it_goes is called when the
// store is safe and the answer is not handed over yet.
std::unique_ptr<outlook::ReplyItem> reply_to(const mime::header_block &head, std::function<void()> before_it_goes);

}
