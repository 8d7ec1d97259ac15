// A page file, and whether it holds a form of the program's own.
#pragma once
#include <QString>

namespace onlineforms {

// "" for a page that carries the program's block of form data; else what the user is told. Throws where it cannot be
// read.
QString why_not_form(const QString &path);

}
