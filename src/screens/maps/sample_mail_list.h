// The rows of a list of stored mails that a map can be made from, sorted by a click on a head; dates sort as dates.
// What the rows hold: maps/sample_mails.h.
#pragma once
#include "maps/sample_mails.h"
#include <QAbstractTableModel>
#include <vector>

class sample_mail_list : public QAbstractTableModel {
    Q_OBJECT
public:
    enum class column { to, subject, received, from, message_id, table_name, account_id };

    explicit sample_mail_list(const std::vector<column> &columns, QObject *parent = nullptr);

    void set_mails(std::vector<maps::sample_mail> new_mails); // keeps the sorting
    const maps::sample_mail &mail(int row) const { return mails[size_t(order[size_t(row)])]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    void sort(int head, Qt::SortOrder new_order = Qt::AscendingOrder) override;

private:
    void sort_rows();

    std::vector<column> columns;
    std::vector<maps::sample_mail> mails;
    std::vector<int> order; // indexes into mails, as they are shown
    int sorted_by = -1;     // no column: as the store gave them
    Qt::SortOrder sort_order = Qt::AscendingOrder;
};
