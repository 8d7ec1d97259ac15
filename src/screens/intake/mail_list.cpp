#include "screens/intake/mail_list.h"
#include "frame/text.h"

mail_list::mail_list(const QStringList &heads, date_order order, QObject *parent)
    : sorted_list(heads, parent), dates(order)
{
}

void mail_list::need_shown_dates()
{
    shown_dates.reserve(lines.size());
    for (size_t number = shown_dates.size(); number < lines.size(); ++number)
        shown_dates.push_back(intake::date_shown(lines[number]));
}

int mail_list::compare(size_t a, size_t b, int head) const
{
    const intake::mail_line &one = lines[a], &other = lines[b];
    switch (head) {
    case who_column:
        return compare_case_blind(one.who, other.who);
    case subject_column:
        return compare_case_blind(one.subject, other.subject);
    default:
        break;
    }
    if (dates == date_order::as_text)
        return compare_case_blind(shown_dates[a], shown_dates[b]);
    // The same order as that of the keys of digits, without making a hundred thousand texts.
    if (one.date.isValid() && other.date.isValid())
        return one.date < other.date ? -1 : other.date < one.date ? 1 : 0;
    return int(one.date.isValid()) - int(other.date.isValid());
}

void mail_list::set_lines(std::vector<intake::mail_line> new_lines)
{
    beginResetModel();
    lines = std::move(new_lines);
    shown_dates.clear();
    if (dates == date_order::as_text)
        need_shown_dates();
    show_lines(lines_to_show());
    endResetModel();
}

void mail_list::set_filter(const QString &words)
{
    beginResetModel();
    filter = trim(words);
    show_lines(lines_to_show());
    endResetModel();
}

void mail_list::take_away(const std::vector<int> &rows)
{
    std::vector<bool> goes(lines.size());
    for (const int row : rows)
        goes[line_at(row)] = true;
    std::vector<intake::mail_line> left;
    left.reserve(lines.size() - rows.size());
    for (size_t number = 0; number < lines.size(); ++number)
        if (!goes[number])
            left.push_back(std::move(lines[number]));
    set_lines(std::move(left));
}

bool mail_list::holds_filter(size_t number) const
{
    const intake::mail_line &one = lines[number];
    return contains_text(one.who, filter) || contains_text(one.subject, filter) ||
           contains_text(shown_dates[number], filter);
}

std::vector<int> mail_list::lines_to_show()
{
    if (!filter.isEmpty())
        need_shown_dates();
    std::vector<int> wanted;
    for (size_t number = 0; number < lines.size(); ++number)
        if (filter.isEmpty() || holds_filter(number))
            wanted.push_back(int(number));
    return wanted;
}

QVariant mail_list::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const intake::mail_line &one = line(index.row());
    if (role == Qt::ToolTipRole)
        return index.column() == subject_column ? whole_text_tip(one.subject) : QVariant();
    switch (index.column()) {
    case who_column:
        return on_one_line(one.who);
    case subject_column:
        return on_one_line(one.subject);
    default:
        return on_one_line(intake::date_shown(one));
    }
}
