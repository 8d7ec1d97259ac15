// How the Mail Auditor's lists and the text of the mail share its height: the first shares, and those of the user.
#include "frame/session.h"
#include "platform/settings.h"
#include "screens/frame/menuFrm.h"
#include "support/screens_auditor.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSplitter>
#include <QSplitterHandle>
#include <QTest>
#include <QToolButton>

namespace {

int lines_in(const QPlainTextEdit &box)
{
    return box.viewport()->height() / box.fontMetrics().lineSpacing();
}

int rows_in(const list_view &list)
{
    return list.viewport()->height() / list.visualRect(list.model()->index(0, 0)).height();
}

double list_share(mailfrm &screen)
{
    const QList<int> sizes = control<QSplitter>(screen, "qt_splitter").sizes();
    return double(sizes[0]) / (sizes[0] + sizes[1]);
}

void drag_handle(mailfrm &screen, int by)
{
    QCoreApplication::processEvents();
    QSplitterHandle *handle = control<QSplitter>(screen, "qt_splitter").handle(1);
    const QPoint middle = handle->rect().center();
    QTest::mousePress(handle, Qt::LeftButton, {}, middle);
    const QPoint there = handle->mapToGlobal(middle + QPoint(0, by));
    QMouseEvent move(QEvent::MouseMove, middle + QPoint(0, by), there, Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(handle, &move);
    QTest::mouseRelease(handle, Qt::LeftButton, {}, middle);
}

struct pane_site : auditor_site {
    pane_site()
    {
        store_mails(40);
        for (int number = 0; number < 40; ++number)
            store_sent("cat@mail.example", "Sent " + QString::number(number), QString("A line\r\n").repeated(60));
        store.run("update orders set tsl_body='" + QString("A line\r\n").repeated(60) + "'");
        store.run("update orders set tsl_processed=yes where message_id=2");
    }
};

mailfrm &shown_in(menuFrm &console, const QSize &size)
{
    console.resize(size);
    console.show();
    mailfrm &screen = stored_mails_shown();
    QCoreApplication::processEvents();
    return screen;
}

}

class auditor_pane_test : public QObject {
    Q_OBJECT
private slots:
    void a_mail_can_be_read_and_the_list_be_used_data()
    {
        QTest::addColumn<QSize>("console_size");
        QTest::addColumn<int>("row"); // the first is in no table, which is explained above its text
        QTest::addColumn<int>("least_lines");
        QTest::addColumn<int>("least_rows");
        QTest::newRow("large, with the reason") << QSize(1280, 800) << 0 << 14 << 8;
        QTest::newRow("large") << QSize(1280, 800) << 1 << 18 << 8;
        QTest::newRow("usual, with the reason") << QSize(1120, 720) << 0 << 12 << 7;
        QTest::newRow("usual") << QSize(1120, 720) << 1 << 16 << 7;
        QTest::newRow("small, with the reason") << QSize(640, 480) << 0 << 4 << 3;
        QTest::newRow("small") << QSize(640, 480) << 1 << 7 << 3;
    }

    void a_mail_can_be_read_and_the_list_be_used()
    {
        QFETCH(QSize, console_size);
        QFETCH(int, row);
        QFETCH(int, least_lines);
        QFETCH(int, least_rows);
        pane_site site;
        menuFrm console;
        mailfrm &screen = shown_in(console, console_size);
        auto &list = control<list_view>(screen, "LV_sub");
        const auto &text = control<QPlainTextEdit>(screen, "txt_body");
        click_row(list, row);
        QCoreApplication::processEvents();
        QCOMPARE(control<QPlainTextEdit>(screen, "why_t").isVisible(), row == 0);
        QVERIFY2(lines_in(text) >= least_lines, qPrintable(QString::number(lines_in(text))));
        QVERIFY2(rows_in(list) >= least_rows, qPrintable(QString::number(rows_in(list))));
        QVERIFY(text.mapTo(&screen, QPoint(0, text.height())).y() <= screen.height());
    }

    void with_the_report_open_sent_mails_can_be_read_and_listed()
    {
        pane_site site;
        menuFrm console;
        mailfrm &screen = shown_in(console, QSize(1120, 720));
        control<QToolButton>(screen, "sentitems_b").click();
        auto &list = control<list_view>(screen, "LV_sub_si");
        click_row(list, 0);
        QCoreApplication::processEvents();
        QVERIFY(control<QToolButton>(screen, "report_b").isChecked());
        const auto &text = control<QPlainTextEdit>(screen, "txt_body");
        QVERIFY2(lines_in(text) >= 7, qPrintable(QString::number(lines_in(text))));
        QVERIFY2(rows_in(list) >= 7, qPrintable(QString::number(rows_in(list))));
        const int with_bar = lines_in(text);
        control<QToolButton>(screen, "report_b").click(); // folded, it gives its height to the text
        QCoreApplication::processEvents();
        QVERIFY(lines_in(text) > with_bar + 3);
        QVERIFY(rows_in(list) >= 7);
    }

