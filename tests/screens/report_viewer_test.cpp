// The viewer of reports: turning pages, sizes, what it says without a page, and its buttons.
#include "platform/widgets/report_page.h"
#include "platform/widgets/report_viewer.h"
#include "support/screens_driver.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <QWheelEvent>

namespace {

// Each page is one colour: its number decides.
class coloured_pages : public paged_report {
public:
    explicit coloured_pages(int pages) : count(pages) {}
    QString title() const override { return "Colours"; }
    QPageSize page_size() const override { return QPageSize(QPageSize::A4); }
    void lay_out(const QSizeF &page) override { paper = page; }
    int page_count() const override { return count; }
    void paint_page(QPainter &painter, int page) const override
    {
        painter.fillRect(QRectF(QPointF(0, 0), paper), QColor(10 + page, 20, 30));
    }

private:
    int count;
    QSizeF paper;
};

class shown_viewer : public report_viewer {
public:
    explicit shown_viewer(int pages)
    {
        set_empty_text("Nothing to print.");
        resize(700, 500);
        ViewReport(pages > 0 ? std::make_shared<coloured_pages>(pages) : nullptr);
        show();
        activateWindow(); // its short cuts need it
        if (!QTest::qWaitForWindowActive(this))
            qFatal("the viewer does not become active");
        take_focus();
    }
    // The number of the page that is really painted.
    int painted_page() const
    {
        const auto &page = control<report_page>(*this, "page_fr");
        QPixmap picture(page.size());
        control<report_page>(*this, "page_fr").render(&picture);
        return picture.toImage().pixelColor(page.width() / 2, page.height() / 2).red() - 9;
    }
    void press(int key, Qt::KeyboardModifiers with = {}) { QTest::keyClick(area(), Qt::Key(key), with); }
    void wheel(int delta)
    {
        QWidget *pane = area()->viewport();
        const QPointF middle(pane->rect().center());
        QWheelEvent event(middle, pane->mapToGlobal(middle), {}, {0, delta}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(pane, &event);
    }
    QScrollArea *area() const { return &control<QScrollArea>(*this, "area_fr"); }
    QScrollBar &bar() const { return *area()->verticalScrollBar(); }
    int page_width_shown() const { return control<report_page>(*this, "page_fr").width(); }
    bool can(const char *name) const { return control<QWidget>(*this, name).isEnabled(); }
};

}

class report_viewer_test : public QObject {
    Q_OBJECT
private slots:
    void it_begins_with_the_first_page()
    {
        const shown_viewer viewer(12);
        QCOMPARE(viewer.GetCurrentPageNumber(), 1);
        QCOMPARE(viewer.painted_page(), 1);
        QCOMPARE(control<QLabel>(viewer, "pages_l").text(), "of 12");
        QCOMPARE(control<report_page>(viewer, "page_fr").accessibleName(), "Page 1 of 12");
    }

    void the_buttons_turn_and_know_their_ends()
    {
        const shown_viewer viewer(3);
        const auto press = [&viewer](const char *name) { control<QAbstractButton>(viewer, name).click(); };
        QVERIFY(!viewer.can("first_b") && !viewer.can("previous_b") && viewer.can("next_b") && viewer.can("last_b"));
        press("next_b");
        QCOMPARE(viewer.painted_page(), 2);
        QVERIFY(viewer.can("first_b") && viewer.can("previous_b") && viewer.can("next_b") && viewer.can("last_b"));
        press("last_b");
        QCOMPARE(viewer.painted_page(), 3);
        QVERIFY(viewer.can("first_b") && viewer.can("previous_b") && !viewer.can("next_b") && !viewer.can("last_b"));
        press("previous_b");
        QCOMPARE(viewer.painted_page(), 2);
        press("first_b");
        QCOMPARE(viewer.painted_page(), 1);
    }

    void the_keyboard_turns()
    {
        shown_viewer viewer(5);
        viewer.Zoom(report_viewer::whole_page);
        viewer.press(Qt::Key_PageDown);
        QCOMPARE(viewer.painted_page(), 2);
        viewer.press(Qt::Key_End);
        QCOMPARE(viewer.painted_page(), 5);
        viewer.press(Qt::Key_PageDown);
        QCOMPARE(viewer.painted_page(), 5);
        viewer.press(Qt::Key_PageUp);
        QCOMPARE(viewer.painted_page(), 4);
        viewer.press(Qt::Key_Home);
        QCOMPARE(viewer.painted_page(), 1);
        viewer.press(Qt::Key_PageUp);
        QCOMPARE(viewer.painted_page(), 1);
    }

    void page_down_reads_a_large_page_to_its_end_first()
    {
        shown_viewer viewer(2);
        viewer.Zoom(100);
        QVERIFY(viewer.bar().maximum() > 0);
        viewer.press(Qt::Key_PageDown);
        QCOMPARE(viewer.painted_page(), 1);
        QVERIFY(viewer.bar().value() > 0);
        for (int times = 0; times < 20 && viewer.GetCurrentPageNumber() == 1; ++times)
            viewer.press(Qt::Key_PageDown);
        QCOMPARE(viewer.painted_page(), 2);
        QCOMPARE(viewer.bar().value(), 0);
        viewer.press(Qt::Key_PageUp);
        QCOMPARE(viewer.painted_page(), 1);
        QCOMPARE(viewer.bar().value(), viewer.bar().maximum());
    }

