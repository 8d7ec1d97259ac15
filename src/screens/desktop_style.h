// The look of all screens: Fusion, with what a person needs to see more clearly. On a dark desktop text boxes, lists
// and unchecked marks get an edge, which Fusion draws there in the colour of the ground. Selected text is readable,
// and a text box that cannot be typed in does not look like one that can.
#pragma once
#include <QProxyStyle>

class desktop_style : public QProxyStyle {
    Q_OBJECT
public:
    desktop_style() : QProxyStyle(QStringLiteral("fusion")) {}

    using QProxyStyle::polish;
    void polish(QPalette &colours) override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
    QIcon standardIcon(StandardPixmap which, const QStyleOption *option, const QWidget *widget) const override;
};

// How far two colours are apart for the eye, from 1 (the same) to 21 (black and white); text needs 4.5.
double contrast(const QColor &one, const QColor &other);
