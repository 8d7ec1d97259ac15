#include "screens/intake/listed_mails.h"
#include "screens/list_view.h"

#include <QLineEdit>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>

namespace {

const char *const nothing_found = "No mail matches the search.\nEmpty the search box to see all mails again.";

}

listed_mails::listed_mails(const description &what, QObject *parent)
    : QObject(parent),
      view(what.view),
      search(what.search),
      empty_text(what.empty_text),
      rows(new mail_list(what.heads, what.dates, this))
{
    view.setModel(rows);
    view.remember_columns(what.memory_name, {240, 400, 170});
    show_empty_text();
    connect(view.selectionModel(), &QItemSelectionModel::selectionChanged, this, &listed_mails::selection_changed);
    connect(&search, &QLineEdit::textChanged, this, &listed_mails::search_Change);
}

void listed_mails::set_lines(std::vector<intake::mail_line> lines)
{
    const int current = view.currentIndex().row(), place = view.verticalScrollBar()->value();
    std::set<mail_key> selected;
    for (const int row : selected_rows())
        selected.insert(key_of(row));
    const std::optional<mail_key> stood_on = current >= 0 ? std::optional(key_of(current)) : std::nullopt;
    {
        const QSignalBlocker quiet(this);
        rows->set_lines(std::move(lines));
        show_empty_text();
        stand_on(stood_on ? row_of(*stood_on).value_or(current) : -1);
        select_mails(selected);
    }
    if (place > 0) {
        view.doItemsLayout(); // until then it has no room to scroll
        view.verticalScrollBar()->setValue(place);
    }
    emit selection_changed();
}

listed_mails::mail_key listed_mails::key_of(int row) const
{
    const intake::mail_line &one = rows->line(row);
    return {one.table, one.id};
}

std::optional<int> listed_mails::row_of(const mail_key &mail) const
{
    for (int row = 0; row < rows->rowCount(); ++row)
        if (rows->line(row).id == mail.second && rows->line(row).table == mail.first)
            return row;
    return std::nullopt;
}

void listed_mails::select_mails(const std::set<mail_key> &wanted)
{
    if (wanted.empty())
        return;
    std::vector<bool> numbers(size_t(rows->line_count()));
    for (int row = 0; row < rows->rowCount(); ++row)
        numbers[rows->line_number(row)] = wanted.count(key_of(row)) > 0;
    select_lines(numbers);
}

void listed_mails::set_empty_text(const QString &text)
{
    empty_text = text;
    show_empty_text();
}

// The keyboard goes on where it was; nothing is selected, so that a second Delete takes nothing that nobody chose.
void listed_mails::take_away(const std::vector<int> &shown_rows)
{
    const int first = shown_rows.empty() ? -1 : *std::min_element(shown_rows.begin(), shown_rows.end());
    rows->take_away(shown_rows);
    show_empty_text();
    stand_on(first);
    emit selection_changed();
}

// The keyboard's frame only.
void listed_mails::stand_on(int row)
{
    if (row >= 0 && rows->rowCount() > 0)
        view.selectionModel()->setCurrentIndex(rows->index(std::min(row, rows->rowCount() - 1), 0),
                                               QItemSelectionModel::NoUpdate);
}

void listed_mails::search_Change(const QString &words)
{
    const std::vector<bool> selected = selected_lines();
    rows->set_filter(words);
    show_empty_text();
    select_lines(selected);
    emit selection_changed();
}

void listed_mails::show_empty_text()
{
    view.set_empty_text(rows->line_count() > 0 ? QString(nothing_found) : empty_text);
}

std::vector<int> listed_mails::selected_rows() const
{
    std::vector<int> selected;
    for (const QItemSelectionRange &range : view.selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            selected.push_back(row);
    std::sort(selected.begin(), selected.end());
    selected.erase(std::unique(selected.begin(), selected.end()), selected.end());
    return selected;
}

const intake::mail_line &listed_mails::line(int row) const
{
    return rows->line(row);
}

std::optional<int> listed_mails::row_to_read() const
{
    const std::vector<int> selected = selected_rows();
    if (selected.empty())
        return {};
    const int current = view.currentIndex().row();
    return std::binary_search(selected.begin(), selected.end(), current) ? current : selected.front();
}

std::vector<bool> listed_mails::selected_lines() const
{
    std::vector<bool> selected(size_t(rows->line_count()));
    for (const int row : selected_rows())
        selected[rows->line_number(row)] = true;
    return selected;
}

// In as few pieces as they have: thousands of them would take seconds.
void listed_mails::select_lines(const std::vector<bool> &wanted)
{
    QItemSelection again;
    for (int row = 0; row < rows->rowCount(); ++row) {
        const int first = row;
        while (row < rows->rowCount() && wanted[rows->line_number(row)])
            ++row;
        if (row > first)
            again.append({rows->index(first, 0), rows->index(row - 1, rows->columnCount() - 1)});
    }
    if (!again.isEmpty())
        view.selectionModel()->select(again, QItemSelectionModel::ClearAndSelect);
}

bool listed_mails::leave_search()
{
    if (search.text().isEmpty())
        return false;
    search.clear();
    take_focus();
    return true;
}

void listed_mails::take_focus()
{
    view.setFocus();
}
