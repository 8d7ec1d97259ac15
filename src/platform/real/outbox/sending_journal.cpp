#include "platform/real/outbox/sending_journal.h"
#include "platform/real/durable_file.h"
#include <QFile>
#include <QHash>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace outbox {

namespace {

constexpr char head[] = "sending 1 ";
constexpr qsizetype digits_of_id = 16;
constexpr qsizetype most_letters_of_id = 8;

QString file_in(const QString &folder)
{
    return folder + QStringLiteral("/sending.journal");
}

QByteArray this_boot()
{
    QFile file(QStringLiteral("/proc/sys/kernel/random/boot_id"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

// "1767268800123456-0a1b2c3d", as the Outbox names its mails.
bool is_id(const QByteArray &word)
{
    const qsizetype letters = word.size() - digits_of_id - 1;
    if (letters < 1 || letters > most_letters_of_id || word[digits_of_id] != '-')
        return false;
    for (qsizetype at = 0; at < word.size(); ++at) {
        const char letter = word[at];
        const bool fits = (letter >= '0' && letter <= '9') || (at > digits_of_id && letter >= 'a' && letter <= 'f');
        if (at != digits_of_id && !fits)
            return false;
    }
    return true;
}

// What is torn and glued to the next line is no word about a mail.
bool is_well_formed(const QByteArrayList &words)
{
    const bool is_of_one = words[0] == "end" || words[0] == "gone" || words[0] == "kept";
    if (is_of_one ? words.size() != 2 : words[0] != "ahead")
        return false;
    return std::all_of(words.begin() + 1, words.end(), is_id);
}

[[noreturn]] void journal_failure(int failure, const QString &folder)
{
    const bool full = failure == ENOSPC || failure == EDQUOT || failure == EFBIG;
    throw run_time_error{full ? 61u : 70u,
                         (full ? QStringLiteral("Disk full: ") : QStringLiteral("Permission denied: ")) +
                             file_in(folder)};
}

}

// The last word about a mail counts. A line that a power cut or a full disk tore is no word.
journal_verdict read_journal(const QString &folder)
{
    journal_verdict verdict;
    QFile file(file_in(folder));
    if (!file.open(QIODevice::ReadOnly))
        return verdict;
    verdict.there = true;
    const QByteArrayList lines = file.readAll().split('\n');
    const QByteArray boot = this_boot();
    const bool same_boot = !boot.isEmpty() && lines.first() == head + boot;
    for (const QByteArray &line : lines.sliced(1, qMax<qsizetype>(lines.size() - 2, 0))) {
        const QByteArrayList words = line.split(' ');
        if (!is_well_formed(words))
            continue;
        for (qsizetype number = 1; number < words.size(); ++number) {
            const QString id = QString::fromLatin1(words[number]);
            const bool doubtful = words[0] == "end" || (words[0] == "ahead" && !same_boot);
            if (doubtful)
                verdict.in_doubt.insert(id);
            if (words[0] == "gone" || words[0] == "kept")
                verdict.in_doubt.remove(id);
            if (words[0] == "gone")
                verdict.gone.insert(id);
        }
    }
    return verdict;
}

void remove_journal(const QString &folder)
{
    sync_folder(folder);
    const QByteArray name = QFile::encodeName(file_in(folder));
    const int file = open(name.constData(), O_WRONLY | O_CLOEXEC);
    if (file < 0 && errno == ENOENT)
        return;
    // Emptied first: the taking away of a name may be undone by a power cut, and old words are wrong words.
    const bool emptied = file >= 0 && ftruncate(file, 0) == 0 && fsync(file) == 0;
    const int failure = errno;
    if (file >= 0)
        close(file);
    if (!emptied || unlink(name.constData()) != 0)
        journal_failure(emptied ? errno : failure, folder);
}

sending_journal::~sending_journal()
{
    note({});
    if (file >= 0)
        close(file);
}

void sending_journal::announce(const QStringList &ids)
{
    const bool is_first = file < 0;
    if (is_first) {
        file = open(QFile::encodeName(file_in(path)).constData(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC,
                    0600);
        if (file < 0)
            journal_failure(errno, path);
        write(head + this_boot() + '\n', false);
    }
    write("ahead " + ids.join(u' ').toLatin1() + '\n', true);
    if (is_first)
        sync_folder(path);
    announced.unite(QSet<QString>(ids.begin(), ids.end()));
}

void sending_journal::sending(const QString &id)
{
    write("end " + id.toLatin1() + '\n', false);
    open_ends.insert(id);
}

void sending_journal::gone(const QString &id, write_it when)
{
    unwritten += "gone " + id.toLatin1() + '\n';
    if (when == write_it::now)
        note({});
    announced.remove(id);
    open_ends.remove(id);
}

void sending_journal::kept(const QString &id)
{
    note("kept " + id.toLatin1() + '\n');
    announced.remove(id);
    open_ends.remove(id);
}

void sending_journal::finish()
{
    if (file < 0)
        return;
    note({});
    close(file);
    file = -1;
    announced.clear();
    if (open_ends.isEmpty())
        remove_journal(path);
}

// In one call: a kill cannot tear what is one write. A full disk can; then the next line begins on a line of its own.
int sending_journal::append(const QByteArray &line)
{
    const QByteArray bytes = (is_torn ? "\n" : "") + std::exchange(unwritten, {}) + line;
    if (bytes.isEmpty())
        return 0;
    const ssize_t written = ::write(file, bytes.constData(), size_t(bytes.size()));
    if (written < 0)
        return errno;
    if (written > 0)
        is_torn = written < bytes.size();
    return written == bytes.size() ? 0 : ENOSPC;
}

void sending_journal::write(const QByteArray &line, bool durably)
{
    if (const int failure = append(line); failure != 0)
        journal_failure(failure, path);
    if (durably && fdatasync(file) != 0)
        journal_failure(errno, path);
}

void sending_journal::note(const QByteArray &line)
{
    if (file >= 0)
        append(line); // on a full disk in vain; the state file, or that there is none, says the same
}

}
