// The Mail Mapping Wizard's list of sample mails: what is in it, its order, the choice, and what is there without mail.
#include "screens/exact_text.h"
#include "screens/frame/menuFrm.h"
#include "screens/list_view.h"
#include "screens/maps/MapWizardStep2_frm.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "screens/maps/mapWizardStep3_frm.h"
#include "screens/preferences/mail_client_frm.h"
#include "support/screens_map_wizard.h"

#include <QFrame>
#include <QHeaderView>
#include <QLabel>
#include <QTest>

namespace {

using step3 = mapWizardStep3_frm;

list_view &mails()
{
    return control<list_view>(the<step3>(), "inbox_lv");
}

QStringList column(int index)
{
    QStringList cells;
    for (int row = 0; row < mails().model()->rowCount(); ++row)
        cells += mails().model()->index(row, index).data().toString();
    return cells;
}

QStringList heads(int role)
{
    QStringList texts;
    for (int index = 0; index < mails().model()->columnCount(); ++index)
        texts += mails().model()->headerData(index, Qt::Horizontal, role).toString();
    return texts;
}

void click_head(int index)
{
    const QHeaderView &header = *mails().header();
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                      {header.sectionViewportPosition(index) + header.sectionSize(index) / 2, header.height() / 2});
}

}

class map_wizard_sample_test : public QObject {
    Q_OBJECT
private slots:
    void all_mails_of_all_accounts_are_listed_processed_or_not()
    {
        map_wizard_site site;
        site.store.add_account("contact", "hello@shop.example");
        site.store_mail("contact", "Hello", "Text");
        site.store.run("update orders set tsl_processed=yes where message_id=1");
        the<step3>().show();
        QCOMPARE(the<step3>().windowTitle(), "Map mails Wizard-Step2");
        QCOMPARE(heads(Qt::DisplayRole),
                 (QStringList{"To", "Subject", "Received", "From", "message_id", "table_name", "account id"}));
        QCOMPARE(column(0), (QStringList{"orders@shop.example", "orders@shop.example", "orders@shop.example",
                                         "orders@shop.example", "hello@shop.example"}));
        QCOMPARE(column(1), (QStringList{"Order", "Order", "Which roses?", "order ", "Hello"}));
        QCOMPARE(column(2).first(), "8/13/2026 10:00:00 AM");
        QCOMPARE(column(3).last(), "ann@mail.example");
        QCOMPARE(column(4), (QStringList{"1", "2", "3", "4", "1"}));
        QCOMPARE(column(5).last(), "contact");
        QVERIFY(control<QFrame>(the<step3>(), "Frame2").isVisible());
        QVERIFY(!control<QLabel>(the<step3>(), "Label4").isVisible());
    }

    void the_dates_sort_as_dates_and_the_second_click_reverses()
    {
        map_wizard_site site;
        the<step3>().show();
        QCOMPARE(heads(Qt::WhatsThisRole), QStringList(7, "keynone"));
        click_head(2);
        QCOMPARE(column(4), (QStringList{"3", "2", "1", "4"})); // 12/1/2025, 8/9, 8/13, 8/14/2026
        QCOMPARE(heads(Qt::WhatsThisRole),
                 (QStringList{"keynone", "keynone", "key1", "keynone", "keynone", "keynone", "keynone"}));
        click_head(2);
        QCOMPARE(column(4), (QStringList{"4", "1", "2", "3"}));
        QCOMPARE(heads(Qt::WhatsThisRole)[2], "key2");
        click_head(3);
        QCOMPARE(column(3),
                 (QStringList{"ann@mail.example", "bob@mail.example", "eve@mail.example", "kim@mail.example"}));
        QCOMPARE(heads(Qt::WhatsThisRole),
                 (QStringList{"keynone", "keynone", "keynone", "key1", "keynone", "keynone", "keynone"}));
    }

    void the_choice_follows_its_mail_when_the_list_is_sorted()
    {
        map_wizard_site site;
        the<step3>().show();
        mails().setCurrentIndex(mails().model()->index(1, 0)); // Bob's
        click_head(2);
        click_head(2);
        press<step3>("Open_b");
        QCOMPARE(maps::map_wizard.mail_id, "2");
    }

    void a_choice_shows_the_mail_and_is_remembered()
    {
        map_wizard_site site;
        the<step3>().show();
        QCOMPARE(control<exact_text>(the<step3>(), "body_t").text(), "");
        mails().setCurrentIndex(mails().model()->index(0, 0));
        QCOMPARE(control<exact_text>(the<step3>(), "body_t").text(), order_body);
        QCOMPARE(maps::map_wizard.mail_table, "orders");
        QCOMPARE(maps::map_wizard.mail_id, "1");
        QCOMPARE(maps::map_wizard.account_id, QString::number(site.account));
    }

    void opening_wants_a_chosen_mail()
    {
        map_wizard_site site;
        maps::map_wizard.mail_id = "1"; // of an earlier run
        the<step3>().show();
        press<step3>("Open_b");
        QCOMPARE(site.boxes.shown, QStringList{"Please select a mail"});
        QVERIFY(is_visible<step3>());
        QVERIFY(!is_loaded<MapWizardStep4_frm>());
    }

