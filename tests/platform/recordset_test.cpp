// Recordsets: positions, values, adding, changing, deleting, and what later statements may do to an open one.
#include "platform/clock.h"
#include "support/statement_effects.h"
#include <QTest>

using ado::cursor_type;
using ado::lock_type;

class recordset_test : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        store = std::make_unique<test_store>();
        fill_sample_store(*store);
    }
    void cleanup() { store.reset(); }

    void a_mail_is_added_with_its_defaults();
    void a_map_row_takes_the_date_from_another_recordset();
    void a_mail_is_marked_on_the_open_row();
    void a_null_is_copied_as_null();
    void a_contact_is_added();
    void links_keep_the_order_of_adding();
    void a_tag_takes_its_text_on_the_open_row();
    void twin_rows_are_deleted_one_by_one();
    void positions();
    void no_rows();
    void fields_by_name_and_place();
    void a_read_only_one_refuses_changes();
    void closed_and_open();
    void values_that_do_not_fit_are_refused_at_once();
    void a_move_saves_the_changed_row();
    void a_change_can_be_taken_back();
    void counts();
    void later_writes_and_definitions_do_not_disturb();
    void a_long_recordset_keeps_its_rows_through_changes();
    void adding_a_row_reads_none_of_the_others();
    void a_closed_connection_closes_its_recordsets();

private:
    void open(ado::Recordset &rows, const QString &sql, bool changeable = false)
    {
        rows.Open(sql, store->connection(), changeable ? cursor_type::keyset : cursor_type::static_,
                  changeable ? lock_type::optimistic : lock_type::read_only);
    }
    std::unique_ptr<test_store> store;
};

void recordset_test::a_mail_is_added_with_its_defaults()
{
    ado::Recordset mails;
    open(mails, "select * from sales", true);
    mails.AddNew();
    mails.Fields("tsl_subject").set_value(QString("Order"));
    mails.Fields("tsl_recdate").set_value(QDateTime(QDate(2026, 8, 13), QTime(13, 2, 3), Qt::UTC));
    mails.Fields("tsl_Email").set_value(QString("a@b.org"));
    mails.Fields("tsl_Status").set_value(QString("new"));
    mails.Fields("tsl_body").set_value(QString(u"Straße\r\nÉ"_qs));
    mails.Update();
    QCOMPARE(mails["message_id"].to_number(), 4);
    QCOMPARE(mails["tsl_processed"], ado::Value(false));
    mails.Close();
    QCOMPARE(rows_of(*store, "select * from sales where message_id=4"),
             u"4|Order|8/13/2026 1:02:03 PM|a@b.org|new|Straße\r\nÉ|False"_qs);
}

void recordset_test::a_map_row_takes_the_date_from_another_recordset()
{
    ado::Recordset mails, map;
    open(mails, "select * from sales where tsl_processed=no");
    open(map, "select * from cust", true);
    map.AddNew();
    for (const char *name : {"tsl_subject", "tsl_recdate", "tsl_Email"})
        map.Fields(QString(name)).set_value(mails[QString(name)]);
    map.Fields("tsl_Status").set_value(QString("new"));
    map.Update();
    map.Close();
    QCOMPARE(rows_of(*store, "select * from cust where message_id=(select max(message_id) from cust)"),
             "4|Order|8/13/2026 1:02:03 PM|Ann Bee|new|-|-|-");
}

void recordset_test::a_mail_is_marked_on_the_open_row()
{
    ado::Recordset mails;
    open(mails, "select * from sales", true);
    mails.MoveNext();
    mails.MoveNext();
    mails.Fields("tsl_processed").set_value(true);
    mails.Update();
    QCOMPARE(mails["tsl_processed"], ado::Value(true));
    QCOMPARE(store->column("select tsl_processed from sales"), (QVariantList{"False", "True", "True"}));
}

