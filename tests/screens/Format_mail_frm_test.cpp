// The preferences page "Map mails": the raw mails of an account, deleting them, and the way to mapmail_frm.
#include "frame/session.h"
#include "maps/map_wizard.h"
#include "platform/settings.h"
#include "screens/exact_text.h"
#include "screens/list_view.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "screens/maps/mapmail_frm.h"
#include "screens/preferences/Format_mail_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QComboBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTest>

namespace {

void store_mail(screens_site &site, const QString &table, const QString &subject, const QString &date,
                const QString &body = "Name: Zoe")
{
    site.store.run("insert into " + table + " (tsl_subject,tsl_recdate,tsl_Email,tsl_status,tsl_body) values('" +
                   subject + "','" + date + "','zoe@home.example','new','" + body + "')");
}

QStringList shown_subjects(const list_view &list)
{
    QStringList texts;
    for (int row = 0; row < list.model()->rowCount(); ++row)
        texts += list.model()->index(row, 1).data().toString();
    return texts;
}

void click_head(list_view &list, int column)
{
    QHeaderView &head = *list.header();
    const QPoint middle(head.sectionViewportPosition(column) + head.sectionSize(column) / 2, head.height() / 2);
    QTest::mouseClick(head.viewport(), Qt::LeftButton, {}, middle);
}

Format_mail_frm &page_shown(const char *account = nullptr)
{
    the<Format_mail_frm>().show();
    if (account)
        control<QComboBox>(the<Format_mail_frm>(), "query_c").setCurrentText(account);
    return the<Format_mail_frm>();
}

void select_rows(list_view &list, const QList<int> &rows)
{
    list.clearSelection();
    for (const int row : rows)
        list.selectionModel()->select(list.model()->index(row, 0),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

// The table of the account goes while its message is shown.
struct table_taken_away : message_service {
    explicit table_taken_away(screens_site &of) : site(of) { set_message_service(this); }
    ~table_taken_away() override { set_message_service(&site.boxes); }
    std::optional<QString> show(const message_box &box) override
    {
        site.store.run("drop table orders");
        return site.boxes.show(box);
    }
    screens_site &site;
};

// The first mail of that account, and the button.
void open_fields_of(const char *account)
{
    Format_mail_frm &page = page_shown(account);
    select_rows(control<list_view>(page, "inbox_lv"), {0});
    control<QPushButton>(page, "open_b").click();
}

}

class Format_mail_frm_test : public QObject {
    Q_OBJECT
private slots:
    void the_list_of_accounts_begins_with_a_heading()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        site.store.add_account("contact", "hello@shop.example");
        auto &accounts = control<QComboBox>(page_shown(), "query_c");
        QCOMPARE(accounts.count(), 3);
        QCOMPARE(accounts.itemText(0), "Select the query");
        QCOMPARE(accounts.itemText(1), "orders");
        QCOMPARE(accounts.itemText(2), "contact");
        QCOMPARE(accounts.currentIndex(), 0);
    }

    void choosing_an_account_lists_its_mails_and_no_others()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        site.store.add_account("contact", "hello@shop.example");
        store_mail(site, "orders", "Order 1", "1/2/2026 3:04:05 PM");
        store_mail(site, "contact", "Hello", "1/3/2026 3:04:05 PM");
        auto &list = control<list_view>(page_shown("orders"), "inbox_lv");
        QCOMPARE(shown_subjects(list), QStringList{"Order 1"});
        QCOMPARE(list.model()->headerData(0, Qt::Horizontal).toString(), "From");
        QCOMPARE(list.model()->headerData(1, Qt::Horizontal).toString(), "Subject");
        QCOMPARE(list.model()->headerData(2, Qt::Horizontal).toString(), "Received");
        QCOMPARE(list.model()->index(0, 0).data().toString(), "zoe@home.example");
        QCOMPARE(list.model()->index(0, 2).data().toString(), "1/2/2026 3:04:05 PM");
    }

