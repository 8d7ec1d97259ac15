// Draws a page that the help's search found: its title in bold, below it the place where the words stand.
// The text of a line of the list is both, with a line end between.
#pragma once
#include <QStyledItemDelegate>

class found_pages_delegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
