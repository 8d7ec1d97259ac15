// What is selected is exactly a part of the text that was given, whatever QPlainTextEdit makes of it.
#include "screens/exact_text.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>

namespace {

const QString rose = QString::fromUtf8("\xf0\x9f\x8c\xb9"); // outside the first plane: two units

// The selection after the cursor went right over so many letters, then further with Shift.
QString by_keyboard(exact_text &text, int over, int selected)
{
    QTest::keyClick(&text, Qt::Key_Home, Qt::ControlModifier);
    for (int step = 0; step < over; ++step)
        QTest::keyClick(&text, Qt::Key_Right);
    for (int step = 0; step < selected; ++step)
        QTest::keyClick(&text, Qt::Key_Right, Qt::ShiftModifier);
    return text.selected_text();
}

}

class exact_text_test : public QObject {
    Q_OBJECT
private slots:
    void everything_selected_is_the_text_itself_data()
    {
        QTest::addColumn<QString>("given");
        QTest::newRow("nothing") << "";
        QTest::newRow("plain") << "Name: Ann";
        QTest::newRow("LF line ends") << "Name: Ann\nCity: Bath\n";
        QTest::newRow("CR LF line ends") << "Name: Ann\r\nCity: Bath\r\n";
        QTest::newRow("a lone CR") << "Name: Ann\rCity: Bath";
        QTest::newRow("LF CR") << "Name: Ann\n\rCity";
        QTest::newRow("CR CR LF") << "Name: Ann\r\r\nCity";
        QTest::newRow("a CR at the end") << "Name: Ann\r";
        QTest::newRow("no-break blanks") << QString("Name:\u00a0Ann\u00a0");
        QTest::newRow("a line separator") << QString("Name:\u2028Ann");
        QTest::newRow("a paragraph separator") << QString("Name:\u2029Ann");
        QTest::newRow("frame marks") << QString("a") + QChar(0xfdd0) + "b" + QChar(0xfdd1) + "c";
        QTest::newRow("an object's place") << QString("a\ufffc") + "b";
        QTest::newRow("a zero") << QString("a") + QChar(u'\0') + "b";
        QTest::newRow("surrogate pairs") << "Rose " + rose + rose + " red";
        QTest::newRow("half a pair") << QString("a") + rose[0] + "b" + rose[1] + "c";
        QTest::newRow("combining letters") << QString("e\u0301a");
        QTest::newRow("tabs") << "a\tb\t\tc";
        QTest::newRow("all at once") << QString("\r\n\u00a0\r\u2028\n\u2029") + rose + "\r\n\r";
    }

    void everything_selected_is_the_text_itself()
    {
        QFETCH(QString, given);
        exact_text text;
        text.set_text(given);
        QCOMPARE(text.text(), given);
        text.selectAll();
        QCOMPARE(text.selected_text(), given);
    }

    void any_part_is_selected_by_its_place_data()
    {
        QTest::addColumn<QString>("given");
        QTest::newRow("with no-break blanks") << QString("a\u00a0b\u00a0c");
        QTest::newRow("with a line separator") << QString("a\u2028b\u2029c");
        QTest::newRow("with lone CRs") << "a\rb\rc";
        QTest::newRow("with line feeds") << "a\nb\n\nc";
    }

    void any_part_is_selected_by_its_place()
    {
        QFETCH(QString, given);
        exact_text text;
        text.set_text(given);
        for (qsizetype from = 0; from < given.size(); ++from) {
            for (qsizetype length = 1; from + length <= given.size(); ++length) {
                text.select({from, length});
                QCOMPARE(text.selected_text(), given.mid(from, length));
            }
        }
    }

