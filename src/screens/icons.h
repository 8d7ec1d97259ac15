// The program's own small pictures, drawn at run time in the colours of the palette, sharp at any scale.
#pragma once
#include <QIcon>
#include <QString>

// "key1" (ascending), "key2" (descending), "keynone" (not sorted), "fetchmail", "mauditor_mnu", "inbox", "sent",
// "reply", "delete", "sendmail",
// "help", "tips", "mail_client",
// "running", "good", "warning", "failed", "skipped" (steps of a test),
// "information", "clear" (in a text box),
// "tessaly" (the program's). Under the pointer a toolbar's picture lights up.
QIcon drawn_icon(const QString &name);
QIcon lit_icon(const QString &name);                  // the same, lit wherever the pointer is
QPixmap drawn_picture(const QString &name, int size); // one size of it, not lit
