// The Outbox in words: what became of a mail, and what a person is asked before it is touched.
// The screen: screens/frame/outbox_frm.h.
#pragma once
#include "platform/outbox.h"

namespace outbox_words {

QString state_word(outbox::mail_state state); // "Waiting"

// What holds up every mail that waits.
struct hold_up {
    bool sending_is_off = false;
    QString trouble = {}; // what closed the way
};
// The reason, or what the state means where there is none; of a waiting one also what holds up all.
QString why(const outbox::kept_mail &mail, const hold_up &all = {});
// "" where there is something to send at once; else why there is not.
QString why_not_now(const outbox::counts &left, const hold_up &all);
QString recipients(const outbox::kept_mail &mail);

// Before mails are sent once more; "" where nothing needs asking. Of an unknown one nobody knows whether it arrived.
QString send_again_question(const std::vector<outbox::kept_mail> &mails);
QString delete_question(const std::vector<outbox::kept_mail> &mails);
QString to_go_text(qsizetype count); // of many that are deleted or sent again
QString to_go_before_closing_text(qsizetype count);
QString left_alone_text(qsizetype count); // they were being sent at that moment, or gone
QString broken_off_text(qsizetype left, const QString &failure);

QString text_to_read(const QString &id); // head lines and text; bounded

}
