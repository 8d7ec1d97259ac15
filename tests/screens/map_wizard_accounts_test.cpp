// The Mail Mapping Wizard's list of accounts: changing one, message by message, and the fetch behind Next.
#include "screens/frame/menuFrm.h"
#include "screens/intake/mailfrm.h"
#include "screens/intake/mfetchinprogress_frm.h"
#include "screens/list_view.h"
#include "screens/maps/MapWizardStep2_frm.h"
#include "screens/maps/mapWizardStep3_frm.h"
#include "screens/preferences/Accounts.h"
#include "support/screens_map_wizard.h"

#include <QFile>
#include <QGroupBox>
#include <QLineEdit>
#include <QTest>

namespace {

const QString wrong_address = "E-mail id not in a proper format";
const QString wrong_name = "Invalid query name. Special characters, keywords not allowed";

list_view &account_list()
{
    return control<list_view>(the<MapWizardStep2_frm>(), "inbox_lv");
}

QStringList listed()
{
    QStringList rows;
    for (int row = 0; row < account_list().model()->rowCount(); ++row)
        rows += account_list().model()->index(row, 0).data().toString() + " " +
                account_list().model()->index(row, 1).data().toString();
    return rows;
}

bool editing()
{
    return control<QGroupBox>(the<MapWizardStep2_frm>(), "edit_fr").isVisible();
}

void edit(int row)
{
    account_list().setCurrentIndex(account_list().model()->index(row, 0));
    press<MapWizardStep2_frm>("Edit_b");
}

void change_to(const QString &query, const QString &email)
{
    type(the<MapWizardStep2_frm>(), "query_t", query);
    type(the<MapWizardStep2_frm>(), "email_t", email);
    press<MapWizardStep2_frm>("change_b");
}

// Two accounts listed, the first one being changed.
struct editing_site : map_wizard_site {
    editing_site()
    {
        store.add_account("contact", "hello@shop.example");
        the<MapWizardStep2_frm>().show();
        edit(0);
    }
};

}

class map_wizard_accounts_test : public QObject {
    Q_OBJECT
private slots:
    void every_account_is_listed()
    {
        map_wizard_site site;
        site.store.add_account("contact", "hello@shop.example");
        the<MapWizardStep2_frm>().show();
        QCOMPARE(listed(), (QStringList{"orders orders@shop.example", "contact hello@shop.example"}));
        QCOMPARE(account_list().model()->headerData(0, Qt::Horizontal).toString(), "Query");
        QCOMPARE(account_list().model()->headerData(1, Qt::Horizontal).toString(), "E-mail");
        QVERIFY(!editing());
    }

    void edit_wants_a_selected_account()
    {
        map_wizard_site site;
        the<MapWizardStep2_frm>().show();
        press<MapWizardStep2_frm>("Edit_b");
        QCOMPARE(site.boxes.shown, QStringList{"Please select an item from the list and click edit."});
        QVERIFY(!editing());
    }

    void edit_shows_the_account()
    {
        editing_site site;
        QVERIFY(editing());
        QCOMPARE(control<QLineEdit>(the<MapWizardStep2_frm>(), "query_t").text(), "orders");
        QCOMPARE(control<QLineEdit>(the<MapWizardStep2_frm>(), "email_t").text(), "orders@shop.example");
        QCOMPARE(control<QPushButton>(the<MapWizardStep2_frm>(), "change_b").text(), "&Save Changes");
    }

    void next_waits_until_the_change_is_saved_or_cancelled()
    {
        editing_site site;
        const auto next_works = [] { return control<QPushButton>(the<MapWizardStep2_frm>(), "next_b").isEnabled(); };
        QVERIFY(!next_works());
        press<MapWizardStep2_frm>("cancelc_b");
        QVERIFY(next_works());
        edit(0);
        QVERIFY(!next_works());
        change_to("sales", "sales@shop.example");
        QVERIFY(next_works());
    }