    void the_keyboard_selects_behind_what_is_one_step_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<int>("over");
        QTest::addColumn<QString>("selected");
        QTest::newRow("behind CR LF") << "a\r\nbcd" << 2 << "bc";
        QTest::newRow("behind two CR LF") << "\r\n\r\nbcd" << 2 << "bc";
        QTest::newRow("behind a lone CR") << "a\rbcd" << 2 << "bc";
        QTest::newRow("behind a line separator") << QString("a\u2028bcd") << 2 << "bc";
        QTest::newRow("behind a surrogate pair") << rose + "bcd" << 1 << "bc";
        QTest::newRow("a pair and a letter") << "a" + rose + "b" << 1 << rose + "b";
        QTest::newRow("over a CR LF") << "a\r\nb" << 0 << "a\r\n";
        QTest::newRow("over a no-break blank") << QString("x\u00a0y") << 1 << QString("\u00a0y");
    }

    void the_keyboard_selects_behind_what_is_one_step()
    {
        QFETCH(QString, given);
        QFETCH(int, over);
        QFETCH(QString, selected);
        exact_text text;
        text.set_text(given);
        text.show();
        QCOMPARE(by_keyboard(text, over, 2), selected);
    }

    void half_a_pair_takes_its_other_half_along()
    {
        exact_text text;
        text.set_text("a" + rose + "b");
        text.select({1, 1});
        QCOMPARE(text.selected_text(), rose);
        text.select({2, 2});
        QCOMPARE(text.selected_text(), rose + "b");
        text.select({2, 0});
        QCOMPARE(text.selected_text(), "");
    }

    void the_text_cannot_be_changed()
    {
        exact_text text;
        text.set_text("Name: Ann");
        text.show();
        text.selectAll();
        QTest::keyClicks(&text, "x");
        QTest::keyClick(&text, Qt::Key_Delete);
        QTest::keyClick(&text, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(text.toPlainText(), "Name: Ann");
        QCOMPARE(text.selected_text(), "Name: Ann");
    }

    void a_copy_is_exact()
    {
        exact_text text;
        text.set_text(QString("Name:\u00a0Ann\r\nCity"));
        text.show();
        text.select({0, 11});
        QTest::keyClick(&text, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), QString("Name:\u00a0Ann\r\n"));
    }

    void a_double_click_gives_the_word()
    {
        exact_text text;
        text.set_text("First: one\r\nSecond: two");
        text.resize(400, 200);
        text.show();
        QSignalSpy words(&text, &exact_text::word_chosen);
        QTextCursor in_second(text.document()->findBlockByNumber(1));
        in_second.movePosition(QTextCursor::Right);
        QTest::mouseDClick(text.viewport(), Qt::LeftButton, {}, text.cursorRect(in_second).center());
        QCOMPARE(words.count(), 1);
        QCOMPARE(words[0][0].toString(), "Second");
    }

    void a_long_text_is_shown_up_to_a_limit_and_kept_whole()
    {
        const QString given = QString("word\r\n").repeated(100000);
        exact_text text;
        text.set_text(given);
        QCOMPARE(text.text(), given);
        QVERIFY(text.toPlainText().endsWith("(The text is longer than what is shown here.)"));
        text.selectAll();
        QCOMPARE(text.selected_text(), given.left(300000));
        text.select({599990, 5}); // not shown, so not selected
        QCOMPARE(text.selected_text(), "");
    }

    void a_mark_stands_on_its_place()
    {
        exact_text text;
        text.set_text("one\r\ntwo\r\nthree");
        text.show_quietly({{0, 3}, {10, 5}});
        text.show_marked({5, 3});
        const auto shown = text.extraSelections();
        QCOMPARE(shown.size(), 3);
        QCOMPARE(shown[0].cursor.selectedText(), "one");
        QCOMPARE(shown[1].cursor.selectedText(), "three");
        QCOMPARE(shown[2].cursor.selectedText(), "two");
        QCOMPARE(text.textCursor().position(), 4); // the keyboard goes on there
        text.show_marked({});
        QCOMPARE(text.extraSelections().size(), 2);
        text.set_text("another");
        QCOMPARE(text.extraSelections().size(), 0);
    }

    void marks_follow_the_colours_of_the_desktop()
    {
        exact_text text;
        text.set_text("one");
        text.show_quietly({{0, 3}});
        const QColor on_white = text.extraSelections()[0].format.foreground().color();
        text.setPalette(QPalette(Qt::darkGray, Qt::black));
        QVERIFY(text.extraSelections()[0].format.foreground().color() != on_white);
    }
};

QTEST_MAIN(exact_text_test)
#include "exact_text_test.moc"
