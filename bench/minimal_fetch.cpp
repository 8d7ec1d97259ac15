// The yardstick of bench/fetch: the least that a fetch could be. Reads each file once, inserts one row with its
// columns in synced batches of 100, and renames the file. No MIME, no duplicate test, no maps.
//   minimal_fetch STORE MAILDIR
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr size_t batch_size = 100;

void require(bool done, const char *what)
{
    if (!done) {
        std::perror(what);
        std::exit(1);
    }
}

void run(sqlite3 *store, const char *sql)
{
    require(sqlite3_exec(store, sql, nullptr, nullptr, nullptr) == SQLITE_OK, sql);
}

std::vector<std::string> names_in(const std::string &folder)
{
    std::vector<std::string> names;
    DIR *reader = opendir(folder.c_str());
    require(reader, folder.c_str());
    while (const dirent *file = readdir(reader)) {
        if (file->d_name[0] != '.')
            names.emplace_back(file->d_name);
    }
    closedir(reader);
    std::sort(names.begin(), names.end());
    return names;
}

std::string read_whole(const std::string &path)
{
    const int file = open(path.c_str(), O_RDONLY);
    struct stat facts {};
    require(file >= 0 && fstat(file, &facts) == 0, path.c_str());
    std::string bytes(size_t(facts.st_size), '\0');
    require(read(file, bytes.data(), bytes.size()) == facts.st_size, path.c_str());
    close(file);
    return bytes;
}

std::string header(const std::string &mail, const std::string &name)
{
    const size_t at = mail.find("\n" + name + ": ");
    if (at == std::string::npos)
        return {};
    const size_t from = at + name.size() + 3;
    return mail.substr(from, mail.find('\n', from) - from);
}

class row_writer {
public:
    explicit row_writer(sqlite3 *store)
    {
        require(sqlite3_prepare_v2(store,
                                   "insert into mails(tsl_subject,tsl_recdate,tsl_Email,tsl_Status,tsl_body,"
                                   "tsl_processed) values(?,?,?,'new',?,0)",
                                   -1, &statement, nullptr) == SQLITE_OK,
                "prepare");
    }
    ~row_writer() { sqlite3_finalize(statement); }
    row_writer(const row_writer &) = delete;
    row_writer &operator=(const row_writer &) = delete;

    void write(const std::string &mail, const std::string &received)
    {
        const size_t gap = mail.find("\n\n");
        bind(1, header(mail, "Subject"));
        bind(2, received);
        bind(3, header(mail, "From"));
        bind(4, gap == std::string::npos ? std::string() : mail.substr(gap + 2));
        require(sqlite3_step(statement) == SQLITE_DONE, "insert");
        sqlite3_reset(statement);
    }

private:
    void bind(int at, const std::string &text)
    {
        sqlite3_bind_text(statement, at, text.data(), int(text.size()), SQLITE_TRANSIENT);
    }
    sqlite3_stmt *statement = nullptr;
};

}

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    const std::string maildir = argv[2];
    const std::string target = maildir + "/.Done";
    for (const std::string &part : {target, target + "/cur", target + "/new", target + "/tmp"})
        mkdir(part.c_str(), 0700);
    sqlite3 *store = nullptr;
    require(sqlite3_open(argv[1], &store) == SQLITE_OK, argv[1]);
    run(store, "pragma journal_mode=truncate; pragma synchronous=full; pragma cache_size=-16000;"
               "create table if not exists mails(message_id integer primary key autoincrement,tsl_subject text,"
               "tsl_recdate text,tsl_Email text,tsl_Status text,tsl_body text,tsl_processed int);"
               "create index if not exists by_date on mails(tsl_recdate)");
    {
        row_writer rows(store);
        const auto names = names_in(maildir + "/new");
        for (size_t first = 0; first < names.size(); first += batch_size) {
            const size_t last = std::min(first + batch_size, names.size());
            run(store, "begin immediate");
            for (size_t at = first; at < last; ++at)
                rows.write(read_whole(maildir + "/new/" + names[at]), names[at].substr(0, 10));
            run(store, "commit");
            for (size_t at = first; at < last; ++at) {
                const std::string from = maildir + "/new/" + names[at];
                const std::string to = target + "/cur/" + names[at] + ":2,";
                require(rename(from.c_str(), to.c_str()) == 0, from.c_str());
            }
        }
    }
    sqlite3_close(store);
}
