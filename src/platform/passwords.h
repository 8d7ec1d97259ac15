// The passwords of the mail servers: in the desktop's keyring, or, where no keyring answers, in the settings file
// (mode 0600), which the user is told. Read once, then remembered until the process ends. To be called on the
// user-interface thread only; waits for the keyring at most some seconds.
#pragma once
#include <QString>

namespace passwords {

enum class of { mailbox, sending }; // settings keys password and smtp_password of the group mail_client
enum class place { nowhere, keyring, settings_file };

// "" without one. Without one of its own the sending server gets the mailbox's, when its user is the same or not set.
QString read(of which);
// Returns where it lies now; an empty text takes it away from everywhere that
// answers. A failure to write the file throws.
place save(of which, const QString &password);
place where(of which);         // its own: nowhere also when the mailbox's will do
place will_lie();              // where a new one goes, as far as can be told without asking
void forget_remembered();      // the next read asks again
void set_longest_wait(int ms); // for the keyring, each time: 5 seconds when nothing else was said

}
