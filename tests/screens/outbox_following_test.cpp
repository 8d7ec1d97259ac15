// The Outbox and the console's status bar follow the delivery, and the user keeps his place. The screen by itself:
// outbox_frm_test.cpp.
#include "screens/frame/menuFrm.h"
#include "screens/screen.h"
#include "support/screens_outbox.h"

#include <QAction>
#include <QTest>
#include <QToolButton>

using namespace outbox_hands;

class outbox_following_test : public QObject {
    Q_OBJECT
private slots:
    void the_list_follows_delivery_and_keeps_what_is_selected()
    {
        screens_site site;
        hand_over("ann@mail.example", "Order 17");
        hand_over("bob@mail.example", "Order 18");
        menuFrm console;
        console.show();
        control<QAction>(console, "outbox_mnu").trigger();
        select(1);
        hand_over("eva@mail.example", "Order 19");
        QVERIFY(outbox::discard(outbox::contents().front().id));
        delivery::report told;
        told.line = "2 mails wait in the Outbox: sending";
        console.delivery_told(told);
        QCOMPARE(control<QLabel>(the<outbox_frm>(), "summary_l").text(), told.line);
        QTRY_COMPARE(cell(1, 1), "Order 19");
        QCOMPARE(row_count(), 2);
        QCOMPARE(rows().selectionModel()->selectedRows().value(0).data().toString(), "bob@mail.example");
    }

    void the_keyboard_goes_on_where_it_was_when_the_list_follows()
    {
        screens_site site;
        for (const char *to : {"a@mail.example", "b@mail.example", "c@mail.example", "d@mail.example"})
            hand_over(to, "Order");
        the<outbox_frm>().show();
        for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Down})
            QTest::keyClick(&rows(), key);
        QTest::keyClick(&rows(), Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(selected(), (QStringList{"b@mail.example", "c@mail.example"}));
        send_away("a@mail.example");
        QCOMPARE(selected(), (QStringList{"b@mail.example", "c@mail.example"}));
        QCOMPARE(rows().currentIndex().data().toString(), "c@mail.example");
        QTest::keyClick(&rows(), Qt::Key_Up, Qt::ShiftModifier); // back to where Shift began
        QCOMPARE(selected(), QStringList{"b@mail.example"});
        QTest::keyClick(&rows(), Qt::Key_Down);
        QCOMPARE(selected(), QStringList{"c@mail.example"});
    }

    void behind_a_mail_that_went_the_keyboard_goes_on_with_the_next_one()
    {
        screens_site site;
        for (const char *to : {"a@mail.example", "b@mail.example", "c@mail.example", "d@mail.example"})
            hand_over(to, "Order");
        the<outbox_frm>().show();
        for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Down})
            QTest::keyClick(&rows(), key);
        send_away("b@mail.example");
        QCOMPARE(selected(), QStringList()); // nothing that nobody chose
        QCOMPARE(shown_text(), "");
        QTest::keyClick(&rows(), Qt::Key_Down);
        QCOMPARE(selected(), QStringList{"c@mail.example"});
    }

    void a_long_list_stays_where_it_was_read()
    {
        screens_site site;
        for (int number = 0; number < 100; ++number)
            hand_over(QString("v%1@mail.example").arg(number), "Order");
        the<outbox_frm>().show();
        rows().scrollTo(rows().model()->index(50, 0), QAbstractItemView::PositionAtTop);
        QCOMPARE(rows().indexAt({5, 5}).data().toString(), "v50@mail.example");
        send_away("v3@mail.example");
        QCOMPARE(rows().indexAt({5, 5}).data().toString(), "v50@mail.example");
    }

    void the_status_bar_tells_what_waits_and_opens_the_outbox()
    {
        screens_site site;
        menuFrm console;
        console.show();
        auto &told = control<QToolButton>(console, "outbox_b");
        QVERIFY(!told.isVisible());
        delivery::report report;
        report.line = "2 mails wait: nobody answers at smtp.shop.example.";
        console.delivery_told(report);
        QVERIFY(told.isVisible());
        QCOMPARE(told.accessibleName(), "Outbox: 2 mails wait: nobody answers at smtp.shop.example.");
        told.click();
        QVERIFY(is_visible<outbox_frm>());
        console.delivery_told({});
        QVERIFY(!told.isVisible());
    }

    void a_long_line_does_not_widen_the_console()
    {
        screens_site site;
        menuFrm console;
        console.show();
        const int width = console.width();
        delivery::report report;
        report.line = "<b>" + QString("no answer ").repeated(200);
        console.delivery_told(report);
        QCoreApplication::processEvents();
        QCOMPARE(console.width(), width);
        QVERIFY(control<QToolButton>(console, "outbox_b").text().endsWith(u'\u2026'));
    }

    void the_line_in_the_status_bar_follows_the_window()
    {
        screens_site site;
        menuFrm console;
        console.resize(1200, 700);
        console.show();
        delivery::report report;
        report.line = QString("no answer ").repeated(30);
        console.delivery_told(report);
        const auto &told = control<QToolButton>(console, "outbox_b");
        const auto width = [&told] { return told.fontMetrics().horizontalAdvance(told.text()); };
        const int wide = width();
        QVERIFY(wide > 350 && wide <= 400);
        console.resize(690, 500);
        QCOMPARE(console.width(), 690);
        QVERIFY2(width() > 180 && width() <= 230, qPrintable(told.text()));
        console.resize(1200, 700);
        QCOMPARE(width(), wide);
    }
};

QTEST_MAIN(outbox_following_test)
#include "outbox_following_test.moc"
