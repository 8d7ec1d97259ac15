// The look of all screens: Fusion, and on a dark desktop an edge around unchecked marks, which Fusion draws there in
// the colour of the ground.
#pragma once
#include <QProxyStyle>

class desktop_style : public QProxyStyle {
    Q_OBJECT
public:
    desktop_style() : QProxyStyle(QStringLiteral("fusion")) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
};
