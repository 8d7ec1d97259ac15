// The Mail Auditor: deleting the selected mails, from both lists, by button, popup command and key.
#include "frame/session.h"
#include "frame/status.h"
#include "support/screens_auditor.h"

#include <QAbstractItemModel>
#include <QAction>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

namespace {

void click_button(mailfrm &screen, const char *name)
{
    QTest::mouseClick(&control<QToolButton>(screen, name), Qt::LeftButton);
}

class heard_changes {
public:
    heard_changes()
    {
        set_mails_changed_sink([this] { ++heard; });
    }
    ~heard_changes() { set_mails_changed_sink({}); }
    heard_changes(const heard_changes &) = delete;
    heard_changes &operator=(const heard_changes &) = delete;
    int heard = 0;
};

}

class auditor_delete_test : public QObject {
    Q_OBJECT
private slots:
    void the_selected_mails_go_from_list_and_table_and_the_others_stay()
    {
        auditor_site site;
        site.store_mails(4);
        site.store_mail("contact", "bob@mail.example", "Question");
        mailfrm &screen = stored_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub");
        click_row(list, 1);
        click_row(list, 4, Qt::ControlModifier);
        click_button(screen, "Indelete_b");
        QCOMPARE(column_texts(list, 1), (QStringList{"Order 0", "Order 2", "Order 3"}));
        QCOMPARE(site.column("select tsl_subject from orders"), (QStringList{"Order 0", "Order 2", "Order 3"}));
        QCOMPARE(site.rows_of("contact"), 0);
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void deleting_a_mail_from_the_inbox_list_keeps_its_row_in_the_map_table()
    {
        auditor_site site;
        const qint64 account = site.store.add_account("shop", "shop@shop.example");
        site.store.add_map("clients", account, "Order", {{.name = "city", .piece = 1}});
        site.deliver_mail("shop@shop.example", "Order", "Bath");
        the<mailfrm>().show();
        QCOMPARE(site.column("select city from clients"), QStringList{"Bath"});
        click_row(control<list_view>(the<mailfrm>(), "LV_sub"), 0);
        click_button(the<mailfrm>(), "Indelete_b");
        QCOMPARE(site.rows_of("shop"), 0);
        QCOMPARE(site.column("select city from clients"), QStringList{"Bath"});
    }

    void the_same_number_in_another_account_stays()
    {
        auditor_site site;
        site.store_mail("orders", "ann@mail.example", "Order");
        site.store_mail("contact", "bob@mail.example", "Question");
        mailfrm &screen = stored_mails_shown();
        click_row(control<list_view>(screen, "LV_sub"), 1);
        click_button(screen, "Indelete_b");
        QCOMPARE(site.column("select tsl_subject from orders"), QStringList{"Order"});
        QCOMPARE(site.rows_of("contact"), 0);
    }

    void it_is_told_how_many_went()
    {
        auditor_site site;
        site.store_mails(3);
        mailfrm &screen = stored_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub");
        click_row(list, 0);
        click_button(screen, "Indelete_b");
        QCOMPARE(site.status_lines.last(), "1 mail was deleted.");
        list.setFocus();
        list.selectAll();
        click_button(screen, "Indelete_b");
        QCOMPARE(site.status_lines.last(), "2 mails were deleted.");
    }

    void what_the_search_hides_is_never_deleted()
    {
        auditor_site site;
        site.store_mails(3);
        site.store_mail("orders", "rosa@mail.example", "Roses");
        mailfrm &screen = stored_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub");
        list.setFocus();
        list.selectAll();
        control<QLineEdit>(screen, "Insearch_t").setText("roses");
        QCOMPARE(column_texts(list, 1), QStringList{"Roses"});
        click_button(screen, "Indelete_b");
        QCOMPARE(site.column("select tsl_subject from orders"), (QStringList{"Order 0", "Order 1", "Order 2"}));
        control<QLineEdit>(screen, "Insearch_t").clear();
        QVERIFY(!control<QToolButton>(screen, "Indelete_b").isEnabled()); // what came back is not selected
        QTest::keyClick(&list, Qt::Key_Delete);
        QCOMPARE(site.rows_of("orders"), 3);
    }

    void a_second_delete_takes_nothing_that_nobody_chose()
    {
        auditor_site site;
        site.store_mails(3);
        mailfrm &screen = stored_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub");
        click_row(list, 1);
        QTest::keyClick(&list, Qt::Key_Delete);
        QTest::keyClick(&list, Qt::Key_Delete);
        QCOMPARE(column_texts(list, 1), (QStringList{"Order 0", "Order 2"}));
        QCOMPARE(list.currentIndex().row(), 1); // the keyboard goes on from there
        QTest::keyClick(&list, Qt::Key_Up);
        QTest::keyClick(&list, Qt::Key_Delete);
        QCOMPARE(column_texts(list, 1), QStringList{"Order 2"});
    }

    void the_text_of_a_deleted_mail_is_gone()
    {
        auditor_site site;
        site.store_mail("orders", "ann@mail.example", "Order");
        mailfrm &screen = stored_mails_shown();
        click_row(control<list_view>(screen, "LV_sub"), 0);
        QCOMPARE(control<QPlainTextEdit>(screen, "txt_body").toPlainText(), "Text");
        control<QAction>(screen, "deletem").trigger();
        QCOMPARE(site.rows_of("orders"), 0);
        QCOMPARE(control<QPlainTextEdit>(screen, "txt_body").toPlainText(), "");
        QCOMPARE(control<QLabel>(screen, "lbl_from").text(), "");
    }

    void deleting_follows_the_lines_when_the_list_is_sorted()
    {
        auditor_site site;
        site.store_mail("orders", "x@mail.example", "b");
        site.store_mail("orders", "y@mail.example", "a");
        mailfrm &screen = stored_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub");
        click_head(list, 1);
        click_row(list, 0);
        click_button(screen, "Indelete_b");
        QCOMPARE(site.column("select tsl_subject from orders"), QStringList{"b"});
        QCOMPARE(column_texts(list, 1), QStringList{"b"});
    }

    void a_failure_is_logged_and_what_went_before_it_is_gone()
    {
        auditor_site site;
        site.store_mail("orders", "ann@mail.example", "Order");
        site.store_mail("contact", "bob@mail.example", "Question");
        mailfrm &screen = stored_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub");
        list.selectAll();
        site.store.run("drop table contact");
        click_button(screen, "Indelete_b");
        QCOMPARE(session.err_form, "Mailfrm.frm");
        QCOMPARE(session.err_routine, "Indelete_b");
        QCOMPARE(column_texts(list, 1), QStringList{"Question"});
        QCOMPARE(site.rows_of("orders"), 0);
        QVERIFY(site.status_lines.last().startsWith("Not every mail could be deleted: "));
    }

    void deleting_several_tells_once_that_the_mails_changed()
    {
        auditor_site site;
        site.store_mails(4);
        mailfrm &screen = stored_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub");
        const heard_changes changes;
        for (const int row : {0, 2, 3})
            click_row(list, row, row == 0 ? Qt::NoModifier : Qt::ControlModifier);
        QCOMPARE(changes.heard, 0);
        click_button(screen, "Indelete_b");
        QCOMPARE(site.rows_of("orders"), 1);
        QCOMPARE(changes.heard, 1);
    }

    void a_half_failed_delete_tells_the_change_and_a_whole_failure_tells_none()
    {
        auditor_site site;
        site.store_mail("orders", "ann@mail.example", "Order");
        site.store_mail("contact", "bob@mail.example", "Question");
        mailfrm &screen = stored_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub");
        const heard_changes changes;
        list.selectAll();
        site.store.run("drop table contact");
        click_button(screen, "Indelete_b");
        QCOMPARE(site.rows_of("orders"), 0);
        QCOMPARE(changes.heard, 1);
        list.selectAll();
        click_button(screen, "Indelete_b");
        QCOMPARE(column_texts(list, 1), QStringList{"Question"});
        QCOMPARE(changes.heard, 1);
    }

    void sent_mails_are_deleted_and_read_again()
    {
        auditor_site site;
        for (const char *subject : {"one", "two", "three"})
            site.store_sent("cat@mail.example", subject);
        mailfrm &screen = sent_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub_si");
        click_row(list, 1);
        site.store_sent("dan@mail.example", "four"); // meanwhile
        click_button(screen, "Sdelete_b");
        QCOMPARE(column_texts(list, 1), (QStringList{"one", "three", "four"}));
        QCOMPARE(site.column("select tsl_subject from sentitems_tbl"), (QStringList{"one", "three", "four"}));
        QCOMPARE(list.currentIndex().row(), 1);
        QVERIFY(list.selectionModel()->selectedRows().isEmpty());
    }

    void sent_mails_that_cannot_be_listed_anew_are_told()
    {
        auditor_site site;
        site.store_sent("cat@mail.example", "one");
        site.store_sent("cat@mail.example", "two");
        mailfrm &screen = sent_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub_si");
        click_row(list, 0);
        site.store.run("alter table sentitems_tbl drop column tsl_to");
        click_button(screen, "Sdelete_b");
        QCOMPARE(column_texts(list, 1), QStringList{"two"});
        QCOMPARE(site.last_logged(), "Mailfrm.frm|Sdelete_b");
        QVERIFY2(site.status_lines.last().startsWith("The sent mails could not be listed anew: "),
                 qPrintable(site.status_lines.last()));
    }

    void what_the_search_hides_among_the_sent_mails_stays()
    {
        auditor_site site;
        site.store_sent("cat@mail.example", "Roses");
        site.store_sent("dan@mail.example", "Order");
        mailfrm &screen = sent_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub_si");
        list.selectAll();
        control<QLineEdit>(screen, "Ssearch_t").setText("dan@");
        control<QAction>(screen, "sdeletem").trigger();
        QCOMPARE(site.column("select tsl_subject from sentitems_tbl"), QStringList{"Roses"});
        QCOMPARE(list.model()->rowCount(), 0); // the words are still looked for
        control<QLineEdit>(screen, "Ssearch_t").clear();
        QCOMPARE(column_texts(list, 1), QStringList{"Roses"});
    }

    void without_a_selection_nothing_can_be_deleted()
    {
        auditor_site site;
        site.store_mails(2);
        site.store_sent("cat@mail.example", "one");
        mailfrm &screen = sent_mails_shown();
        for (const char *name : {"Indelete_b", "Sdelete_b"})
            QVERIFY(!control<QToolButton>(screen, name).isEnabled());
        for (const char *name : {"deletem", "sdeletem"})
            QVERIFY(!control<QAction>(screen, name).isEnabled());
        click_row(control<list_view>(screen, "LV_sub_si"), 0);
        QVERIFY(control<QToolButton>(screen, "Sdelete_b").isEnabled());
        QVERIFY(!control<QToolButton>(screen, "Indelete_b").isEnabled());
    }

    void thousands_go_at_once()
    {
        auditor_site site;
        site.store_mails(5000);
        mailfrm &screen = stored_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub");
        const QAbstractItemModel &rows = *list.model();
        list.selectAll();
        list.selectionModel()->select(rows.index(17, 0), QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
        const QSignalSpy resets(&rows, &QAbstractItemModel::modelReset);
        const QSignalSpy removals(&rows, &QAbstractItemModel::rowsRemoved);
        QElapsedTimer since;
        since.start();
        click_button(screen, "Indelete_b");
        QVERIFY(since.elapsed() < 10000); // a tenth of this on a busy machine; line by line it takes minutes
        QCOMPARE(resets.count(), 1);
        QCOMPARE(removals.count(), 0);
        QCOMPARE(column_texts(list, 1), QStringList{"Order 17"});
        QCOMPARE(site.rows_of("orders"), 1);
        QCOMPARE(screen.cursor().shape(), Qt::ArrowCursor);
    }
};

QTEST_MAIN(auditor_delete_test)
#include "auditor_delete_test.moc"
