// The Mail Auditor when the store changes beside it: its list is read anew when it comes to the front, and a mail that
// is gone or cannot be read says so.
#include "accounts/account_rows.h"
#include "frame/session.h"
#include "frame/status.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/mfetchinprogress_frm.h"
#include "screens/maps/mapWizardStep3_frm.h"
#include "screens/preferences/OnlinePref.h"
#include "support/screens_auditor.h"
#include "support/screens_map_wizard.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

namespace {

const auto gone_words = QStringLiteral("This mail is no longer stored: it was deleted, or its account was changed, "
                                       "after the list was filled.");

list_view &inbox_list()
{
    return control<list_view>(the<mailfrm>(), "LV_sub");
}

QStringList inbox_subjects()
{
    return column_texts(inbox_list(), 1);
}

QStringList selected_subjects_of(const list_view &list)
{
    QStringList subjects;
    for (const QModelIndex &row : list.selectionModel()->selectedRows(1))
        subjects += row.data().toString();
    subjects.sort();
    return subjects;
}

QPlainTextEdit &text_box()
{
    return control<QPlainTextEdit>(the<mailfrm>(), "txt_body");
}

void delete_elsewhere(auditor_site &site, const QString &condition)
{
    site.store.run("delete from orders where " + condition);
    mails_changed();
}

}

class auditor_renewal_test : public QObject {
    Q_OBJECT
private slots:
    void mails_deleted_on_another_screen_go_when_it_comes_to_the_front()
    {
        auditor_site site;
        site.store_mails(4);
        menuFrm console;
        console.show();
        stored_mails_shown();
        the<OnlinePref>().show();
        delete_elsewhere(site, "message_id=2");
        QCOMPARE(inbox_subjects().size(), 4);
        the<OnlinePref>().unload();
        QTRY_COMPARE(inbox_subjects(), (QStringList{"Order 0", "Order 2", "Order 3"}));
    }

    void the_menus_command_brings_it_up_to_date()
    {
        auditor_site site;
        site.store_mails(2);
        menuFrm console;
        console.show();
        stored_mails_shown();
        the<OnlinePref>().show();
        delete_elsewhere(site, "message_id=1");
        control<QAction>(console, "mauditor_mnu").trigger();
        QCOMPARE(inbox_subjects(), QStringList{"Order 1"});
    }

    void an_account_that_was_changed_lists_what_its_table_holds_now()
    {
        auditor_site site;
        site.store_mails(2);
        site.store_mail("contact", "bob@mail.example", "Question");
        mailfrm &screen = stored_mails_shown();
        accounts::change("orders", "orders", "shop@shop.example"); // its mails lie in orders_old now
        screen.Activate();
        QCOMPARE(inbox_subjects(), QStringList{"Question"});
        accounts::remove("contact");
        screen.Activate();
        QCOMPARE(inbox_subjects(), QStringList());
    }

