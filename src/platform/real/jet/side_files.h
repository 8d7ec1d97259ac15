// What SQLite leaves beside a file, journal and log: it belongs to that file, and beside another one of the same name
// it would bring back what was in the former.
#pragma once
#include <QByteArray>
#include <array>

namespace jet {

constexpr std::array<const char *, 3> side_names{"-journal", "-wal", "-shm"};

// They go beside another name, and back again when the file that takes their place does not come.
class side_files {
public:
    side_files(const QByteArray &of_file, const QByteArray &to_file) : of(of_file), to(to_file) {}
    ~side_files();
    side_files(const side_files &) = delete;
    side_files &operator=(const side_files &) = delete;

    int move() const; // 0, or the number of the failure
    bool stay = false;

private:
    const QByteArray of, to;
};

void remove_side_files(const QByteArray &of);

// Whether the journal or the log beside the chosen file was left by this very file: of one that was replaced by another
// file it tells something else. side is one of the names above.
bool belongs_beside(const QByteArray &file, const char *side);

}
