// What the user arranged is there again: the columns of a list, the parts of the Outbox, the console's place, whether
// a window was closed or the program ended over it.
#include "platform/settings.h"
#include "screens/frame/closing.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_frm.h"
#include "screens/kept_splitter.h"
#include "support/screens_auditor.h"
#include "support/screens_program_end.h"

#include <QDir>
#include <QMouseEvent>
#include <QTest>
#include <functional>

namespace {

using way_out = std::function<void(auditor_site &site, menuFrm &console)>;

void close_the_screens(auditor_site &, menuFrm &)
{
    unload_all_screens();
}

void close_the_console(auditor_site &site, menuFrm &console)
{
    site.boxes.will_say_no();
    console.close();
}

void close_the_console_with_a_back_up(auditor_site &site, menuFrm &console)
{
    QVERIFY(QDir().mkpath(site.file("copies/data")) && QDir().mkpath(site.file("copies/html")));
    SaveSetting("main", "backup", site.file("copies"));
    site.boxes.will_say_yes();
    console.close();
}

void end_without_a_close(auditor_site &, menuFrm &)
{
    end_program(); // as behind a restored back-up
}

kept_splitter &parts_of_the_outbox()
{
    the<outbox_frm>().show();
    return control<kept_splitter>(the<outbox_frm>(), "qt_splitter");
}

void drag(QSplitter &splitter, int by)
{
    QSplitterHandle &handle = *splitter.handle(1);
    const QPoint start = handle.rect().center(), end = start + QPoint(0, by);
    QTest::mousePress(&handle, Qt::LeftButton, {}, start);
    QMouseEvent move(QEvent::MouseMove, end, handle.mapToGlobal(end), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&handle, &move);
    QTest::mouseRelease(&handle, Qt::LeftButton, {}, end);
}

// Its parts' sizes afterwards.
QList<int> dragged(QSplitter &splitter)
{
    const QList<int> first = splitter.sizes();
    drag(splitter, -60);
    if (splitter.sizes() == first)
        qFatal("the splitter does not move");
    return splitter.sizes();
}

}

class kept_arrangement_test : public QObject {
    Q_OBJECT

    int ends = 0;

private slots:
    void init() { count_program_ends(ends); }
    void cleanup() { set_program_end({}); }

    void it_is_kept_on_every_way_out_data()
    {
        QTest::addColumn<way_out>("leave");
        QTest::addColumn<bool>("ends_program");
        QTest::newRow("the screens are closed") << way_out(close_the_screens) << false;
        QTest::newRow("the console is closed") << way_out(close_the_console) << true;
        QTest::newRow("the console is closed with a back-up") << way_out(close_the_console_with_a_back_up) << true;
        QTest::newRow("the program ends by itself") << way_out(end_without_a_close) << true;
    }
    void it_is_kept_on_every_way_out()
    {
        QFETCH(way_out, leave);
        QFETCH(bool, ends_program);
        auditor_site site;
        int list_height = 0;
        QList<int> parts;
        {
            menuFrm console;
            console.resize(1000, 700);
            console.show();
            list_height = dragged(control<QSplitter>(stored_mails_shown(), "qt_splitter")).first();
            control<list_view>(the<mailfrm>(), "LV_sub").setColumnWidth(0, 133);
            control<QAction>(console, "outbox_mnu").trigger();
            QCoreApplication::processEvents();
            parts = dragged(control<kept_splitter>(the<outbox_frm>(), "qt_splitter"));
            control<list_view>(the<outbox_frm>(), "LV_outbox").setColumnWidth(1, 177);
            leave(site, console);
            QTRY_COMPARE(ends, ends_program ? 1 : 0);
        }
        unload_all_screens();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        menuFrm console;
        if (ends_program)
            QCOMPARE(console.size(), QSize(1000, 700));
        console.resize(1000, 700);
        console.show();
        const int height_now = control<QSplitter>(stored_mails_shown(), "qt_splitter").sizes().first();
        QVERIFY2(qAbs(height_now - list_height) <= 1, qPrintable(QString::number(height_now - list_height)));
        QCOMPARE(control<list_view>(the<mailfrm>(), "LV_sub").columnWidth(0), 133);
        the<outbox_frm>().show();
        QCOMPARE(control<kept_splitter>(the<outbox_frm>(), "qt_splitter").sizes(), parts);
        QCOMPARE(control<list_view>(the<outbox_frm>(), "LV_outbox").columnWidth(1), 177);
    }

    void what_the_user_left_alone_is_not_written()
    {
        auditor_site site;
        menuFrm console;
        console.show();
        stored_mails_shown();
        the<outbox_frm>().show();
        end_program();
        QCOMPARE(GetSetting("screens", "mailfrm.inbox_height"), "");
        QCOMPARE(GetSetting("screens", "outbox_frm.qt_splitter"), "");
        QCOMPARE(GetSetting("screens", "mailfrm.LV_sub"), "");
    }

    void sizes_of_no_use_are_passed_over_data()
    {
        QTest::addColumn<QString>("kept");
        QTest::newRow("words") << "some words";
        QTest::newRow("one too many") << "10 20 30";
        QTest::newRow("a part that is gone") << "400 0";
    }
    void sizes_of_no_use_are_passed_over()
    {
        QFETCH(QString, kept);
        auditor_site site;
        const auto sizes_shown = [] {
            the<outbox_frm>().show();
            QCoreApplication::processEvents();
            return control<kept_splitter>(the<outbox_frm>(), "qt_splitter").sizes();
        };
        const QList<int> usual = sizes_shown();
        unload_all_screens();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        SaveSetting("screens", "outbox_frm.qt_splitter", kept);
        QCOMPARE(sizes_shown(), usual);
    }
};

QTEST_MAIN(kept_arrangement_test)
#include "kept_arrangement_test.moc"
