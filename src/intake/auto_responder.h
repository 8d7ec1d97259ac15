// Answering a mail automatically once a map has taken it.
#pragma once
#include <QString>

namespace intake {

// The step of the parser for the row just stored. No map has an answer yet: nothing can configure one.
void send_auto_reply(const QString &map_table, const QString &sender);

}
