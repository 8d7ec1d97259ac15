#include "screens/directmail/signature_list.h"

#include <QPainter>

namespace {

const char *const no_signature_yet = "No signature yet. Press New...";

}

void signature_list::add_title(const QString &title, bool is_chosen)
{
    auto *line = new QListWidgetItem(title, this);
    if (!is_chosen)
        return;
    QFont bold = font();
    bold.setBold(true);
    line->setFont(bold);
    line->setToolTip("This signature is the chosen one.");
    line->setData(Qt::AccessibleTextRole, title + ", chosen"); // bold is not heard
}

void signature_list::paintEvent(QPaintEvent *event)
{
    QListWidget::paintEvent(event);
    if (count() > 0)
        return;
    QPainter painter(viewport());
    QColor quiet = palette().color(QPalette::Text);
    quiet.setAlpha(170);
    painter.setPen(quiet);
    painter.drawText(viewport()->rect().adjusted(12, 12, -12, -12), Qt::AlignCenter | Qt::TextWordWrap,
                     no_signature_yet);
}