    void selection_search_sorting_and_place_stay()
    {
        auditor_site site;
        for (int number = 100; number < 300; ++number)
            site.store_mail("orders", "ann@mail.example", "Order " + QString::number(number));
        site.store_mail("orders", "bob@mail.example", "Other");
        mailfrm &screen = stored_mails_shown();
        list_view &list = inbox_list();
        control<QLineEdit>(screen, "Insearch_t").setText("order");
        click_head(list, 1);
        click_head(list, 1); // from Order 299 down
        list.setCurrentIndex(list.model()->index(100, 0));
        list.selectionModel()->select(list.model()->index(90, 0),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
        list.verticalScrollBar()->setValue(95);
        const QStringList selected = selected_subjects_of(list);
        QCOMPARE(selected, (QStringList{"Order 199", "Order 209"}));
        delete_elsewhere(site, "tsl_subject='Order 100'"); // the last row
        screen.Activate();
        QCOMPARE(list.model()->rowCount(), 199);
        QCOMPARE(selected_subjects_of(list), selected);
        QCOMPARE(list.currentIndex().siblingAtColumn(1).data().toString(), "Order 199");
        QCOMPARE(list.verticalScrollBar()->value(), 95);
        QCOMPARE(head_marks(list), (QStringList{"keynone", "key2", "keynone"}));
        QCOMPARE(text_box().toPlainText(), "Text");
    }

    void what_was_selected_and_is_gone_is_no_longer_read()
    {
        auditor_site site;
        site.store_mails(3);
        mailfrm &screen = stored_mails_shown();
        click_row(inbox_list(), 1);
        delete_elsewhere(site, "message_id=2");
        screen.Activate();
        QVERIFY(inbox_list().selectionModel()->selectedRows().isEmpty());
        QCOMPARE(inbox_list().currentIndex().row(), 1); // the keyboard goes on from there
        QCOMPARE(text_box().toPlainText(), "");
        QVERIFY(!control<QToolButton>(screen, "Inreply_b").isEnabled());
    }

    void the_mail_that_is_read_tells_that_a_map_has_taken_it()
    {
        auditor_site site;
        site.store_mails(1);
        mailfrm &screen = stored_mails_shown();
        click_row(inbox_list(), 0);
        QVERIFY(control<QPlainTextEdit>(screen, "why_t").isVisible());
        site.store.run("update orders set tsl_processed=yes");
        mails_changed();
        screen.Activate();
        QCOMPARE(text_box().toPlainText(), "Text");
        QVERIFY(!control<QPlainTextEdit>(screen, "why_t").isVisible());
    }

    void without_a_change_nothing_is_read()
    {
        auditor_site site;
        site.store_mails(3);
        mailfrm &screen = stored_mails_shown();
        const QSignalSpy resets(inbox_list().model(), &QAbstractItemModel::modelReset);
        screen.Activate();
        click_row(inbox_list(), 0);
        control<QToolButton>(screen, "Indelete_b").click(); // it knows of what it did itself
        QCOMPARE(resets.count(), 1);
        screen.Activate();
        QCOMPARE(resets.count(), 1);
        mails_changed();
        screen.Activate();
        screen.Activate();
        QCOMPARE(resets.count(), 2);
    }

    void an_own_delete_does_not_hide_what_was_deleted_elsewhere()
    {
        auditor_site site;
        site.store_mails(3);
        mailfrm &screen = stored_mails_shown();
        delete_elsewhere(site, "message_id=3");
        click_row(inbox_list(), 0);
        control<QToolButton>(screen, "Indelete_b").click();
        QCOMPARE(inbox_subjects(), (QStringList{"Order 1", "Order 2"}));
        screen.Activate();
        QCOMPARE(inbox_subjects(), QStringList{"Order 1"});
    }

    void without_accounts_nothing_is_asked_for()
    {
        screens_site site;
        mailfrm &screen = stored_mails_shown();
        QCOMPARE(site.boxes.shown, QStringList{"Mail ids not yet configured"});
        mails_changed();
        screen.Activate();
        QCOMPARE(site.boxes.shown.size(), 1);
    }

    void a_store_that_cannot_be_read_is_told_and_the_list_stays()
    {
        auditor_site site;
        site.store_mails(2);
        mailfrm &screen = stored_mails_shown();
        site.store.run("drop table email_tbl");
        mails_changed();
        screen.Activate();
        QCOMPARE(site.last_logged(), "Mailfrm.frm|Form_activate");
        QVERIFY(site.status_lines.last().startsWith("The mails could not be listed anew: "));
        QCOMPARE(inbox_subjects().size(), 2);
    }

    void a_mail_that_is_gone_says_so_in_the_place_of_its_text()
    {
        auditor_site site;
        site.store_mails(2);
        site.store_sent("cat@mail.example", "Thanks");
        mailfrm &screen = stored_mails_shown();
        site.store.run("delete from orders where message_id=2"); // nobody tells
        click_row(inbox_list(), 1);
        QCOMPARE(text_box().placeholderText(), gone_words);
        QVERIFY(!control<QLabel>(screen, "lbl_from").isVisible());
        QVERIFY(!control<QPlainTextEdit>(screen, "why_t").isVisible());
        click_row(inbox_list(), 0);
        QCOMPARE(text_box().toPlainText(), "Text");
        control<QToolButton>(screen, "sentitems_b").click();
        QCOMPARE(text_box().placeholderText(), "Select a mail to read it here.");
        site.store.run("delete from sentitems_tbl");
        click_row(control<list_view>(screen, "LV_sub_si"), 0);
        QCOMPARE(text_box().placeholderText(), gone_words);
    }

    void a_mail_that_is_gone_cannot_be_answered()
    {
        auditor_site site;
        site.store_mails(2);
        stored_mails_shown();
        click_row(inbox_list(), 0);
        click_row(inbox_list(), 1, Qt::ControlModifier);
        site.store.run("delete from orders where message_id=1");
        int opened = 0;
        in_modal<Showdetails>([&](Showdetails &reply) {
            ++opened;
            const auto &send = control<QPushButton>(reply, "send_b");
            const auto &body = control<QPlainTextEdit>(reply, "body_t");
            QVERIFY(!send.isEnabled());
            QCOMPARE(body.placeholderText(), "The mail to be answered is no longer stored.");
            QCOMPARE(body.toPlainText(), "");
            QCOMPARE(site.status_lines.last(), "The mail to be answered is no longer stored.");
            control<QPushButton>(reply, "skip_b").click(); // the other one is there
            QVERIFY(send.isEnabled());
            QCOMPARE(body.placeholderText(), "");
            QCOMPARE(control<QLineEdit>(reply, "to_t").text(), "visitor1@mail.example");
            control<QPushButton>(reply, "cancel_b").click();
        });
        control<QToolButton>(the<mailfrm>(), "Inreply_b").click();
        QCOMPARE(opened, 1);
    }

    void accounts_that_cannot_be_read_are_told_by_the_reply()
    {
        auditor_site site;
        site.store_mails(1);
        stored_mails_shown();
        click_row(inbox_list(), 0);
        site.store.run("drop table email_tbl");
        int opened = 0;
        in_modal<Showdetails>([&](Showdetails &reply) {
            ++opened;
            QCOMPARE(site.last_logged(), "Showdetails.frm|Form_load");
            QVERIFY(site.status_lines.last().startsWith("The accounts could not be read: "));
            QCOMPARE(control<QComboBox>(reply, "account_c").count(), 1);
            control<QPushButton>(reply, "cancel_b").click();
        });
        control<QToolButton>(the<mailfrm>(), "Inreply_b").click();
        QCOMPARE(opened, 1);
    }

    void a_mail_that_cannot_be_read_is_logged_and_told_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("logged");
        QTest::newRow("inbox") << "LV_sub"
                               << "orders"
                               << "Mailfrm.frm|LV_sub";
        QTest::newRow("sent items") << "LV_sub_si"
                                    << "sentitems_tbl"
                                    << "Mailfrm.frm|LV_sub_si";
    }

