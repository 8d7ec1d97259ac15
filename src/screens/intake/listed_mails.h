// One of the Mail Auditor's two lists with the search box above it: what is shown, what is selected, and what an empty
// list says. Its rows: mail_list.h. The screen with both: mailfrm.h.
#pragma once
#include "intake/mail_lines.h"
#include <QObject>
#include <optional>
#include <vector>

class QLineEdit;
class list_view;
class mail_list;

class listed_mails : public QObject {
    Q_OBJECT
public:
    struct description {
        list_view &view;
        QLineEdit &search;
        QStringList heads;
        QString memory_name; // of the column widths
        QString empty_text;  // while there are no mails at all
    };
    explicit listed_mails(const description &what, QObject *parent);

    void set_lines(std::vector<intake::mail_line> lines);
    void set_empty_text(const QString &text);
    void take_away(const std::vector<int> &shown_rows);

    // What is not shown is never selected.
    std::vector<int> selected_rows() const; // from the top down
    const intake::mail_line &line(int row) const;
    std::optional<int> row_to_read() const; // the one with the keyboard's frame, else the first of the selected ones

    bool leave_search(); // false: nothing was searched
    void take_focus();
    bool has_focus() const;

signals:
    void selection_changed();

private:
    void search_Change(const QString &words);
    void show_empty_text();
    // By the lines' numbers, as the rows change under them.
    std::vector<bool> selected_lines() const;
    void select_lines(const std::vector<bool> &wanted);

    list_view &view;
    QLineEdit &search;
    QString empty_text;
    mail_list *rows; // a child of this one
};
