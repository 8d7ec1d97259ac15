// What was on its way when the program ended. A file that lives only while mails are being sent: a kill leaves it, and
// the next start reads from it which mails may have gone without anybody having noted it.
//
// A kill loses no write, so the one mail named last is the only one in doubt. A power cut loses what was not yet on
// disk; for it, mails are announced some at a time and durably, and all of them that nothing more is known of are in
// doubt. Which of the two it was, the kernel's number of this boot tells.
#pragma once
#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>

namespace outbox {

struct journal_verdict {
    bool there = false;
    QSet<QString> gone;     // sent to all: what is left of them can go
    QSet<QString> in_doubt; // sent or not, nobody knows
};
journal_verdict read_journal(const QString &folder);
void remove_journal(const QString &folder); // when its verdict is in the state files, durably

class sending_journal {
public:
    explicit sending_journal(QString folder) : path(std::move(folder)) {}
    ~sending_journal(); // leaves the file: finish was not called
    sending_journal(const sending_journal &) = delete;
    sending_journal &operator=(const sending_journal &) = delete;

    bool is_announced(const QString &id) const { return announced.contains(id); }
    void announce(const QStringList &ids); // durable; throws 61 or 70, as sending does
    void sending(const QString &id);       // now its end goes out
    // A failure of these two leaves it in doubt for the next start only. What is written with the next word of all
    // leaves it in doubt for so long, as the only one.
    enum class write_it { now, with_the_next };
    void gone(const QString &id, write_it when = write_it::now);
    void kept(const QString &id); // its fate is in its state file, durably
    // All that went is taken away durably, and so is the journal, unless a mail's fate is only told by it.
    void finish();

private:
    int append(const QByteArray &line); // 0, or why not
    void write(const QByteArray &line, bool durably);
    void note(const QByteArray &line);

    QString path;
    int file = -1;
    bool is_torn = false; // the last line is not whole
    QByteArray unwritten; // lines
    QSet<QString> announced, open_ends;
};

}
