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

void sorted_list::sort_shown()
{
    if (sorted_by < 0)
        return;
    std::stable_sort(shown.begin(), shown.end(), [this](int a, int b) {
        const int order = compare(size_t(a), size_t(b), sorted_by);
        return sort_order == Qt::AscendingOrder ? order < 0 : order > 0;
    });
}

void sorted_list::sort(int head, Qt::SortOrder order)
{
    emit layoutAboutToBeChanged();
    const QModelIndexList kept = persistentIndexList(); // the selection follows its lines
    std::vector<int> kept_lines;
    for (const QModelIndex &index : kept)
        kept_lines.push_back(shown[size_t(index.row())]);
    sorted_by = head;
    sort_order = order;
    sort_shown();
    QHash<int, int> row_of;
    for (size_t row = 0; row < shown.size() && !kept.isEmpty(); ++row)
        row_of[shown[row]] = int(row);
    QModelIndexList moved;
    for (qsizetype n = 0; n < kept.size(); ++n)
        moved += index(row_of[kept_lines[size_t(n)]], kept[n].column());
    changePersistentIndexList(kept, moved);
    emit layoutChanged();
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
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
    default:
        return {};
    }
}
