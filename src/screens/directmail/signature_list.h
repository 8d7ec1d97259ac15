// The picker's list of titles. The chosen signature stands in bold; without any the list says what to do.
#pragma once
#include <QListWidget>

class signature_list : public QListWidget {
public:
    using QListWidget::QListWidget;

    void add_title(const QString &title, bool is_chosen);

protected:
    void paintEvent(QPaintEvent *event) override;
};
