// The rows of the Outbox, sorted in memory. What is said in them: frame/outbox_words.h.
#pragma once
#include "platform/outbox.h"
#include <QAbstractTableModel>

class outbox_list : public QAbstractTableModel {
    Q_OBJECT
public:
    enum column { to_column, subject_column, state_column, why_column, time_column };

    using QAbstractTableModel::QAbstractTableModel;

    // Keeps the sorting. While sending is off a waiting mail says so.
    void set_mails(std::vector<outbox::kept_mail> mails, bool sending_is_on = true);
    QString why(const outbox::kept_mail &mail) const; // of the mail's state, whole
    const outbox::kept_mail &mail(int row) const { return mails[size_t(row)]; }
    int row_of(const QString &id) const; // -1: not there

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    void sort(int head, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
    void sort_mails();
    QString text(const outbox::kept_mail &mail, int head) const;
    QString sort_mark(int section) const;

    std::vector<outbox::kept_mail> mails;
    bool sending = true;
    int sorted_by = -1; // no column: as they were handed over
    Qt::SortOrder sort_order = Qt::AscendingOrder;
};
