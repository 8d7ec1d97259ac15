#include "intake/progress_page.h"
#include "frame/session.h"
#include "platform/app_folder.h"
#include "platform/text_file.h"

namespace intake {

namespace {

QString six_digits(quint32 platform_colour)
{
    const quint32 red = platform_colour & 0xff;
    const quint32 green = (platform_colour >> 8) & 0xff;
    const quint32 blue = (platform_colour >> 16) & 0xff;
    return QStringLiteral("%1").arg(red << 16 | green << 8 | blue, 6, 16, QLatin1Char('0')).toUpper();
}

void write_animation(QStringView file, const QString &page)
{
    const QString path = app_path(file);
    Write(path, page);
    session.animation_file = path;
}

}

QString progress_page(quint32 platform_colour, const QString &picture)
{
    return "<html> <body bgcolor=" + six_digits(platform_colour) +
           " leftmargin=0 topmargin=0 marginwidth=0 marginheight=0> <img src=" + picture + "></body></html>";
}

void write_fetch_animation(quint32 platform_colour)
{
    write_animation(u"\\fetchmailanimation.html", progress_page(platform_colour, "otl-to-tsl.gif"));
}

void write_mapping_animation(quint32 platform_colour)
{
    write_animation(u"\\mappinganimation.html", progress_page(platform_colour, "tsl-to-dtb.gif"));
}

}
