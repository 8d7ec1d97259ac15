// The rows of the Mail Auditor's two lists, sorted and filtered in memory. What the rows hold: intake/mail_lines.h.
#pragma once
#include "intake/mail_lines.h"
#include <QAbstractTableModel>
#include <QStringList>

class mail_list : public QAbstractTableModel {
    Q_OBJECT
public:
    enum column { who_column, subject_column, date_column };

    explicit mail_list(const QStringList &heads, QObject *parent = nullptr);

    void set_lines(std::vector<intake::mail_line> lines); // keeps the sorting and the filter
    void set_filter(const QString &words);                // in sender or subject, case-blind; "" shows all
    const intake::mail_line &line(int row) const { return lines[size_t(shown[size_t(row)])]; }
    qsizetype line_count() const { return qsizetype(lines.size()); } // without the filter

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    void sort(int head, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
    void select_shown();
    void sort_shown();
    QString sort_mark(int section) const;

    QStringList captions;
    std::vector<intake::mail_line> lines;
    std::vector<int> shown; // indexes into lines, in the order shown
    QString filter;
    int sorted_by = -1; // no column: as the store gave them
    Qt::SortOrder sort_order = Qt::AscendingOrder;
};
