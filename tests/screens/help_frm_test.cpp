// The help through its controls, over the help file of this build. Beside dialogs: help_beside_dialogs_test.cpp; how a
// page looks: help_page_test.cpp.
#include "screens/frame/menuFrm.h"
#include "support/screens_help.h"
#include "support/screens_own_help.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSet>
#include <QTest>
#include <QTreeWidget>

namespace {

QLineEdit &field(const char *name)
{
    return control<QLineEdit>(the<help_frm>(), name);
}

QListWidget &results()
{
    return control<QListWidget>(the<help_frm>(), "results_li");
}

QTreeWidget &contents()
{
    return control<QTreeWidget>(the<help_frm>(), "contents_tv");
}

void search_for(const QString &words)
{
    field("search_t").clear();
    QTest::keyClicks(&field("search_t"), words);
}

}

class help_frm_test : public QObject {
    Q_OBJECT
private slots:
    void it_opens_at_the_topic()
    {
        help_site site;
        QVERIFY(show_help("outbox_frm"));
        QVERIFY(is_visible<help_frm>());
        QCOMPARE(page().shown_page(), "outbox_frm.html");
        QCOMPARE(the<help_frm>().windowTitle(), page().documentTitle() + " - Tessaly Help");
        QCOMPARE(contents().currentItem()->text(0), page().documentTitle());
    }

    void the_case_of_a_topic_does_not_matter()
    {
        help_site site;
        show_help("OUTBOX_FRM");
        QCOMPARE(page().shown_page(), "outbox_frm.html");
    }

    void unknown_topics_open_the_start_page_data()
    {
        QTest::addColumn<QString>("topic");
        QTest::newRow("none") << "";
        QTest::newRow("one that has no page") << "no_such_topic";
        QTest::newRow("a path") << "../../etc/passwd";
    }

    void unknown_topics_open_the_start_page()
    {
        QFETCH(QString, topic);
        help_site site;
        QVERIFY(show_help(topic));
        QCOMPARE(page().shown_page(), "start.html");
        QVERIFY(site.boxes.shown.isEmpty());
    }

    void a_missing_file_opens_nothing()
    {
        help_site site;
        QVERIFY(QFile::remove(site.file("tslhlp.chm")));
        QVERIFY(!show_help("outbox_frm"));
        QVERIFY(!is_visible<help_frm>());
    }