void recordset_test::a_null_is_copied_as_null()
{
    ado::Recordset from, to;
    open(from, "select * from cust where message_id=3");
    open(to, "select * from cust", true);
    to.AddNew();
    to.Fields("city").set_value(from["first_name"]);
    to.Fields("email").set_value(from["city"]);
    to.Update();
    QVERIFY(to["city"].is_null());
    QCOMPARE(rows_of(*store, "select city,email from cust where message_id=4"), "-|Rome");
}

void recordset_test::a_contact_is_added()
{
    set_clock([] { return QDateTime(QDate(2026, 11, 21), QTime(1, 2, 3), Qt::UTC); });
    ado::Recordset contacts;
    open(contacts, "select * from cust", true);
    contacts.AddNew();
    contacts.Fields("city").set_value(QString("Rome"));
    contacts.Fields("tsl_recdate").set_value(now());
    contacts.Fields("tsl_status").set_value(QString("new"));
    contacts.Update();
    QCOMPARE(rows_of(*store, "select * from cust where message_id=4"), "4|-|11/21/2026 1:02:03 AM|-|new|Rome|-|-");
}

void recordset_test::links_keep_the_order_of_adding()
{
    ado::Recordset links;
    open(links, "select * from form_links_tbl", true);
    for (const char *name : {"Home", "About", "Contact"}) {
        links.AddNew();
        links.Fields("link_name").set_value(QString(name));
        links.Fields("link_file").set_value(QString(name) + ".htm");
        links.Update();
    }
    QCOMPARE(rows_of(*store, "select * from form_links_tbl"), "Home|Home.htm/About|About.htm/Contact|Contact.htm");
}

void recordset_test::a_tag_takes_its_text_on_the_open_row()
{
    ado::Recordset tag;
    open(tag, "select * from meta_tbl where meta_name like 'keywords'", true);
    tag.Fields("meta_desc").set_value(QString("shoes"));
    tag.Update();
    QCOMPARE(rows_of(*store, "select * from meta_tbl where meta_desc<>''"), "keywords|shoes");
}

void recordset_test::twin_rows_are_deleted_one_by_one()
{
    for (int i = 0; i < 3; ++i)
        store->run("insert into formula_tbl values('Jo','','','','','','','')");
    store->run("insert into formula_tbl values('Bee','','','','','','','')");
    ado::Recordset labels;
    open(labels, "select * from formula_tbl", true);
    labels.MoveNext();
    labels.Delete();
    QCOMPARE(error_number_of([&] { labels["formula1"]; }), quint32(ado::no_current_record));
    labels.MoveNext();
    QCOMPARE(labels["formula1"].to_text(), "Jo");
    QCOMPARE(labels.RecordCount(), 3);
    QCOMPARE(store->column("select formula1 from formula_tbl"), (QVariantList{"Jo", "Jo", "Bee"}));
    labels.MoveLast();
    labels.Delete();
    labels.MoveNext();
    QVERIFY(labels.EOF_());
}

void recordset_test::positions()
{
    ado::Recordset rows;
    open(rows, "select * from cust");
    QVERIFY(!rows.EOF_() && !rows.BOF());
    QCOMPARE(rows["message_id"].to_number(), 1);
    rows.MoveLast();
    QCOMPARE(rows["message_id"].to_number(), 3);
    rows.MoveNext();
    QVERIFY(rows.EOF_());
    QCOMPARE(error_number_of([&] { rows["city"]; }), quint32(ado::no_current_record));
    QCOMPARE(error_number_of([&] { rows.MoveNext(); }), quint32(ado::no_current_record));
    rows.MovePrevious();
    QCOMPARE(rows["message_id"].to_number(), 3);
    rows.MoveFirst();
    rows.MovePrevious();
    QVERIFY(rows.BOF() && !rows.EOF_());
    rows.MoveNext();
    QCOMPARE(rows["message_id"].to_number(), 1);
}

void recordset_test::no_rows()
{
    ado::Recordset rows;
    open(rows, "select * from orders");
    QVERIFY(rows.EOF_() && rows.BOF());
    QCOMPARE(rows.RecordCount(), 0);
    QCOMPARE(rows.field_count(), 7);
    QCOMPARE(error_number_of([&] { rows[0]; }), quint32(ado::no_current_record));
}

