// The parts of the help's window: the bar for finding, the hits of the search, the contents. What they do:
// help_frm_test.cpp.
#include "support/screens_help.h"

#include <QLineEdit>
#include <QListWidget>
#include <QSplitter>
#include <QTest>
#include <QTreeWidget>

namespace {

QListWidget &hits()
{
    return control<QListWidget>(the<help_frm>(), "results_li");
}

// What the line needs at the width that the list has now.
int needed_height(int row)
{
    QStyleOptionViewItem option;
    option.initFrom(&hits());
    option.font = hits().font();
    option.fontMetrics = QFontMetrics(option.font);
    option.widget = &hits();
    return hits().itemDelegate()->sizeHint(option, hits().indexFromItem(hits().item(row))).height();
}

}

class help_parts_test : public QObject {
    Q_OBJECT
private slots:
    void finding_ends_by_its_own_button_and_previous_stands_before_next()
    {
        help_site site;
        show_help({});
        tool("find_b").click();
        QVERIFY(control<QLineEdit>(the<help_frm>(), "find_t").isVisible());
        QVERIFY(tool("before_b").x() < tool("next_b").x());
        tool("end_b").click();
        QVERIFY(!control<QLineEdit>(the<help_frm>(), "find_t").isVisible());
        QVERIFY(is_visible<help_frm>());
    }

    void each_hit_takes_the_height_of_its_own_lines()
    {
        help_site site;
        show_help({});
        QTest::keyClicks(&control<QLineEdit>(the<help_frm>(), "search_t"), "mail");
        QVERIFY(hits().count() > 2);
        control<QSplitter>(the<help_frm>(), "qt_splitter").setSizes({500, 400}); // wider than it was when they came
        const auto place = [](int row) { return hits().visualItemRect(hits().item(row)); };
        QTRY_COMPARE(place(1).height(), needed_height(1));
        QCOMPARE(place(1).top(), place(0).bottom() + 1);
    }

    void a_line_of_the_contents_tells_its_whole_title()
    {
        help_site site;
        show_help({});
        QTreeWidgetItem *line = control<QTreeWidget>(the<help_frm>(), "contents_tv").topLevelItem(0);
        QVERIFY(!line->text(0).isEmpty());
        QCOMPARE(line->toolTip(0), line->text(0));
    }
};

QTEST_MAIN(help_parts_test)
#include "help_parts_test.moc"
