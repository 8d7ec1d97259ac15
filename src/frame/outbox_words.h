// The Outbox in words: what became of a mail, and what a person is asked before it is touched.
// The screen: screens/frame/outbox_frm.h.
#pragma once
#include "platform/outbox.h"

namespace outbox_words {

QString state_word(outbox::mail_state state); // "Waiting"
// The reason, or what the state means where there is none.
QString why(const outbox::kept_mail &mail, bool sending_is_on);
QString recipients(const outbox::kept_mail &mail);

// Before mails are sent once more; "" where nothing needs asking. Of an unknown one nobody knows whether it arrived.
QString send_again_question(const std::vector<outbox::kept_mail> &mails);
QString delete_question(const std::vector<outbox::kept_mail> &mails);
QString to_go_text(qsizetype count);      // of many that are deleted or sent again
QString left_alone_text(qsizetype count); // they were being sent at that moment, or gone

QString text_to_read(const QString &id); // head lines and text; bounded

}
