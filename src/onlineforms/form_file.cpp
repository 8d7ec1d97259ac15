#include "onlineforms/form_file.h"
#include "frame/text.h"
#include "platform/text_file.h"

namespace onlineforms {

namespace {

const char16_t *const data_begins = u"<!--#comment_start-->"; // the form's tables follow, in a comment of the page

}

QString why_not_form(const QString &path)
{
    if (!FileExists(path))
        return "Invalid file name";
    if (!contains_text(ReadAll(path), data_begins))
        return "Invalid file";
    return {};
}

}
