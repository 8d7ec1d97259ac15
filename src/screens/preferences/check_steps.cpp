#include "screens/preferences/check_steps.h"
#include "frame/text.h"
#include "screens/icons.h"

#include <QListWidget>

namespace {

constexpr int step_role = Qt::UserRole;     // the step's name
constexpr qsizetype most_words_shown = 600; // a server may say much

struct state_looks {
    const char *picture;
    const char *spoken;
};

state_looks looks_of(mail::check_state state)
{
    switch (state) {
    case mail::check_state::running:
        return {"running", "running"};
    case mail::check_state::good:
        return {"good", "good"};
    case mail::check_state::warning:
        return {"warning", "to be known"};
    case mail::check_state::failed:
        return {"failed", "failed"};
    case mail::check_state::skipped:
        break;
    }
    return {"skipped", "left out"};
}

QListWidgetItem *item_of(QListWidget &list, const QString &step)
{
    for (int row = list.count() - 1; row >= 0; --row)
        if (list.item(row)->data(step_role).toString() == step)
            return list.item(row);
    auto *made = new QListWidgetItem(&list);
    made->setData(step_role, step);
    return made;
}

}

void clear_steps(QListWidget &list)
{
    list.clear();
}

void show_step(QListWidget &list, const mail::check_line &line)
{
    QListWidgetItem *item = item_of(list, line.step);
    const state_looks looks = looks_of(line.state);
    const QString words = left(line.words, most_words_shown);
    const QString shown = words.isEmpty() ? line.step : line.step + ": " + words;
    item->setText(shown);
    item->setIcon(drawn_icon(QString::fromLatin1(looks.picture)));
    item->setData(Qt::AccessibleTextRole, QString::fromLatin1(looks.spoken) + ", " + shown);
    list.scrollToItem(item);
}

QString outcome_text(const mail::check_outcome &outcome)
{
    if (outcome.cancelled)
        return "The test was stopped.";
    if (!outcome.receives && !outcome.sends)
        return "It does not work yet. The line that failed says why.";
    if (!outcome.receives)
        return "Mail cannot be fetched yet. The line that failed says why.";
    if (outcome.sends)
        return "It works: mail can be fetched and sent. Press OK to keep these settings.";
    if (outcome.found.sending == mail::send_by::keep)
        return "It works: mail can be fetched. What is sent stays in the Outbox. Press OK to keep these settings.";
    return "Mail can be fetched, but not sent. The line that failed says why.";
}
