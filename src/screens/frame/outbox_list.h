// The rows of the Outbox, sorted in memory. What is said in them: frame/outbox_words.h.
#pragma once
#include "frame/outbox_words.h"
#include "screens/sorted_list.h"

class outbox_list : public sorted_list {
    Q_OBJECT
public:
    enum column { to_column, subject_column, state_column, why_column, time_column };

    explicit outbox_list(QObject *parent = nullptr);

    // Keeps the sorting, and of the mails that are still there the rows' selection and place.
    void set_mails(std::vector<outbox::kept_mail> mails, const outbox_words::hold_up &what_holds_up = {});
    QString why(const outbox::kept_mail &mail) const; // of the mail's state, whole
    const outbox::kept_mail &mail(int row) const { return mails[line_at(row)]; }

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

protected:
    int compare(size_t a, size_t b, int head) const override;

private:
    QString text(const outbox::kept_mail &mail, int head) const;

    std::vector<outbox::kept_mail> mails;
    outbox_words::hold_up all;
};
