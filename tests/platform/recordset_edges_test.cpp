// Recordsets in rarely met orders: rows added and taken away at once, definitions and closing underneath.
#include "support/statement_effects.h"
#include <QTest>

using ado::cursor_type;
using ado::lock_type;

class recordset_edges_test : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        store = std::make_unique<test_store>();
        fill_sample_store(*store);
    }
    void cleanup() { store.reset(); }

    void a_row_just_added_is_the_one_deleted();
    void the_only_row_is_added_and_deleted();
    void a_row_outside_the_condition_stays_current();
    void a_changed_table_takes_new_rows_in_the_right_columns();
    void a_column_that_is_gone_is_refused();
    void it_opens_again_after_its_connection_closed();
    void a_text_keeps_its_first_letter();
    void a_waiting_change_is_seen_by_everyone();
    void a_waiting_change_stays_with_its_row();

private:
    void open(ado::Recordset &rows, const QString &sql)
    {
        rows.Open(sql, store->connection(), cursor_type::keyset, lock_type::optimistic);
    }
    void add(ado::Recordset &rows, const QString &field, const QString &text)
    {
        rows.AddNew();
        rows.Fields(field).set_value(text);
        rows.Update();
    }
    std::unique_ptr<test_store> store;
};

void recordset_edges_test::a_row_just_added_is_the_one_deleted()
{
    const QString before = rows_of(*store, "select city from cust");
    ado::Recordset rows;
    open(rows, "select * from cust");
    add(rows, "city", "Rome");
    rows.Delete();
    QCOMPARE(rows_of(*store, "select city from cust"), before);
    QCOMPARE(rows.RecordCount(), store->cell("select count(*) from cust").toLongLong());
    rows.MoveFirst();
    QStringList left;
    for (; !rows.EOF_(); rows.MoveNext())
        left << (rows["city"].is_null() ? QString("-") : rows["city"].to_text());
    QCOMPARE(left.join('/'), before);
}

void recordset_edges_test::the_only_row_is_added_and_deleted()
{
    store->run("delete from cust");
    ado::Recordset rows;
    open(rows, "select * from cust");
    add(rows, "city", "Rome");
    rows.Delete();
    QCOMPARE(rows.RecordCount(), 0);
    QCOMPARE(store->cell("select count(*) from cust"), "0");
}

void recordset_edges_test::a_row_outside_the_condition_stays_current()
{
    ado::Recordset rows;
    open(rows, "select * from cust where city='Atlantis'");
    add(rows, "city", "Rome");
    QCOMPARE(rows.RecordCount(), 1);
    QCOMPARE(rows["city"].to_text(), "Rome");
    rows.MoveNext();
    QVERIFY(rows.EOF_());
}

void recordset_edges_test::a_changed_table_takes_new_rows_in_the_right_columns()
{
    store->run("delete from cust");
    store->run("alter table cust add column extra text(255)");
    ado::Recordset rows;
    open(rows, "select * from cust");
    store->run("alter table cust drop column city");
    add(rows, "extra", "behind it");
    QCOMPARE(rows_of(*store, "select extra,first_name from cust"), "behind it|-");
}

void recordset_edges_test::a_column_that_is_gone_is_refused()
{
    ado::Recordset rows;
    open(rows, "select * from cust");
    store->run("alter table cust drop column city");
    const QString before = store->cell("select count(*) from cust");
    QCOMPARE(error_number_of([&] { add(rows, "city", "Rome"); }), quint32(ado::unknown_column));
    QCOMPARE(store->cell("select count(*) from cust"), before);
}

void recordset_edges_test::it_opens_again_after_its_connection_closed()
{
    ado::Recordset rows;
    open(rows, "select * from cust");
    store->connection().Close();
    QCOMPARE(rows.State(), 0);
    store->connection().Open();
    open(rows, "select * from cust where city='Atlantis'");
    QCOMPARE(rows.State(), 1);
    QVERIFY(rows.EOF_());
}

// The mark that some programs put in front of a text is a letter of it: else the duplicate test would never find the
// mail again.
void recordset_edges_test::a_text_keeps_its_first_letter()
{
    const QString marked = QChar(0xFEFF) + QString("Name: Ann");
    {
        ado::Recordset mails;
        open(mails, "select * from sales");
        add(mails, "tsl_body", marked);
        QCOMPARE(mails["tsl_body"].to_text(), marked);
    }
    QCOMPARE(store->cell("select count(*) from sales where ucase(tsl_body)='" + marked.toUpper() + "'"), "1");
    QCOMPARE(store->cell("select count(*) from sales where tsl_body like '" + marked + "'"), "1");
}

void recordset_edges_test::a_waiting_change_is_seen_by_everyone()
{
    const QString newest = " where message_id=(select max(message_id) from cust)";
    ado::Recordset live;
    open(live, "select * from cust");
    live.MoveLast();
    store->run("update cust set city='A'" + newest);
    QCOMPARE(live["city"].to_text(), "A");
    store->run("update cust set city='B'" + newest);
    store->run("update cust set first_name='C'" + newest);
    ado::Connection second;
    store->open(second);
    ado::Recordset through_second;
    through_second.Open("select city,first_name from cust" + newest, second);
    QCOMPARE(through_second["city"].to_text() + through_second["first_name"].to_text(), "BC");
    QCOMPARE(error_number_of([&] { store->run("update cust set city='" + QString(256, 'x') + "'" + newest); }),
             quint32(ado::value_too_long));
    QCOMPARE(store->cell("select city from cust" + newest), "B");
}

void recordset_edges_test::a_waiting_change_stays_with_its_row()
{
    const QString newest = " where message_id=(select max(message_id) from cust)";
    store->run("delete from cust");
    ado::Recordset rows;
    open(rows, "select * from cust");
    add(rows, "city", "first");
    store->run("update cust set first_name='1'" + newest);
    add(rows, "city", "second");
    store->run("update cust set first_name='2'" + newest);
    rows.Delete();
    store->run("update cust set city='last'" + newest);
    store->run("select * into copied from cust");
    store->run("update cust set city='later'" + newest);
    QCOMPARE(rows_of(*store, "select city,first_name from copied"), "last|1");
    store->run("drop table cust");
    store->run("select * into cust from copied");
    QCOMPARE(rows_of(*store, "select city,first_name from cust"), "last|1");
}

QTEST_GUILESS_MAIN(recordset_edges_test)
#include "recordset_edges_test.moc"
