// Answering a mail automatically once a map has taken it. What is answered: auto_reply.h.
#pragma once
#include <QString>

namespace intake {

// Does this map answer the mails that it takes?
bool answers_by_itself(const QString &map_table);

// The step of the parser for the row just stored, the newest of map_table. The reply lies in the Outbox when it
// returns; the token that a subject took is raised then. Nothing happens for a map that does not answer.
void send_auto_reply(const QString &map_table, const QString &sender);

}
