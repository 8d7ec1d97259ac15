#include "screens/list_view.h"
#include "frame/error_log.h"
#include "platform/settings.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
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
    const QRect line = visualRect(currentIndex());
    const bool was_seen = line.isValid() && line.top() >= 0 && line.bottom() <= event->oldSize().height();
    fit_first_widths();
    QTreeView::resizeEvent(event);
    if (was_seen) // what takes the height is often the text of this very line
        scrollTo(currentIndex());
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
    say_how_it_is_sorted();
}

// From left to right.
QList<int> list_view::shown_heads() const
{
    QList<int> shown;
    for (int place = 0; place < header()->count(); ++place)
        if (const int column = header()->logicalIndex(place); !isColumnHidden(column))
            shown += column;
    return shown;
}

// The marks on the heads are only seen.
void list_view::say_how_it_is_sorted()
{
    if (spoken_name.isEmpty())
        spoken_name = accessibleName();
    const QString head = model() ? model()->headerData(sorted_column, Qt::Horizontal).toString() : QString();
    setAccessibleName(spoken_name + ", sorted by " + head +
                      (order == Qt::AscendingOrder ? ", ascending" : ", descending"));
}

// Where digits are typed with Shift, Ctrl and Shift go with them.
void list_view::keyPressEvent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers keys = event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    const int number = event->key() - Qt::Key_1;
    const QList<int> heads = shown_heads();
    if (keys == Qt::ControlModifier && number >= 0 && number < qMin(qsizetype(9), heads.size()))
        head_Click(heads[number]);
    else
        QTreeView::keyPressEvent(event);
}

void list_view::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    if (!QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier))
        shift_began = current;
}

void list_view::take_up_shift()
{
    const int one = shift_began.row(), other = currentIndex().row();
    if (one < 0 || other < 0)
        return;
    const QItemSelection range(model()->index(qMin(one, other), 0),
                               model()->index(qMax(one, other), model()->columnCount() - 1));
    for (int row = qMin(one, other); row <= qMax(one, other); ++row)
        if (!selectionModel()->isRowSelected(row))
            return;
    selectionModel()->select(range, QItemSelectionModel::Deselect);
    selectionModel()->select(range, QItemSelectionModel::Select); // the newest choice: Shift widens or narrows that one
}

void list_view::contextMenuEvent(QContextMenuEvent *event)
{
    auto *menu = new QMenu(this);
    menu->setObjectName("sort_mnu");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    int number = 0;
    for (const int column : shown_heads())
        add_sort_command(*menu, column, ++number);
    menu->popup(event->globalPos());
}

void list_view::add_sort_command(QMenu &menu, int column, int number)
{
    const QString head = model() ? model()->headerData(column, Qt::Horizontal).toString() : QString();
    const QString key = number <= 9 ? "\tCtrl+" + QString::number(number) : QString();
    QAction *command = menu.addAction("Sort by " + QString(head).replace(u'&', QStringLiteral("&&")) + key);
    command->setCheckable(true);
    command->setChecked(column == sorted_column);
    connect(command, &QAction::triggered, this, [this, column] { head_Click(column); });
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
    keep_arrangement();
}

void list_view::keep_arrangement()
{
    const QString widths = widths_text(*header());
    if (memory_name.isEmpty() || widths == remembered)
        return;
    remembered = widths;
    guarded("list_view", "remember_columns", [&] { SaveSetting(widths_section, memory_name, widths); });
}
