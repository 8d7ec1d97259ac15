#include "screens/list_view.h"
#include "frame/error_log.h"
#include "platform/settings.h"

#include <QHeaderView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>
#include <numeric>

namespace {

const auto widths_section = QStringLiteral("screens");

// Rows with some air between them.
class airy_rows : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        constexpr int air = 6;
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, air);
    }
};

int last_shown(const QHeaderView &heads)
{
    int column = heads.count() - 1;
    while (column > 0 && heads.isSectionHidden(column))
        --column;
    return column;
}

// The last column takes what is left over, so its width is not the user's.
QString widths_text(const QHeaderView &heads)
{
    QStringList widths;
    for (int column = 0; column < last_shown(heads); ++column)
        widths += QString::number(heads.sectionSize(column));
    return widths.join(u' ');
}

}

list_view::list_view(QWidget *parent) : QTreeView(parent)
{
    setItemDelegate(new airy_rows(this));
    setRootIsDecorated(false);
    setUniformRowHeights(true); // fifty thousand rows open at once
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    header()->setSectionsClickable(true);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    connect(header(), &QHeaderView::sectionClicked, this, &list_view::head_Click);
}

void list_view::set_empty_text(const QString &text)
{
    empty_text = text;
    viewport()->update();
}

void list_view::remember_columns(const QString &name, const QList<int> &widths)
{
    memory_name = name;
    remembered = GetSetting(widths_section, name);
    first_widths = remembered.isEmpty() ? widths : QList<int>();
    const QStringList kept = remembered.split(u' ', Qt::SkipEmptyParts);
    for (int column = 0; column < header()->count(); ++column) {
        const int width = kept.value(column).toInt();
        setColumnWidth(column, width >= 20 ? width : widths.value(column, 120));
    }
    if (!first_widths.isEmpty())
        remembered = widths_text(*header());
}

void list_view::fit_first_widths()
{
    if (first_widths.isEmpty())
        return;
    if (widths_text(*header()) != remembered) // the user's own from here on
        return first_widths.clear();
    const int last = first_widths.last(); // the head lets it grow, never shrink
    const int wanted = std::accumulate(first_widths.begin(), first_widths.end(), -last);
    const int room = std::clamp(viewport()->width() - last, 1, wanted);
    for (int column = 0; column < last_shown(*header()); ++column)
        setColumnWidth(column, first_widths.value(column) * room / wanted);
    remembered = widths_text(*header());
}

void list_view::resizeEvent(QResizeEvent *event)
{
    fit_first_widths();
    QTreeView::resizeEvent(event);
}

void list_view::head_Click(int column)
{
    const bool again = column == sorted_column;
    order = again && order == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    sorted_column = column;
    if (model())
        model()->sort(column, order);
    if (currentIndex().isValid())
        scrollTo(currentIndex());
}

void list_view::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (empty_text.isEmpty() || (model() && model()->rowCount() > 0))
        return;
    QPainter painter(viewport());
    QColor quiet = palette().color(QPalette::Text);
    quiet.setAlpha(170);
    painter.setPen(quiet);
    painter.drawText(viewport()->rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap, empty_text);
}

void list_view::hideEvent(QHideEvent *event)
{
    QTreeView::hideEvent(event);
    const QString widths = widths_text(*header());
    if (memory_name.isEmpty() || widths == remembered)
        return;
    remembered = widths;
    guarded("list_view", "remember_columns", [&] { SaveSetting(widths_section, memory_name, widths); });
}
