// The help beside dialogs, which lock every other window.
#include "screens/frame/frmAbout.h"
#include "screens/frame/menuFrm.h"
#include "support/screens_help.h"

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QWindow>

namespace {

// As the window system brings a click: a locked window does not get it.
void click_through_window_system(QWidget &control)
{
    QWidget *window = control.window();
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, control.mapTo(window, control.rect().center()));
}

// While About stands as a dialog. It goes in any case, so that a failed deed does not hang the test.
template <typename Deed>
void beside_about(Deed deed)
{
    bool was_modal = false;
    QTimer::singleShot(0, [&] {
        was_modal = QApplication::activeModalWidget() == the<frmAbout>().window();
        deed();
        the<frmAbout>().unload();
    });
    the<frmAbout>().show_modal();
    QVERIFY(was_modal);
}

}

class help_beside_dialogs_test : public QObject {
    Q_OBJECT
private slots:
    // A dialog locks every other window; the help that was asked for from it stays usable.
    void help_asked_for_from_a_dialog_is_usable_beside_it()
    {
        help_site site;
        menuFrm console;
        console.show();
        beside_about([] {
            QTest::keyClick(&the<frmAbout>(), Qt::Key_F1);
            QCOMPARE(page().shown_page(), "frmabout.html");
            click_through_window_system(tool("start_b"));
            QCOMPARE(page().shown_page(), "start.html");
            the<help_frm>().resize(the<help_frm>().minimumSize());
            QTRY_VERIFY(page().verticalScrollBar()->maximum() > 0);
            QVERIFY(QTest::qWaitForWindowActive(&the<help_frm>()));
            QTest::keyClick(the<help_frm>().windowHandle(), Qt::Key_PageDown);
            QTRY_VERIFY(page().verticalScrollBar()->value() > 0);
            click_through_window_system(control<QPushButton>(the<help_frm>(), "close_b"));
            QVERIFY(!is_visible<help_frm>());
            QVERIFY(is_visible<frmAbout>());
        });
    }

    void help_that_was_open_before_is_usable_beside_dialogs_and_outlives_them()
    {
        help_site site;
        menuFrm console;
        console.show();
        show_help("outbox_frm");
        beside_about([] {
            click_through_window_system(tool("start_b"));
            QCOMPARE(page().shown_page(), "start.html");
            QDialog question(QApplication::activeModalWidget()); // a dialog over the dialog
            question.setModal(true);
            question.show();
            click_through_window_system(tool("back_b"));
            QCOMPARE(page().shown_page(), "outbox_frm.html");
            question.hide();
            click_through_window_system(tool("forward_b"));
            QCOMPARE(page().shown_page(), "start.html");
        });
        QVERIFY(is_visible<help_frm>());
        click_through_window_system(tool("back_b"));
        QCOMPARE(page().shown_page(), "outbox_frm.html");
    }

    // What the two above are worth: a window that does not belong to the dialog gets no click.
    void any_other_window_is_locked_by_a_dialog()
    {
        help_site site;
        menuFrm console;
        console.show();
        QPushButton other("Other");
        int clicks = 0;
        connect(&other, &QPushButton::clicked, &other, [&clicks] { ++clicks; });
        other.show();
        click_through_window_system(other);
        QCOMPARE(clicks, 1);
        beside_about([&] {
            click_through_window_system(other);
            QCOMPARE(clicks, 1);
        });
    }
};

QTEST_MAIN(help_beside_dialogs_test)
#include "help_beside_dialogs_test.moc"
