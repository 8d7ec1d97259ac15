// The Mail Auditor's search boxes, one above each list: what they hide, what stays selected, what an empty list says.
// And the heads: what sorts how.
#include "support/screens_auditor.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

namespace {

QStringList selected_subjects(const list_view &list)
{
    QStringList subjects;
    for (const QModelIndex &row : list.selectionModel()->selectedRows(1))
        subjects += row.data().toString();
    subjects.sort();
    return subjects;
}

}

class auditor_search_test : public QObject {
    Q_OBJECT
private slots:
    void each_list_has_its_own_box()
    {
        auditor_site site;
        site.store_mail("orders", "ann@mail.example", "Roses");
        site.store_mail("orders", "bob@mail.example", "Other");
        site.store_sent("rosa@mail.example", "Thanks");
        site.store_sent("bob@mail.example", "Re: Other");
        mailfrm &screen = sent_mails_shown();
        QTest::keyClicks(&control<QLineEdit>(screen, "Ssearch_t"), "ROS");
        QCOMPARE(column_texts(control<list_view>(screen, "LV_sub_si"), 0), QStringList{"rosa@mail.example"});
        QCOMPARE(control<list_view>(screen, "LV_sub").model()->rowCount(), 2);
        QCOMPARE(control<QLineEdit>(screen, "Insearch_t").text(), "");
    }

    void hiding_a_row_takes_away_its_selection_and_leaves_the_others()
    {
        auditor_site site;
        for (const char *subject : {"Roses", "Other", "More roses", "Lilies"})
            site.store_mail("orders", "ann@mail.example", subject);
        mailfrm &screen = stored_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub");
        for (const int row : {0, 1, 2})
            click_row(list, row, row == 0 ? Qt::NoModifier : Qt::ControlModifier);
        QCOMPARE(selected_subjects(list), (QStringList{"More roses", "Other", "Roses"}));
        control<QLineEdit>(screen, "Insearch_t").setText("roses");
        QCOMPARE(selected_subjects(list), (QStringList{"More roses", "Roses"}));
        control<QLineEdit>(screen, "Insearch_t").clear();
        QCOMPARE(selected_subjects(list), (QStringList{"More roses", "Roses"}));
    }

    void a_hidden_mail_is_no_longer_read()
    {
        auditor_site site;
        site.store_mail("orders", "ann@mail.example", "Roses");
        site.store_mail("orders", "ann@mail.example", "Lilies");
        mailfrm &screen = stored_mails_shown();
        click_row(control<list_view>(screen, "LV_sub"), 0);
        const auto &text = control<QPlainTextEdit>(screen, "txt_body");
        control<QLineEdit>(screen, "Insearch_t").setText("ros");
        QCOMPARE(text.toPlainText(), "Text");
        control<QLineEdit>(screen, "Insearch_t").setText("lil");
        QCOMPARE(text.toPlainText(), "");
        QVERIFY(!control<QToolButton>(screen, "Inreply_b").isEnabled());
    }

    void the_search_stays_when_the_list_is_read_anew()
    {
        auditor_site site;
        site.store_sent("cat@mail.example", "Thanks");
        mailfrm &screen = sent_mails_shown();
        control<QLineEdit>(screen, "Ssearch_t").setText("roses");
        site.store_sent("cat@mail.example", "Roses");
        screen.populate_sentitems_tbl();
        QCOMPARE(column_texts(control<list_view>(screen, "LV_sub_si"), 1), QStringList{"Roses"});
    }

    void escape_leaves_the_search_of_the_list_in_sight()
    {
        auditor_site site;
        mailfrm &screen = sent_mails_shown();
        control<QLineEdit>(screen, "Insearch_t").setText("kept");
        auto &search = control<QLineEdit>(screen, "Ssearch_t");
        search.setText("roses");
        QTest::keyClick(&search, Qt::Key_Escape);
        QVERIFY(is_loaded<mailfrm>());
        QCOMPARE(search.text(), "");
        QCOMPARE(control<QLineEdit>(screen, "Insearch_t").text(), "kept");
    }

    void sent_sorts_by_the_text_that_is_shown()
    {
        auditor_site site;
        const auto store = [&site](const char *subject, const char *date) {
            site.store.run(QString("insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate) values('a@b.org','%1',"
                                   "'%2')")
                               .arg(subject, date));
        };
        store("september", "9/30/2026 9:00:00 PM");
        store("october", "10/1/2026 9:00:00 AM");
        store("undated", "Some day");
        store("noon", "10/1/2026 12:00:00 PM");
        store("year before", "9/30/2025 9:00:00 PM");
        mailfrm &screen = sent_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub_si");
        click_head(list, 2);
        QCOMPARE(column_texts(list, 1), (QStringList{"noon", "october", "year before", "september", "undated"}));
        QCOMPARE(head_marks(list), (QStringList{"keynone", "keynone", "key1"}));
        click_head(list, 2);
        QCOMPARE(column_texts(list, 1), (QStringList{"undated", "september", "year before", "october", "noon"}));
        site.store.run(
            "insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate) values('a@b.org','later','9/4/2026')");
        screen.populate_sentitems_tbl(); // what is read anew is sorted as it was
        QCOMPARE(column_texts(list, 1),
                 (QStringList{"undated", "later", "september", "year before", "october", "noon"}));
        click_head(list, 0);
        QCOMPARE(head_marks(list), (QStringList{"key1", "keynone", "keynone"}));
    }

