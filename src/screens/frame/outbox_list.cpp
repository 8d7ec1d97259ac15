#include "screens/frame/outbox_list.h"
#include "frame/text.h"

#include <QHash>

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

outbox_list::outbox_list(QObject *parent) : sorted_list({"To", "Subject", "State", "Why", "Handed over"}, parent) {}

void outbox_list::set_mails(std::vector<outbox::kept_mail> new_mails, const outbox_words::hold_up &what_holds_up)
{
    const int count = int(new_mails.size());
    QHash<QString, int> number_of;
    for (int number = 0; number < count; ++number)
        number_of[new_mails[size_t(number)].id] = number;
    std::vector<int> becomes;
    for (const outbox::kept_mail &mail : mails)
        becomes.push_back(number_of.value(mail.id, -1));
    change_lines(becomes, count, [&] {
        mails = std::move(new_mails);
        all = what_holds_up;
    });
}

int outbox_list::compare(size_t a, size_t b, int head) const
{
    const outbox::kept_mail &one = mails[a], &other = mails[b];
    if (head == time_column)
        return one.handed_over < other.handed_over ? -1 : int(other.handed_over < one.handed_over);
    return compare_case_blind(text(one, head), text(other, head));
}

QString outbox_list::why(const outbox::kept_mail &mail) const
{
    return outbox_words::why(mail, all);
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
