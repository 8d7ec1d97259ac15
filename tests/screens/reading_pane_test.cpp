// The selected mail in the Mail Auditor: the lines above it, its text, and why it is in no table.
#include "screens/frame/menuFrm.h"
#include "support/screens_auditor.h"

#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>

class reading_pane_test : public QObject {
    Q_OBJECT
private slots:
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
        QTRY_VERIFY(span(body).top() > span(why).bottom()); // the box is laid out again when its lines are known
        QVERIFY(span(body).bottom() < screen.height());
        QVERIFY(body.viewport()->height() >= 2 * body.fontMetrics().lineSpacing());
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
};

QTEST_MAIN(reading_pane_test)
#include "reading_pane_test.moc"
