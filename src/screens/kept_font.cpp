#include "screens/kept_font.h"
#include "platform/settings.h"

#include <QApplication>
#include <QFont>
#include <QFontInfo>
#include <QPointer>
#include <QWidget>

namespace {

const QString font_section = QStringLiteral("reading");

struct kept_font_state {
    QList<QPointer<QWidget>> texts; // shown in it
} in_kept_font;

QString flag_word(bool flag)
{
    return flag ? QStringLiteral("true") : QStringLiteral("false");
}

}

QFont as_font(const chosen_font &font)
{
    QFont made(font.name);
    if (font.size > 0)
        made.setPointSizeF(font.size);
    made.setBold(font.bold);
    made.setItalic(font.italic);
    return made;
}

chosen_font as_chosen(const QFont &font)
{
    const double size = font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF(); // set in pixels
    return {font.family(), size, font.bold(), font.italic()};
}

chosen_font kept_font()
{
    const QString name = GetSetting(font_section, "font");
    const double size = GetSetting(font_section, "font_size").toDouble();
    constexpr double largest = 200;
    if (name.isEmpty() || !(size >= 1 && size <= largest)) // not chosen, or spoiled by hand
        return as_chosen(QApplication::font());
    return {name, size, GetSetting(font_section, "font_bold") == u"true",
            GetSetting(font_section, "font_italic") == u"true"};
}

void keep_font(const chosen_font &font)
{
    SaveSettings(font_section, {{"font", font.name},
                                {"font_size", QString::number(font.size)},
                                {"font_bold", flag_word(font.bold)},
                                {"font_italic", flag_word(font.italic)}});
    in_kept_font.texts.removeAll(nullptr);
    for (QWidget *text : in_kept_font.texts)
        text->setFont(as_font(font));
}

QString font_words(const chosen_font &font)
{
    return font.name + " " + QString::number(font.size) + " pt.";
}

void show_in_kept_font(QWidget &text)
{
    in_kept_font.texts.removeAll(nullptr);
    in_kept_font.texts += &text;
    text.setFont(as_font(kept_font()));
}
