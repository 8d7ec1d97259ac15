// The rows of a list of stored mails that a map can be made from; dates sort as dates.
// What the rows hold: maps/sample_mails.h.
#pragma once
#include "maps/sample_mails.h"
#include "screens/sorted_list.h"

class sample_mail_list : public sorted_list {
    Q_OBJECT
public:
    enum class column { to, subject, received, from, message_id, table_name, account_id };

    explicit sample_mail_list(const std::vector<column> &columns, QObject *parent = nullptr);

    void set_mails(std::vector<maps::sample_mail> new_mails); // keeps the sorting
    const maps::sample_mail &mail(int row) const { return mails[line_at(row)]; }

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

protected:
    int compare(size_t a, size_t b, int head) const override;

private:
    std::vector<column> columns;
    std::vector<maps::sample_mail> mails;
};
