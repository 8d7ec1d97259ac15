#include "screens/frame/help_page.h"
#include "platform/winopen.h"

#include <QEvent>
#include <QImage>
#include <QResizeEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <algorithm>
#include <cmath>

namespace {

const QString help_scheme = QStringLiteral("help");
constexpr double good_contrast = 4.5;
constexpr qsizetype most_marks = 2000;

double brightness(const QColor &colour)
{
    const auto part = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const double bright = std::max(brightness(one), brightness(other));
    const double dark = std::min(brightness(one), brightness(other));
    return (bright + 0.05) / (dark + 0.05);
}

// A palette's links may be made for another ground: they are drawn towards the text's colour until they can be read.
QColor readable_link(const QPalette &colours)
{
    const QColor text = colours.color(QPalette::Text);
    QColor link = colours.color(QPalette::Link);
    for (int step = 1; step <= 10 && contrast(link, colours.color(QPalette::Base)) < good_contrast; ++step) {
        const auto mixed = [step](int from, int to) { return from + (to - from) * step / 10; };
        const QColor wish = colours.color(QPalette::Link);
        link =
            QColor(mixed(wish.red(), text.red()), mixed(wish.green(), text.green()), mixed(wish.blue(), text.blue()));
    }
    return link;
}

template <typename Deed>
void for_each_picture(const QTextDocument &document, Deed deed)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        for (auto part = block.begin(); !part.atEnd(); ++part)
            if (part.fragment().charFormat().isImageFormat())
                deed(block, part.fragment().charFormat().toImageFormat().name());
}

}

help_page::help_page(QWidget *parent) : QTextBrowser(parent)
{
    setOpenLinks(false);
    setTabChangesFocus(false);                         // Tab walks through the links first
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // so that a picture is measured for the room it will have
    set_colours();
    connect(this, &QTextBrowser::anchorClicked, this, &help_page::link_clicked);
    connect(this, &QTextBrowser::sourceChanged, this, [this](const QUrl &now) {
        shown = now.path().mid(1); // source() is still the page before
        close_lines_at_pictures();
        fit_pictures(); // the document may still know them from when the page was wider
        mark(marked);
    });
}

void help_page::set_file(const help::help_file *help_file)
{
    from = help_file;
    clearHistory();
}

void help_page::open(const QString &page)
{
    QUrl url;
    url.setScheme(help_scheme);
    url.setPath(u'/' + page);
    setSource(url);
}

QString help_page::shown_page() const
{
    return shown;
}

void help_page::say(const QString &text)
{
    marked.clear();
    shown.clear();
    setHtml("<h1>Help</h1><p>" + text.toHtmlEscaped() + "</p>");
}

// What is not in the help file does not exist: nothing is read from the disk or the net.
QVariant help_page::loadResource(int type, const QUrl &name)
{
    const QUrl whole = QUrl(help_scheme + ":/").resolved(name); // the browser's own source is still the page before
    const bool is_ours = from && whole.scheme() == help_scheme;
    const QByteArray bytes = is_ours ? from->bytes_of(whole.path().mid(1)).value_or(QByteArray("")) : QByteArray("");
    return type == QTextDocument::ImageResource ? QVariant(fitting_picture(bytes)) : QVariant(bytes);
}

// No wider than the page is now.
QImage help_page::fitting_picture(const QByteArray &bytes) const
{
    const QImage picture = QImage::fromData(bytes);
    const int room = viewport()->width() - 2 * int(document()->documentMargin());
    if (picture.width() <= room || room <= 0)
        return picture;
    return picture.scaledToWidth(room, Qt::SmoothTransformation);
}

// The room between the lines of a text grows with the line: below a picture it would be a third of the picture.
void help_page::close_lines_at_pictures()
{
    for_each_picture(*document(), [](const QTextBlock &block, const QString &) {
        QTextBlockFormat closed = block.blockFormat();
        closed.setLineHeight(0, QTextBlockFormat::SingleHeight);
        QTextCursor(block).setBlockFormat(closed);
    });
}

void help_page::fit_pictures()
{
    if (!from)
        return;
    for_each_picture(*document(), [this](const QTextBlock &block, const QString &name) {
        const QUrl url = document()->baseUrl().resolved(QUrl(name));
        document()->addResource(QTextDocument::ImageResource, url,
                                loadResource(QTextDocument::ImageResource, QUrl(name)));
        document()->markContentsDirty(block.position(), block.length());
    });
}

void help_page::resizeEvent(QResizeEvent *event)
{
    QTextBrowser::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        fit_pictures();
}

void help_page::link_clicked(const QUrl &link)
{
    const QUrl whole = source().resolved(link);
    if (whole.scheme() == u"http" || whole.scheme() == u"https")
        winopen(whole.toString());
    else if (whole.scheme() == help_scheme && from && from->bytes_of(whole.path().mid(1)))
        setSource(whole);
}

void help_page::mark(const QStringList &words)
{
    marked = words;
    QList<QTextEdit::ExtraSelection> marks;
    QTextCharFormat look;
    look.setBackground(palette().color(QPalette::Highlight));
    look.setForeground(palette().color(QPalette::HighlightedText));
    for (const QString &word : words) {
        for (QTextCursor at = document()->find(word); !at.isNull() && marks.size() < most_marks;
             at = document()->find(word, at)) {
            const int before = at.selectionStart() - at.block().position() - 1;
            if (before < 0 || !at.block().text().at(before).isLetterOrNumber())
                marks.append({at, look});
        }
    }
    setExtraSelections(marks);
}

void help_page::show_first_mark()
{
    const auto marks = extraSelections();
    if (marks.isEmpty())
        return;
    const auto first = std::min_element(marks.begin(), marks.end(), [](const auto &one, const auto &other) {
        return one.cursor.selectionStart() < other.cursor.selectionStart();
    });
    QTextCursor there = first->cursor;
    there.setPosition(there.selectionStart());
    setTextCursor(there);
    ensureCursorVisible();
}

bool help_page::find_next(const QString &text, bool backwards)
{
    const QTextDocument::FindFlags way = backwards ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    if (text.isEmpty() || find(text, way))
        return true;
    const QTextCursor before = textCursor();
    const int place = verticalScrollBar()->value();
    moveCursor(backwards ? QTextCursor::End : QTextCursor::Start);
    if (find(text, way))
        return true;
    setTextCursor(before);
    verticalScrollBar()->setValue(place);
    return false;
}

void help_page::set_colours()
{
    document()->setDefaultStyleSheet("a { color: " + readable_link(palette()).name() +
                                     "; } p, li { line-height: 130%; }");
    document()->setDocumentMargin(fontMetrics().height());
}

void help_page::changeEvent(QEvent *event)
{
    QTextBrowser::changeEvent(event);
    if (event->type() != QEvent::PaletteChange || !from)
        return;
    set_colours();
    const int place = verticalScrollBar()->value();
    reload();
    verticalScrollBar()->setValue(place);
    mark(marked);
}