    void accounts_that_cannot_be_read_are_said()
    {
        map_wizard_site site;
        site.store.run("drop table email_tbl");
        the<MapWizardStep2_frm>().show();
        QCOMPARE(session.err_form, "mapwizardstep2.frm");
        QVERIFY(site.status_lines.last().startsWith("The accounts cannot be shown: "));
    }

    void the_first_fault_speaks_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("email");
        QTest::addColumn<QString>("message");
        QTest::newRow("no @, and a bad name") << "my-shop"
                                              << "orders.shop.example" << wrong_address;
        QTest::newRow("no full stop") << "shop"
                                      << "orders@example" << wrong_address;
        QTest::newRow("six characters") << "shop"
                                        << "a@b.de" << wrong_address;
        QTest::newRow("two @") << "shop"
                               << "a@b@shop.example" << wrong_address;
        QTest::newRow("an empty address") << ""
                                          << "" << wrong_address;
        QTest::newRow("no name") << ""
                                 << "sales@shop.example" << wrong_name;
        QTest::newRow("a hyphen, good on the accounts' own page") << "my-shop"
                                                                  << "sales@shop.example" << wrong_name;
        QTest::newRow("a full stop") << "my.shop"
                                     << "sales@shop.example" << wrong_name;
        QTest::newRow("a blank inside") << "my shop"
                                        << "sales@shop.example" << wrong_name;
        QTest::newRow("a digit first") << "1shop"
                                       << "sales@shop.example" << wrong_name;
        QTest::newRow("a bad name before a taken address") << "my-shop"
                                                           << "hello@shop.example" << wrong_name;
        QTest::newRow("the address of another account")
            << "shop"
            << "hello@shop.example"
            << "This e-mail id has already been configured for a query, please enter another e-mail id";
    }

    void the_first_fault_speaks()
    {
        QFETCH(QString, query);
        QFETCH(QString, email);
        QFETCH(QString, message);
        editing_site site;
        change_to(query, email);
        QCOMPARE(site.boxes.shown, QStringList{message});
        QVERIFY(editing());
        QCOMPARE(site.store.column("select query from email_tbl"), (QVariantList{"orders", "contact"}));
    }

    void a_good_change_is_stored_and_the_list_filled_anew()
    {
        editing_site site;
        change_to("sales", "sales@shop.example");
        QCOMPARE(site.boxes.shown, QStringList());
        QVERIFY(!editing());
        QCOMPARE(listed(), (QStringList{"sales sales@shop.example", "contact hello@shop.example"}));
        QCOMPARE(site.store.cell("select email from email_tbl where query='sales'"), "sales@shop.example");
        QCOMPARE(site.store.cell("select table_name from email_tbl where query='sales'"), "orders"); // never changes
        QCOMPARE(site.rows_of("email_tbl"), 2);
    }

    void a_name_loses_its_outer_blanks()
    {
        editing_site site;
        change_to("  sales ", "sales@shop.example");
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(site.store.cell("select query from email_tbl where email='sales@shop.example'"), "sales");
    }

    void a_reserved_word_is_a_good_name_here()
    {
        editing_site site;
        change_to("Query", "sales@shop.example");
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(listed().first(), "Query sales@shop.example");
    }

    void its_own_address_is_no_other_accounts()
    {
        editing_site site;
        change_to("sales", "orders@shop.example");
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(listed().first(), "sales orders@shop.example");
    }

    void cancel_leaves_the_account_as_it_is()
    {
        editing_site site;
        type(the<MapWizardStep2_frm>(), "query_t", "sales");
        press<MapWizardStep2_frm>("cancelc_b");
        QVERIFY(!editing());
        QCOMPARE(site.store.cell("select query from email_tbl"), "orders");
    }

    void escape_leaves_the_change_first_and_enter_saves_it()
    {
        editing_site site;
        QTest::keyClick(&control<QLineEdit>(the<MapWizardStep2_frm>(), "query_t"), Qt::Key_Escape);
        QVERIFY(!editing());
        QVERIFY(is_visible<MapWizardStep2_frm>());
        edit(0);
        type(the<MapWizardStep2_frm>(), "query_t", "sales");
        QTest::keyClick(&control<QLineEdit>(the<MapWizardStep2_frm>(), "query_t"), Qt::Key_Return);
        QCOMPARE(listed().first(), "sales orders@shop.example");
    }

    void a_failing_change_is_logged_and_told_in_the_status_bar()
    {
        editing_site site;
        site.store.run("drop table email_tbl");
        change_to("sales", "sales@shop.example");
        QCOMPARE(session.err_form, "mapwizardstep2.frm");
        QCOMPARE(site.status_lines.size(), 1);
        QVERIFY(site.status_lines[0].startsWith("The account was not changed: "));
    }

    void a_change_of_an_account_that_is_gone_is_refused()
    {
        editing_site site;
        site.store.run("update email_tbl set query='shop' where query='orders'");
        change_to("sales", "sales@shop.example");
        QCOMPARE(site.boxes.shown, QStringList{"The account orders is not there any more. The list is filled anew."});
        QCOMPARE(listed(), (QStringList{"shop orders@shop.example", "contact hello@shop.example"}));
        QVERIFY(!editing());
    }

    void accounts_changed_meanwhile_are_listed_when_the_step_comes_to_the_front()
    {
        map_wizard_site site;
        site.store.add_account("contact", "hello@shop.example");
        menuFrm console;
        console.show();
        the<MapWizardStep2_frm>().show();
        edit(1);
        type(the<MapWizardStep2_frm>(), "query_t", "garden");
        the<Accounts>().show();
        site.store.run("update email_tbl set query='shop' where query='orders'");
        the<MapWizardStep2_frm>().show();
        QCOMPARE(listed(), (QStringList{"shop orders@shop.example", "contact hello@shop.example"}));
        QCOMPARE(account_list().currentIndex().row(), 1);
        QVERIFY(editing());
        press<MapWizardStep2_frm>("change_b");
        QCOMPARE(listed(), (QStringList{"shop orders@shop.example", "garden hello@shop.example"}));
        QCOMPARE(site.boxes.shown, QStringList());
        forget_screens();
    }

    void next_fetches_and_opens_the_sample_mails()
    {
        map_wizard_site site;
        site.deliver_mail("orders@shop.example", "Fresh");
        menuFrm console;
        console.show();
        session.no_fetch = true; // the Mail Auditor was looked at before
        the<MapWizardStep2_frm>().show();
        press<MapWizardStep2_frm>("next_b");
        QCOMPARE(site.rows_of("orders"), 5);
        QVERIFY(is_visible<mapWizardStep3_frm>());
        QVERIFY(!is_loaded<MapWizardStep2_frm>());
        QVERIFY(!is_loaded<mfetchinprogress_frm>());
        QVERIFY(!is_visible<mailfrm>());
        QVERIFY(!session.fetch_then_wizard);
        QVERIFY(console.cursor().shape() != Qt::WaitCursor);
        QVERIFY(QFile::exists(site.file("fetchmailanimation.html")));
    }

    void the_page_has_the_colour_of_the_screen()
    {
        map_wizard_site site;
        QPalette colours;
        colours.setColor(QPalette::Window, QColor(0x12, 0xab, 0xef));
        the<MapWizardStep2_frm>().setPalette(colours);
        the<MapWizardStep2_frm>().show();
        press<MapWizardStep2_frm>("next_b");
        QFile page(site.file("fetchmailanimation.html"));
        QVERIFY(page.open(QIODevice::ReadOnly));
        QCOMPARE(page.readAll(),
                 QByteArray("<html> <body bgcolor=12ABEF leftmargin=0 topmargin=0 marginwidth=0 marginheight=0> "
                            "<img src=otl-to-tsl.gif></body></html>"));
    }
};

QTEST_MAIN(map_wizard_accounts_test)
#include "map_wizard_accounts_test.moc"