    void a_mail_that_cannot_be_read_is_logged_and_told()
    {
        QFETCH(QString, list);
        QFETCH(QString, table);
        QFETCH(QString, logged);
        auditor_site site;
        site.store_mails(1);
        site.store_sent("cat@mail.example", "Thanks");
        mailfrm &screen = list == "LV_sub" ? stored_mails_shown() : sent_mails_shown();
        site.store.run("drop table " + table);
        click_row(control<list_view>(screen, qPrintable(list)), 0);
        QCOMPARE(site.last_logged(), logged);
        const QString words = "The mail could not be read: " + session.err_description;
        QCOMPARE(site.status_lines.last(), words);
        QCOMPARE(text_box().placeholderText(), words);
    }

    void reasons_that_cannot_be_found_out_are_told_and_the_text_stands()
    {
        auditor_site site;
        site.store_mails(1);
        mailfrm &screen = stored_mails_shown();
        site.store.run("drop table table_list_tbl");
        click_row(inbox_list(), 0);
        QCOMPARE(site.last_logged(), "Mailfrm.frm|LV_sub");
        QVERIFY(site.status_lines.last().startsWith("Why this mail is in no table could not be found out: "));
        QCOMPARE(text_box().toPlainText(), "Text");
        QVERIFY(control<QLabel>(screen, "lbl_from").isVisible());
    }

    void after_the_wizards_fetch_the_auditor_opens_with_what_is_stored_then()
    {
        auditor_site site;
        site.deliver_mail("orders@shop.example", "Order A");
        session.fetch_then_wizard = true;
        the<mfetchinprogress_frm>().show_modal();
        QVERIFY(is_visible<mapWizardStep3_frm>());
        QVERIFY(!is_loaded<mailfrm>());
        site.store_mail("orders", "ann@mail.example", "Order B");
        stored_mails_shown();
        QCOMPARE(inbox_subjects(), (QStringList{"Order A", "Order B"}));
        QVERIFY(!control<QLabel>(the<mailfrm>(), "Label3").isVisible()); // nothing was fetched for it
    }

    void a_reports_list_stays_when_the_mails_changed()
    {
        auditor_site site;
        site.store_mails(2);
        site.store_sent("cat@mail.example", "Thanks");
        mailfrm &screen = sent_mails_shown();
        screen.show_sent_mails({});
        delete_elsewhere(site, "message_id=1");
        screen.Activate();
        QCOMPARE(control<list_view>(screen, "LV_sub_si").model()->rowCount(), 0);
        control<QToolButton>(screen, "inbox_b").click();
        QCOMPARE(inbox_subjects(), QStringList{"Order 1"});
    }
};

QTEST_MAIN(auditor_renewal_test)
#include "auditor_renewal_test.moc"
