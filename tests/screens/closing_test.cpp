// Closing the console: the back-up question, its two answers, and nothing asked twice.
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "platform/settings.h"
#include "screens/frame/Exit_frm.h"
#include "screens/frame/closing.h"
#include "screens/frame/menuFrm.h"
#include "screens/screen.h"
#include "support/refusing_store.h"
#include "support/screens_driver.h"
#include "support/screens_program_end.h"
#include "support/screens_site.h"
#include "support/scripted_dialogs.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QTest>
#include <QTimer>

class closing_test : public QObject {
    Q_OBJECT

    int ends = 0;

private slots:
    void init() { count_program_ends(ends); }
    void cleanup() { set_program_end({}); }

    void no_ends_the_program_with_no_back_up_and_no_further_question()
    {
        screens_site site;
        site.boxes.will_say_no();
        menuFrm console;
        console.show();
        console.close();
        QCOMPARE(site.boxes.shown, QStringList{"Would you like to backup your data?"});
        QCOMPARE(site.boxes.boxes[0].title, "Tessaly");
        QVERIFY(site.boxes.boxes[0].kind == message_kind::yes_no);
        QCOMPARE(ends, 1);
        QVERIFY(!is_loaded<Exit_frm>());
    }

    void the_console_opens_where_it_was_closed()
    {
        screens_site site;
        {
            menuFrm console;
            console.resize(700, 500);
            console.show();
            site.boxes.will_say_no();
            console.close();
        }
        QCOMPARE(menuFrm().size(), QSize(700, 500));
        SaveSetting("screens", "menuFrm.place", "nonsense");
        QCOMPARE(menuFrm().size(), QSize(1120, 720));
    }

    void a_maximised_console_comes_back_maximised()
    {
        screens_site site;
        {
            menuFrm console;
            console.showMaximized();
            site.boxes.will_say_no();
            console.close();
        }
        menuFrm console;
        console.show();
        QVERIFY(console.isMaximized());
        SaveSetting("screens", "menuFrm.place", {});
    }

    void yes_copies_the_store_behind_a_screen_and_then_ends()
    {
        screens_site site;
        QDir().mkpath(site.file("copies/data"));
        QDir().mkpath(site.file("copies/html"));
        SaveSetting("main", "backup", site.file("copies"));
        site.boxes.will_say_yes();
        menuFrm console;
        console.show();
        control<QAction>(console, "exit").trigger();
        QVERIFY(is_visible<Exit_frm>());
        QCOMPARE(ends, 0); // the screen paints first
        QTRY_COMPARE(ends, 1);
        QVERIFY(QFile::exists(site.file("copies/data/Tessaly.mdb")));
        QVERIFY(!control<QTimer>(the<Exit_frm>(), "Timer1").isActive());
    }

    void a_long_path_is_wrapped_and_seen_whole()
    {
        screens_site site;
        scripted_dialogs dialogs;
        dialogs.choices = {std::nullopt};
        SaveSetting("main", "backup", "/media/zoe/A stick with a long name/Copies of my shop/Tessaly");
        the<Exit_frm>().show();
        QTRY_COMPARE(ends, 1);
        const auto &words = control<QLabel>(the<Exit_frm>(), "what_l");
        QVERIFY(words.text().contains("/Copies of my shop/"));
        QVERIFY(words.width() <= the<Exit_frm>().width());
        QVERIFY2(words.heightForWidth(words.width()) <= words.height(), qPrintable(words.text()));
        SaveSetting("main", "backup", {});
    }

    void the_last_screen_shows_how_far_it_is()
    {
        screens_site site;
        QDir().mkpath(site.file("copies/data"));
        QDir().mkpath(site.file("copies/html"));
        QDir().mkpath(site.file("forms/contact"));
        SaveSetting("main", "backup", site.file("copies"));
        the<Exit_frm>().show();
        QTRY_COMPARE(ends, 1);
        QCOMPARE(control<QLabel>(the<Exit_frm>(), "what_l").text(), "Copying your forms ...");
        QCOMPARE(control<QProgressBar>(the<Exit_frm>(), "progress_bar").maximum(), 1);
        QCOMPARE(control<QProgressBar>(the<Exit_frm>(), "progress_bar").value(), 1);
        QVERIFY(QDir(site.file("copies/html/contact")).exists());
    }

    void a_back_up_that_fails_is_told_and_the_program_ends_all_the_same()
    {
        screens_site site;
        QDir().mkpath(site.file("copies/data/Tessaly.mdb/in the way"));
        SaveSetting("main", "backup", site.file("copies"));
        the<Exit_frm>().show();
        QTRY_COMPARE(ends, 1);
        QCOMPARE(site.boxes.shown.size(), 1);
        QVERIFY2(site.boxes.shown[0].startsWith("The back-up is not complete. The store could not be copied to "),
                 qPrintable(site.boxes.shown[0]));
        QVERIFY(site.boxes.shown[0].endsWith("\n\nTessaly closes now."));
        QCOMPARE(session.err_form, "Exit_frm.frm");
        QCOMPARE(session.err_routine, "Timer1");
    }

    void yes_from_a_minimised_console_ends_too()
    {
        screens_site site;
        QDir().mkpath(site.file("copies/data"));
        QDir().mkpath(site.file("copies/html"));
        SaveSetting("main", "backup", site.file("copies"));
        site.boxes.will_say_yes();
        menuFrm console;
        console.showMinimized();
        console.close();
        QVERIFY(!console.isMinimized());
        QTRY_COMPARE(ends, 1);
    }

    void a_second_close_asks_nothing_more()
    {
        screens_site site;
        site.boxes.will_say_no();
        menuFrm console;
        console.show();
        console.close();
        console.close();
        QCOMPARE(site.boxes.shown.size(), 1);
        QCOMPARE(ends, 1);
    }

    void a_store_that_cannot_be_written_is_told_and_a_second_close_asks()
    {
        screens_site site;
        menuFrm console;
        console.show();
        QStringList lines;
        set_status_sink([&](const QString &line) { lines += line; });
        {
            const refusing_store full;
            console.close();
        }
        QCOMPARE(lines.last(), "The store cannot be written: The disk is full");
        QCOMPARE(session.err_routine, "Form_QueryUnload");
        QVERIFY(site.boxes.shown.isEmpty());
        QCOMPARE(ends, 0);
        QVERIFY(control<QTimer>(console, "Timer1").isActive());
        site.boxes.will_say_no();
        console.close();
        QCOMPARE(ends, 1);
    }

    void a_close_during_long_work_is_not_heard()
    {
        screens_site site;
        menuFrm console;
        console.show();
        {
            const busy_scope working;
            console.close();
        }
        QVERIFY(site.boxes.shown.isEmpty());
        QCOMPARE(ends, 0);
        QVERIFY(console.isVisible());
    }
};

QTEST_MAIN(closing_test)
#include "closing_test.moc"
