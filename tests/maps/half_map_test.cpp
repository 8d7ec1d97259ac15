// A save that fails leaves exactly what was written before; such a map takes no mail and ends no pass.
#include "intake/fit_reasons.h"
#include "intake/map_parser.h"
#include "maps/map_writing.h"
#include "support/wizard_site.h"

#include <QtTest/QTest>

namespace {

const QString unprocessed = "select message_id from orders where tsl_processed=no";

// The store's error number, 0 when the save went through.
quint32 failure_of_save(const QString &name)
{
    try {
        maps::write_map(name);
    } catch (const run_time_error &error) {
        return error.number;
    }
    return 0;
}

// A mail that fits, a whole map behind the half one, and both passes: the whole map takes it, nothing is logged.
void the_passes_go_on(wizard_site &site, const QString &half_map)
{
    site.add_map("whole_map", 1, "Order", "Line", {{"everything", "Line1", "", true}});
    site.add_stored_mail("orders", "Order", "one\r\ntwo\r\nthree");
    intake::remap_account_mails("orders", half_map);
    QCOMPARE(site.column(unprocessed), QStringList{"1"});
    intake::parse_unprocessed_mails();
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.column("select everything from whole_map"), QStringList{"one"});
    QCOMPARE(site.column(unprocessed), QStringList());
    const auto reasons = intake::fit_reasons("orders", 1);
    QCOMPARE(reasons.size(), size_t(2));
    QCOMPARE(reasons[0].map, half_map);
    QVERIFY(!reasons[0].reason.isEmpty());
    QCOMPARE(reasons[1].reason, QString());
}

}

class half_map_test : public QObject {
    Q_OBJECT
private slots:
    void names_whose_table_cannot_be_made_data();
    void names_whose_table_cannot_be_made();
    void a_field_called_like_a_fixed_column_data();
    void a_field_called_like_a_fixed_column();
    void the_fields_behind_the_failing_one_are_not_written();
    void a_code_that_is_too_long();
    void a_subject_that_is_too_long_leaves_nothing();
    void a_field_name_that_is_too_long();
    void a_half_maps_name_is_taken();
    void a_failed_save_keeps_the_name_of_the_one_before();
};

void half_map_test::names_whose_table_cannot_be_made_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("Select") << "Select";
    QTest::newRow("Query") << "Query";
    QTest::newRow("an account's table") << "orders";
    QTest::newRow("a fixed table") << "email_tbl";
    QTest::newRow("the model") << "model_tbl";
}

void half_map_test::names_whose_table_cannot_be_made()
{
    QFETCH(QString, name);
    wizard_site site;
    site.add_field("city", 1);
    const QStringList accounts = site.rows("select * from email_tbl");
    const QStringList columns = site.columns_of("orders");
    QCOMPARE(failure_of_save(name), quint32(ado::syntax_error));
    QCOMPARE(site.rows("select table_id,table_name,query_id,lastformat from table_list_tbl"),
             QStringList{"1|" + name + "|1|True"});
    QCOMPARE(site.column("select id from format_tbl"), QStringList());
    QCOMPARE(site.rows("select * from email_tbl"), accounts);
    QCOMPARE(site.columns_of("orders"), columns);
    the_passes_go_on(site, name);
}

void half_map_test::a_field_called_like_a_fixed_column_data()
{
    QTest::addColumn<QString>("field");
    for (const char *field : {"tsl_email", "TSL_SUBJECT", "message_id", "tsl_recdate", "tsl_Status"})
        QTest::newRow(field) << QString(field);
}

void half_map_test::a_field_called_like_a_fixed_column()
{
    QFETCH(QString, field);
    wizard_site site;
    site.add_field(field, 1);
    site.add_field("city", 2);
    QCOMPARE(failure_of_save("customers"), quint32(ado::column_exists));
    QCOMPARE(site.rows("select id,fname,table_id from format_tbl"), (QStringList{"1|city|1", "2|" + field + "|1"}));
    QCOMPARE(site.columns_of("customers").mid(5), QStringList{"city"});
    the_passes_go_on(site, "customers");
    QCOMPARE(site.column("select message_id from customers"), QStringList()); // no half row either
}

void half_map_test::the_fields_behind_the_failing_one_are_not_written()
{
    wizard_site site;
    site.add_field("first_added", 1);
    site.add_field("tsl_email", 2);
    site.add_field("last_added", 3);
    QCOMPARE(failure_of_save("customers"), quint32(ado::column_exists));
    QCOMPARE(site.column("select fname from format_tbl"), (QStringList{"last_added", "tsl_email"}));
    QCOMPARE(site.columns_of("customers").mid(5), QStringList{"last_added"});
    the_passes_go_on(site, "customers");
}

void half_map_test::a_code_that_is_too_long()
{
    wizard_site site;
    site.add_field("first_added", 1);
    site.add_coded_field("colour", 2, {"red", QString(256, u'x'), "blue"}, {"r", "x", "b"});
    QCOMPARE(failure_of_save("customers"), quint32(ado::value_too_long));
    QCOMPARE(site.column("select fname from format_tbl"), QStringList{"colour"});
    QCOMPARE(site.column("select fieldCODE from fcodes_tbl"), QStringList{"r"});
    QCOMPARE(site.columns_of("customers").mid(5), QStringList());
    the_passes_go_on(site, "customers");
}

void half_map_test::a_subject_that_is_too_long_leaves_nothing()
{
    wizard_site site("Line", QString(256, u's'));
    site.add_field("city", 1);
    QCOMPARE(failure_of_save("customers"), quint32(ado::value_too_long));
    QCOMPARE(site.column("select count(*) from table_list_tbl"), QStringList{"0"});
    QCOMPARE(site.column("select count(*) from format_tbl"), QStringList{"0"});
    QVERIFY_EXCEPTION_THROWN(site.columns_of("customers"), run_time_error);
    maps::map_wizard.map_subject = QString(255, u's');
    QCOMPARE(failure_of_save("customers"), quint32(0));
}

// The store keeps nothing that tells this map from a whole one with one field less.
void half_map_test::a_field_name_that_is_too_long()
{
    wizard_site site;
    site.add_field(QString(256, u'f'), 1);
    site.add_field("city", 2);
    QCOMPARE(failure_of_save("customers"), quint32(ado::value_too_long));
    QCOMPARE(site.column("select fname from format_tbl"), QStringList{"city"});
    QCOMPARE(site.columns_of("customers").mid(5), QStringList{"city"});
}

void half_map_test::a_half_maps_name_is_taken()
{
    wizard_site site;
    site.add_field("city", 1);
    QVERIFY(failure_of_save("Select") != 0);
    QString name = "SELECT";
    QVERIFY(maps::why_no_map_name(name)->message.startsWith("This map already exists."));
}

void half_map_test::a_failed_save_keeps_the_name_of_the_one_before()
{
    wizard_site site;
    site.add_field("city", 1);
    QCOMPARE(failure_of_save("customers"), quint32(0));
    QVERIFY(failure_of_save("Select") != 0);
    QCOMPARE(maps::map_wizard.map_name, QString("customers"));
}

QTEST_GUILESS_MAIN(half_map_test)
#include "half_map_test.moc"
