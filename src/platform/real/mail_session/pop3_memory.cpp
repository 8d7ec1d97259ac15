#include "platform/real/mail_session/pop3_memory.h"
#include "platform/real/loseable_file.h"
#include <QFile>
#include <algorithm>
#include <map>
#include <sqlite3.h>

namespace pop3 {

namespace {

constexpr qsizetype longest_text = 256 * 1024;
constexpr qsizetype longest_field = 16 * 1024;
constexpr qint64 largest_file = 1024ll * 1024 * 1024;
constexpr int busy_ms = 500;

constexpr const char *schema =
    "pragma journal_mode=wal; pragma synchronous=normal;"
    "create table if not exists mail(mailbox blob not null, id blob not null, recipients blob not null,"
    " subject blob not null, sender blob not null, received integer not null, message_id blob not null,"
    " reference_ids blob not null, text blob, primary key(mailbox, id));";

const QDateTime beginning(QDate(1970, 1, 1), QTime(0, 0), Qt::UTC);

using values = QList<QByteArray>;

constexpr int usual_ports[] = {0, 110, 995}; // 0 is one of the others, by the kind of encryption

QByteArray name_with(const QByteArray &port, const mail::server &server)
{
    return server.host.trimmed().toLower().toUtf8() + '\n' + port + '\n' + server.user.toUtf8();
}

QByteArray blob(sqlite3_stmt *row, int column)
{
    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(row, column));
    return bytes ? QByteArray(bytes, sqlite3_column_bytes(row, column)) : QByteArray();
}

}

QByteArray name_of_mailbox(const mail::server &server)
{
    const bool is_usual =
        std::find(std::begin(usual_ports), std::end(usual_ports), server.port) != std::end(usual_ports);
    return name_with(is_usual ? QByteArray() : QByteArray::number(server.port), server);
}

QByteArrayList former_names_of_mailbox(const mail::server &server)
{
    QByteArrayList names;
    if (name_of_mailbox(server) == name_with({}, server))
        for (const int port : usual_ports)
            names += name_with(QByteArray::number(port), server);
    return names;
}

struct mail_memory::file {
    file(const QString &at, const QByteArray &of) : path(at), mailbox(of) { open(); }
    ~file()
    {
        sqlite3_exec(db, "commit", nullptr, nullptr, nullptr);
        close();
    }
    file(const file &) = delete;
    file &operator=(const file &) = delete;

    void open();
    int open_one(const QByteArray &name);
    void open_nameless();
    void settle(int result);
    // Runs a statement; the first row's columns, or nothing.
    values run(const char *sql, const values &bound);
    template <typename Row>
    void each_row(const char *sql, const values &bound, Row row);
    template <typename Row>
    int step_through(const char *sql, const values &bound, Row row);

    sqlite3_stmt *statement_of(const char *sql);
    void close();

    QString path;
    QByteArray mailbox;
    sqlite3 *db = nullptr;
    bool is_nameless = false;
    std::map<const char *, sqlite3_stmt *> statements; // by the texts of this unit
};

void mail_memory::file::close()
{
    for (const auto &[sql, statement] : statements)
        sqlite3_finalize(statement);
    statements.clear();
    sqlite3_close(db);
    db = nullptr;
}

