// The boxes that speak to the user. Logic and screens show none other. Who shows them is set once: the desktop's boxes
// (screens/message_boxes.h), lines on stderr (the driver), a script (tests).
#pragma once
#include <QString>
#include <optional>

enum class message_icon { none, information, exclamation, question, critical };
enum class message_kind { say, yes_no, ok_cancel, input };

struct message_box {
    message_kind kind = message_kind::say;
    QString text;
    QString title;
    message_icon icon = message_icon::none;
    QString proposal;           // input only
    bool no_is_default = false; // yes_no only: Enter is No
    QString beside = {};        // more words below the text
    bool yes_works = true;      // yes_no only; false: Yes stands greyed
};

class message_service {
public:
    virtual ~message_service() = default;
    // Yes, OK, or the typed text; nothing for No, Cancel and Escape.
    virtual std::optional<QString> show(const message_box &box) = 0;
};

void set_message_service(message_service *service); // not owned

void say(const QString &text, const QString &title = QStringLiteral("Tessaly"),
         message_icon icon = message_icon::information);
void say_with(const QString &text, const QString &beside);
bool yes_no(const QString &text, const QString &title = QStringLiteral("Tessaly"),
            message_icon icon = message_icon::question);
// Before something is lost for good: a second Enter loses nothing.
bool yes_no_before_loss(const QString &text, const QString &title = QStringLiteral("Tessaly"));
// Where Yes leads to something that is not there yet: it stands greyed, and the words below the question say so.
void ask_in_vain(const QString &text, const QString &title, const QString &why);
bool ok_cancel(const QString &text, const QString &title = QStringLiteral("Tessaly"),
               message_icon icon = message_icon::question);
std::optional<QString> input(const QString &prompt, const QString &title = QStringLiteral("Tessaly"),
                             const QString &proposal = {});

// True while a box is open, a guarded routine runs, or an editor call waits: a timer's handler returns at once then.
bool busy();
class busy_scope {
public:
    busy_scope();
    ~busy_scope();
    busy_scope(const busy_scope &) = delete;
    busy_scope &operator=(const busy_scope &) = delete;
};
