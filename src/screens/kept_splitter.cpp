#include "screens/kept_splitter.h"
#include "frame/error_log.h"
#include "platform/settings.h"

#include <utility>

namespace {

const auto splitter_section = QStringLiteral("screens");

}

kept_splitter::kept_splitter(QWidget *parent) : QSplitter(parent)
{
    connect(this, &QSplitter::splitterMoved, this, [this] { was_moved = true; });
}

// The parts' sizes as they were; in a window of another size they keep their shares.
void kept_splitter::remember_place(const QString &name)
{
    memory_name = name;
    QList<int> kept;
    for (const QString &size : GetSetting(splitter_section, name).split(u' ', Qt::SkipEmptyParts))
        kept += size.toInt();
    if (kept.size() == count() && !kept.contains(0))
        setSizes(kept);
}

void kept_splitter::keep_arrangement()
{
    if (memory_name.isEmpty() || !std::exchange(was_moved, false))
        return;
    QStringList all;
    for (const int size : sizes())
        all += QString::number(size);
    guarded("kept_splitter", "keep_arrangement", [&] { SaveSetting(splitter_section, memory_name, all.join(u' ')); });
}

void kept_splitter::hideEvent(QHideEvent *event)
{
    keep_arrangement(); // first: what is hidden has no sizes
    QSplitter::hideEvent(event);
}
