// The Mail Auditor: its lists, their sorting, search and columns. Fetching: mailfrm_load_test.cpp; the selected mail:
// reading_pane_test.cpp.
#include "frame/session.h"
#include "frame/status.h"
#include "platform/settings.h"
#include "support/screens_auditor.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>

class mailfrm_test : public QObject {
    Q_OBJECT
private slots:
    void the_lists_have_their_heads_and_the_screen_its_title()
    {
        screens_site site;
        mailfrm screen;
        const auto heads = [&screen](const char *name) {
            const QAbstractItemModel &rows = *control<list_view>(screen, name).model();
            return QStringList{rows.headerData(0, Qt::Horizontal).toString(),
                               rows.headerData(1, Qt::Horizontal).toString(),
                               rows.headerData(2, Qt::Horizontal).toString()};
        };
        QCOMPARE(screen.windowTitle(), "Tessaly - Inbox");
        QCOMPARE(heads("LV_sub"), (QStringList{"From", "Subject", "Received"}));
        QCOMPARE(heads("LV_sub_si"), (QStringList{"To", "Subject", "Sent"}));
        QCOMPARE(control<QToolButton>(screen, "inbox_b").text(), "Inbox");
        QCOMPARE(control<QToolButton>(screen, "sentitems_b").text(), "Sent Item");
    }

