// The answer to a mail of a client with folders, as its automation interface shows it. What is in it: answer.h.
#pragma once
#include "platform/mail_client.h"
#include "platform/real/mail/header_block.h"

namespace mail {

// before_it_goes is called when the store is safe and the answer is not handed over yet.
std::unique_ptr<outlook::ReplyItem> reply_to(const mime::header_block &head, std::function<void()> before_it_goes);

}
