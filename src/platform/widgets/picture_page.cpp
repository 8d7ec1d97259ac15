#include "platform/widgets/picture_page.h"
#include "platform/text_file.h"

#include <QFileInfo>
#include <QMovie>
#include <QRegularExpression>

namespace {

QString attribute_in(const QString &page, const QString &name)
{
    const QRegularExpression pattern(name + QStringLiteral("=\"?([^\\s\">]+)"),
                                     QRegularExpression::CaseInsensitiveOption);
    return pattern.match(page).captured(1);
}

}

picture_page::picture_page(QWidget *parent) : QLabel(parent), movie(new QMovie(this))
{
    setAlignment(Qt::AlignCenter);
    setAutoFillBackground(true);
}

void picture_page::Navigate(const QString &path)
{
    if (path.isEmpty() || !FileExists(path))
        return;
    const QString page = ReadAll(path);
    const QString digits = attribute_in(page, QStringLiteral("bgcolor"));
    colour = QColor(digits.startsWith(u'#') ? digits : u'#' + digits);
    if (colour.isValid()) {
        QPalette colours = palette();
        colours.setColor(QPalette::Window, colour);
        setPalette(colours);
    }
    picture_path = QFileInfo(path).path() + u'/' + attribute_in(page, QStringLiteral("src"));
    movie->stop();
    movie->setFileName(picture_path);
    setMovie(movie);
    movie->start();
}
