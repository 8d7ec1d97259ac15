// The look of all screens, on a light and on a dark desktop.
#include "screens/desktop_style.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

namespace {

QPalette light_desktop()
{
    return QPalette(QColor(0xef, 0xef, 0xef));
}

QPalette dark_desktop()
{
    QPalette colours(QColor(0x35, 0x37, 0x3a), QColor(0x2a, 0x2c, 0x2f));
    colours.setColor(QPalette::Base, QColor(0x1f, 0x21, 0x23));
    return colours;
}

struct styled_desktop {
    explicit styled_desktop(QPalette colours)
    {
        auto *style = new desktop_style;
        QApplication::setStyle(style); // the application owns it
        style->polish(colours);        // as it is asked to for the desktop's own colours, but not for colours set here
        QApplication::setPalette(colours);
    }
};

QColor edge_of(QWidget &box)
{
    return box.grab().toImage().pixelColor(box.width() / 2, 0);
}

}

class desktop_style_test : public QObject {
    Q_OBJECT
private slots:
    void contrast_is_that_of_the_eye_data()
    {
        QTest::addColumn<QColor>("one");
        QTest::addColumn<QColor>("other");
        QTest::addColumn<double>("times");
        QTest::newRow("black and white") << QColor(Qt::black) << QColor(Qt::white) << 21.0;
        QTest::newRow("white and black") << QColor(Qt::white) << QColor(Qt::black) << 21.0;
        QTest::newRow("the same") << QColor(0x30, 0x8d, 0xc7) << QColor(0x30, 0x8d, 0xc7) << 1.0;
        QTest::newRow("the grey that just passes on white") << QColor(0x76, 0x76, 0x76) << QColor(Qt::white) << 4.54;
    }
    void contrast_is_that_of_the_eye()
    {
        QFETCH(QColor, one);
        QFETCH(QColor, other);
        QFETCH(double, times);
        QVERIFY(qAbs(contrast(one, other) - times) < 0.01);
    }
    void selected_text_is_readable_data()
    {
        QTest::addColumn<QColor>("text");
        QTest::addColumn<QColor>("ground");
        QTest::newRow("white on a light blue") << QColor(Qt::white) << QColor(0x30, 0x8d, 0xc7);
        QTest::newRow("black on a dark green") << QColor(Qt::black) << QColor(0x10, 0x60, 0x30);
        QTest::newRow("white on yellow") << QColor(Qt::white) << QColor(Qt::yellow);
    }
    void selected_text_is_readable()
    {
        QFETCH(QColor, text);
        QFETCH(QColor, ground);
        QPalette colours = light_desktop();
        colours.setColor(QPalette::Highlight, ground);
        colours.setColor(QPalette::HighlightedText, text);
        const styled_desktop desktop(colours);
        const QPalette shown = QApplication::palette();
        for (const auto group : {QPalette::Active, QPalette::Inactive})
            QVERIFY(contrast(shown.color(group, QPalette::Highlight), text) >= 4.5);
    }
    void a_readable_selection_keeps_the_desktops_colour()
    {
        QPalette colours = light_desktop();
        colours.setColor(QPalette::Highlight, QColor(0x10, 0x30, 0x60));
        colours.setColor(QPalette::HighlightedText, Qt::white);
        const styled_desktop desktop(colours);
        QCOMPARE(QApplication::palette().color(QPalette::Highlight), QColor(0x10, 0x30, 0x60));
    }
    void a_dark_text_box_has_an_edge()
    {
        const styled_desktop desktop(dark_desktop());
        QLineEdit box;
        box.resize(100, 24);
        QVERIFY(contrast(edge_of(box), box.palette().color(QPalette::Base)) > 2);
        QVERIFY(contrast(edge_of(box), box.palette().color(QPalette::Window)) > 2);
    }
    void a_box_that_is_off_has_the_ground_of_the_window()
    {
        for (const QPalette &colours : {light_desktop(), dark_desktop()}) {
            const styled_desktop desktop(colours);
            QLineEdit box;
            box.resize(100, 24);
            const auto middle = [&box] { return box.grab().toImage().pixelColor(box.width() / 2, box.height() / 2); };
            const QColor typed_in = middle();
            box.setEnabled(false);
            QCOMPARE(middle(), box.palette().color(QPalette::Disabled, QPalette::Window));
            QVERIFY(middle() != typed_in);
        }
    }
    void boxes_wear_the_programs_own_pictures_data()
    {
        QTest::addColumn<QStyle::StandardPixmap>("which");
        QTest::newRow("information") << QStyle::SP_MessageBoxInformation;
        QTest::newRow("warning") << QStyle::SP_MessageBoxWarning;
        QTest::newRow("failure") << QStyle::SP_MessageBoxCritical;
        QTest::newRow("question") << QStyle::SP_MessageBoxQuestion;
        QTest::newRow("the cross in a text box") << QStyle::SP_LineEditClearButton;
    }
    void boxes_wear_the_programs_own_pictures()
    {
        QFETCH(QStyle::StandardPixmap, which);
        const styled_desktop desktop(light_desktop());
        const QImage ours = QApplication::style()->standardIcon(which).pixmap(64, 64).toImage();
        QCOMPARE(ours.size(), QSize(64, 64)); // drawn at any size
        const QProxyStyle fusion("fusion");
        QVERIFY(ours != fusion.standardIcon(which).pixmap(64, 64).toImage());
    }
};

QTEST_MAIN(desktop_style_test)
#include "desktop_style_test.moc"
