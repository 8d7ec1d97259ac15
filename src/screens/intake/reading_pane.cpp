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
QString shown_head(const QString &text)
{
    constexpr qsizetype most_shown = 160;
    const QString line = on_one_line(text);
    return line.size() <= most_shown ? line : left(line, most_shown) + " ...";
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

// As high as its lines, wrapped as they stand, up to five of them, and fewer in a low pane: the mail's text is what is
// read here. The box itself wraps them too late to be asked.
void fit_height(QPlainTextEdit &box, int pane)
{
    constexpr int least_lines = 2, most_lines = 5;
    constexpr double share = 0.25;
    const double line = box.fontMetrics().lineSpacing();
    const double most = qBound(least_lines * line, share * pane, most_lines * line);
    const double margin = box.document()->documentMargin();
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
    show_words("Select a mail to read it here.");
}

void reading_pane::show_words(const QString &words)
{
    ui->lbl_from->clear();
    ui->lbl_from->setMinimumHeight(0);
    ui->lbl_from->hide(); // empty, it would leave a strip
    ui->why_fr->hide();
    ui->txt_body->clear();
    ui->txt_body->setPlaceholderText(words);
}

void reading_pane::show_mail(const intake::mail_text &mail, const QString &who_caption)
{
    ui->lbl_from->setText(who_caption + shown_head(mail.who) + "\nSub:   " + shown_head(mail.subject) +
                          "\nDate:  " + mail.date);
    ui->lbl_from->show();
    fit_height(*ui->lbl_from);
    ui->txt_body->setPlainText(intake::text_to_show(mail.body));
}

void reading_pane::show_why_not(const std::vector<intake::fit_reason> &reasons)
{
    ui->why_t->setPlainText(why_not_text(reasons));
    ui->why_fr->show();
    fit_height(*ui->why_t, height());
}

void reading_pane::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    fit_height(*ui->why_t, height());
}

// Narrower, its lines wrap more often.
bool reading_pane::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->why_t && event->type() == QEvent::Resize)
        fit_height(*ui->why_t, height());
    if (watched == ui->lbl_from && event->type() == QEvent::Resize && !ui->lbl_from->text().isEmpty())
        fit_height(*ui->lbl_from);
    return QFrame::eventFilter(watched, event);
}
