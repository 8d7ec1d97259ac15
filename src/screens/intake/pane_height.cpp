#include "screens/intake/pane_height.h"
#include "frame/error_log.h"
#include "platform/settings.h"

#include <QEvent>
#include <QSplitter>
#include <utility>

namespace {

const auto share_section = QStringLiteral("screens");
constexpr double list_share = 0.4;
constexpr double most_with_bar = 0.7; // the text stays readable below a high bar

}

pane_height::pane_height(QSplitter &shared) : QObject(&shared), splitter(shared)
{
    splitter.installEventFilter(this);
    splitter.handle(1)->installEventFilter(this);
    connect(&splitter, &QSplitter::splitterMoved, this, &pane_height::splitter_Moved);
}

void pane_height::show_view(const QString &memory_name, const QWidget *bar)
{
    view_name = memory_name;
    view_bar = bar;
    const double kept = GetSetting(share_section, view_name).toDouble();
    if (kept > 0 && kept < 1)
        users_shares[view_name] = kept;
    fit();
}

double pane_height::first_share() const
{
    const double bar = view_bar ? view_bar->sizeHint().height() : 0;
    return qMin(list_share + bar / qMax(1, splitter.height()), most_with_bar);
}

void pane_height::fit()
{
    constexpr int whole = 10000; // the splitter makes pixels of it, at each of its sizes
    const double share = users_shares.contains(view_name) ? users_shares[view_name] : first_share();
    const int upper = qRound(whole * share);
    splitter.setSizes({upper, whole - upper});
}

void pane_height::splitter_Moved()
{
    was_dragged = true;
    const QList<int> sizes = splitter.sizes();
    users_shares[view_name] = double(sizes[0]) / (sizes[0] + sizes[1]);
}

void pane_height::keep_share()
{
    guarded("Mailfrm.frm", "splitter",
            [this] { SaveSetting(share_section, view_name, QString::number(users_shares[view_name], 'f', 3)); });
}

bool pane_height::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &splitter && event->type() == QEvent::Resize)
        fit(); // its height is the new one already
    if (event->type() == QEvent::MouseButtonRelease && std::exchange(was_dragged, false))
        keep_share();
    return QObject::eventFilter(watched, event);
}
