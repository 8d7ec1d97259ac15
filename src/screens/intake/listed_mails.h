// One of the Mail Auditor's two lists with the search box above it: what is shown, what is selected, and what an empty
// list says. Its rows: mail_list.h. The screen with both: mailfrm.h.
#pragma once
#include "intake/mail_lines.h"
#include "screens/intake/mail_list.h"
#include <QObject>
#include <optional>
#include <set>
#include <vector>

class QLineEdit;
class list_view;

class listed_mails : public QObject {
    Q_OBJECT
public:
    struct description {
        list_view &view;
        QLineEdit &search;
        QStringList heads;
        QString memory_name; // of the column widths
        QString empty_text;  // while there are no mails at all
        mail_list::date_order dates;
    };
    explicit listed_mails(const description &what, QObject *parent);

    void set_lines(std::vector<intake::mail_line> lines); // what was selected stays so, if it is still there
    void set_empty_text(const QString &text);
    void take_away(const std::vector<int> &shown_rows);

    // What is not shown is never selected.
    std::vector<int> selected_rows() const; // from the top down
    const intake::mail_line &line(int row) const;
    std::optional<int> row_to_read() const; // the one with the keyboard's frame, else the first of the selected ones

    bool leave_search(); // false: nothing was searched
    void take_focus();

signals:
    void selection_changed();

private:
    using mail_key = std::pair<QString, qint64>; // the table and the number in it

    mail_key key_of(int row) const;
    std::optional<int> row_of(const mail_key &mail) const;
    void search_Change(const QString &words);
    void show_empty_text();
    void stand_on(int row);
    void select_mails(const std::set<mail_key> &wanted);
    // By the lines' numbers, as the rows change under them.
    std::vector<bool> selected_lines() const;
    void select_lines(const std::vector<bool> &wanted);

    list_view &view;
    QLineEdit &search;
    QString empty_text;
    mail_list *rows; // a child of this one
};
