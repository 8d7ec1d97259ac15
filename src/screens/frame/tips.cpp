#include "screens/frame/tips.h"
#include "frame/text.h"
#include "platform/settings.h"
#include "platform/text_file.h"

void tip_list::read(const QString &file)
{
    tips.clear();
    if (!FileExists(file))
        return;
    for (const QString &line : ReadAll(file).split(u'\n')) {
        const QString tip = trim(QString(line).remove(u'\r'));
        if (!tip.isEmpty())
            tips += tip;
    }
}

QString tip_list::current() const
{
    return tips.value(position);
}

void tip_list::next()
{
    start_with(position + 1);
}

void tip_list::previous()
{
    start_with(position + tips.size() - 1);
}

void tip_list::start_with(qsizetype number)
{
    if (!tips.isEmpty())
        position = number % tips.size();
}

bool tip_list::shown_at_start()
{
    return GetSetting("tips", "at_start", "true") != u"false";
}

void tip_list::set_shown_at_start(bool show)
{
    SaveSetting("tips", "at_start", show ? "true" : "false");
}
