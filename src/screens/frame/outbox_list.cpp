#include "screens/frame/outbox_list.h"
#include "frame/outbox_words.h"
#include "frame/text.h"
#include "screens/icons.h"

#include <QStringList>
#include <algorithm>

namespace {

// One line a mail, whatever its subject or the server said; a list needs no more of it.
QString on_one_line(QString text)
{
    constexpr qsizetype most_shown = 300;
    text = left(text, most_shown);
    for (QChar &letter : text)
        if (letter.isSpace())
            letter = u' ';
    return text;
}

}

void outbox_list::set_mails(std::vector<outbox::kept_mail> new_mails, bool sending_is_on)
{
    beginResetModel();
    sending = sending_is_on;
    mails = std::move(new_mails);
    sort_mails();
    endResetModel();
}

int outbox_list::row_of(const QString &id) const
{
    const auto found = std::find_if(mails.begin(), mails.end(), [&](const auto &mail) { return mail.id == id; });
    return found == mails.end() ? -1 : int(found - mails.begin());
}

void outbox_list::sort_mails()
{
    if (sorted_by < 0)
        return;
    std::stable_sort(mails.begin(), mails.end(), [this](const outbox::kept_mail &a, const outbox::kept_mail &b) {
        const int order = sorted_by == time_column
                              ? (a.handed_over < b.handed_over ? -1 : int(b.handed_over < a.handed_over))
                              : compare_case_blind(text(a, sorted_by), text(b, sorted_by));
        return sort_order == Qt::AscendingOrder ? order < 0 : order > 0;
    });
}

void outbox_list::sort(int head, Qt::SortOrder order)
{
    emit layoutAboutToBeChanged();
    const QModelIndexList kept = persistentIndexList(); // the selection follows its mails
    QStringList ids;
    for (const QModelIndex &index : kept)
        ids += mail(index.row()).id;
    sorted_by = head;
    sort_order = order;
    sort_mails();
    QHash<QString, int> row_of_id;
    for (int row = 0; row < rowCount(); ++row)
        row_of_id[mail(row).id] = row;
    QModelIndexList moved;
    for (qsizetype n = 0; n < kept.size(); ++n)
        moved += index(row_of_id[ids[n]], kept[n].column());
    changePersistentIndexList(kept, moved);
    emit layoutChanged();
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

QString outbox_list::why(const outbox::kept_mail &mail) const
{
    return outbox_words::why(mail, sending);
}

int outbox_list::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(mails.size());
}

int outbox_list::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : time_column + 1;
}

QString outbox_list::text(const outbox::kept_mail &mail, int head) const
{
    switch (head) {
    case to_column:
        return on_one_line(outbox_words::recipients(mail));
    case subject_column:
        return on_one_line(mail.Subject);
    case state_column:
        return outbox_words::state_word(mail.state);
    case why_column:
        return on_one_line(why(mail));
    default:
        return mail.handed_over.isValid() ? us_date_time(mail.handed_over) : QString();
    }
}

QVariant outbox_list::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const outbox::kept_mail &one = mail(index.row());
    if (role == Qt::DisplayRole)
        return text(one, index.column());
    if (role == Qt::ToolTipRole) // never taken for HTML, and wrapped
        return "<qt>" + left(why(one), 2000).toHtmlEscaped() + "</qt>";
    return {};
}

QString outbox_list::sort_mark(int section) const
{
    if (section != sorted_by)
        return QStringLiteral("keynone");
    return sort_order == Qt::AscendingOrder ? QStringLiteral("key1") : QStringLiteral("key2");
}

QVariant outbox_list::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return QStringList{"To", "Subject", "State", "Why", "Handed over"}.value(section);
    case Qt::DecorationRole:
        return drawn_picture(sort_mark(section), 12);
    case Qt::WhatsThisRole:
        return sort_mark(section);
    default:
        return {};
    }
}
