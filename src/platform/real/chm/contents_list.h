// The table of contents of a help file: nested lists, each line an object with a name and a page.
#pragma once
#include "platform/help_file.h"

namespace chm {

std::vector<help::contents_line> contents_in(const QByteArray &sitemap);

}
