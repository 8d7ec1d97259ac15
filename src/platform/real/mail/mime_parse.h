// What the program reads of one mail, from its bytes. Any bytes will do: nothing here fails, and sizes, numbers of
// parts and depth are bounded. The body: mime_body.h.
#pragma once
#include "platform/real/mail/header_block.h"
#include <QString>
#include <QStringList>

namespace mime {

QStringList to_addresses(const header_block &head); // bare, in their order
QString to_line(const header_block &head);          // the same, joined by "; "
QString subject_of(const header_block &head);       // decoded, one line, without outer blanks
// Reply-To's first address if it can be written to, else From's first one, whatever it is; "" without one.
QString answer_address(const header_block &head);

QString without_outer_blanks(const QString &text); // U+0020 only

// For the answer's headers: "<...>" or "", and the references of the mail with its own id behind them.
QString message_id_of(const header_block &head);
QString references_of_answer(const header_block &head);

}
