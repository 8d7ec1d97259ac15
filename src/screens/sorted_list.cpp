#include "screens/sorted_list.h"
#include "frame/text.h"
#include "screens/icons.h"

#include <QHash>
#include <algorithm>

sorted_list::sorted_list(const QStringList &heads, QObject *parent) : QAbstractTableModel(parent), captions(heads) {}

void sorted_list::show_lines(std::vector<int> lines)
{
    shown = std::move(lines);
    sort_shown();
}

QVariant sorted_list::whole_text_tip(const QString &text)
{
    return text.isEmpty() ? QVariant() : "<qt>" + left(text, 2000).toHtmlEscaped() + "</qt>";
}

void sorted_list::change_lines(const std::vector<int> &becomes, int count, const std::function<void()> &change)
{
    take_out(becomes);
    change();
    for (int &line : shown)
        line = becomes[size_t(line)];
    if (!shown.empty())
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    add_at_the_end(count);
    const auto before = [this](int a, int b) { return stands_before(a, b); };
    if (!std::is_sorted(shown.begin(), shown.end(), before))
        put_in_order();
}

// From the end, in as few pieces as they are.
void sorted_list::take_out(const std::vector<int> &becomes)
{
    const auto goes = [&](int row) { return becomes[line_at(row)] < 0; };
    for (int last = rowCount() - 1; last >= 0; --last) {
        if (!goes(last))
            continue;
        int first = last;
        while (first > 0 && goes(first - 1))
            --first;
        beginRemoveRows({}, first, last);
        shown.erase(shown.begin() + first, shown.begin() + last + 1);
        endRemoveRows();
        last = first;
    }
}

void sorted_list::add_at_the_end(int count)
{
    std::vector<bool> is_shown(static_cast<size_t>(count));
    for (const int line : shown)
        is_shown[size_t(line)] = true;
    std::vector<int> added;
    for (int line = 0; line < count; ++line)
        if (!is_shown[size_t(line)])
            added.push_back(line);
    if (added.empty())
        return;
    beginInsertRows({}, rowCount(), rowCount() + int(added.size()) - 1);
    shown.insert(shown.end(), added.begin(), added.end());
    endInsertRows();
}

bool sorted_list::stands_before(int a, int b) const
{
    if (sorted_by < 0)
        return a < b;
    const int order = compare(size_t(a), size_t(b), sorted_by);
    return sort_order == Qt::AscendingOrder ? order < 0 : order > 0;
}

void sorted_list::sort_shown()
{
    std::stable_sort(shown.begin(), shown.end(), [this](int a, int b) { return stands_before(a, b); });
}

void sorted_list::sort(int head, Qt::SortOrder order)
{
    sorted_by = head;
    sort_order = order;
    put_in_order();
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

void sorted_list::put_in_order()
{
    emit layoutAboutToBeChanged();
    const QModelIndexList kept = persistentIndexList();
    std::vector<int> kept_lines;
    for (const QModelIndex &index : kept)
        kept_lines.push_back(shown[size_t(index.row())]);
    sort_shown();
    QHash<int, int> row_of;
    for (size_t row = 0; row < shown.size() && !kept.isEmpty(); ++row)
        row_of[shown[row]] = int(row);
    QModelIndexList moved;
    for (qsizetype n = 0; n < kept.size(); ++n)
        moved += index(row_of[kept_lines[size_t(n)]], kept[n].column());
    changePersistentIndexList(kept, moved);
    emit layoutChanged();
}

int sorted_list::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(shown.size());
}

int sorted_list::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(captions.size());
}

QString sorted_list::sort_mark(int section) const
{
    if (section != sorted_by)
        return QStringLiteral("keynone");
    return sort_order == Qt::AscendingOrder ? QStringLiteral("key1") : QStringLiteral("key2");
}

QVariant sorted_list::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return captions.value(section);
    case Qt::DecorationRole:
        return drawn_picture(sort_mark(section), 12);
    case Qt::WhatsThisRole:
        return sort_mark(section);
    case Qt::ToolTipRole: // hidden columns are the last ones
        return "Sorts by " + captions.value(section) + " (Ctrl+" + QString::number(section + 1) + ')';
    default:
        return {};
    }
}
