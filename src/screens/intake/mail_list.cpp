#include "screens/intake/mail_list.h"
#include "frame/text.h"
#include "screens/icons.h"

#include <algorithm>

namespace {

int compare_lines(const intake::mail_line &a, const intake::mail_line &b, int head)
{
    switch (head) {
    case mail_list::who_column:
        return compare_case_blind(a.who, b.who);
    case mail_list::subject_column:
        return compare_case_blind(a.subject, b.subject);
    default:
        break;
    }
    // The same order as that of the keys of digits, without making a hundred thousand texts.
    if (a.date.isValid() && b.date.isValid())
        return a.date < b.date ? -1 : b.date < a.date ? 1 : 0;
    return int(a.date.isValid()) - int(b.date.isValid());
}

}

mail_list::mail_list(const QStringList &heads, QObject *parent) : QAbstractTableModel(parent), captions(heads) {}

void mail_list::set_lines(std::vector<intake::mail_line> new_lines)
{
    beginResetModel();
    lines = std::move(new_lines);
    select_shown();
    sort_shown();
    endResetModel();
}

void mail_list::set_filter(const QString &words)
{
    beginResetModel();
    filter = trim(words);
    select_shown();
    sort_shown();
    endResetModel();
}

void mail_list::select_shown()
{
    shown.clear();
    for (size_t index = 0; index < lines.size(); ++index) {
        const auto &one = lines[index];
        if (filter.isEmpty() || contains_text(one.who, filter) || contains_text(one.subject, filter))
            shown.push_back(int(index));
    }
}

void mail_list::sort_shown()
{
    if (sorted_by < 0)
        return;
    std::stable_sort(shown.begin(), shown.end(), [this](int a, int b) {
        const int order = compare_lines(lines[size_t(a)], lines[size_t(b)], sorted_by);
        return sort_order == Qt::AscendingOrder ? order < 0 : order > 0;
    });
}

void mail_list::sort(int head, Qt::SortOrder order)
{
    emit layoutAboutToBeChanged();
    const QModelIndexList kept = persistentIndexList(); // the selection follows its mails
    std::vector<int> kept_lines;
    for (const QModelIndex &index : kept)
        kept_lines.push_back(shown[size_t(index.row())]);
    sorted_by = head;
    sort_order = order;
    sort_shown();
    std::vector<int> row_of(lines.size());
    for (size_t row = 0; row < shown.size(); ++row)
        row_of[size_t(shown[row])] = int(row);
    QModelIndexList moved;
    for (qsizetype n = 0; n < kept.size(); ++n)
        moved += index(row_of[size_t(kept_lines[size_t(n)])], kept[n].column());
    changePersistentIndexList(kept, moved);
    emit layoutChanged();
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

int mail_list::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(shown.size());
}

int mail_list::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(captions.size());
}

QVariant mail_list::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const intake::mail_line &one = line(index.row());
    if (role == Qt::ToolTipRole) // long subjects do not fit their column; never taken for HTML
        return index.column() == subject_column ? one.subject.toHtmlEscaped() : QVariant();
    switch (index.column()) {
    case who_column:
        return one.who;
    case subject_column:
        return one.subject;
    default:
        return one.date.isValid() ? us_date_time(one.date) : QString();
    }
}

QString mail_list::sort_mark(int section) const
{
    if (section != sorted_by)
        return QStringLiteral("keynone");
    return sort_order == Qt::AscendingOrder ? QStringLiteral("key1") : QStringLiteral("key2");
}

QVariant mail_list::headerData(int section, Qt::Orientation orientation, int role) const
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