    void the_mails_of_all_accounts_are_listed()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        site.store.add_account("contact", "hello@shop.example");
        store_mail(site, "contact", "bob@mail.example", "Question", "8/5/2026 9:00:00 AM");
        store_mail(site, "orders", "ann@mail.example", "Order", "8/6/2026 1:02:03 PM");
        const auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
        QCOMPARE(column_texts(list, 0), (QStringList{"ann@mail.example", "bob@mail.example"}));
        QCOMPARE(column_texts(list, 2), (QStringList{"8/6/2026 1:02:03 PM", "8/5/2026 9:00:00 AM"}));
    }

    void an_account_without_its_table_does_not_hide_the_others()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        site.store.add_account("contact", "hello@shop.example");
        store_mail(site, "contact", "bob@mail.example", "Question", "8/5/2026 9:00:00 AM");
        site.store.run("drop table orders");
        const auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
        QCOMPARE(column_texts(list, 1), QStringList{"Question"});
        QCOMPARE(session.err_form, "Mailfrm.frm");
        QCOMPARE(session.err_routine, "showmails_from_database");
        QCOMPARE(site.status_lines.size(), 1);
    }

    void received_sorts_by_date_and_marks_its_head()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "a@mail.example", "october", "10/1/2026 9:00:00 AM");
        store_mail(site, "orders", "b@mail.example", "september", "9/30/2026 9:00:00 PM");
        store_mail(site, "orders", "c@mail.example", "year before", "12/31/2025 11:59:59 PM");
        auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
        QCOMPARE(head_marks(list), (QStringList{"keynone", "keynone", "keynone"}));
        click_head(list, 2);
        QCOMPARE(column_texts(list, 1), (QStringList{"year before", "september", "october"}));
        QCOMPARE(head_marks(list), (QStringList{"keynone", "keynone", "key1"}));
        click_head(list, 2);
        QCOMPARE(column_texts(list, 1), (QStringList{"october", "september", "year before"}));
        QCOMPARE(head_marks(list), (QStringList{"keynone", "keynone", "key2"}));
    }

    void the_other_columns_sort_as_text_in_any_case()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "x@mail.example", "banana", "8/6/2026 9:00:00 AM");
        store_mail(site, "orders", "y@mail.example", "Cherry", "8/6/2026 9:00:00 AM");
        store_mail(site, "orders", "z@mail.example", "Apple", "8/6/2026 9:00:00 AM");
        auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
        click_head(list, 1);
        QCOMPARE(column_texts(list, 1), (QStringList{"Apple", "banana", "Cherry"}));
        QCOMPARE(head_marks(list), (QStringList{"keynone", "key1", "keynone"}));
    }

    void the_selected_mail_stays_selected_when_the_list_is_sorted()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "x@mail.example", "b", "8/6/2026 9:00:00 AM", "Text of b");
        store_mail(site, "orders", "y@mail.example", "a", "8/6/2026 9:00:00 AM", "Text of a");
        mailfrm &screen = stored_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub");
        click_row(list, 0);
        click_head(list, 1);
        QCOMPARE(list.currentIndex().row(), 1);
        QCOMPARE(control<QPlainTextEdit>(screen, "txt_body").toPlainText(), "Text of b");
    }

    void the_search_shows_the_mails_that_hold_the_words()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "ann@mail.example", "Roses", "8/6/2026 9:00:00 AM");
        store_mail(site, "orders", "rosa@mail.example", "Order", "8/6/2026 9:00:00 AM");
        store_mail(site, "orders", "bob@mail.example", "Other", "8/6/2026 9:00:00 AM");
        mailfrm &screen = stored_mails_shown();
        const auto &list = control<list_view>(screen, "LV_sub");
        QTest::keyClicks(&control<QLineEdit>(screen, "Insearch_t"), "ROS");
        QCOMPARE(column_texts(list, 1), (QStringList{"Roses", "Order"}));
        control<QLineEdit>(screen, "Insearch_t").clear();
        QCOMPARE(list.model()->rowCount(), 3);
    }

    void sent_item_lists_what_was_sent()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        site.store.run("insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body,tsl_sentaccount,"
                       "tsl_sentmailid) values('cat@mail.example','Thanks','8/7/2026 10:00:00 AM','Body of it',"
                       "'orders','orders@shop.example')");
        mailfrm &screen = stored_mails_shown();
        QTest::mouseClick(&control<QToolButton>(screen, "sentitems_b"), Qt::LeftButton);
        auto &list = control<list_view>(screen, "LV_sub_si");
        QVERIFY(control<QFrame>(screen, "sentitems_fr").isVisible());
        QVERIFY(!control<QFrame>(screen, "inbox_fr").isVisible());
        QCOMPARE(column_texts(list, 0), QStringList{"cat@mail.example"});
        QCOMPARE(column_texts(list, 2), QStringList{"8/7/2026 10:00:00 AM"});
        click_row(list, 0);
        QCOMPARE(control<QLabel>(screen, "lbl_from").text(),
                 "To:  cat@mail.example\nSub:   Thanks\nDate:  8/7/2026 10:00:00 AM");
        QCOMPARE(control<QPlainTextEdit>(screen, "txt_body").toPlainText(), "Body of it");
        QTest::mouseClick(&control<QToolButton>(screen, "inbox_b"), Qt::LeftButton);
        QVERIFY(control<QFrame>(screen, "inbox_fr").isVisible());
    }

    void a_sent_date_that_is_no_date_with_a_time_is_shown_as_stored()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        for (const char *date : {"11/9/2026", "11/9/2026 12:00:00 AM", "2026-11-09 10:00", "8/7/2026 10:00:00 AM", ""})
            site.store.run("insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body) "
                           "values('a@b.org','Re: x','" +
                           QString(date) + "','body')");
        mailfrm &screen = stored_mails_shown();
        control<QToolButton>(screen, "sentitems_b").click();
        auto &list = control<list_view>(screen, "LV_sub_si");
        QCOMPARE(column_texts(list, 2),
                 (QStringList{"11/9/2026", "11/9/2026 12:00:00 AM", "2026-11-09 10:00", "8/7/2026 10:00:00 AM", ""}));
        for (int row = 0; row < 5; ++row) {
            click_row(list, row);
            QCOMPARE(control<QLabel>(screen, "lbl_from").text().section("Date:  ", 1), column_texts(list, 2).at(row));
        }
    }

    void sent_mails_that_cannot_be_read_are_logged_and_told()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        mailfrm &screen = stored_mails_shown();
        site.store.run("drop table sentitems_tbl");
        control<QToolButton>(screen, "sentitems_b").click();
        QCOMPARE(site.last_logged(), "Mailfrm.frm|sentitems_b_click");
        QCOMPARE(site.status_lines.last(),
                 "Not everything about the sent mails could be read: " + session.err_description);
        QVERIFY(control<QFrame>(screen, "sentitems_fr").isVisible());
    }

    void escape_empties_the_search_before_it_closes()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        auto &search = control<QLineEdit>(stored_mails_shown(), "Insearch_t");
        search.setText("roses");
        QTest::keyClick(&search, Qt::Key_Escape);
        QVERIFY(is_loaded<mailfrm>());
        QCOMPARE(search.text(), "");
        QTest::keyClick(&search, Qt::Key_Escape);
        QVERIFY(!is_loaded<mailfrm>());
    }

    void a_missing_help_file_is_told()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        stored_mails_shown();
        QTest::keyClick(&the<mailfrm>(), Qt::Key_F1);
        QCOMPARE(site.status_lines, QStringList{"There is no help file beside the program."});
    }

    void all_columns_are_seen_on_a_narrow_screen()
    {
        screens_site site;
        SaveSetting("screens", "mailfrm.LV_sub", {});
        site.store.add_account("orders", "orders@shop.example");
        auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
        the<mailfrm>().resize(the<mailfrm>().minimumSize());
        QTRY_VERIFY(list.viewport()->width() < 560);
        QTRY_COMPARE(list.horizontalScrollBar()->maximum(), 0);
        QVERIFY(list.columnViewportPosition(2) + list.columnWidth(2) <= list.viewport()->width());
        QVERIFY(list.columnWidth(0) >= 100);
        the<mailfrm>().unload();
        QCOMPARE(GetSetting("screens", "mailfrm.LV_sub"), QString()); // nobody chose these
    }

    void column_widths_are_remembered()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        control<list_view>(stored_mails_shown(), "LV_sub").setColumnWidth(0, 133);
        the<mailfrm>().unload();
        QCOMPARE(control<list_view>(stored_mails_shown(), "LV_sub").columnWidth(0), 133);
    }
};

QTEST_MAIN(mailfrm_test)
#include "mailfrm_test.moc"
