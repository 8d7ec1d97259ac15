// The help in tests: this build's help file beside the program, shown in the real window.
#pragma once
#include "frame/help.h"
#include "screens/frame/help_frm.h"
#include "screens/frame/help_page.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QFile>
#include <QToolButton>

struct help_site : screens_site {
    help_site()
    {
        if (!QFile::copy(qEnvironmentVariable("HELP_FILE"), file("tslhlp.chm")))
            qFatal("this build has no help file");
        set_help_viewer([](const QString &path, const QString &topic) { the<help_frm>().open_help(path, topic); });
    }
    ~help_site() { set_help_viewer({}); }
};

inline help_page &page()
{
    return control<help_page>(the<help_frm>(), "page_t");
}

inline QToolButton &tool(const char *name)
{
    return control<QToolButton>(the<help_frm>(), name);
}
