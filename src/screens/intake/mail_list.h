// The rows of the Mail Auditor's two lists, sorted and filtered in memory. What the rows hold: intake/mail_lines.h.
#pragma once
#include "intake/mail_lines.h"
#include "screens/sorted_list.h"

class mail_list : public sorted_list {
    Q_OBJECT
public:
    enum column { who_column, subject_column, date_column };

    enum class date_order { by_time, as_text };

    mail_list(const QStringList &heads, date_order dates, QObject *parent = nullptr);

    void set_lines(std::vector<intake::mail_line> lines); // keeps the sorting and the filter
    void set_filter(const QString &words);                // in any column, case-blind; "" shows all
    void take_away(const std::vector<int> &rows);         // for good, all at once
    const intake::mail_line &line(int row) const { return lines[line_at(row)]; }
    size_t line_number(int row) const { return line_at(row); }       // stays, however it is sorted and filtered
    qsizetype line_count() const { return qsizetype(lines.size()); } // without the filter

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

protected:
    int compare(size_t a, size_t b, int head) const override;

private:
    std::vector<int> lines_to_show();
    void need_shown_dates();
    bool holds_filter(size_t line) const;

    const date_order dates;
    std::vector<intake::mail_line> lines;
    std::vector<QString> shown_dates; // by time they are made for the first search: most lists are never searched
    QString filter;
};