void recordset_test::fields_by_name_and_place()
{
    ado::Recordset rows;
    open(rows, "select * from cust");
    QCOMPARE(rows.Fields("TSL_RECDATE").Name(), "tsl_RecDate");
    QCOMPARE(rows.Fields(4).Name(), "tsl_status");
    QVERIFY(rows.Fields(0).Type() == ado::field_type::autonumber);
    QVERIFY(rows.Fields("tsl_recdate").Type() == ado::field_type::date);
    QVERIFY(rows.Fields("city").Type() == ado::field_type::text);
    QVERIFY(rows.Fields("tsl_subject").Type() == ado::field_type::memo);
    QCOMPARE(error_number_of([&] { rows.Fields("nowhere"); }), quint32(ado::no_such_field));
    QCOMPARE(error_number_of([&] { rows.Fields(8); }), quint32(ado::no_such_field));
    ado::Recordset page;
    open(page, "select * from htmlform_tbl");
    QCOMPARE(page.Fields("heading").Name(), "Heading");
}

void recordset_test::a_read_only_one_refuses_changes()
{
    ado::Recordset rows;
    open(rows, "select * from cust");
    const quint32 refused = ado::recordset_read_only;
    QCOMPARE(error_number_of([&] { rows.AddNew(); }), refused);
    QCOMPARE(error_number_of([&] { rows.Fields("city").set_value(QString("x")); }), refused);
    QCOMPARE(error_number_of([&] { rows.Delete(); }), refused);
    ado::Recordset sums;
    open(sums, "select count(*) from cust", true);
    QCOMPARE(error_number_of([&] { sums.AddNew(); }), refused);
}

void recordset_test::closed_and_open()
{
    ado::Recordset rows;
    QCOMPARE(rows.State(), 0);
    QCOMPARE(error_number_of([&] { rows.Close(); }), quint32(ado::object_closed));
    QCOMPARE(error_number_of([&] { rows.MoveNext(); }), quint32(ado::object_closed));
    open(rows, "select * from cust");
    QCOMPARE(rows.State(), 1);
    QCOMPARE(error_number_of([&] { open(rows, "select * from cust"); }), quint32(ado::object_open));
    rows.Close();
    open(rows, "select * from sales");
    QCOMPARE(rows["tsl_subject"].to_text(), "Order");
}

void recordset_test::values_that_do_not_fit_are_refused_at_once()
{
    ado::Recordset rows;
    open(rows, "select * from cust", true);
    rows.AddNew();
    QCOMPARE(error_number_of([&] { rows.Fields("tsl_recdate").set_value(QString()); }), quint32(ado::type_mismatch));
    QCOMPARE(error_number_of([&] { rows.Fields("city").set_value(QString(256, 'x')); }), quint32(ado::value_too_long));
    rows.Fields("city").set_value(QString(255, QChar(u'é')));
    rows.Update();
    QCOMPARE(store->cell("select city from cust where message_id=4"), QString(255, QChar(u'é')));
}

void recordset_test::a_move_saves_the_changed_row()
{
    ado::Recordset rows;
    open(rows, "select * from cust", true);
    rows.Fields("city").set_value(QString("Lyon"));
    rows.MoveNext();
    QCOMPARE(rows["message_id"].to_number(), 2);
    QCOMPARE(store->cell("select city from cust where message_id=1"), "Lyon");
}

void recordset_test::a_change_can_be_taken_back()
{
    ado::Recordset rows;
    open(rows, "select * from cust", true);
    rows.Fields("city").set_value(QString("Lyon"));
    QCOMPARE(rows["city"].to_text(), "Lyon");
    rows.CancelUpdate();
    QCOMPARE(rows["city"].to_text(), "Paris");
    rows.AddNew();
    rows.CancelUpdate();
    QCOMPARE(store->cell("select count(*) from cust"), "3");
}