    void opening_keeps_the_subject_as_it_is_stored()
    {
        map_wizard_site site;
        choose_sample("order ");
        QCOMPARE(maps::map_wizard.map_subject, "order ");
        QVERIFY(!is_loaded<step3>());
        QVERIFY(is_visible<MapWizardStep4_frm>());
        QCOMPARE(control<exact_text>(the<MapWizardStep4_frm>(), "body_t").text(),
                 "Name: Kim\r\nCity: Ulm\r\nItem: Thyme\r\nQuantity: 1\r\n");
    }

    void back_leads_to_the_accounts()
    {
        map_wizard_site site;
        the<step3>().show();
        press<step3>("back_b");
        QVERIFY(!is_loaded<step3>());
        QVERIFY(is_visible<MapWizardStep2_frm>());
    }

    void without_mail_it_says_so_and_leads_to_the_mail_client()
    {
        map_wizard_site site;
        site.store.run("delete from orders");
        menuFrm console;
        console.show();
        the<step3>().show();
        QVERIFY(!control<QFrame>(the<step3>(), "Frame2").isVisible());
        QVERIFY(control<QLabel>(the<step3>(), "Label4").isVisible());
        QCOMPARE(control<QLabel>(the<step3>(), "Label4").text(),
                 "Tessaly could not find any mail in the your Outlook Inbox, and so no mail was fetched. Please ensure "
                 "you have configured your mail accounts in Outlook correctly and you have some mail in the Outlook "
                 "Inbox before continuing further. Click Cancel to exit the wizard");
        press<step3>("mail_client_b");
        QVERIFY(is_visible<mail_client_frm>());
        QCOMPARE(the<mail_client_frm>().focusWidget(), &control<QPushButton>(the<mail_client_frm>(), "test_b"));
        QVERIFY(is_visible<step3>());
    }

    void with_mail_or_without_each_state_has_its_focus()
    {
        map_wizard_site site;
        the<step3>().show();
        QCOMPARE(the<step3>().focusWidget(), &mails());
        the<step3>().unload();
        site.store.run("delete from orders");
        the<step3>().show();
        QCOMPARE(the<step3>().focusWidget(), &control<QPushButton>(the<step3>(), "mail_client_b"));
    }

    void an_account_without_its_table_is_logged()
    {
        map_wizard_site site;
        site.store.add_account("contact", "hello@shop.example");
        site.store_mail("contact", "Hello", "Text");
        site.store.run("drop table orders");
        the<step3>().show();
        QCOMPARE(session.err_form, "mapwizardstep3.frm");
        QCOMPARE(session.err_routine, "form load");
        QCOMPARE(column(1), QStringList{"Hello"});
        QVERIFY(control<QFrame>(the<step3>(), "Frame2").isVisible());
        QVERIFY(!control<QLabel>(the<step3>(), "Label4").isVisible());
        QCOMPARE(site.status_lines.size(), 1);
        QVERIFY(site.status_lines[0].startsWith("The mails of 1 account cannot be shown: "));
    }

    void where_nothing_can_be_read_the_inbox_is_not_blamed()
    {
        map_wizard_site site;
        site.store.add_account("contact", "hello@shop.example");
        site.store.run("drop table orders");
        site.store.run("drop table contact");
        the<step3>().show();
        QVERIFY(control<QFrame>(the<step3>(), "Frame2").isVisible());
        QVERIFY(!control<QLabel>(the<step3>(), "Label4").isVisible());
        QVERIFY(site.status_lines[0].startsWith("The mails of 2 accounts cannot be shown: "));
    }

    void a_mail_that_cannot_be_read_is_said()
    {
        map_wizard_site site;
        the<step3>().show();
        site.store.run("drop table orders");
        mails().setCurrentIndex(mails().model()->index(0, 0));
        QCOMPARE(session.err_routine, "inboxlv itemclick");
        QVERIFY(site.status_lines.last().startsWith("This mail cannot be shown: "));
        press<step3>("Open_b");
        QCOMPARE(site.boxes.shown, QStringList{"Please select a mail"});
    }

    void without_mail_back_is_the_default_button()
    {
        map_wizard_site site;
        the<step3>().show();
        QVERIFY(control<QPushButton>(the<step3>(), "Open_b").isDefault());
        QVERIFY(!control<QPushButton>(the<step3>(), "back_b").isDefault());
        the<step3>().unload();
        site.store.run("delete from orders");
        the<step3>().show();
        QVERIFY(!control<QPushButton>(the<step3>(), "Open_b").isDefault());
        QVERIFY(control<QPushButton>(the<step3>(), "back_b").isDefault());
    }

    void a_tag_in_a_subject_stays_text()
    {
        map_wizard_site site;
        site.store_mail("orders", "<b>loud</b>", "Text");
        the<step3>().show();
        QCOMPARE(mails().model()->index(4, 1).data(Qt::ToolTipRole).toString(), "<qt>&lt;b&gt;loud&lt;/b&gt;</qt>");
    }
};

QTEST_MAIN(map_wizard_sample_test)
#include "map_wizard_sample_test.moc"
