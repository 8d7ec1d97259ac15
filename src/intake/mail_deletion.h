// Deleting stored mails and sent ones. A mail's row in a map table, and the mail in the mail client, stay.
// What the lines are: mail_lines.h. The screen: screens/intake/mailfrm.h.
#pragma once
#include "intake/mail_lines.h"

namespace intake {

void delete_stored_mail(const mail_line &line);
void delete_sent_mail(const mail_line &line);
QString stored_mail_delete(const mail_line &line); // the statements
QString sent_mail_delete(const mail_line &line);

}
