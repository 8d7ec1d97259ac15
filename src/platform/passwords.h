// The passwords of the mail servers: in the desktop's keyring, or, where no keyring answers, in the settings file
// (mode 0600), which the user is told. Read once, then remembered until the process ends. To be called on the
// user-interface thread only; waits for the keyring at most some seconds, as long as the patience in force does not
// give up, and only once for one that says nothing.
#pragma once
#include <QString>
#include <functional>

class QObject;

namespace passwords {

enum class of { mailbox, sending }; // settings keys password and smtp_password of the group mail_client
enum class place { nowhere, keyring, settings_file };

// "" without one. Without one of its own the sending server gets the mailbox's, when its user is the same or not set.
QString read(of which);
// For a screen that does not want to wait: false where read will not have to. Else answered is called once, later, when
// the keyring has spoken or was waited for; not when whose is gone by then.
bool ask(const QObject *whose, const std::function<void()> &answered);
// Returns where it lies now; a keyring that says only later that it has it takes it out of the file then. An empty
// text takes it away from everywhere that answers. A failure to write the file throws.
place save(of which, const QString &password);
place where(of which);         // its own: nowhere also when the mailbox's will do
place will_lie();              // where a new one goes, as far as can be told without asking
void forget_remembered();      // the next read asks again
void set_longest_wait(int ms); // for the keyring, each time: 5 seconds when nothing else was said

}