    void many_reasons_leave_room_for_the_text_of_a_low_pane()
    {
        pane_site site;
        const qint64 account = site.store.add_account("shop", "shop@shop.example");
        for (int map = 0; map < 12; ++map)
            site.store.add_map("map" + QString::number(map), account, "Booking", {{"first_name"}});
        site.store_mail("shop", "ann@mail.example", "Order", "8/6/2026 9:00:00 AM", QString("A line\r\n").repeated(9));
        menuFrm console;
        mailfrm &screen = shown_in(console, QSize(640, 480));
        auto &list = control<list_view>(screen, "LV_sub");
        list.setCurrentIndex(list.model()->index(40, 0));
        QCoreApplication::processEvents();
        const auto &why = control<QPlainTextEdit>(screen, "why_t");
        const auto &text = control<QPlainTextEdit>(screen, "txt_body");
        QVERIFY(lines_in(why) >= 2);
        QVERIFY(why.verticalScrollBar()->maximum() > 0); // the others are reached so
        QVERIFY2(lines_in(text) >= 3, qPrintable(QString::number(lines_in(text))));
        const int low = why.height();
        screen.parentWidget()->resize(640, 380);
        console.resize(1280, 800);
        screen.parentWidget()->resize(900, 700);
        QCoreApplication::processEvents();
        QVERIFY(why.height() > low); // five of them where there is room
    }

    void what_the_user_drags_stays_for_each_view_and_at_the_next_opening()
    {
        pane_site site;
        menuFrm console;
        mailfrm *screen = &shown_in(console, QSize(1120, 720));
        const double first = list_share(*screen);
        drag_handle(*screen, 80);
        const double inbox_share = list_share(*screen);
        QVERIFY2(inbox_share > first + 0.1, qPrintable(QString::number(inbox_share)));
        control<QToolButton>(*screen, "sentitems_b").click();
        const double sent_first = list_share(*screen);
        drag_handle(*screen, -60);
        const double sent_share = list_share(*screen);
        QVERIFY(sent_share < sent_first - 0.05);
        control<QToolButton>(*screen, "inbox_b").click();
        QVERIFY(qAbs(list_share(*screen) - inbox_share) < 0.01);
        the<mailfrm>().unload();
        screen = &shown_in(console, QSize(1120, 720));
        QVERIFY(qAbs(list_share(*screen) - inbox_share) < 0.01);
        screen->parentWidget()->resize(700, 500);
        QCoreApplication::processEvents();
        QVERIFY(qAbs(list_share(*screen) - inbox_share) < 0.01); // in a smaller window, too
        control<QToolButton>(*screen, "sentitems_b").click();
        QVERIFY(qAbs(GetSetting("screens", "mailfrm.sent_height").toDouble() - sent_share) < 0.01);
    }

    void without_a_drag_no_share_is_kept()
    {
        pane_site site;
        menuFrm console;
        mailfrm &screen = shown_in(console, QSize(1120, 720));
        QTest::mouseClick(control<QSplitter>(screen, "qt_splitter").handle(1), Qt::LeftButton);
        the<mailfrm>().unload();
        QCOMPARE(GetSetting("screens", "mailfrm.inbox_height"), QString());
    }

    void without_a_mail_no_strip_stands_above_the_text()
    {
        pane_site site;
        mailfrm &screen = stored_mails_shown();
        screen.resize(920, 600);
        QCoreApplication::processEvents();
        const auto &head = control<QLabel>(screen, "lbl_from");
        const auto &text = control<QPlainTextEdit>(screen, "txt_body");
        QVERIFY(!head.isVisible());
        QCOMPARE(text.y(), 0);
        click_row(control<list_view>(screen, "LV_sub"), 0);
        QVERIFY(head.isVisible());
        control<list_view>(screen, "LV_sub").clearSelection();
        QCoreApplication::processEvents();
        QCOMPARE(text.y(), 0);
    }

    void the_lines_above_the_text_are_selected_by_keyboard_too()
    {
        pane_site site;
        mailfrm &screen = stored_mails_shown();
        click_row(control<list_view>(screen, "LV_sub"), 0);
        auto &head = control<QLabel>(screen, "lbl_from");
        head.setFocus(Qt::TabFocusReason);
        QVERIFY(head.focusPolicy() & Qt::TabFocus);
        QTest::keyClick(&head, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(head.selectedText().replace(QChar::ParagraphSeparator, u'\n'), head.text());
        QTest::keyClick(&head, Qt::Key_Home, Qt::ControlModifier);
        for (int letter = 0; letter < 5; ++letter)
            QTest::keyClick(&head, Qt::Key_Right, Qt::ShiftModifier);
        QCOMPARE(head.selectedText(), "From:");
    }
};

QTEST_MAIN(auditor_pane_test)
#include "auditor_pane_test.moc"
