// All mails of the Outbox as they are known in this process: counted without a look at the disk, handed out one at a
// time to whoever delivers. May be used on any thread. What is on disk: outbox_files.h.
#pragma once
#include "platform/real/outbox/outbox_files.h"
#include "platform/real/outbox/sending_journal.h"
#include <QElapsedTimer>
#include <QSet>
#include <map>
#include <mutex>
#include <set>

namespace outbox {

class outbox_shelf {
public:
    explicit outbox_shelf(const QString &folder) : files(folder) {}
    const QString &folder() const { return files.folder(); }

    std::vector<kept_mail> contents(); // after a look at the folder: another hand may have been there
    counts count();                    // without one, but the first time

    // What a kill left is put right: halves go, what is in doubt is kept as unknown. Throws 61 or 70. Once, and again
    // whenever a journal may have been left.
    void settle();
    void add(const record &mail, const QByteArray &eml); // writes it; throws 61 or 70
    qsizetype send_again(const QStringList &ids);        // throws the same, and so does discard; how many it left alone
    qsizetype discard(const QStringList &ids);
    file_content eml(const QString &id) { return files.eml(id); }

    // For the delivery, which is one at a time. Moments are seconds since 1970.
    void delivery_begins(); // settles, and makes the journal its own; throws 61 or 70
    void delivery_ends();
    void make_all_due(); // stays so for whatever is put back
    // In their order. Mailings at most so many, and the others before them.
    QStringList next_due(qint64 moment, qsizetype most_mailings, qsizetype most);
    qint64 next_moment();                           // when a mail that waits for its next try is due; 0: none
    std::optional<record> claim(const QString &id); // nothing when it was discarded
    void put_back(const record &mail);              // as it was
    void keep(const record &mail);                  // on disk too; throws 61 or 70, and has it in memory all the same
    void gone(const QString &id);                   // reached all: it is no more, but for its files
    bool clear(const QString &id);                  // takes them away, on any thread; false: they cannot be

private:
    struct entry {
        record mail;
        file_mark mark;
        bool claimed = false;
    };
    using shelf_map = std::map<QString, entry>;

    void look(const std::optional<QStringList> &ids);
    void load();
    void forget_all_but(const QStringList &ids);
    bool refresh(const QString &id); // false: it is there and cannot be read
    bool tells_all(const journal_verdict &verdict) const;
    void settle_now();
    void put(record mail, file_mark mark); // by value: the caller's may lie in the entry that makes room
    void take(shelf_map::iterator at);
    void queue(const record &mail, bool in);
    void apply_journal(const journal_verdict &verdict);
    void promote(qint64 moment);
    void rewrite(const record &mail);

    std::mutex writing; // while a mail is half there; taken before the other one
    std::mutex guard;   // of all below
    outbox_files files;
    shelf_map mails;
    counts number;
    std::set<QString> urgent, mailings;         // due
    std::set<std::pair<qint64, QString>> later; // when, which
    QSet<QString> leaving;                      // gone, and their files may still be there
    QSet<QString> unread;                       // left alone until they can be read
    QElapsedTimer since_look;                   // valid when something could not be read
    bool loaded = false, settled = false, delivering = false;
};

}
