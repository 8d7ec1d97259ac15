// The base of every screen: loading, showing, unloading, names.
#include "platform/settings.h"
#include "screens/screen.h"
#include "support/screens_driver.h"

#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

namespace {

class sample_screen : public screen {
public:
    sample_screen()
    {
        auto *rows = new QVBoxLayout(this);
        auto *caption = new QLabel("&Query name:", this);
        auto *query = new QLineEdit(this);
        query->setObjectName("query_t");
        caption->setBuddy(query);
        auto *add = new QPushButton("&Add && go", this);
        add->setObjectName("add_b");
        rows->addWidget(caption);
        rows->addWidget(query);
        rows->addWidget(add);
    }
    void Load() override { ++loads; }
    int loads = 0;
};

class lasting_screen : public screen {
protected:
    bool closes_on_escape() const override { return false; }
};

}

class screen_test : public QObject {
    Q_OBJECT
private slots:
    void init() { forget_screens(); }
    void cleanup() { forget_screens(); }

    void constructing_does_not_load()
    {
        QCOMPARE(the<sample_screen>().loads, 0);
        QVERIFY(!is_loaded<sample_screen>());
    }

    void asking_makes_no_screen()
    {
        QVERIFY(!is_loaded<sample_screen>());
        QVERIFY(!is_visible<sample_screen>());
        QCOMPARE(live_widget(typeid(sample_screen)), nullptr);
    }

    void loading_runs_Load_once_and_shows_nothing()
    {
        the<sample_screen>().load();
        the<sample_screen>().load();
        the<sample_screen>().show();
        QCOMPARE(the<sample_screen>().loads, 1);
        the<sample_screen>().unload();
        the<sample_screen>().load();
        QVERIFY(!is_visible<sample_screen>());
    }

    void unload_then_show_in_one_click_gives_a_new_one()
    {
        sample_screen &old = the<sample_screen>();
        old.show();
        control<QLineEdit>(old, "query_t").setText("typed");
        old.unload();
        QVERIFY(!is_loaded<sample_screen>());
        the<sample_screen>().show(); // the old one still exists: its events are not done
        QVERIFY(&the<sample_screen>() != &old);
        QVERIFY(is_visible<sample_screen>());
        QVERIFY(old.isHidden());
        QCOMPARE(control<QLineEdit>(the<sample_screen>(), "query_t").text(), "");
    }

