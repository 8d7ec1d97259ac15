#include "make_store/store_maker.h"
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sqlite3.h>
#include <stdexcept>
#include <vector>

namespace {

using record = std::vector<std::string>;

std::string whole_file(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Comma-separated values with quotes, one record a line; the first line names the columns.
std::vector<record> records_of(const std::string &text)
{
    std::vector<record> records{{""}};
    bool quoted = false;
    for (size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        std::string &value = records.back().back();
        if (c == '"' && quoted && at + 1 < text.size() && text[at + 1] == '"')
            value += text[++at];
        else if (c == '"')
            quoted = !quoted;
        else if (c == ',' && !quoted)
            records.back().emplace_back();
        else if (c == '\n' && !quoted)
            records.push_back({""});
        else if (c != '\r' || quoted)
            value += c;
    }
    if (records.back().size() == 1 && records.back()[0].empty())
        records.pop_back();
    return records;
}

size_t place_of(const record &names, const std::string &name)
{
    for (size_t i = 0; i < names.size(); ++i)
        if (names[i] == name)
            return i;
    throw std::runtime_error("the label stocks have no column " + name);
}

class store_file {
public:
    explicit store_file(const std::string &path)
    {
        if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK)
            refuse();
    }
    ~store_file() { sqlite3_close(db); }
    store_file(const store_file &) = delete;
    store_file &operator=(const store_file &) = delete;

    void run(const std::string &sql)
    {
        if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
            refuse();
    }

    void add_label(const std::string &description, const std::string &code, const std::string &size)
    {
        sqlite3_stmt *row = nullptr;
        sqlite3_prepare_v2(db, "INSERT INTO LabelSpec(description, product_code, Product_size_text) VALUES(?,?,?)", -1,
                           &row, nullptr);
        int place = 0;
        for (const std::string *text : {&description, &code, &size})
            sqlite3_bind_text(row, ++place, text->c_str(), -1, SQLITE_STATIC);
        const int result = sqlite3_step(row);
        sqlite3_finalize(row);
        if (result != SQLITE_DONE)
            refuse();
    }

private:
    [[noreturn]] void refuse() { throw std::runtime_error(sqlite3_errmsg(db)); }
    sqlite3 *db = nullptr;
};

void fill(const std::string &path, const std::string &delivered)
{
    store_file store(path);
    store.run("PRAGMA synchronous=OFF; PRAGMA journal_mode=OFF; BEGIN");
    store.run(whole_file(delivered + "/store/schema.sql"));
    store.run(whole_file(delivered + "/store/rows.sql"));
    const auto labels = records_of(whole_file(delivered + "/labels/label_stock.csv"));
    const size_t description = place_of(labels[0], "description");
    const size_t code = place_of(labels[0], "product_code");
    const size_t size = place_of(labels[0], "size_text");
    for (size_t i = 1; i < labels.size(); ++i)
        store.add_label(labels[i].at(description), labels[i].at(code), labels[i].at(size));
    store.run("COMMIT");
}

}

std::string make_store(const std::string &target, const std::string &delivered)
{
    const std::string unfinished = target + ".new";
    std::remove(unfinished.c_str());
    try {
        fill(unfinished, delivered);
    } catch (const std::exception &failure) {
        std::remove(unfinished.c_str());
        return failure.what();
    }
    return std::rename(unfinished.c_str(), target.c_str()) == 0 ? "" : "cannot write " + target;
}
