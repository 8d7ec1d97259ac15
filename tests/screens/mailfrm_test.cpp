// The Mail Auditor: loading fetches, the lists, their sorting and search, the text of a mail.
#include "frame/session.h"
#include "frame/status.h"
#include "platform/settings.h"
#include "screens/frame/closing.h"
#include "screens/frame/menuFrm.h"
#include "support/screens_auditor.h"

#include <QApplication>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>

namespace {

void store_mail(screens_site &site, const QString &table, const QString &from, const QString &subject,
                const QString &date, const QString &body = "Text")
{
    site.store.run("insert into " + table + " (tsl_subject,tsl_recdate,tsl_Email,tsl_status,tsl_body) values('" +
                   subject + "','" + date + "','" + from + "','new','" + body + "')");
}

}

class mailfrm_test : public QObject {
    Q_OBJECT
private slots:
    void making_the_screen_does_not_fetch()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        site.deliver_mail("orders@shop.example");
        const mailfrm screen;
        QCOMPARE(site.rows_of("orders"), 0);
    }

    void an_unprocessed_mail_says_for_each_map_why_it_is_not_taken()
    {
        screens_site site;
        const qint64 account = site.store.add_account("orders", "orders@shop.example");
        site.store.add_map("by_subject", account, "Booking", {{"first_name"}});
        site.store.add_map("by_pieces", account, "Order", {{"first_name", 3}});
        site.store.add_map("by_text", account, "Order", {{"first_name", 1, true, "Name:"}});
        site.store.add_map("by_label", account, "Order", {{"first_name", 1, false}});
        store_mail(site, "orders", "zoe@home.example", "Order", "1/2/2026", "City: Bonn");
        mailfrm &screen = stored_mails_shown();
        click_row(control<list_view>(screen, "LV_sub"), 0);
        const auto &why = control<QPlainTextEdit>(screen, "why_t");
        QVERIFY(why.isVisible());
        QVERIFY(why.isReadOnly());
        QCOMPARE(why.toPlainText(), "by_subject: The subject is not \"Booking\".\n"
                                    "by_pieces: There is no piece 3: the number of pieces is 1.\n"
                                    "by_text: Piece 1 lacks the text \"Name:\".\n"
                                    "by_label: Piece 1 does not start with the label \"first_name\".");
    }

    void an_unprocessed_mail_that_fits_says_so_and_one_without_maps_says_what_to_do()
    {
        screens_site site;
        const qint64 account = site.store.add_account("orders", "orders@shop.example");
        site.store.add_account("contact", "hello@shop.example");
        site.store.add_map("clients", account, "Order", {{"first_name"}});
        store_mail(site, "orders", "zoe@home.example", "Order", "1/2/2026");
        store_mail(site, "contact", "zoe@home.example", "Hello", "1/2/2026");
        mailfrm &screen = stored_mails_shown();
        const auto &why = control<QPlainTextEdit>(screen, "why_t");
        click_row(control<list_view>(screen, "LV_sub"), 0);
        QCOMPARE(why.toPlainText(), "clients: it fits, and is taken at the next fetch.");
        click_row(control<list_view>(screen, "LV_sub"), 1);
        QCOMPARE(why.toPlainText(), "No map was made for this account yet. Mail > Mail Mapping Wizard makes one from a "
                                    "mail such as this.");
    }

    void a_processed_mail_and_a_sent_one_have_nothing_to_explain()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "zoe@home.example", "Order", "1/2/2026");
        store_mail(site, "orders", "zoe@home.example", "Order again", "1/2/2026");
        site.store.run("update orders set tsl_processed=yes where message_id=2");
        site.store.run("insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body) "
                       "values('a@b.org','Re: x','11/21/2026 1:02:03 AM','body')");
        mailfrm &screen = stored_mails_shown();
        const auto &why = control<QPlainTextEdit>(screen, "why_t");
        QVERIFY(!why.isVisible());
        click_row(control<list_view>(screen, "LV_sub"), 0);
        QVERIFY(why.isVisible());
        click_row(control<list_view>(screen, "LV_sub"), 1);
        QVERIFY(!why.isVisible());
        click_row(control<list_view>(screen, "LV_sub"), 0);
        control<QToolButton>(screen, "sentitems_b").click();
        click_row(control<list_view>(screen, "LV_sub_si"), 0);
        QVERIFY(!why.isVisible());
    }

    void loading_it_fetches_parses_and_lists_without_showing()
    {
        screens_site site;
        const qint64 account = site.store.add_account("orders", "orders@shop.example");
        site.store.add_map("shop", account, "Order", {{.name = "city", .piece = 1}});
        site.deliver_mail("orders@shop.example", "Order", "Bath");
        site.deliver_mail("friend@shop.example", "Lunch?", "At noon");
        the<mailfrm>().load();
        QCOMPARE(site.store.cell("select city from shop"), "Bath");
        QCOMPARE(column_texts(control<list_view>(the<mailfrm>(), "LV_sub"), 1), QStringList{"Order"});
        QCOMPARE(control<QLabel>(the<mailfrm>(), "Label3").text(), "1 of 2 mails processed");
        QVERIFY(!is_visible<mailfrm>());
    }

    void with_no_fetch_it_only_shows_what_is_stored()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "ann@mail.example", "Old", "8/6/2026 9:00:00 AM");
        site.deliver_mail("orders@shop.example", "New");
        const auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
        QCOMPARE(column_texts(list, 1), QStringList{"Old"});
        QCOMPARE(site.rows_of("orders"), 1);
    }

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

    void a_click_shows_the_lines_above_and_the_text()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "ann@mail.example", "First", "8/6/2026 9:00:00 AM", "One");
        store_mail(site, "orders", "bob@mail.example", "Second", "8/6/2026 1:02:03 PM", "Two\r\n<b>not bold</b>");
        mailfrm &screen = stored_mails_shown();
        click_row(control<list_view>(screen, "LV_sub"), 1);
        QCOMPARE(control<QLabel>(screen, "lbl_from").text(),
                 "From:  bob@mail.example\nSub:   Second\nDate:  8/6/2026 1:02:03 PM");
        QCOMPARE(control<QLabel>(screen, "lbl_from").textFormat(), Qt::PlainText);
        QCOMPARE(control<QPlainTextEdit>(screen, "txt_body").toPlainText(), "Two\n<b>not bold</b>");
    }

    void an_endless_text_is_shown_from_its_start()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "ann@mail.example", "Long", "8/6/2026 9:00:00 AM", QString(2000000, 'q'));
        mailfrm &screen = stored_mails_shown();
        click_row(control<list_view>(screen, "LV_sub"), 0);
        const QString shown = control<QPlainTextEdit>(screen, "txt_body").toPlainText();
        QCOMPARE(shown.count('q'), 300000);
        QVERIFY(shown.endsWith("(The text is longer than what is shown here.)"));
    }

    void a_long_subject_does_not_widen_the_screen()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "ann@mail.example", QString(250, 'W'), "8/6/2026 9:00:00 AM");
        mailfrm &screen = stored_mails_shown();
        const int width = screen.width();
        click_row(control<list_view>(screen, "LV_sub"), 0);
        QCOMPARE(screen.width(), width);
        QVERIFY(screen.minimumSizeHint().width() <= 700);
    }

    void the_smallest_console_shows_each_line_above_the_text()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "ann@mail.example", QString("A subject without end ").repeated(12),
                   "8/6/2026 9:00:00 AM", "One\r\nTwo");
        menuFrm console;
        console.resize(console.minimumSize());
        console.show();
        mailfrm &screen = stored_mails_shown();
        click_row(control<list_view>(screen, "LV_sub"), 0);
        QApplication::processEvents();
        const auto &head = control<QLabel>(screen, "lbl_from");
        const auto &why = control<QPlainTextEdit>(screen, "why_t");
        const auto &body = control<QPlainTextEdit>(screen, "txt_body");
        const auto span = [&screen](const QWidget &widget) {
            return QRect(widget.mapTo(&screen, QPoint()), widget.size());
        };
        QVERIFY(head.height() >= head.heightForWidth(head.width()));
        QVERIFY(span(control<QLabel>(screen, "why_lb")).top() > span(head).bottom());
        QCOMPARE(why.verticalScrollBar()->maximum(), 0);
        QVERIFY(span(body).top() > span(why).bottom());
        QVERIFY(span(body).bottom() < screen.height());
        QVERIFY(body.viewport()->height() >= 2 * body.fontMetrics().lineSpacing());
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

    void what_is_stored_is_shown_though_the_mail_client_fails()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "ann@mail.example", "Old", "8/6/2026 9:00:00 AM");
        SaveSetting("mail_client", "user", "ann");
        SaveSetting("mail_client", "kind", "pop3"); // without a server
        the<mailfrm>().load();
        QCOMPARE(column_texts(control<list_view>(the<mailfrm>(), "LV_sub"), 1), QStringList{"Old"});
        QCOMPARE(session.err_form, "Mailfrm.frm");
        QCOMPARE(session.err_routine, "Form_load");
        QCOMPARE(site.boxes.shown, QStringList{"Mail could not be fetched.\n\nNo server is set.\n\n"
                                               "The mails stored so far are shown."});
    }

    void a_missing_maildir_is_told_and_what_is_stored_is_shown()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "ann@mail.example", "Old", "8/6/2026 9:00:00 AM");
        SaveSetting("mail_client", "maildir", "/no/such/Maildir");
        the<mailfrm>().load();
        QCOMPARE(column_texts(control<list_view>(the<mailfrm>(), "LV_sub"), 1), QStringList{"Old"});
        QCOMPARE(site.status_lines.last(), "Not everything went well: Path not found: /no/such/Maildir");
    }

    void a_store_that_cannot_be_opened_any_more_is_shown_and_ends_the_program()
    {
        screens_site site;
        session.store_connection->Close();
        site.store.connection().Close();
        QFile store(site.file("mailapp.mdb"));
        QVERIFY(store.open(QIODevice::WriteOnly));
        store.write(QByteArray(8192, 'x'));
        store.close();
        int ended = 0;
        set_program_end([&ended] { ++ended; });
        the<mailfrm>().load();
        set_program_end({});
        QCOMPARE(ended, 1);
        QCOMPARE(session.err_routine, "Form_load");
        QCOMPARE(site.boxes.shown, QStringList{"Critical Error: " + QString::number(qint32(session.err_number)) + " " +
                                               session.err_description});
        QVERIFY(site.boxes.shown.value(0).startsWith("Critical Error: -2147467259 Unrecognized database format."));
        QVERIFY(site.boxes.boxes.at(0).icon == message_icon::critical);
        QVERIFY(site.boxes.boxes.at(0).kind == message_kind::say);
    }

    void what_an_earlier_fetch_told_goes_when_the_next_one_begins()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        status_line("Not everything went well: no line");
        the<mailfrm>().load();
        QCOMPARE(site.status_lines.last(), QString());
    }

    void no_accounts_are_told()
    {
        screens_site site;
        session.no_fetch = true;
        the<mailfrm>().load();
        QCOMPARE(site.boxes.shown, QStringList{"Mail ids not yet configured"});
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

    void an_endless_subject_leaves_room_for_the_text()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "ann@mail.example", QString("endless ").repeated(400) + "end",
                   "8/6/2026 1:02:03 PM");
        auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
        list.setCurrentIndex(list.model()->index(0, 0));
        const auto &head = control<QLabel>(the<mailfrm>(), "lbl_from");
        QVERIFY(head.text().startsWith("From:  ann@mail.example\nSub:   endless endless "));
        QVERIFY(head.text().endsWith(" ...\nDate:  8/6/2026 1:02:03 PM"));
        QVERIFY(head.text().size() < 400);
        QCOMPARE(head.text().count('\n'), 2);
    }

    void what_stands_above_the_text_is_seen_whole_when_its_lines_wrap()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "ann@mail.example", QString("endless ").repeated(40), "8/6/2026 1:02:03 PM");
        mailfrm &screen = stored_mails_shown();
        click_row(control<list_view>(screen, "LV_sub"), 0);
        const auto &why = control<QPlainTextEdit>(screen, "why_t");
        const auto &head = control<QLabel>(screen, "lbl_from");
        screen.resize(1400, 700);
        QTRY_COMPARE(screen.width(), 1400);
        const int one_line = why.height();
        screen.resize(560, 420);
        QTRY_VERIFY(why.width() < 560);
        QVERIFY(why.height() >= one_line + why.fontMetrics().lineSpacing());
        QTRY_COMPARE(why.verticalScrollBar()->maximum(), 0);
        QVERIFY(head.heightForWidth(head.width()) >= 4 * head.fontMetrics().lineSpacing()); // it does wrap
        QVERIFY(head.height() >= head.heightForWidth(head.width()));
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
