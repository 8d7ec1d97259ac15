#include "screens/frame/found_pages_delegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>

namespace {

constexpr int air_around = 6;

struct found_page {
    QString title;
    QString excerpt;
};

found_page page_of(const QModelIndex &index)
{
    const QString text = index.data().toString();
    return {text.section(u'\n', 0, 0), text.section(u'\n', 1)};
}

QFont bold_of(QFont font)
{
    font.setBold(true);
    return font;
}

}

void found_pages_delegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem line(option);
    initStyleOption(&line, index);
    line.text.clear();
    QApplication::style()->drawControl(QStyle::CE_ItemViewItem, &line, painter, option.widget);
    const bool is_selected = option.state.testFlag(QStyle::State_Selected);
    const found_page page = page_of(index);
    const QRect room = option.rect.adjusted(air_around, air_around, -air_around, -air_around);
    const QFont bold = bold_of(option.font);
    const QFontMetrics bold_metrics(bold);
    painter->save();
    painter->setPen(option.palette.color(is_selected ? QPalette::HighlightedText : QPalette::Text));
    painter->setFont(bold);
    painter->drawText(room, Qt::AlignLeft | Qt::AlignTop,
                      bold_metrics.elidedText(page.title, Qt::ElideRight, room.width()));
    painter->setFont(option.font);
    painter->drawText(room.adjusted(0, bold_metrics.lineSpacing(), 0, 0), Qt::AlignLeft | Qt::TextWordWrap,
                      page.excerpt);
    painter->restore();
}

QSize found_pages_delegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const auto *list = qobject_cast<const QAbstractItemView *>(option.widget);
    const int width = (list ? list->viewport()->rect() : option.rect).width() - 2 * air_around;
    const QRect excerpt = option.fontMetrics.boundingRect(QRect(0, 0, width, 10000), Qt::AlignLeft | Qt::TextWordWrap,
                                                          page_of(index).excerpt);
    return {width, QFontMetrics(bold_of(option.font)).lineSpacing() + excerpt.height() + 2 * air_around};
}
