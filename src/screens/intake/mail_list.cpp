#include "screens/intake/mail_list.h"
#include "frame/text.h"

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
    // The same order as that of the keys of digits, without making a hundred thousand texts.
    if (one.date.isValid() && other.date.isValid())
        return one.date < other.date ? -1 : other.date < one.date ? 1 : 0;
    return int(one.date.isValid()) - int(other.date.isValid());
}

void mail_list::set_lines(std::vector<intake::mail_line> new_lines)
{
    beginResetModel();
    lines = std::move(new_lines);
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

std::vector<int> mail_list::lines_to_show() const
{
    std::vector<int> wanted;
    for (size_t index = 0; index < lines.size(); ++index) {
        const auto &one = lines[index];
        if (filter.isEmpty() || contains_text(one.who, filter) || contains_text(one.subject, filter))
            wanted.push_back(int(index));
    }
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
        return one.who;
    case subject_column:
        return one.subject;
    default:
        return intake::date_shown(one);
    }
}
