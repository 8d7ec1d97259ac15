// Walks through folders by open descriptors, so that nothing renamed or linked meanwhile leads it elsewhere, and names
// are bytes. What it does: platform/folders.h. Failures name the path as it was reached.
#pragma once
#include <QByteArray>
#include <QByteArrayList>

namespace folder_tree {

// An open folder, never through a link at the path's end.
class folder {
public:
    explicit folder(const QByteArray &path);
    folder(const folder &parent, const QByteArray &name);
    ~folder();
    folder(const folder &) = delete;
    folder &operator=(const folder &) = delete;

    QByteArrayList entries() const; // sorted by their bytes, without "." and ".."
    bool is_same(const folder &other) const;
    QByteArray path_of(const QByteArray &name) const { return path + '/' + name; }

    const QByteArray path;
    const int depth;
    const int descriptor;
};

enum class kind { absent, folder, file, other };
kind kind_of(const folder &where, const QByteArray &name);
kind kind_of(const QByteArray &path);

void remove_folder(const QByteArray &path);
void copy_folder(const QByteArray &path, const QByteArray &into);

[[noreturn]] void fail(int code, const QByteArray &path); // the number of the failure that errno stands for

}