    void an_unloaded_screen_is_deleted_when_its_events_are_done()
    {
        const QPointer<sample_screen> old = &the<sample_screen>();
        old->show();
        old->unload();
        QVERIFY(old);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!old);
    }

    void opens_in_the_area_once_and_goes_with_its_window()
    {
        QMdiArea area;
        area.resize(800, 600);
        area.show();
        set_screen_area(&area);
        the<sample_screen>().show();
        the<sample_screen>().show();
        QCOMPARE(area.subWindowList().size(), 1);
        QVERIFY(is_visible<sample_screen>());
        area.subWindowList().first()->close();
        QVERIFY(!is_loaded<sample_screen>());
    }

    void as_an_icon_in_the_area_it_is_still_visible()
    {
        QMdiArea area;
        area.show();
        set_screen_area(&area);
        the<sample_screen>().show();
        area.subWindowList().first()->showMinimized();
        QVERIFY(is_visible<sample_screen>());
    }

    void its_window_in_the_area_wears_its_picture()
    {
        QMdiArea area;
        set_screen_area(&area);
        QPixmap red(16, 16);
        red.fill(Qt::red);
        the<sample_screen>().setWindowIcon(red);
        the<sample_screen>().show();
        const QImage worn = area.subWindowList().first()->windowIcon().pixmap(16, 16).toImage();
        QCOMPARE(worn.pixelColor(8, 8), QColor(Qt::red));
    }

    void it_follows_the_areas_size_until_the_user_moves_it()
    {
        QMdiArea area;
        area.resize(800, 600);
        area.show();
        set_screen_area(&area);
        the<sample_screen>().setMinimumSize(100, 80);
        the<sample_screen>().show();
        QMdiSubWindow &window = *area.subWindowList().first();
        const auto off_the_middle = [&] {
            return (window.geometry().center() - area.viewport()->rect().center()).manhattanLength();
        };
        QVERIFY(off_the_middle() <= 2);
        const QSize usual = window.size();
        area.resize(500, 400);
        QVERIFY(off_the_middle() <= 2);
        area.resize(100, 100);
        QVERIFY(window.width() <= qMax(100, window.minimumSizeHint().width()));
        area.resize(800, 600);
        QCOMPARE(window.size(), usual); // what a small area took away comes back
        window.move(700, 500);          // partly outside: where the user has put it
        area.resize(790, 590);
        QVERIFY(area.viewport()->rect().contains(window.geometry()));
        QVERIFY(off_the_middle() > 100);
        QCOMPARE(window.size(), usual);
    }

    void one_as_large_as_the_area_stays_so()
    {
        QMdiArea area;
        area.resize(800, 600);
        area.show();
        set_screen_area(&area);
        the<sample_screen>().show();
        QMdiSubWindow &window = *area.subWindowList().first();
        window.showMaximized();
        area.resize(700, 500);
        QVERIFY(window.isMaximized());
        QCOMPARE(window.size(), area.viewport()->size());
    }

    void escape_unloads_it()
    {
        the<sample_screen>().show();
        QTest::keyClick(&the<sample_screen>(), Qt::Key_Escape);
        QVERIFY(!is_loaded<sample_screen>());
    }

    void escape_leaves_a_screen_that_says_so()
    {
        the<lasting_screen>().show();
        QTest::keyClick(&the<lasting_screen>(), Qt::Key_Escape);
        QVERIFY(is_visible<lasting_screen>());
    }

    void modal_returns_when_it_is_unloaded()
    {
        QTimer::singleShot(0, [] { the<sample_screen>().unload(); });
        sample_screen &shown = the<sample_screen>();
        const QPointer<sample_screen> gone = &shown;
        shown.show_modal();
        QVERIFY(!is_loaded<sample_screen>());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!gone);
    }

    void modal_closed_by_escape_is_unloaded()
    {
        QTimer::singleShot(0, [] { QTest::keyClick(&the<sample_screen>(), Qt::Key_Escape); });
        the<sample_screen>().show_modal();
        QVERIFY(!is_loaded<sample_screen>());
    }

    void enter_presses_the_default_button()
    {
        the<sample_screen>().show();
        auto &add = control<QPushButton>(the<sample_screen>(), "add_b");
        const QSignalSpy pressed(&add, &QPushButton::clicked);
        auto &field = control<QLineEdit>(the<sample_screen>(), "query_t");
        field.setFocus();
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(pressed.count(), 0); // none is the default yet
        add.setDefault(true);
        QTest::keyClick(&field, Qt::Key_Return);
        QTest::keyClick(&field, Qt::Key_Enter);
        QCOMPARE(pressed.count(), 2);
        add.setEnabled(false);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(pressed.count(), 2);
    }

    void enter_presses_the_button_with_the_keyboard_before_the_default_one()
    {
        sample_screen &shown = the<sample_screen>();
        QPushButton other("Other", &shown);
        shown.layout()->addWidget(&other);
        shown.show();
        auto &add = control<QPushButton>(shown, "add_b");
        add.setDefault(true);
        const QSignalSpy add_pressed(&add, &QPushButton::clicked);
        const QSignalSpy other_pressed(&other, &QPushButton::clicked);
        other.setFocus();
        QTest::keyClick(&shown, Qt::Key_Return);
        QCOMPARE(add_pressed.count(), 0);
        QCOMPARE(other_pressed.count(), 1);
    }

    void without_a_console_it_stands_in_the_middle_of_the_desktop()
    {
        the<sample_screen>().show();
        const QPoint away =
            the<sample_screen>().geometry().center() - QGuiApplication::primaryScreen()->availableGeometry().center();
        constexpr int widest_frame = 40; // how wide it is, nobody knows before the window is shown
        QVERIFY2(away.manhattanLength() <= widest_frame, qPrintable(QString::number(away.manhattanLength())));
        the<sample_screen>().move(5, 5);
        the<sample_screen>().show(); // where the user has put it
        QCOMPARE(the<sample_screen>().pos(), QPoint(5, 5));
    }

    void controls_have_spoken_names()
    {
        the<sample_screen>().load();
        QCOMPARE(control<QLineEdit>(the<sample_screen>(), "query_t").accessibleName(), "Query name:");
        QCOMPARE(control<QPushButton>(the<sample_screen>(), "add_b").accessibleName(), "Add & go");
        QCOMPARE(control<QPushButton>(the<sample_screen>(), "add_b").accessibleDescription(), "");
    }

    void control_names_are_told_to_drivers_only_when_asked()
    {
        SaveSetting("tests", "control_names", "true");
        the<sample_screen>().load();
        QCOMPARE(control<QPushButton>(the<sample_screen>(), "add_b").accessibleDescription(), "add_b");
    }
};

QTEST_MAIN(screen_test)
#include "screen_test.moc"
