// The files of the Outbox's folder: ID.eml is a mail, ID.json what is known of it. A mail counts when its state
// is there: it is written last and removed first. What the state file says: outbox_record.h.
#pragma once
#include "platform/real/outbox/outbox_record.h"

namespace outbox {

// A state file as it was when it was read; another writing of it has another mark.
struct file_mark {
    quint64 number = 0; // the inode's
    qint64 size = -1, changed = 0;
    bool operator==(const file_mark &) const = default;
};

// What a file holds, or the errno for which that is not known; an empty string is then no content.
struct file_content {
    QByteArray bytes;
    int failure = 0;
    file_mark mark = {};
};

// A state that cannot be read now is no damaged one: nothing is known of its mail for the moment.
struct state_reading {
    std::optional<record> mail; // nothing when it is gone, or cannot be read
    bool is_readable = true;
    file_mark mark = {};
};

class outbox_files {
public:
    explicit outbox_files(QString folder) : path(std::move(folder)) {}
    const QString &folder() const { return path; }

    std::optional<QStringList> ids() const; // of the mails, oldest first; nothing when the folder cannot be read
    file_mark mark_of(const QString &id) const;
    state_reading read(const QString &id) const;
    file_content eml(const QString &id) const;

    void write(const record &mail, const QByteArray &eml) const; // a new one, durable; throws 61 or 70
    void replace_states(const std::vector<record> &mails) const; // the same
    // The state first: what is left of a mail by a kill in between is nobody's, and swept. False: it still counts.
    bool remove(const QString &id) const;
    // Away with what kills have left: halves of files, and mails without a state. Gives ids().
    std::optional<QStringList> sweep() const;

private:
    QString of(const QString &id, QLatin1String kind) const { return path + u'/' + id + kind; }
    QString path;
};

}
