// A compiled help file (.chm): its pages and pictures, and its table of contents. How it is read: real/chm.
#pragma once
#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace help {

struct contents_line {
    int depth = 0; // 0: outermost
    QString title;
    QString page; // empty: only a heading
};

struct help_file {
    std::vector<contents_line> contents; // in reading order
    QString start_page;                  // empty where the file names none
    QHash<QString, QByteArray> files;    // by their names in lower case, with no slash in front

    std::optional<QByteArray> bytes_of(const QString &name) const; // nothing: not there, or in a damaged stretch
    QStringList pages() const;                                     // the names of all pages, sorted
};

// Throws run_time_error 53 (not found) or 57 (no help file, or too damaged to find anything in it). Where only a
// stretch is damaged, what lies there is missing or garbled (the packing has no check sum), the rest is as it was.
help_file read_help_file(const QString &path);
help_file help_file_in(const QByteArray &bytes); // the same of bytes, for those who try out damaged ones

}