int mail_memory::file::open_one(const QByteArray &name)
{
    close();
    int result = sqlite3_open_v2(name.constData(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    sqlite3_busy_timeout(db, busy_ms);
    for (const char *sql :
         {schema, "select mailbox, id, recipients, subject, sender, received, message_id, reference_ids, text"
                  " from mail limit 1; begin immediate"})
        if (result == SQLITE_OK)
            result = sqlite3_exec(db, sql, nullptr, nullptr, nullptr);
    return result;
}

void mail_memory::file::open()
{
    loseable_file::make_private(path);
    const int result = open_one(QFile::encodeName(path));
    if (result != SQLITE_OK)
        settle(result);
}

// Gone with this object.
void mail_memory::file::open_nameless()
{
    sqlite3_exec(db, "commit", nullptr, nullptr, nullptr);
    is_nameless = true;
    open_one(QByteArray());
}

// Behind a statement that failed.
void mail_memory::file::settle(int result)
{
    if (is_nameless || !loseable_file::is_spoilt(result)) {
        open_nameless();
        return;
    }
    close();
    loseable_file::remove(path);
    loseable_file::make_private(path);
    if (open_one(QFile::encodeName(path)) != SQLITE_OK)
        open_nameless();
}

// Kept prepared: a walk asks the same of every mail.
sqlite3_stmt *mail_memory::file::statement_of(const char *sql)
{
    sqlite3_stmt *&statement = statements[sql];
    if (!statement)
        sqlite3_prepare_v2(db, sql, -1, &statement, nullptr);
    return statement;
}

template <typename Row>
int mail_memory::file::step_through(const char *sql, const values &bound, Row row)
{
    sqlite3_stmt *statement = statement_of(sql);
    if (!statement)
        return sqlite3_errcode(db);
    int result = SQLITE_OK;
    for (qsizetype index = 0; result == SQLITE_OK && index < bound.size(); ++index)
        result = sqlite3_bind_blob(statement, int(index) + 1, bound[index].constData(), int(bound[index].size()),
                                   SQLITE_STATIC);
    if (result == SQLITE_OK)
        while ((result = sqlite3_step(statement)) == SQLITE_ROW)
            row(statement);
    sqlite3_reset(statement);
    return result;
}

template <typename Row>
void mail_memory::file::each_row(const char *sql, const values &bound, Row row)
{
    const int result = step_through(sql, bound, row);
    if (result != SQLITE_DONE)
        settle(result);
}

values mail_memory::file::run(const char *sql, const values &bound)
{
    values found;
    each_row(sql, bound, [&](sqlite3_stmt *row) {
        for (int column = 0; found.size() < sqlite3_column_count(row); ++column)
            found.append(blob(row, column));
    });
    return found;
}

mail_memory::mail_memory(const QString &path, const QByteArray &mailbox) : self(std::make_unique<file>(path, mailbox))
{
}

mail_memory::~mail_memory() = default;

void mail_memory::take_over(const QByteArray &former_name)
{
    self->run("update or ignore mail set mailbox=? where mailbox=?", {self->mailbox, former_name});
    self->run("delete from mail where mailbox=?", {former_name});
}

QSet<QByteArray> mail_memory::keys()
{
    QSet<QByteArray> all;
    self->each_row("select id from mail where mailbox=?", {self->mailbox},
                   [&](sqlite3_stmt *row) { all.insert(blob(row, 0)); });
    return all;
}

void mail_memory::keep(const QByteArray &key, const reading::mail_facts &facts)
{
    const auto field = [](const QString &text) { return text.left(longest_field).toUtf8(); };
    const QByteArray seconds = QByteArray::number(beginning.secsTo(facts.received));
    self->run("insert or ignore into mail(mailbox, id, recipients, subject, sender, received, message_id,"
              " reference_ids) values(?,?,?,?,?,cast(? as integer),?,?)",
              {self->mailbox, key, field(facts.recipients), field(facts.subject), field(facts.sender), seconds,
               field(facts.message_id), field(facts.references)});
}

std::optional<reading::mail_facts> mail_memory::facts(const QByteArray &key)
{
    const values row = self->run("select recipients, subject, sender, message_id, reference_ids,"
                                 " cast(received as blob) from mail where mailbox=? and id=?",
                                 {self->mailbox, key});
    if (row.size() < 6)
        return std::nullopt;
    return reading::mail_facts{QString::fromUtf8(row[0]), QString::fromUtf8(row[1]),
                               QString::fromUtf8(row[2]), beginning.addSecs(row[5].toLongLong()),
                               QString::fromUtf8(row[3]), QString::fromUtf8(row[4])};
}

void mail_memory::keep_text(const QByteArray &key, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    const values size =
        self->run("select cast(page_count * page_size as blob) from pragma_page_count, pragma_page_size", {});
    if (bytes.size() <= longest_text && size.value(0).toLongLong() < largest_file)
        self->run("update mail set text=? where mailbox=? and id=?", {bytes, self->mailbox, key});
}

std::optional<QString> mail_memory::text(const QByteArray &key)
{
    const values row =
        self->run("select text from mail where mailbox=? and id=? and text is not null", {self->mailbox, key});
    return row.isEmpty() ? std::nullopt : std::optional(QString::fromUtf8(row[0]));
}

void mail_memory::forget_all_but(const QSet<QByteArray> &keys)
{
    for (const QByteArray &key : this->keys())
        if (!keys.contains(key))
            self->run("delete from mail where mailbox=? and id=?", {self->mailbox, key});
}

void mail_memory::commit()
{
    const int result = sqlite3_exec(self->db, "commit; begin immediate", nullptr, nullptr, nullptr);
    if (result != SQLITE_OK)
        self->settle(result);
}

}
