// What is known of the mails of the folders, on disk: <app>/mailcache.sqlite. It may be deleted or damaged at any
// time; it is then begun anew. Where it is locked or cannot be written it stays as it is, and the fetch goes on without
// it. Nothing here fails: without a cache everything is read from the server again.
#pragma once
#include "platform/real/imap/mail_list.h"
#include <QSet>
#include <QString>

struct sqlite3;

namespace imap {

struct folder_state {
    quint32 uid_validity = 0; // 0: nothing is known
    quint32 next_uid = 1;
    quint64 highest_change = 0; // HIGHESTMODSEQ as the folder was opened last
    bool operator==(const folder_state &) const = default;
};

class mail_cache {
public:
    explicit mail_cache(QString file_path);
    ~mail_cache();
    mail_cache(const mail_cache &) = delete;
    mail_cache &operator=(const mail_cache &) = delete;

    // folder: server, user and name in one text.
    folder_state read(const QByteArray &folder, mail_list &into);
    // Mails of another uid_validity are forgotten.
    void write(const QByteArray &folder, const folder_state &state, const std::vector<const listed_mail *> &added,
               const std::vector<quint32> &removed);

private:
    bool opened();
    int try_open();
    bool is_still_there() const;
    void close();
    bool is_begun_anew(int result);
    int run(const char *sql);
    int try_write(const QByteArray &folder, const folder_state &state, const std::vector<const listed_mail *> &added,
                  const std::vector<quint32> &removed);

    QString path;
    sqlite3 *file = nullptr;
    // What came once could not be read or written. What comes later would leave a gap: they stay as they are on disk
    // until they are read again.
    QSet<QByteArray> missed;
};

}
