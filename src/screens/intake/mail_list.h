// The rows of the Mail Auditor's two lists, sorted and filtered in memory. What the rows hold: intake/mail_lines.h.
#pragma once
#include "intake/mail_lines.h"
#include "screens/sorted_list.h"

class mail_list : public sorted_list {
    Q_OBJECT
public:
    enum column { who_column, subject_column, date_column };

    using sorted_list::sorted_list;

    void set_lines(std::vector<intake::mail_line> lines); // keeps the sorting and the filter
    void set_filter(const QString &words);                // in sender or subject, case-blind; "" shows all
    void take_away(const std::vector<int> &rows);         // for good, all at once
    const intake::mail_line &line(int row) const { return lines[line_at(row)]; }
    size_t line_number(int row) const { return line_at(row); }       // stays, however it is sorted and filtered
    qsizetype line_count() const { return qsizetype(lines.size()); } // without the filter

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

protected:
    int compare(size_t a, size_t b, int head) const override;

private:
    std::vector<int> lines_to_show() const;

    std::vector<intake::mail_line> lines;
    QString filter;
};
