#include "screens/maps/sample_mail_list.h"
#include "frame/text.h"
#include "screens/icons.h"

#include <algorithm>
#include <numeric>

namespace {

using column = sample_mail_list::column;

QString head_text(column which)
{
    switch (which) {
    case column::to:
        return "To";
    case column::subject:
        return "Subject";
    case column::received:
        return "Received";
    case column::from:
        return "From";
    case column::message_id:
        return "message_id";
    case column::table_name:
        return "table_name";
    case column::account_id:
        return "account id";
    }
    return {};
}

QString cell_text(const maps::sample_mail &mail, column which)
{
    switch (which) {
    case column::to:
        return mail.to;
    case column::subject:
        return mail.subject;
    case column::received:
        return mail.received.isValid() ? us_date_time(mail.received) : QString();
    case column::from:
        return mail.from;
    case column::message_id:
        return mail.message_id;
    case column::table_name:
        return mail.table_name;
    case column::account_id:
        return mail.account_id;
    }
    return {};
}

// Dates in the order of their keys of digits; a mail without one comes first.
int compare_mails(const maps::sample_mail &a, const maps::sample_mail &b, column which)
{
    if (which != column::received)
        return compare_case_blind(cell_text(a, which), cell_text(b, which));
    if (a.received.isValid() && b.received.isValid())
        return a.received < b.received ? -1 : b.received < a.received ? 1 : 0;
    return int(a.received.isValid()) - int(b.received.isValid());
}

}

sample_mail_list::sample_mail_list(const std::vector<column> &shown, QObject *parent)
    : QAbstractTableModel(parent), columns(shown)
{
}

void sample_mail_list::set_mails(std::vector<maps::sample_mail> new_mails)
{
    beginResetModel();
    mails = std::move(new_mails);
    order.resize(mails.size());
    std::iota(order.begin(), order.end(), 0);
    sort_rows();
    endResetModel();
}

void sample_mail_list::sort_rows()
{
    if (sorted_by < 0)
        return;
    const column which = columns[size_t(sorted_by)];
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        const int compared = compare_mails(mails[size_t(a)], mails[size_t(b)], which);
        return sort_order == Qt::AscendingOrder ? compared < 0 : compared > 0;
    });
}

void sample_mail_list::sort(int head, Qt::SortOrder new_order)
{
    emit layoutAboutToBeChanged();
    const QModelIndexList kept = persistentIndexList(); // the selection follows its mails
    std::vector<int> kept_mails;
    for (const QModelIndex &index : kept)
        kept_mails.push_back(order[size_t(index.row())]);
    sorted_by = head;
    sort_order = new_order;
    sort_rows();
    std::vector<int> row_of(mails.size());
    for (size_t row = 0; row < order.size(); ++row)
        row_of[size_t(order[row])] = int(row);
    QModelIndexList moved;
    for (qsizetype n = 0; n < kept.size(); ++n)
        moved += index(row_of[size_t(kept_mails[size_t(n)])], kept[n].column());
    changePersistentIndexList(kept, moved);
    emit layoutChanged();
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

int sample_mail_list::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(order.size());
}

int sample_mail_list::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(columns.size());
}

QVariant sample_mail_list::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const column which = columns[size_t(index.column())];
    if (role == Qt::DisplayRole)
        return cell_text(mail(index.row()), which);
    if (which != column::subject) // long ones do not fit their column
        return {};
    return mail(index.row()).subject.toHtmlEscaped(); // never taken for HTML
}

QVariant sample_mail_list::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section >= int(columns.size()))
        return {};
    const QString mark = section != sorted_by               ? QStringLiteral("keynone")
                         : sort_order == Qt::AscendingOrder ? QStringLiteral("key1")
                                                            : QStringLiteral("key2");
    switch (role) {
    case Qt::DisplayRole:
        return head_text(columns[size_t(section)]);
    case Qt::DecorationRole:
        return drawn_picture(mark, 12);
    case Qt::WhatsThisRole:
        return mark;
    default:
        return {};
    }
}