    void an_account_renamed_since_is_listed_from_its_own_table()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "Order 1", "1/2/2026 3:04:05 PM");
        site.store.run("update email_tbl set query='sales' where query='orders'");
        QCOMPARE(shown_subjects(control<list_view>(page_shown("sales"), "inbox_lv")), QStringList{"Order 1"});
    }

    void a_click_shows_the_body()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "Order 1", "1/2/2026 3:04:05 PM", "Name: Jo");
        Format_mail_frm &page = page_shown("orders");
        select_rows(control<list_view>(page, "inbox_lv"), {0});
        QCOMPARE(control<exact_text>(page, "body_t").text(), "Name: Jo");
    }

    void received_sorts_as_a_date()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "ninth", "1/9/2026 3:04:05 PM");
        store_mail(site, "orders", "tenth", "1/10/2026 3:04:05 AM");
        store_mail(site, "orders", "last year", "12/31/2025 3:04:05 AM");
        auto &list = control<list_view>(page_shown("orders"), "inbox_lv");
        click_head(list, 2);
        QCOMPARE(shown_subjects(list), (QStringList{"last year", "ninth", "tenth"}));
        click_head(list, 2);
        QCOMPARE(shown_subjects(list), (QStringList{"tenth", "ninth", "last year"}));
        QCOMPARE(list.model()->headerData(2, Qt::Horizontal, Qt::WhatsThisRole).toString(), "key2");
        QCOMPARE(list.model()->headerData(0, Qt::Horizontal, Qt::WhatsThisRole).toString(), "keynone");
    }

    void delete_takes_all_selected_mails_also_of_a_sorted_list()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        for (const char *subject : {"b", "d", "a", "c"})
            store_mail(site, "orders", subject, "1/2/2026 3:04:05 PM");
        Format_mail_frm &page = page_shown("orders");
        auto &list = control<list_view>(page, "inbox_lv");
        click_head(list, 1);
        select_rows(list, {0, 2}); // a and c
        control<QPushButton>(page, "delete_l").click();
        QCOMPARE(site.boxes.shown, QStringList{"2 mails were deleted."});
        QCOMPARE(shown_subjects(list), (QStringList{"b", "d"}));
        QCOMPARE(site.store.column("select tsl_subject from orders"), (QVariantList{"b", "d"}));
    }

    void deleting_raw_mails_leaves_rows_already_parsed_into_map_tables()
    {
        screens_site site;
        const qint64 account = site.store.add_account("orders", "orders@shop.example");
        site.store.add_map("clients", account, "Order", {{"first_name"}});
        store_mail(site, "orders", "Order", "1/2/2026 3:04:05 PM");
        site.store.run("insert into clients (tsl_subject,tsl_Email,tsl_status,first_name) "
                       "values('Order','zoe@home.example','new','Zoe')");
        Format_mail_frm &page = page_shown("orders");
        select_rows(control<list_view>(page, "inbox_lv"), {0});
        control<QPushButton>(page, "delete_l").click();
        QCOMPARE(site.rows_of("orders"), 0);
        QCOMPARE(site.rows_of("clients"), 1);
    }

    void mails_that_were_deleted_are_not_called_undeleted_when_the_list_fails()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "Order 1", "1/2/2026 3:04:05 PM");
        Format_mail_frm &page = page_shown("orders");
        select_rows(control<list_view>(page, "inbox_lv"), {0});
        const table_taken_away boxes(site);
        control<QPushButton>(page, "delete_l").click();
        QCOMPARE(site.boxes.shown, QStringList{"The mail was deleted."});
        QCOMPARE(session.err_routine, "delete_l_Click");
        QCOMPARE(site.status_lines.size(), 1);
        QVERIFY(site.status_lines[0].startsWith("The mails were deleted. Those that are left cannot be shown: "));
    }

    void nothing_can_be_deleted_before_something_is_selected()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "Order 1", "1/2/2026 3:04:05 PM");
        Format_mail_frm &page = page_shown("orders");
        QVERIFY(!control<QPushButton>(page, "delete_l").isEnabled());
        select_rows(control<list_view>(page, "inbox_lv"), {0});
        QVERIFY(control<QPushButton>(page, "delete_l").isEnabled());
        control<QComboBox>(page, "query_c").setCurrentIndex(0);
        QVERIFY(!control<QPushButton>(page, "delete_l").isEnabled());
        QCOMPARE(site.rows_of("orders"), 1);
    }

    void open_wants_a_mail()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        control<QPushButton>(page_shown("orders"), "open_b").click();
        QCOMPARE(site.boxes.shown, QStringList{"Please select a mail"});
        QVERIFY(is_visible<Format_mail_frm>());
        QVERIFY(!is_loaded<mapmail_frm>());
    }

    void open_records_the_mail_and_shows_its_fields_and_returns()
    {
        screens_site site;
        site.store.add_account("other", "other@shop.example");
        const qint64 account = site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "Order 1", "1/2/2026 3:04:05 PM");
        store_mail(site, "orders", "Order 2", "1/2/2026 3:04:06 PM");
        Format_mail_frm &page = page_shown("orders");
        select_rows(control<list_view>(page, "inbox_lv"), {1});
        control<QPushButton>(page, "open_b").click();
        QCOMPARE(maps::map_wizard.mail_table, "orders");
        QCOMPARE(maps::map_wizard.mail_id, "2");
        QCOMPARE(maps::map_wizard.map_subject, "Order 2");
        QCOMPARE(maps::map_wizard.account_id, QString::number(account));
        QVERIFY(is_visible<mapmail_frm>());
        QVERIFY(!is_loaded<Format_mail_frm>());
        control<QPushButton>(the<mapmail_frm>(), "Command2").click();
        QVERIFY(!is_loaded<mapmail_frm>());
        QVERIFY(is_visible<Format_mail_frm>());
    }

    void open_shows_the_mail_of_another_account_though_one_is_still_shown()
    {
        screens_site site;
        site.store.add_map("clients", site.store.add_account("orders", "orders@shop.example"), "Order", {});
        site.store.add_map("guests", site.store.add_account("contact", "hello@shop.example"), "Hello", {});
        store_mail(site, "orders", "Order", "1/2/2026 3:04:05 PM", "Name: Jo");
        store_mail(site, "contact", "Hello", "1/3/2026 3:04:05 PM", "Name: Ann");
        open_fields_of("orders");
        open_fields_of("contact");
        QCOMPARE(control<exact_text>(the<mapmail_frm>(), "Text1").text(), "Name: Ann");
        QCOMPARE(control<QComboBox>(the<mapmail_frm>(), "sformats_c").count(), 2);
        QCOMPARE(control<QComboBox>(the<mapmail_frm>(), "sformats_c").itemText(1), "guests");
        QVERIFY(is_visible<mapmail_frm>());
    }

    void open_records_nothing_while_the_wizard_is_open()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        site.store.add_account("other", "other@shop.example");
        store_mail(site, "orders", "Order 1", "1/2/2026 3:04:05 PM", "City: Bath");
        store_mail(site, "other", "Other", "1/2/2026 3:04:06 PM");
        maps::map_wizard = {};
        maps::map_wizard.mail_table = "orders";
        maps::map_wizard.mail_id = "1";
        maps::map_wizard.account_id = "1";
        maps::map_wizard.map_subject = "Order 1";
        the<MapWizardStep4_frm>().show();
        control<QPushButton>(the<MapWizardStep4_frm>(), "next_b").click(); // to the fields
        Format_mail_frm &page = page_shown("other");
        select_rows(control<list_view>(page, "inbox_lv"), {0});
        control<QPushButton>(page, "open_b").click();
        QCOMPARE(site.boxes.shown, QStringList{"The Mail Mapping Wizard is open. Finish or quit it first."});
        QCOMPARE(maps::map_wizard.mail_table, "orders");
        QCOMPARE(maps::map_wizard.mail_id, "1");
        QCOMPARE(maps::map_wizard.account_id, "1");
        QCOMPARE(maps::map_wizard.map_subject, "Order 1");
        QVERIFY(!is_loaded<mapmail_frm>());
        QVERIFY(is_visible<Format_mail_frm>());
        QVERIFY(is_visible<MapWizardStep4_frm>());
        maps::map_wizard = {};
    }

    void a_table_that_cannot_be_read_is_logged_and_said()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        site.store.run("drop table orders");
        Format_mail_frm &page = page_shown("orders");
        QCOMPARE(control<list_view>(page, "inbox_lv").model()->rowCount(), 0);
        QCOMPARE(session.err_form, "Format_mail_frm.frm");
        QCOMPARE(session.err_routine, "query_c_click");
        QCOMPARE(site.last_logged(), "Format_mail_frm.frm|query_c_click");
        QCOMPARE(site.status_lines.size(), 1);
    }

    void accounts_that_cannot_be_read_are_logged()
    {
        screens_site site;
        site.store.run("drop table email_tbl");
        auto &accounts = control<QComboBox>(page_shown(), "query_c");
        QCOMPARE(site.last_logged(), "Format_mail_frm.frm|Form_load");
        QCOMPARE(accounts.count(), 1);
    }

    void a_table_that_went_meanwhile_is_logged_at_each_click()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        store_mail(site, "orders", "Order 1", "1/2/2026 3:04:05 PM");
        Format_mail_frm &page = page_shown("orders");
        site.store.run("drop table orders");
        select_rows(control<list_view>(page, "inbox_lv"), {0});
        QCOMPARE(site.last_logged(), "Format_mail_frm.frm|inbox_lv_itemclick");
        QCOMPARE(control<exact_text>(page, "body_t").text(), "");
        control<QPushButton>(page, "delete_l").click();
        QCOMPARE(site.last_logged(), "Format_mail_frm.frm|delete_l_Click");
        QVERIFY(site.status_lines.last().startsWith("The mails could not be deleted: "));
        QCOMPARE(site.boxes.shown, QStringList());
    }
};

QTEST_MAIN(Format_mail_frm_test)
#include "Format_mail_frm_test.moc"
