#include "screens/intake/reading_pane.h"
#include "frame/text.h"
#include "intake/fit_reasons.h"
#include "intake/mail_lines.h"
#include "screens/kept_font.h"
#include "ui_reading_pane.h"

#include <QEvent>
#include <QTextBlock>
#include <QTextLayout>
#include <QtMath>

namespace {

// A head line: what came by mail must neither fill the screen nor look like a line of its own.
QString shown_head(QString text)
{
    constexpr qsizetype most_shown = 160;
    for (QChar &letter : text)
        if (letter.isSpace())
            letter = u' ';
    return text.size() <= most_shown ? text : left(text, most_shown) + " ...";
}

QString why_not_text(const std::vector<intake::fit_reason> &reasons)
{
    if (reasons.empty())
        return "No map was made for this account yet. Mail > Mail Mapping Wizard makes one from a mail such as this.";
    QStringList lines;
    for (const intake::fit_reason &each : reasons)
        lines += each.map + ": " + (each.reason.isEmpty() ? "it fits, and is taken at the next fetch." : each.reason);
    return lines.join(u'\n');
}

double height_of(const QString &paragraph, const QFont &font, double width)
{
    QTextLayout layout(paragraph, font);
    QTextOption wrapping;
    wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere); // as the box does it
    layout.setTextOption(wrapping);
    double height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        height += line.height();
    }
    layout.endLayout();
    return height;
}

// As high as its lines, wrapped as they stand, up to five of them. The box itself wraps them too late to be asked.
void fit_height(QPlainTextEdit &box)
{
    const double most = 5 * box.fontMetrics().lineSpacing(), margin = box.document()->documentMargin();
    double height = 0;
    for (QTextBlock block = box.document()->firstBlock(); block.isValid() && height < most; block = block.next())
        height += height_of(block.text(), box.font(), box.contentsRect().width() - 2 * margin);
    box.setFixedHeight(qCeil(qMin(height, most) + 3 * margin) +
                       2 * box.frameWidth()); // below, it wants its margin twice
}

// In a splitter a label's wrapped lines count for nothing unless it asks for them.
void fit_height(QLabel &lines)
{
    lines.setMinimumHeight(lines.heightForWidth(lines.width()));
}

}

reading_pane::reading_pane(QWidget *parent) : QFrame(parent), ui(std::make_unique<Ui::reading_pane>())
{
    ui->setupUi(this);
    show_in_kept_font(*ui->txt_body);
    ui->why_t->installEventFilter(this);
    ui->lbl_from->installEventFilter(this);
    show_no_mail();
}

reading_pane::~reading_pane() = default;

void reading_pane::show_no_mail()
{
    ui->lbl_from->clear();
    ui->lbl_from->setMinimumHeight(0);
    ui->why_fr->hide();
    ui->txt_body->clear();
}

void reading_pane::show_mail(const intake::mail_text &mail, const QString &who_caption)
{
    ui->lbl_from->setText(who_caption + shown_head(mail.who) + "\nSub:   " + shown_head(mail.subject) +
                          "\nDate:  " + mail.date);
    fit_height(*ui->lbl_from);
    ui->txt_body->setPlainText(intake::text_to_show(mail.body));
}

void reading_pane::show_why_not(const std::vector<intake::fit_reason> &reasons)
{
    ui->why_t->setPlainText(why_not_text(reasons));
    ui->why_fr->show();
    fit_height(*ui->why_t);
}

// Narrower, its lines wrap more often.
bool reading_pane::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->why_t && event->type() == QEvent::Resize)
        fit_height(*ui->why_t);
    if (watched == ui->lbl_from && event->type() == QEvent::Resize && !ui->lbl_from->text().isEmpty())
        fit_height(*ui->lbl_from);
    return QFrame::eventFilter(watched, event);
}
