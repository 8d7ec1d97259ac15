// The readable text of an HTML page: for mails that come as HTML only. Line breaks, paragraphs, tables, lists and
// entities are understood, nothing else is; linear in time, indifferent to nesting.
#pragma once
#include <QString>

namespace mime {

// LF line ends. Cells of a row are separated by a blank, rows and paragraphs by line ends; script and style go.
QString html_to_text(QStringView html);

}