    void a_damaged_file_says_so_in_its_window()
    {
        help_site site;
        QFile file(site.file("tslhlp.chm"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("no help");
        file.close();
        QVERIFY(show_help("outbox_frm"));
        QVERIFY(is_visible<help_frm>());
        QVERIFY(page().toPlainText().contains("tslhlp.chm"));
        QVERIFY(page().toPlainText().contains("damaged"));
        QVERIFY(!tool("find_b").isEnabled());
        QVERIFY(site.boxes.shown.isEmpty());
        QVERIFY(!field("search_t").isEnabled());
        QCOMPARE(contents().topLevelItemCount(), 0);
        QVERIFY(QFile::remove(site.file("tslhlp.chm")));
        QVERIFY(QFile::copy(qEnvironmentVariable("HELP_FILE"), site.file("tslhlp.chm")));
        show_help("outbox_frm"); // put right meanwhile
        QCOMPARE(page().shown_page(), "outbox_frm.html");
        QVERIFY(field("search_t").isEnabled());
    }

    void every_line_of_the_contents_opens_its_page()
    {
        help_site site;
        show_help({});
        int pages = 0;
        for (QTreeWidgetItemIterator line(&contents()); *line; ++line) {
            contents().setCurrentItem(*line);
            const QString wanted = (*line)->data(0, Qt::UserRole).toString();
            if (wanted.isEmpty())
                continue;
            ++pages;
            QCOMPARE(page().shown_page(), wanted);
            QCOMPARE(page().documentTitle(), (*line)->text(0));
        }
        QVERIFY(pages > 10);
    }

    void back_and_forward_go_the_way_again()
    {
        help_site site;
        show_help("outbox_frm");
        QVERIFY(!tool("back_b").isEnabled());
        show_help("mailfrm");
        tool("start_b").click();
        QCOMPARE(page().shown_page(), "start.html");
        tool("back_b").click();
        tool("back_b").click();
        QCOMPARE(page().shown_page(), "outbox_frm.html");
        QVERIFY(!tool("back_b").isEnabled());
        tool("forward_b").click();
        QCOMPARE(page().shown_page(), "mailfrm.html");
        QTest::keyClick(&page(), Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(page().shown_page(), "outbox_frm.html");
    }

    void searching_lists_pages_and_marks_the_words()
    {
        help_site site;
        show_help({});
        search_for("outbox refused");
        QVERIFY(results().isVisible());
        QVERIFY(!contents().isVisible());
        QVERIFY(results().count() > 0);
        QTest::keyClick(&field("search_t"), Qt::Key_Return);
        QCOMPARE(results().currentRow(), 0);
        QCOMPARE(page().shown_page(), results().item(0)->data(Qt::UserRole).toString());
        QVERIFY(!page().extraSelections().isEmpty());
        QSet<QString> marked;
        for (const auto &mark : page().extraSelections())
            marked += mark.cursor.selectedText().toLower();
        QCOMPARE(marked, (QSet<QString>{"outbox", "refused"}));
        QTest::keyClick(&the<help_frm>(), Qt::Key_Escape);
        QVERIFY(contents().isVisible());
        QVERIFY(page().extraSelections().isEmpty());
        QVERIFY(is_visible<help_frm>());
    }

    void a_found_page_can_be_opened_again_data()
    {
        QTest::addColumn<bool>("by_key");
        QTest::newRow("Enter") << true;
        QTest::newRow("a click") << false;
    }

    void a_found_page_can_be_opened_again()
    {
        QFETCH(bool, by_key);
        help_site site;
        show_help({});
        search_for("outbox refused");
        QTest::keyClick(&field("search_t"), Qt::Key_Return);
        const QString found = results().item(0)->data(Qt::UserRole).toString();
        QCOMPARE(page().shown_page(), found);
        QVERIFY(found != "start.html");
        tool("start_b").click();
        QCOMPARE(page().shown_page(), "start.html");
        if (by_key)
            QTest::keyClick(&results(), Qt::Key_Return);
        else
            QTest::mouseClick(results().viewport(), Qt::LeftButton, {},
                              results().visualItemRect(results().item(0)).center());
        QCOMPARE(page().shown_page(), found);
        QVERIFY(!page().extraSelections().isEmpty());
    }

    void a_search_without_a_find_says_so()
    {
        help_site site;
        show_help({});
        search_for("zzzzz");
        QCOMPARE(results().count(), 0);
        QCOMPARE(control<QLabel>(the<help_frm>(), "found_l").text(),
                 "No page holds all these words. Try fewer, or the beginning of a word.");
        QTest::keyClick(&field("search_t"), Qt::Key_Return);
        QCOMPARE(page().shown_page(), "start.html");
    }

    void a_text_is_found_in_the_page_and_again_from_the_top()
    {
        help_site site;
        make_help(site, "<p>One needle.</p><p>Another Needle.</p>");
        show_help({});
        QVERIFY(QTest::qWaitForWindowActive(&the<help_frm>()));
        QTest::keyClick(&page(), Qt::Key_F, Qt::ControlModifier);
        QVERIFY(field("find_t").isVisible());
        QTest::keyClicks(&field("find_t"), "needle");
        const int first = page().textCursor().selectionStart();
        QCOMPARE(page().textCursor().selectedText(), "needle");
        tool("next_b").click();
        QCOMPARE(page().textCursor().selectedText(), "Needle");
        tool("next_b").click();
        QCOMPARE(page().textCursor().selectionStart(), first);
        tool("before_b").click();
        QCOMPARE(page().textCursor().selectedText(), "Needle");
        auto &not_found = control<QLabel>(the<help_frm>(), "not_found_l");
        QVERIFY(!not_found.isVisible());
        QTest::keyClicks(&field("find_t"), "x");
        QVERIFY(not_found.isVisible());
    }

    void escape_leaves_finding_then_the_help()
    {
        help_site site;
        show_help({});
        tool("find_b").click();
        QVERIFY(field("find_t").isVisible());
        QTest::keyClick(&field("find_t"), Qt::Key_Escape);
        QVERIFY(!field("find_t").isVisible());
        QVERIFY(is_visible<help_frm>());
        QTest::keyClick(&page(), Qt::Key_Escape);
        QVERIFY(!is_visible<help_frm>());
    }

    void f1_in_the_help_tells_of_the_help()
    {
        help_site site;
        show_help({});
        QTest::keyClick(&page(), Qt::Key_F1);
        QCOMPARE(page().shown_page(), "help.html");
    }

    void the_menu_opens_the_start_page_and_f1_the_consoles_own()
    {
        help_site site;
        menuFrm console;
        console.show();
        control<QAction>(console, "contents").trigger();
        QCOMPARE(page().shown_page(), "start.html");
        the<help_frm>().unload();
        QTest::keyClick(&console, Qt::Key_F1);
        QCOMPARE(page().shown_page(), "menufrm.html");
    }

    void the_text_grows_and_shrinks_by_the_keyboard_data()
    {
        QTest::addColumn<Qt::Key>("larger");
        QTest::newRow("plus") << Qt::Key_Plus;
        QTest::newRow("the key below it") << Qt::Key_Equal;
    }
    void the_text_grows_and_shrinks_by_the_keyboard()
    {
        QFETCH(Qt::Key, larger);
        help_site site;
        show_help({});
        QVERIFY(QTest::qWaitForWindowActive(&the<help_frm>()));
        const double usual = page().font().pointSizeF();
        QTest::keyClick(&page(), larger, Qt::ControlModifier);
        QVERIFY(page().font().pointSizeF() > usual);
        QTest::keyClick(&page(), Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(page().font().pointSizeF(), usual);
    }
};

QTEST_MAIN(help_frm_test)
#include "help_frm_test.moc"
