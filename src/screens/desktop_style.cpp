#include "screens/desktop_style.h"
#include "screens/icons.h"

#include <QPainter>
#include <QStyleOption>
#include <cmath>

namespace {

constexpr double readable_contrast = 4.5;
constexpr int mark_edge_alpha = 150;
constexpr int box_edge_alpha = 90;

bool is_mark(QStyle::PrimitiveElement element)
{
    return element == QStyle::PE_IndicatorCheckBox || element == QStyle::PE_IndicatorRadioButton;
}

bool is_edge(QStyle::PrimitiveElement element)
{
    return element == QStyle::PE_FrameLineEdit || element == QStyle::PE_Frame;
}

bool is_dark(const QPalette &colours)
{
    return colours.color(QPalette::Window).lightness() < colours.color(QPalette::WindowText).lightness();
}

// The share of light that the eye sees in a colour, from 0 to 1.
double luminance(const QColor &colour)
{
    const auto seen = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * seen(colour.redF()) + 0.7152 * seen(colour.greenF()) + 0.0722 * seen(colour.blueF());
}

// The desktop's own colour, as much darker or lighter as its text needs.
QColor readable_under(const QColor &text, QColor ground)
{
    const bool darker = luminance(text) > luminance(ground);
    for (int step = 0; step < 40 && contrast(text, ground) < readable_contrast; ++step)
        ground = darker ? ground.darker(104) : ground.lighter(104);
    return ground;
}

// A spin box, or a list or date that one types into. Lists to choose from look like buttons, which have an edge.
bool is_typed_in(QStyle::ComplexControl control, const QStyleOptionComplex *option)
{
    const auto *list = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    return control == QStyle::CC_SpinBox || (control == QStyle::CC_ComboBox && list && list->editable && list->frame);
}

void draw_edge(QPainter &painter, const QStyleOption &option, int alpha, bool round = false)
{
    QColor edge = option.palette.color(QPalette::WindowText);
    edge.setAlpha(alpha);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(edge);
    painter.setBrush(Qt::NoBrush);
    const QRectF outline = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (round)
        painter.drawEllipse(outline);
    else
        painter.drawRoundedRect(outline, 2, 2);
    painter.restore();
}

// nullptr: the style's own.
const char *picture_of(QStyle::StandardPixmap which)
{
    switch (which) {
    case QStyle::SP_MessageBoxInformation:
        return "information";
    case QStyle::SP_MessageBoxWarning:
        return "warning";
    case QStyle::SP_MessageBoxCritical:
        return "failed";
    case QStyle::SP_MessageBoxQuestion:
        return "help";
    case QStyle::SP_LineEditClearButton:
        return "clear";
    default:
        return nullptr;
    }
}

}

double contrast(const QColor &one, const QColor &other)
{
    const double lighter = qMax(luminance(one), luminance(other));
    const double darker = qMin(luminance(one), luminance(other));
    return (lighter + 0.05) / (darker + 0.05);
}

void desktop_style::polish(QPalette &colours)
{
    QProxyStyle::polish(colours);
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        const QColor text = colours.color(group, QPalette::HighlightedText);
        colours.setColor(group, QPalette::Highlight, readable_under(text, colours.color(group, QPalette::Highlight)));
    }
    colours.setColor(QPalette::Disabled, QPalette::Base, colours.color(QPalette::Disabled, QPalette::Window));
}

void desktop_style::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                  const QWidget *widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!is_dark(option->palette))
        return;
    const bool has_the_keyboard = option->state & State_HasFocus; // its edge is in colour then
    if (is_mark(element))
        draw_edge(*painter, *option, mark_edge_alpha, element == PE_IndicatorRadioButton);
    else if (is_edge(element) && !has_the_keyboard)
        draw_edge(*painter, *option, box_edge_alpha);
}

void desktop_style::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                                       const QWidget *widget) const
{
    const auto *title = qstyleoption_cast<const QStyleOptionTitleBar *>(option);
    const bool dark = is_dark(option->palette);
    if (dark && control == CC_TitleBar && title && title->titleBarState & State_Active) {
        QStyleOptionTitleBar with_shadow = *title;
        with_shadow.palette.setColor(QPalette::Text, Qt::black); // a white shadow prints the title twice
        return QProxyStyle::drawComplexControl(control, &with_shadow, painter, widget);
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (dark && is_typed_in(control, option) && !(option->state & State_HasFocus))
        draw_edge(*painter, *option, box_edge_alpha);
}

QIcon desktop_style::standardIcon(StandardPixmap which, const QStyleOption *option, const QWidget *widget) const
{
    const char *picture = picture_of(which);
    return picture ? drawn_icon(picture) : QProxyStyle::standardIcon(which, option, widget);
}
