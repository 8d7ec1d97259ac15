#include "screens/maps/sample_mail_list.h"
#include "frame/text.h"

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

QStringList head_texts(const std::vector<column> &columns)
{
    QStringList texts;
    for (const column each : columns)
        texts += head_text(each);
    return texts;
}

}

sample_mail_list::sample_mail_list(const std::vector<column> &shown, QObject *parent)
    : sorted_list(head_texts(shown), parent), columns(shown)
{
}

void sample_mail_list::set_mails(std::vector<maps::sample_mail> new_mails)
{
    beginResetModel();
    mails = std::move(new_mails);
    std::vector<int> all(mails.size());
    std::iota(all.begin(), all.end(), 0);
    show_lines(std::move(all));
    endResetModel();
}

// Dates in the order of their keys of digits; a mail without one comes first.
int sample_mail_list::compare(size_t a, size_t b, int head) const
{
    const column which = columns[size_t(head)];
    if (which != column::received)
        return compare_case_blind(cell_text(mails[a], which), cell_text(mails[b], which));
    const QDateTime &one = mails[a].received, &other = mails[b].received;
    if (one.isValid() && other.isValid())
        return one < other ? -1 : other < one ? 1 : 0;
    return int(one.isValid()) - int(other.isValid());
}

QVariant sample_mail_list::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const column which = columns[size_t(index.column())];
    if (role == Qt::DisplayRole)
        return cell_text(mail(index.row()), which);
    if (which != column::subject)
        return {};
    return whole_text_tip(mail(index.row()).subject);
}
