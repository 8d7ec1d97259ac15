#include "screens/intake/reading_pane.h"
#include "frame/text.h"
#include "intake/fit_reasons.h"
#include "intake/mail_lines.h"
#include "screens/kept_font.h"
#include "ui_reading_pane.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QTextBlock>

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

// As high as its lines, wrapped as they stand, up to five of them.
void fit_height(QPlainTextEdit &box)
{
    constexpr int most_lines = 5;
    const int line = box.fontMetrics().lineSpacing();
    double height = 0;
    QTextBlock block = box.document()->firstBlock();
    for (; block.isValid() && height < most_lines * line; block = block.next())
        height += box.document()->documentLayout()->blockBoundingRect(block).height();
    const int margins = int(2 * box.document()->documentMargin()) + 2 * box.frameWidth();
    box.setFixedHeight(qBound(line, qRound(height), most_lines * line) + margins);
}

}

QString text_to_show(const QString &body)
{
    constexpr qsizetype most_shown = 300000;
    if (body.size() <= most_shown)
        return body;
    return left(body, most_shown) + "\n\n(The text is longer than what is shown here.)";
}

reading_pane::reading_pane(QWidget *parent) : QFrame(parent), ui(std::make_unique<Ui::reading_pane>())
{
    ui->setupUi(this);
    show_in_kept_font(*ui->txt_body);
    ui->why_t->installEventFilter(this);
    show_no_mail();
}

reading_pane::~reading_pane() = default;

void reading_pane::show_no_mail()
{
    ui->lbl_from->clear();
    ui->why_fr->hide();
    ui->txt_body->clear();
}

void reading_pane::show_mail(const intake::mail_text &mail, const QString &who_caption)
{
    ui->lbl_from->setText(who_caption + shown_head(mail.who) + "\nSub:   " + shown_head(mail.subject) +
                          "\nDate:  " + mail.date);
    ui->txt_body->setPlainText(text_to_show(mail.body));
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
    return QFrame::eventFilter(watched, event);
}
