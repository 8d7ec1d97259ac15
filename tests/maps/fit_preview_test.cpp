// How many stored mails the map under construction would take: what the save then does.
#include "maps/fit_preview.h"
#include "maps/map_writing.h"
#include "support/wizard_site.h"

#include <QtTest/QTest>

class fit_preview_test : public QObject {
    Q_OBJECT
private slots:
    void the_count_is_what_the_save_takes_data();
    void the_count_is_what_the_save_takes();
    void mails_of_other_accounts_are_not_counted();
    void processed_mails_count();
    void nothing_is_written();
    void a_map_that_cannot_be_saved_whole_takes_nothing();
    void no_fields_take_nothing();
};

void fit_preview_test::the_count_is_what_the_save_takes_data()
{
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QStringList>("bodies");
    QTest::addColumn<int>("fits");
    QTest::newRow("lines") << "Line" << QStringList{"City:"}
                           << QStringList{"x\r\nCity: Rome", "x\r\nCITY: Oslo", "x\r\nTown: Bonn", "City: Rome"} << 2;
    QTest::newRow("lines that end in LF alone are one piece") << "Line" << QStringList{} << QStringList{"x\ny"} << 0;
    QTest::newRow("a separator") << ";" << QStringList{} << QStringList{"a;b", "a,b", "a;"} << 2;
    QTest::newRow("Tab fits no tab") << "Tab" << QStringList{} << QStringList{"a\tb", "aTabb"} << 1;
    QTest::newRow("the outer blanks of a text are lost at the save, so more fits")
        << "Line" << QStringList{"City: "} << QStringList{"x\r\nCity:Rome"} << 1;
    QTest::newRow("the inner ones stay") << "Line" << QStringList{"City", ": ", "e"}
                                         << QStringList{"x\r\nCity:Rome", "x\r\nCity: Rome"} << 1;
    QTest::newRow("a text with @@@ is two texts")
        << "Line" << QStringList{"a@@@b"} << QStringList{"x\r\na@@@b", "x\r\nb a", "x\r\na"} << 2;
    QTest::newRow("the same text twice can never be there twice")
        << "Line" << QStringList{":", ":"} << QStringList{"x\r\na:b:c"} << 0;
    QTest::newRow("no mail at all") << "Line" << QStringList{} << QStringList{} << 0;
}

void fit_preview_test::the_count_is_what_the_save_takes()
{
    QFETCH(QString, separator);
    QFETCH(QStringList, texts);
    QFETCH(QStringList, bodies);
    QFETCH(int, fits);
    wizard_site site(separator);
    for (const QString &body : bodies)
        site.add_stored_mail("orders", "Order", body);
    site.add_stored_mail("orders", "Other", "x\r\nCity: Rome");
    site.add_field("first_piece", 1);
    site.add_field("city", 2, texts);
    const maps::fit_count count = maps::count_fitting_mails();
    QCOMPARE(count.fits, fits);
    QCOMPARE(count.mails, int(bodies.size()) + 1);
    maps::write_map("customers");
    maps::bring_mails_over("customers");
    QCOMPARE(site.column("select count(*) from customers"), QStringList{QString::number(fits)});
}

void fit_preview_test::mails_of_other_accounts_are_not_counted()
{
    wizard_site site;
    site.add_account("shop", "shop@example.org");
    site.add_stored_mail("shop", "Order", "Rome");
    site.add_field("city", 1);
    QCOMPARE(maps::count_fitting_mails().mails, 0);
}

void fit_preview_test::processed_mails_count()
{
    wizard_site site;
    site.add_stored_mail("orders", "ORDER ", "Rome");
    site.run("update orders set tsl_processed=yes");
    site.add_field("city", 1);
    QCOMPARE(maps::count_fitting_mails().fits, 1);
}

void fit_preview_test::nothing_is_written()
{
    wizard_site site;
    site.add_stored_mail("orders", "Order", "Rome");
    site.add_field("city", 1);
    maps::count_fitting_mails();
    QCOMPARE(site.column("select count(*) from table_list_tbl"), QStringList{"0"});
    QCOMPARE(site.column("select count(*) from format_tbl"), QStringList{"0"});
    QCOMPARE(site.column("select message_id from orders where tsl_processed=no"), QStringList{"1"});
}

void fit_preview_test::a_map_that_cannot_be_saved_whole_takes_nothing()
{
    wizard_site site;
    site.add_stored_mail("orders", "Order", "Rome");
    site.add_field("tsl_email", 1);
    QCOMPARE(maps::count_fitting_mails().fits, 0);
    QCOMPARE(maps::count_fitting_mails().mails, 1);
}

void fit_preview_test::no_fields_take_nothing()
{
    wizard_site site;
    site.add_stored_mail("orders", "Order", "Rome");
    QCOMPARE(maps::count_fitting_mails().fits, 0);
}

QTEST_GUILESS_MAIN(fit_preview_test)
#include "fit_preview_test.moc"
