// Loading the Mail Auditor: it fetches and parses, or only shows what is stored, whatever fails.
#include "frame/session.h"
#include "frame/status.h"
#include "platform/settings.h"
#include "screens/frame/closing.h"
#include "support/screens_auditor.h"

#include <QFile>
#include <QLabel>
#include <QTest>

class mailfrm_load_test : public QObject {
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
};

QTEST_MAIN(mailfrm_load_test)
#include "mailfrm_load_test.moc"
