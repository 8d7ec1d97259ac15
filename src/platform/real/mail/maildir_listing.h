// What lies in a Maildir, and what is remembered of each mail, so that a mail is read once and not at every fetch.
// The walk over it: maildir_walk.h. Moving: maildir_moves.h.
#pragma once
#include "platform/mail_client.h"
#include <QByteArray>
#include <QDateTime>
#include <memory>
#include <vector>

namespace maildir {

enum class verdict : quint8 { unknown, wanted, not_wanted };

struct listed_mail {
    QByteArray name;        // the file's name, with its flags
    qint64 delivered = 0;   // seconds since 1970
    qint32 base_length = 0; // of the name without the flags
    bool is_new = false;    // lies in "new", else in "cur"
    bool head_known = false;
    bool told = false; // that it cannot be read
    verdict answer = verdict::unknown;
    QByteArray to, subject; // UTF-8, which takes half the room

    QByteArrayView base() const { return QByteArrayView(name).first(base_length); }
};

struct listing {
    std::vector<listed_mail> mails; // by delivery time, then name
    QString verdict_key;            // of the test that the answers are of
};

QByteArrayView base_name(QByteArrayView file_name); // without ":2," and the flags
// The delivery time at the head of a Maildir file name; 0 when there is none that can be true.
qint64 delivery_time_in(QByteArrayView file_name);

// One folder as it was seen last.
class folder_memory {
public:
    explicit folder_memory(const QByteArray &folder) : path(folder) {}

    // The present listing. Nothing is read when neither "cur" nor "new" was touched since; what was known of a mail
    // is kept under any change of its flags. Throws 76 "Path not found" when the folder is gone, 70 when it is closed.
    std::shared_ptr<listing> current();

    const QByteArray path;

private:
    struct folder_stamp {
        qint64 seconds = 0, nanoseconds = 0;
        bool settled = false; // old enough that no later change can carry the same time
    };
    static folder_stamp stamp_of(const QByteArray &folder);
    static bool same_moment(const folder_stamp &a, const folder_stamp &b);

    std::shared_ptr<listing> last;
    folder_stamp last_new, last_cur;
};

// cur, new and tmp, made where they are missing. Throws when they cannot be made.
void make_maildir(const QByteArray &path);

// Of a failed call on a file, with the language's own numbers: 53, 61, 70, 75 or 76.
[[noreturn]] void throw_file_failure(const char *what, const QByteArray &path, int failure);
run_time_error file_failure(const char *what, const QByteArray &path, int failure);

}
