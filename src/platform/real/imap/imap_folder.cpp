#include "platform/real/imap/imap_folder.h"
#include "platform/real/imap/imap_walk.h"
#include "platform/real/imap/modified_utf7.h"

namespace imap {

namespace {

class name_space : public outlook::NameSpace {
public:
    explicit name_space(std::shared_ptr<account_memory> of) : account(std::move(of)) {}

    std::unique_ptr<outlook::MailFolder> GetDefaultFolder() override
    {
        account->inbox()->open();
        return std::make_unique<folder>(account, inbox_name);
    }

private:
    std::shared_ptr<account_memory> account;
};

// A connection that was kept from an earlier fetch may have died since.
template <typename Ask>
auto asked(mailbox &box, Ask ask)
{
    const bool was_open = box.is_open();
    box.open();
    try {
        return ask(box.server());
    } catch (const run_time_error &failure) {
        if (!was_open || !net::is(failure, net::trouble::closed))
            throw;
    }
    box.open();
    return ask(box.server());
}

}

account_memory::account_memory(QByteArray name, place_source where, const QString &cache_file)
    : account(std::move(name)), place(std::move(where)), cache(std::make_shared<mail_cache>(cache_file))
{
}

const std::shared_ptr<mailbox> &account_memory::of(const QByteArray &wire_name)
{
    std::shared_ptr<mailbox> &box = folders[wire_name];
    if (!box)
        box = std::make_shared<mailbox>(place, account, wire_name, cache);
    return box;
}

folder::folder(std::shared_ptr<account_memory> of, QByteArray wire_name)
    : account(std::move(of)), name(std::move(wire_name))
{
}

QString folder::Name() const
{
    if (name == QByteArray(inbox_name))
        return QStringLiteral("Inbox");
    return from_modified_utf7(account->inbox()->names.last_part(name));
}

std::vector<std::unique_ptr<outlook::MailFolder>> folder::Folders()
{
    mailbox &box = *account->inbox();
    std::vector<std::unique_ptr<outlook::MailFolder>> folders;
    for (const QByteArray &one : asked(box, [&](connection &server) { return box.names.below(server, name); }))
        folders.push_back(std::make_unique<folder>(account, one));
    return folders;
}

std::unique_ptr<outlook::MailFolder> folder::add(const QString &added)
{
    mailbox &box = *account->inbox();
    const QByteArray wire = to_modified_utf7(added);
    box.open(); // only then the delimiter is known
    if (!box.names.may_be_name(wire))
        throw run_time_error{52, QStringLiteral("Bad file name or number: ") + added};
    return std::make_unique<folder>(account,
                                    asked(box, [&](connection &server) { return box.names.add(server, name, wire); }));
}

std::unique_ptr<outlook::Items> folder::items()
{
    account->of(name)->open();
    return std::make_unique<walk>(account->of(name));
}

std::unique_ptr<outlook::NameSpace> application::GetNamespace(const QString &)
{
    return std::make_unique<name_space>(account);
}

}
