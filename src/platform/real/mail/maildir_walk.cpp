#include "platform/real/mail/maildir_walk.h"
#include "platform/real/mail/mail_file.h"
#include "platform/real/mail/maildir_item.h"
#include "platform/real/mail/mime_parse.h"
#include <cerrno>

namespace maildir {

namespace {

constexpr int most_told = 20; // a walk; the others wait for the next one

QByteArray file_path(const QByteArray &folder, const listed_mail &mail)
{
    return folder + (mail.is_new ? "/new/" : "/cur/") + mail.name;
}

void keep_head(listed_mail &mail, const mime::header_block &head)
{
    mail.to = mime::to_line(head).toUtf8();
    mail.subject = mime::subject_of(head).toUtf8();
    mail.head_known = true;
}

// Answers to another question are worth nothing; those to a question without a name are not kept either.
void forget_other_answers(listing &mails, const QString &key)
{
    if (!key.isEmpty() && mails.verdict_key == key)
        return;
    for (listed_mail &mail : mails.mails)
        mail.answer = verdict::unknown;
    mails.verdict_key = key;
}

}

walk::walk(std::shared_ptr<folder_memory> folder) : memory(std::move(folder)), moves(std::make_shared<move_queue>()) {}

qint64 walk::Count() const
{
    if (!counted)
        counted = memory->current();
    return qint64(counted->mails.size());
}

outlook::MailItem *walk::Find(const QString &, const outlook::wanted_mails &wanted_ones)
{
    current.reset();
    moves->finish();
    snapshot = counted ? std::exchange(counted, nullptr) : memory->current();
    wanted = wanted_ones;
    forget_other_answers(*snapshot, wanted.key);
    next = 0;
    told = 0;
    return FindNext();
}

outlook::MailItem *walk::FindNext()
{
    current.reset();
    if (moves->is_full())
        moves->finish();
    while (snapshot && next < snapshot->mails.size()) {
        current = item_at(snapshot->mails[next++]);
        if (current)
            return current.get();
    }
    finish_moves();
    return nullptr;
}

void walk::answer_for(listed_mail &mail) const
{
    if (mail.answer == verdict::unknown)
        mail.answer = wanted.test(QString::fromUtf8(mail.to), QString::fromUtf8(mail.subject)) ? verdict::wanted
                                                                                               : verdict::not_wanted;
}

// A mail that cannot be read is told once while the process lives: a walk comes every few seconds. One that vanished
// is nobody's trouble.
void walk::note_unreadable(listed_mail &mail, int failure)
{
    if (failure == 0 || failure == ENOENT || mail.told || told >= most_told)
        return;
    mail.told = true;
    ++told;
    unreadable.push_back(file_failure("The mail cannot be read", file_path(memory->path, mail), failure));
}

// What cannot be read is passed over and looked at again by the next walk.
std::unique_ptr<outlook::MailItem> walk::item_at(listed_mail &mail)
{
    int failure = 0;
    std::optional<file_bytes> file;
    if (!mail.head_known) {
        file = read_head_bytes(file_path(memory->path, mail), failure);
        if (!file) {
            note_unreadable(mail, failure);
            return nullptr;
        }
        keep_head(mail, mime::read_header_block(file->bytes));
    }
    answer_for(mail);
    if (mail.answer != verdict::wanted)
        return nullptr;
    std::optional<QByteArray> bytes;
    if (file && file->whole)
        bytes = std::move(file->bytes);
    else
        bytes = read_whole(file_path(memory->path, mail), failure);
    if (!bytes)
        note_unreadable(mail, failure);
    return bytes ? std::make_unique<item>(memory->path, mail, std::move(*bytes), moves) : nullptr;
}

bool walk::raise_next_failure()
{
    auto failure = unreadable.take_next();
    if (!failure)
        failure = moves->take_next_failure();
    if (failure)
        throw *failure;
    return false;
}

void walk::finish_moves()
{
    moves->finish();
    moves->make_durable();
}

}
