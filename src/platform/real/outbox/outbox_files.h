// The files of the Outbox's folder: ID.eml is a mail, ID.json what is known of it. A mail counts when both are there.
// What the state file says: outbox_record.h.
#pragma once
#include "platform/real/outbox/outbox_record.h"

namespace outbox {

// A state file as it was when it was read; another writing of it has another mark.
struct file_mark {
    quint64 number = 0; // the inode's
    qint64 size = -1, changed = 0;
    bool operator==(const file_mark &) const = default;
};

class outbox_files {
public:
    explicit outbox_files(QString folder) : path(std::move(folder)) {}
    const QString &folder() const { return path; }

    QStringList ids() const; // of whole mails, oldest first
    file_mark mark_of(const QString &id) const;
    std::optional<record> read(const QString &id) const; // nothing when it is gone
    QByteArray eml(const QString &id) const;             // "" when it is gone

    void write(const record &mail, const QByteArray &eml) const; // a new one, durable; throws 61 or 70
    void replace_state(const record &mail) const;                // the same
    // The state first: what is left of a mail by a kill in between is nobody's, and swept. False: it still counts.
    bool remove(const QString &id) const;
    void sweep() const; // what kills have left, and files that lost their other half

private:
    QString of(const QString &id, QLatin1String kind) const { return path + u'/' + id + kind; }
    QString path;
};

}