    void the_search_finds_the_date_as_it_is_shown()
    {
        auditor_site site;
        site.store_mail("orders", "ann@mail.example", "Roses", "8/6/2026 1:02:03 PM");
        site.store_mail("orders", "ann@mail.example", "Lilies", "8/16/2026 9:00:00 AM");
        site.store_sent("cat@mail.example", "Thanks");
        site.store.run("insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate) values('a@b.org','undated','Some "
                       "day')");
        mailfrm &screen = stored_mails_shown();
        const auto &list = control<list_view>(screen, "LV_sub");
        auto &search = control<QLineEdit>(screen, "Insearch_t");
        QCOMPARE(search.placeholderText(), "Address, subject or date");
        search.setText("8/6/2026");
        QCOMPARE(column_texts(list, 1), QStringList{"Roses"});
        search.setText("9:00:00 am");
        QCOMPARE(column_texts(list, 1), QStringList{"Lilies"});
        control<QToolButton>(screen, "sentitems_b").click();
        auto &sent_search = control<QLineEdit>(screen, "Ssearch_t");
        QCOMPARE(sent_search.placeholderText(), "Address, subject or date");
        sent_search.setText("some");
        QCOMPARE(column_texts(control<list_view>(screen, "LV_sub_si"), 1), QStringList{"undated"});
        sent_search.setText("8/7/2026 10");
        QCOMPARE(column_texts(control<list_view>(screen, "LV_sub_si"), 1), QStringList{"Thanks"});
    }

    void line_ends_in_a_subject_or_an_address_stay_on_one_line_and_let_the_rows_be_low()
    {
        auditor_site site;
        site.store_mail("orders", "ann@mail.example", "Plain");
        auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
        const int usual = list.visualRect(list.model()->index(0, 0)).height();
        the<mailfrm>().unload();
        site.store.run("delete from orders");
        site.store_mail("orders", "ann\n@mail", "One\ntwo" + QString(QChar(0x2028)) + "three\tfour");
        auto &broken = control<list_view>(stored_mails_shown(), "LV_sub");
        QCOMPARE(column_texts(broken, 0), QStringList{"ann @mail"});
        QCOMPARE(column_texts(broken, 1), QStringList{"One two three four"});
        QCOMPARE(broken.visualRect(broken.model()->index(0, 0)).height(), usual);
    }

    void a_search_that_leaves_the_selected_mail_leaves_its_text_where_it_was_scrolled_to()
    {
        auditor_site site;
        site.store_mail("orders", "ann@mail.example", "Roses", "8/6/2026 9:00:00 AM",
                        QString("A line\r\n").repeated(300));
        site.store_mail("orders", "ann@mail.example", "Lilies");
        mailfrm &screen = stored_mails_shown();
        click_row(control<list_view>(screen, "LV_sub"), 0);
        auto &text = control<QPlainTextEdit>(screen, "txt_body");
        text.verticalScrollBar()->setValue(120);
        const QSignalSpy laid_out(text.document(), &QTextDocument::contentsChanged);
        QTest::keyClicks(&control<QLineEdit>(screen, "Insearch_t"), "ros");
        QCOMPARE(text.verticalScrollBar()->value(), 120);
        QCOMPARE(laid_out.count(), 0);
        control<QLineEdit>(screen, "Insearch_t").setText("lil"); // it goes
        QCOMPARE(text.toPlainText(), "");
        control<QLineEdit>(screen, "Insearch_t").clear();
        click_row(control<list_view>(screen, "LV_sub"), 0); // and can be read again
        QVERIFY(text.toPlainText().startsWith("A line\nA line\n"));
    }

    void the_tip_of_a_subject_shows_its_letters()
    {
        auditor_site site;
        site.store_mail("orders", "ann@mail.example", "<b>Tea</b> & roses");
        site.store_mail("orders", "ann@mail.example", "");
        const QAbstractItemModel &rows = *control<list_view>(stored_mails_shown(), "LV_sub").model();
        QCOMPARE(rows.index(0, 1).data(Qt::ToolTipRole).toString(), "<qt>&lt;b&gt;Tea&lt;/b&gt; &amp; roses</qt>");
        QVERIFY(!rows.index(0, 0).data(Qt::ToolTipRole).isValid());
        QVERIFY(!rows.index(1, 1).data(Qt::ToolTipRole).isValid());
    }

    void the_sort_keys_never_show()
    {
        auditor_site site;
        site.store_mail("orders", "ann@mail.example", "Order", "8/13/2026 1:02:03 PM");
        auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
        click_head(list, 2);
        QCOMPARE(list.model()->columnCount(), 3);
        for (int column = 0; column < 3; ++column)
            for (const int role : {Qt::DisplayRole, Qt::EditRole, Qt::ToolTipRole, Qt::AccessibleTextRole})
                QVERIFY(!list.model()->index(0, column).data(role).toString().contains("20260813130203"));
    }
};

QTEST_MAIN(auditor_search_test)
#include "auditor_search_test.moc"
