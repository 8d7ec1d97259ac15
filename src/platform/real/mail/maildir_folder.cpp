#include "platform/real/mail/maildir_folder.h"
#include "platform/real/mail/maildir_walk.h"
#include <QDir>
#include <QFile>
#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace maildir {

namespace {

class name_space : public outlook::NameSpace {
public:
    name_space(QByteArray maildir, bool made_on_demand, std::shared_ptr<client_memory> known)
        : root(std::move(maildir)), make_root(made_on_demand), memory(std::move(known))
    {
    }

    std::unique_ptr<outlook::MailFolder> GetDefaultFolder() override
    {
        const QString path = QFile::decodeName(root);
        if (make_root)
            QDir().mkpath(path);       // a failure shows when the folders in it are made
        else if (!QDir(path).exists()) // a slip of the pen, or a disk that is not mounted: no empty Inbox in its place
            throw run_time_error{76, QStringLiteral("Path not found: ") + path};
        make_maildir(root);
        return std::make_unique<folder>(root, QByteArray(), memory);
    }

private:
    QByteArray root;
    bool make_root;
    std::shared_ptr<client_memory> memory;
};

bool is_folder(const QByteArray &path)
{
    struct stat facts {};
    return stat(path.constData(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

std::vector<QByteArray> dotted_names(const QByteArray &root)
{
    std::vector<QByteArray> names;
    DIR *reader = opendir(root.constData());
    if (!reader)
        throw_file_failure("The mail folder cannot be read", root, errno);
    while (const dirent *file = readdir(reader)) {
        const QByteArray name(file->d_name);
        if (name.startsWith('.') && name != "." && name != "..")
            names.push_back(name);
    }
    closedir(reader);
    std::sort(names.begin(), names.end());
    return names;
}

bool can_be_a_folder_name(const QString &name)
{
    if (name.isEmpty() || name.contains(u'/') || name.contains(u'.'))
        return false;
    return std::none_of(name.begin(), name.end(),
                        [](QChar letter) { return letter.category() == QChar::Other_Control; });
}

// By this file other programs know a folder from a mailbox of its own.
void mark_as_folder(const QByteArray &path)
{
    const int mark = open((path + "/maildirfolder").constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (mark >= 0)
        close(mark);
}

}

std::shared_ptr<folder_memory> client_memory::of(const QByteArray &path)
{
    std::shared_ptr<folder_memory> &known = folders[path];
    if (!known)
        known = std::make_shared<folder_memory>(path);
    return known;
}

folder::folder(QByteArray maildir, QByteArray folder_prefix, std::shared_ptr<client_memory> known)
    : root(std::move(maildir)), prefix(std::move(folder_prefix)), memory(std::move(known))
{
}

QByteArray folder::path() const
{
    return prefix.isEmpty() ? root : root + '/' + prefix;
}

QByteArray folder::prepared_path()
{
    if (!prepared)
        make_maildir(path());
    prepared = true;
    return path();
}

QString folder::Name() const
{
    if (prefix.isEmpty())
        return QStringLiteral("Inbox");
    return QFile::decodeName(prefix.sliced(prefix.lastIndexOf('.') + 1));
}

std::vector<std::unique_ptr<outlook::MailFolder>> folder::Folders()
{
    std::vector<std::unique_ptr<outlook::MailFolder>> folders;
    const QByteArray head = prefix + '.';
    for (const QByteArray &name : dotted_names(root)) {
        const bool directly_below =
            name.startsWith(head) && name.size() > head.size() && !name.sliced(head.size()).contains('.');
        if (directly_below && is_folder(root + '/' + name + "/cur"))
            folders.push_back(std::make_unique<folder>(root, name, memory));
    }
    return folders;
}

std::unique_ptr<outlook::MailFolder> folder::add(const QString &name)
{
    if (!can_be_a_folder_name(name))
        throw run_time_error{52, QStringLiteral("Bad file name or number: ") + name};
    auto added = std::make_unique<folder>(root, prefix + '.' + QFile::encodeName(name), memory);
    mark_as_folder(added->prepared_path());
    return added;
}

std::unique_ptr<outlook::Items> folder::items()
{
    return std::make_unique<walk>(memory->of(prepared_path()));
}

application::application(QByteArray maildir, bool made_on_demand, std::shared_ptr<client_memory> known)
    : root(std::move(maildir)), make_root(made_on_demand), memory(std::move(known))
{
}

std::unique_ptr<outlook::NameSpace> application::GetNamespace(const QString &)
{
    return std::make_unique<name_space>(root, make_root, memory);
}

}
