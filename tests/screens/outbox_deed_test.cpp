// What is done to many mails of the Outbox at once: nothing of it is dropped, whatever closes meanwhile.
#include "frame/session.h"
#include "platform/run_time_error.h"
#include "screens/frame/closing.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_deed.h"
#include "support/screens_outbox.h"
#include "support/screens_program_end.h"

#include <QAction>
#include <QElapsedTimer>
#include <QLabel>
#include <QMdiSubWindow>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <functional>

using namespace outbox_hands;

namespace {

constexpr int many = 5000;

struct deed_state {
    QStringList done;
    qsizetype fails_at = -1;
} deed_of_test;

// Slow enough that a slice holds a few of them.
qsizetype do_slowly(const QStringList &ids)
{
    if (deed_of_test.fails_at >= 0 && deed_of_test.done.size() >= deed_of_test.fails_at)
        throw run_time_error{61, "The disk is full"};
    QThread::msleep(40);
    deed_of_test.done += ids;
    return ids.contains("7") ? 1 : 0;
}

QStringList ids_up_to(int count)
{
    QStringList ids;
    for (int number = 0; number < count; ++number)
        ids += QString::number(number);
    return ids;
}

// A console with the Outbox open, where many mails are being deleted.
struct deleting_site : screens_site {
    deleting_site()
    {
        count_program_ends(ends);
        hand_over_many(*this, many);
        console.show();
        control<QAction>(console, "outbox_mnu").trigger();
        rows().selectAll();
        boxes.will_say_yes();
        button("delete_b").click();
    }
    ~deleting_site() { set_program_end({}); }
    menuFrm console;
    int ends = 0;
};

}

class outbox_deed_test : public QObject {
    Q_OBJECT
private slots:
    void init() { deed_of_test = {}; }

    void all_are_done_in_their_order_and_the_window_has_its_turns()
    {
        const screens_site site;
        outbox_deed deed(nullptr);
        QSignalSpy slices(&deed, &outbox_deed::slice_done), ends(&deed, &outbox_deed::ended);
        deed.begin("delete_b", do_slowly, ids_up_to(200));
        QVERIFY(deed.is_under_way());
        QVERIFY(deed.left() > 0 && deed.left() < 200);
        QTRY_COMPARE(ends.size(), 1);
        QVERIFY(slices.size() >= 2);
        QCOMPARE(deed_of_test.done, ids_up_to(200));
        QVERIFY(!deed.is_under_way());
        QCOMPARE(deed.left_alone(), 1);
        QCOMPARE(deed.failure(), "");
    }

    void finishing_does_the_rest_at_once()
    {
        const screens_site site;
        outbox_deed deed(nullptr);
        QSignalSpy ends(&deed, &outbox_deed::ended);
        deed.begin("delete_b", do_slowly, ids_up_to(200));
        deed.finish();
        QCOMPARE(ends.size(), 1);
        QCOMPARE(deed_of_test.done, ids_up_to(200));
        deed.finish();
        QTest::qWait(0);
        QCOMPARE(ends.size(), 1);
    }

    void a_failure_ends_it_and_says_what_is_left()
    {
        const screens_site site;
        deed_of_test.fails_at = 40;
        outbox_deed deed(nullptr);
        QSignalSpy ends(&deed, &outbox_deed::ended);
        deed.begin("delete_b", do_slowly, ids_up_to(200));
        QTRY_COMPARE(ends.size(), 1);
        QCOMPARE(deed.left(), 160);
        QCOMPARE(deed.failure(), "The disk is full");
        QVERIFY(!deed.is_under_way());
        QCOMPARE(session.err_routine, "delete_b");
    }

    void five_thousand_rows_leave_the_window_alive_data()
    {
        QTest::addColumn<QString>("click");
        QTest::addColumn<int>("left");
        QTest::newRow("deleted") << "delete_b" << 0;
        QTest::newRow("sent again") << "again_b" << many;
    }
    void five_thousand_rows_leave_the_window_alive()
    {
        QFETCH(QString, click);
        QFETCH(int, left);
        screens_site site;
        hand_over_many(site, many);
        the<outbox_frm>().show();
        QCOMPARE(row_count(), many);
        rows().selectAll();
        QElapsedTimer whole, since;
        qint64 longest = 0;
        QTimer turns;
        connect(&turns, &QTimer::timeout, this, [&] { longest = qMax(longest, since.restart()); });
        turns.start(0);
        if (click == "delete_b")
            site.boxes.will_say_yes(); // the other one asks only for those in doubt
        whole.start();
        since.start();
        button(click.toLatin1()).click();
        const QRegularExpression to_go("^[0-9]+ mails to go\\.$"); // unless all were done in the first slice
        QTRY_VERIFY_WITH_TIMEOUT(!control<QLabel>(the<outbox_frm>(), "summary_l").text().contains(to_go), 120000);
        qInfo("%lld ms in all, at most %lld without a turn", whole.elapsed(), longest);
        QCOMPARE(row_count(), left);
        QCOMPARE(outbox::contents().size(), size_t(left));
        QCOMPARE(outbox::count().waiting, left);
        QVERIFY2(longest < 1500, "a slice is a tenth of a second; the list is read once at the end");
    }

    void closing_the_outbox_waits_until_all_is_done_data()
    {
        QTest::addColumn<std::function<void()>>("leave");
        QTest::newRow("Escape") << std::function<void()>([] { QTest::keyClick(&rows(), Qt::Key_Escape); });
        QTest::newRow("Close") << std::function<void()>([] { button("close_b").click(); });
        QTest::newRow("the window's cross")
            << std::function<void()>([] { qobject_cast<QMdiSubWindow *>(the<outbox_frm>().parentWidget())->close(); });
    }
    void closing_the_outbox_waits_until_all_is_done()
    {
        QFETCH(std::function<void()>, leave);
        deleting_site site;
        QVERIFY2(the<outbox_frm>().is_at_work(), "5000 mails are more than a slice");
        leave();
        QVERIFY(is_visible<outbox_frm>());
        QVERIFY2(summary().endsWith(" mails to go, then the Outbox closes."), qPrintable(summary()));
        QVERIFY(!button("delete_b").isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(!is_loaded<outbox_frm>(), 60000);
        QCOMPARE(outbox::contents().size(), size_t(0));
    }

    void closing_the_console_waits_until_all_is_done()
    {
        deleting_site site;
        QVERIFY(the<outbox_frm>().is_at_work());
        site.console.close();
        site.console.close();                 // an impatient hand
        QCOMPARE(site.boxes.shown.size(), 1); // whether to delete, and no more
        QVERIFY(site.console.isVisible());
        site.boxes.will_say_no(); // no back-up
        QTRY_COMPARE_WITH_TIMEOUT(site.ends, 1, 60000);
        QCOMPARE(site.boxes.shown.size(), 2);
        QCOMPARE(outbox::contents().size(), size_t(0));
    }

    void an_end_of_the_program_that_does_not_wait_does_the_rest_first()
    {
        deleting_site site;
        QVERIFY(the<outbox_frm>().is_at_work());
        end_program();
        QCOMPARE(site.ends, 1);
        QCOMPARE(outbox::contents().size(), size_t(0));
    }
};

QTEST_MAIN(outbox_deed_test)
#include "outbox_deed_test.moc"
