// What all lists have in common: sorting by keys and by the menu, and columns that are kept whatever closes them. By a
// click: mailfrm_test.cpp, outbox_frm_test.cpp.
#include "screens/frame/outbox_list.h"
#include "screens/list_view.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QTest>

namespace {

// Subjects "Order 2", "Order 1", "Order 3" to ann, eve and bob.
struct shown_list {
    shown_list() : rows(nullptr)
    {
        std::vector<outbox::kept_mail> mails(3);
        const char *const to[] = {"ann", "eve", "bob"};
        const char *const subjects[] = {"Order 2", "Order 1", "Order 3"};
        for (size_t number = 0; number < 3; ++number) {
            mails[number].id = QString::number(number);
            mails[number].To = QStringList{to[number]};
            mails[number].Subject = subjects[number];
        }
        rows.set_mails(mails);
        view.setAccessibleName("Mails in the Outbox");
        view.setModel(&rows);
        view.resize(800, 300);
    }
    QString column(int number) const
    {
        QStringList texts;
        for (int row = 0; row < rows.rowCount(); ++row)
            texts += rows.index(row, number).data().toString();
        return texts.join(' ');
    }
    outbox_list rows;
    list_view view;
};

QMenu &menu_of_the_menu_key(list_view &view)
{
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {5, 5}, view.mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(view.viewport(), &event);
    return control<QMenu>(view, "sort_mnu");
}

}

class list_view_test : public QObject {
    Q_OBJECT
private slots:
    void control_and_a_digit_sort_by_that_head_and_again_the_other_way()
    {
        const screens_site site;
        shown_list list;
        list.view.show();
        QTest::keyClick(&list.view, Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(list.column(0), "ann bob eve");
        QTest::keyClick(&list.view, Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(list.column(0), "eve bob ann");
        QTest::keyClick(&list.view, Qt::Key_2, Qt::ControlModifier | Qt::KeypadModifier);
        QCOMPARE(list.column(1), "Order 1 Order 2 Order 3");
        QTest::keyClick(&list.view, Qt::Key_2, Qt::ControlModifier | Qt::ShiftModifier); // where a digit needs Shift
        QCOMPARE(list.column(1), "Order 3 Order 2 Order 1");
    }

    void the_row_in_hand_stays_in_sight_when_the_list_gets_lower()
    {
        const screens_site site;
        shown_list list;
        list.view.resize(300, 200);
        list.view.show();
        list.view.setCurrentIndex(list.rows.index(2, 0));
        const int row = list.view.visualRect(list.view.currentIndex()).height();
        list.view.resize(300, list.view.height() - list.view.viewport()->height() + row);
        QVERIFY(list.view.viewport()->rect().contains(list.view.visualRect(list.view.currentIndex()).center()));
    }

    void the_row_with_the_keyboard_stays_selected_and_in_sight()
    {
        const screens_site site;
        shown_list list;
        list.view.show();
        list.view.setCurrentIndex(list.rows.index(1, 0));
        QTest::keyClick(&list.view, Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(list.view.currentIndex().data().toString(), "eve");
        QCOMPARE(list.view.selectionModel()->selectedRows().value(0).row(), 2);
    }

    void other_keys_do_not_sort_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("with");
        QTest::newRow("a digit alone") << int(Qt::Key_1) << int(Qt::NoModifier);
        QTest::newRow("with Alt") << int(Qt::Key_1) << int(Qt::ControlModifier | Qt::AltModifier);
        QTest::newRow("no such head") << int(Qt::Key_6) << int(Qt::ControlModifier);
        QTest::newRow("nought") << int(Qt::Key_0) << int(Qt::ControlModifier);
    }
    void other_keys_do_not_sort()
    {
        QFETCH(int, key);
        QFETCH(int, with);
        const screens_site site;
        shown_list list;
        list.view.show();
        QTest::keyClick(&list.view, Qt::Key(key), Qt::KeyboardModifiers(with));
        QCOMPARE(list.column(0), "ann eve bob");
    }

    void hidden_and_moved_columns_are_counted_as_they_are_seen()
    {
        const screens_site site;
        shown_list list;
        list.view.show();
        list.view.setColumnHidden(0, true);
        QTest::keyClick(&list.view, Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(list.column(1), "Order 1 Order 2 Order 3");
    }

    void it_is_spoken_how_the_list_is_sorted()
    {
        const screens_site site;
        shown_list list;
        list.view.show();
        QTest::keyClick(&list.view, Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(list.view.accessibleName(), "Mails in the Outbox, sorted by Subject, ascending");
        QTest::keyClick(&list.view, Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(list.view.accessibleName(), "Mails in the Outbox, sorted by Subject, descending");
        QTest::keyClick(&list.view, Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(list.view.accessibleName(), "Mails in the Outbox, sorted by To, ascending");
    }

    void each_head_tells_its_key()
    {
        shown_list list;
        QCOMPARE(list.rows.headerData(1, Qt::Horizontal, Qt::ToolTipRole).toString(), "Sorts by Subject (Ctrl+2)");
    }

    void the_menu_key_offers_each_head()
    {
        const screens_site site;
        shown_list list;
        list.view.show();
        QMenu &menu = menu_of_the_menu_key(list.view);
        QStringList captions;
        for (const QAction *command : menu.actions())
            captions += command->text();
        QCOMPARE(captions, (QStringList{"Sort by To\tCtrl+1", "Sort by Subject\tCtrl+2", "Sort by State\tCtrl+3",
                                        "Sort by Why\tCtrl+4", "Sort by Handed over\tCtrl+5"}));
        menu.actions().at(1)->trigger();
        QCOMPARE(list.column(1), "Order 1 Order 2 Order 3");
        menu.close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(menu_of_the_menu_key(list.view).actions().at(1)->isChecked());
    }
};

QTEST_MAIN(list_view_test)
#include "list_view_test.moc"
