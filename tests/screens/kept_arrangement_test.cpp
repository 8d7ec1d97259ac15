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
        QList<int> parts;
        {
            menuFrm console;
            console.resize(1000, 700);
            console.show();
            control<list_view>(stored_mails_shown(), "LV_sub").setColumnWidth(0, 133);
            kept_splitter &splitter = parts_of_the_outbox();
            const QList<int> first = splitter.sizes();
            drag(splitter, -60);
            parts = splitter.sizes();
            QVERIFY2(parts != first, "the splitter moves");
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
        QCOMPARE(control<list_view>(stored_mails_shown(), "LV_sub").columnWidth(0), 133);
        QCOMPARE(parts_of_the_outbox().sizes(), parts);
        QCOMPARE(control<list_view>(the<outbox_frm>(), "LV_outbox").columnWidth(1), 177);
    }

    void what_the_user_left_alone_is_not_written()
    {
        auditor_site site;
        menuFrm console;
        console.show();
        stored_mails_shown();
        parts_of_the_outbox();
        end_program();
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
        const QList<int> usual = parts_of_the_outbox().sizes();
        unload_all_screens();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        SaveSetting("screens", "outbox_frm.qt_splitter", kept);
        QCOMPARE(parts_of_the_outbox().sizes(), usual);
    }
};

QTEST_MAIN(kept_arrangement_test)
#include "kept_arrangement_test.moc"