    void a_notch_of_the_wheel_turns_one_page()
    {
        shown_viewer viewer(5);
        viewer.Zoom(report_viewer::whole_page);
        viewer.wheel(-120);
        QCOMPARE(viewer.painted_page(), 2);
        viewer.wheel(-120);
        QCOMPARE(viewer.painted_page(), 3);
        viewer.wheel(120);
        QCOMPARE(viewer.painted_page(), 2);
    }

    void small_steps_of_a_touchpad_turn_when_they_make_a_notch()
    {
        shown_viewer viewer(5);
        viewer.Zoom(report_viewer::whole_page);
        for (int step = 1; step <= 11; ++step)
            viewer.wheel(-10);
        QCOMPARE(viewer.painted_page(), 1);
        viewer.wheel(-10);
        QCOMPARE(viewer.painted_page(), 2);
        viewer.wheel(-110);
        viewer.wheel(10); // the other way counts from nothing
        viewer.wheel(-20);
        QCOMPARE(viewer.painted_page(), 2);
        for (int step = 1; step <= 12; ++step)
            viewer.wheel(10);
        QCOMPARE(viewer.painted_page(), 1);
    }

    void a_page_number_may_be_typed()
    {
        const shown_viewer viewer(30);
        auto &number = control<QSpinBox>(viewer, "page_t");
        number.selectAll();
        QTest::keyClicks(&number, "17");
        QTest::keyClick(&number, Qt::Key_Return);
        QCOMPARE(viewer.painted_page(), 17);
    }

    void sizes_go_up_and_down_by_keys()
    {
        shown_viewer viewer(1);
        const double inches = QPageSize(QPageSize::A4).size(QPageSize::Inch).width();
        const auto dots = [&](int percent) { return qRound(inches * viewer.logicalDpiX() * percent / 100); };
        viewer.Zoom(100);
        QCOMPARE(viewer.page_width_shown(), dots(100));
        viewer.press(Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(viewer.page_width_shown(), dots(125));
        viewer.press(Qt::Key_Minus, Qt::ControlModifier);
        viewer.press(Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(viewer.page_width_shown(), dots(75));
        for (int times = 0; times < 9; ++times)
            viewer.press(Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(viewer.page_width_shown(), dots(50));
        viewer.press(Qt::Key_0, Qt::ControlModifier);
        QCOMPARE(control<QComboBox>(viewer, "zoom_c").currentText(), "Whole page");
        QCOMPARE(viewer.bar().maximum(), 0);
    }

    void a_fitted_page_follows_the_window()
    {
        shown_viewer viewer(1);
        viewer.Zoom(report_viewer::page_width);
        const int narrow = viewer.page_width_shown();
        QVERIFY(narrow <= viewer.area()->viewport()->width());
        viewer.resize(1000, 500);
        QTRY_VERIFY(viewer.page_width_shown() > narrow + 200);
        QVERIFY(viewer.page_width_shown() <= viewer.area()->viewport()->width());
        QCOMPARE(viewer.area()->horizontalScrollBar()->maximum(), 0);
    }

    void without_a_page_it_says_so_and_only_closes()
    {
        const shown_viewer viewer(0);
        QVERIFY(control<QLabel>(viewer, "empty_l").isVisible());
        QCOMPARE(control<QLabel>(viewer, "empty_l").text(), "Nothing to print.");
        QVERIFY(!viewer.area()->isVisible());
        for (const char *name : {"first_b", "previous_b", "next_b", "last_b", "page_t", "zoom_c", "print_b", "save_b"})
            QVERIFY2(!viewer.can(name), name);
        QVERIFY(viewer.can("close_b"));
        QCOMPARE(viewer.GetCurrentPageNumber(), 0);
    }

    void another_report_takes_the_place_of_the_first()
    {
        shown_viewer viewer(9);
        viewer.ShowLastPage();
        viewer.ViewReport(std::make_shared<coloured_pages>(2));
        QCOMPARE(viewer.painted_page(), 1);
        QCOMPARE(control<QLabel>(viewer, "pages_l").text(), "of 2");
        viewer.ViewReport(nullptr);
        QVERIFY(control<QLabel>(viewer, "empty_l").isVisible());
    }

    void its_buttons_are_answered_by_whoever_placed_it()
    {
        shown_viewer viewer(1);
        const QSignalSpy print(&viewer, &report_viewer::print_wanted);
        const QSignalSpy save(&viewer, &report_viewer::save_wanted);
        const QSignalSpy close(&viewer, &report_viewer::close_wanted);
        control<QAbstractButton>(viewer, "print_b").click();
        control<QAbstractButton>(viewer, "save_b").click();
        control<QAbstractButton>(viewer, "close_b").click();
        viewer.press(Qt::Key_P, Qt::ControlModifier);
        viewer.press(Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(print.size(), 2);
        QCOMPARE(save.size(), 2);
        QCOMPARE(close.size(), 1);
    }

    void every_control_has_a_spoken_name()
    {
        const shown_viewer viewer(1);
        for (const char *name : {"first_b", "previous_b", "next_b", "last_b", "page_t", "zoom_c"})
            QVERIFY2(!control<QWidget>(viewer, name).accessibleName().isEmpty(), name);
    }
};

QTEST_MAIN(report_viewer_test)
#include "report_viewer_test.moc"
