// The help through its controls, over the help file of this build.
#include "platform/winopen.h"
#include "screens/frame/frmAbout.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_frm.h"
#include "support/screens_help.h"

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QPushButton>
#include <QScrollBar>
#include <QSet>
#include <QTest>
#include <QTextBlock>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QWindow>

namespace {

QToolButton &tool(const char *name)
{
    return control<QToolButton>(the<help_frm>(), name);
}

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

// A help file of the test's own, by the tool that makes the program's.
void write_help(const QString &folder, const QString &body)
{
    QDir().mkpath(folder);
    const auto write = [&folder](const QString &name, const QString &text) {
        QFile file(folder + "/" + name);
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
            qFatal("a page of the test cannot be written");
    };
    write("tslhlp.hhp", "[OPTIONS]\nCompiled file=tslhlp.chm\nContents file=tslhlp.hhc\nDefault topic=start.html\n");
    write("tslhlp.hhc", "<ul><li><object><param name=\"Name\" value=\"Start\"><param name=\"Local\" "
                        "value=\"start.html\"></object></ul>");
    write("start.html", "<html><head><title>Start</title></head><body>" + body + "</body></html>");
}

void make_help(const screens_site &site, const QString &body)
{
    write_help(site.file("pages"), body);
    QProcess tool;
    tool.start(QStringLiteral(SOURCE_ROOT "/tools/make_help"), {site.file("pages"), site.file("tslhlp.chm")});
    if (!tool.waitForFinished() || tool.exitCode() != 0)
        qFatal("the test's help file was not made");
}

// A page with a picture of twice its height in width, wider than any page.
void make_help_with_picture(const screens_site &site)
{
    QDir().mkpath(site.file("pages/pictures"));
    QImage picture(2000, 1000, QImage::Format_RGB32);
    picture.fill(Qt::gray);
    if (!picture.save(site.file("pages/pictures/wide.png")))
        qFatal("the test's picture cannot be written");
    make_help(site, "<p><img src=\"pictures/wide.png\" alt=\"Wide\"></p><p>Below</p>");
}

QRectF place_of_block(int number)
{
    const QTextDocument &document = *page().document();
    return document.documentLayout()->blockBoundingRect(document.findBlockByNumber(number));
}

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

    void nothing_is_read_from_the_disk()
    {
        help_site site;
        QFile secret(site.file("secret.html"));
        QVERIFY(secret.open(QIODevice::WriteOnly));
        secret.write("the secret text");
        secret.close();
        make_help(site, "<p>Page <a href=\"file://" + site.file("secret.html") + "\">out</a></p>");
        QStringList opened;
        set_winopen([&opened](const QString &path) {
            opened += path;
            return true;
        });
        show_help({});
        emit page().anchorClicked(QUrl("file://" + site.file("secret.html")));
        QVERIFY(!page().toPlainText().contains("secret text"));
        QCOMPARE(
            page().loadResource(QTextDocument::HtmlResource, QUrl("file://" + site.file("secret.html"))).toByteArray(),
            QByteArray());
        QCOMPARE(opened, QStringList());
        emit page().anchorClicked(QUrl("https://www.rosecottage.example/a"));
        QCOMPARE(opened, QStringList{"https://www.rosecottage.example/a"});
        QCOMPARE(page().shown_page(), "start.html");
        set_winopen({});
    }

    void a_picture_is_as_wide_as_the_page_whatever_becomes_of_it()
    {
        help_site site;
        make_help_with_picture(site);
        show_help({});
        for (const int width : {900, 620, 1200}) {
            the<help_frm>().resize(width, 640);
            const double room = page().viewport()->width() - 2 * page().document()->documentMargin();
            QTRY_VERIFY(qAbs(page().document()->size().width() - page().viewport()->width()) < 1);
            QVERIFY(page().horizontalScrollBar()->maximum() == 0);
            const double high = place_of_block(0).height();
            QVERIFY2(high >= room / 2 - 1, qPrintable(QString("%1 at %2").arg(high).arg(room)));
            QVERIFY2(high < room / 2 + page().fontMetrics().lineSpacing(), qPrintable(QString::number(high)));
            const double gap = place_of_block(1).top() - place_of_block(0).bottom();
            QVERIFY2(gap < 2 * page().fontMetrics().lineSpacing(), qPrintable(QString::number(gap)));
        }
    }

    void a_page_shown_again_has_its_picture_at_the_width_of_now()
    {
        help_site site;
        make_help_with_picture(site);
        show_help({});
        page().say("Another page");
        the<help_frm>().resize(620, 640);
        tool("start_b").click();
        const double room = page().viewport()->width() - 2 * page().document()->documentMargin();
        QVERIFY(qAbs(place_of_block(0).height() - room / 2) < page().fontMetrics().lineSpacing());
    }

    void links_can_be_read_on_any_ground_data()
    {
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<QColor>("text");
        QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black);
        QTest::newRow("dark") << QColor(0x1f, 0x21, 0x23) << QColor(Qt::white);
        QTest::newRow("the links' own blue") << QColor(Qt::blue) << QColor(Qt::white);
    }
    void links_can_be_read_on_any_ground()
    {
        QFETCH(QColor, ground);
        QFETCH(QColor, text);
        const QPalette usual = QApplication::palette();
        QPalette colours = usual;
        colours.setColor(QPalette::Base, ground);
        colours.setColor(QPalette::Text, text);
        colours.setColor(QPalette::Link, Qt::blue);
        QApplication::setPalette(colours);
        help_site site;
        make_help(site, "<p><a href=\"start.html\">a link</a></p>");
        show_help({});
        QTextCursor link = page().document()->find("link");
        const QColor drawn = link.charFormat().foreground().color();
        QApplication::setPalette(usual);
        // Far enough apart in brightness, by the plain average of what the eye weighs.
        const auto weight = [](const QColor &colour) { return qGray(colour.rgb()); };
        QVERIFY2(qAbs(weight(drawn) - weight(ground)) > 60, qPrintable(drawn.name()));
    }
};

QTEST_MAIN(help_frm_test)
#include "help_frm_test.moc"