void recordset_test::counts()
{
    ado::Recordset rows;
    rows.Open("select * from cust", store->connection(), cursor_type::forward_only);
    QCOMPARE(rows.RecordCount(), -1);
    QCOMPARE(rows["city"].to_text(), "Paris");
    rows.Close();
    open(rows, "select * from cust", true);
    QCOMPARE(rows.RecordCount(), 3);
    rows.AddNew();
    rows.Update();
    QCOMPARE(rows.RecordCount(), 4);
    QCOMPARE(rows["message_id"].to_number(), 4);
}

void recordset_test::later_writes_and_definitions_do_not_disturb()
{
    ado::Recordset fixed, live;
    open(fixed, "select * from cust");
    open(live, "select * from cust", true);
    QCOMPARE(live.RecordCount(), 3);
    store->run("update cust set city='Oslo'");
    store->run("alter table cust add column surname text(255)");
    QCOMPARE(live["city"].to_text(), "Oslo");
    store->run("drop table cust");
    QStringList cities;
    for (; !fixed.EOF_(); fixed.MoveNext())
        cities.append(fixed["city"].to_text());
    QCOMPARE(cities, (QStringList{"Paris", "paRma", "Rome"}));
}

void recordset_test::a_long_recordset_keeps_its_rows_through_changes()
{
    constexpr int many = 1300;
    for (int i = 0; i < many; ++i)
        store->run("insert into orders(tsl_subject,tsl_recdate,tsl_body) values('" + QString::number(i) +
                   "','8/13/2026','" + QString(200, 'x') + "')");
    ado::Recordset rows, sorted;
    open(rows, "select * from orders where tsl_processed=no");
    open(sorted, "select * from orders order by tsl_subject desc");
    QCOMPARE(rows.RecordCount(), many);
    rows.MoveNext();
    store->run("delete from orders where message_id>2");
    store->run("update orders set tsl_subject='changed', tsl_recdate=now");
    store->run("alter table orders add column extra text(10)");
    int at = 1;
    for (; !rows.EOF_(); rows.MoveNext())
        QCOMPARE(rows["tsl_subject"].to_text(), QString::number(at++));
    QCOMPARE(at, many);
    rows.MoveFirst();
    QCOMPARE(rows["tsl_recdate"].to_text(), "8/13/2026");
    QVERIFY(!rows["tsl_processed"].to_flag());
    sorted.MoveLast();
    QCOMPARE(sorted["tsl_subject"].to_text(), "0");
    sorted.MoveFirst();
    QCOMPARE(sorted["tsl_subject"].to_text(), "999");
}

// Its keys are read at the first move or count. Had the opening or the adding read them, rows that came later would not
// be among them.
void recordset_test::adding_a_row_reads_none_of_the_others()
{
    ado::Recordset rows;
    open(rows, "select * from orders", true);
    store->run("insert into orders(tsl_subject) values('after the opening')");
    rows.AddNew();
    rows.Fields("tsl_subject").set_value(QString("added"));
    rows.Update();
    store->run("insert into orders(tsl_subject) values('after the adding')");
    QCOMPARE(rows["tsl_subject"].to_text(), "added");
    QCOMPARE(rows.RecordCount(), store->cell("select count(*) from orders").toLongLong());
    QCOMPARE(rows["tsl_subject"].to_text(), "added");
    store->run("insert into orders(tsl_subject) values('after the count')");
    QCOMPARE(rows.RecordCount(), store->cell("select count(*) from orders").toLongLong() - 1);
}

void recordset_test::a_closed_connection_closes_its_recordsets()
{
    ado::Recordset rows;
    open(rows, "select * from cust", true);
    store->connection().Close();
    QCOMPARE(rows.State(), 0);
    QCOMPARE(error_number_of([&] { rows.MoveNext(); }), quint32(ado::object_closed));
}

QTEST_GUILESS_MAIN(recordset_test)
#include "recordset_test.moc"
