#include "support/statement_effects.h"
#include "platform/clock.h"
#include <QTest>

void fill_sample_store(test_store &store)
{
    const char *const statements[] = {
        "insert into email_tbl(query,email,table_name) values('orders','jo@site.org','orders')",
        "insert into email_tbl(query,email,table_name) values('sales','sales@site.org','sales')",
        "insert into email_tbl(query,email,table_name) values('info','info@site.org','info')",
        "select * into orders from model_for_first",
        "select * into sales from model_for_first",
        "select * into cust from model_tbl",
        "alter table cust add column city text(255)",
        "alter table cust add column email text(255)",
        "alter table cust add column first_name text(255)",
        "insert into table_list_tbl(table_id,table_name,date_created,query_id,lastformat,seperator,subject) "
        "values(7,'cust','8/13/2026',3,no,'Line','Order')",
        "insert into table_list_tbl(table_id,table_name,date_created,query_id,lastformat,seperator,subject) "
        "values(8,'leads','8/14/2026',3,yes,'.','Lead')",
        "insert into format_tbl(fname,fposition,fignore,finclude,table_id,fcodegen) "
        "values('city','Line3','City:',yes,7,1)",
        "insert into format_tbl(fname,fposition,fignore,finclude,table_id,fcodegen) values('email','Line1','',no,7,0)",
        "insert into sales(tsl_subject,tsl_recdate,tsl_Email,tsl_Status,tsl_body) "
        "values('Order','8/13/2026 1:02:03 PM','Ann Bee','new','Name: Ann')",
        "insert into sales(tsl_subject,tsl_recdate,tsl_Email,tsl_Status,tsl_body,tsl_processed) "
        "values('Order','8/13/2026 1:02:04 PM','Ann Bee','new','Name: Ann',yes)",
        "insert into sales(tsl_subject,tsl_recdate,tsl_Email,tsl_Status) values('Lead','8/14/2026','bob@b.org','new')",
        "insert into cust(tsl_subject,tsl_recdate,tsl_Email,tsl_status,city,email,first_name) "
        "values('Order','8/13/2026 1:02:03 PM','ann@b.org','new','Paris','ann@b.org','Ann')",
        "insert into cust(tsl_subject,tsl_recdate,tsl_Email,tsl_status,city,email,first_name) "
        "values('Order','9/1/2026','bad','sent','paRma','bad','Bob')",
        "insert into cust(tsl_subject,tsl_Email,city) values('Order','cy@b.org','Rome')",
        "insert into unsubscribe_tbl(email) values('ANN@b.org')",
        "insert into unsub_entryno(email,entryno) values('A@b.org','1037')",
        "insert into sign values('Mine','Regards','Yes')",
        "insert into sign values('Other','Bye','No')",
        "insert into autocontent(Mapname,SubjectType,Subject,LastToken,autocontent,enable) "
        "values('cust',3,'S','7','Thanks','Yes')",
    };
    for (const char *statement : statements)
        store.run(statement);
}

void effect_columns()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("look");
    QTest::addColumn<QString>("expected");
}

void effect(const char *name, const QString &statement, const QString &look, const QString &expected)
{
    QTest::newRow(name) << statement << look << expected;
}

void check_effect()
{
    QFETCH(QString, statement);
    QFETCH(QString, look);
    QFETCH(QString, expected);
    set_clock([] { return QDateTime(QDate(2026, 11, 21), QTime(1, 2, 3), Qt::UTC); });
    test_store store;
    fill_sample_store(store);
    try {
        for (const QString &change : statement.split(" ;; ")) // several in a row, as the program sends them
            if (!look.isEmpty())
                store.run(change);
        QCOMPARE(rows_of(store, look.isEmpty() ? statement : look), expected);
    } catch (const run_time_error &failure) {
        QCOMPARE("error " + QString::number(failure.number, 16).toUpper(), expected);
    }
}

QString rows_of(test_store &store, const QString &select)
{
    QStringList lines;
    ado::Recordset rows;
    for (rows.Open(select, store.connection()); !rows.EOF_(); rows.MoveNext()) {
        QStringList values;
        for (int i = 0; i < rows.field_count(); ++i)
            values.append(rows[i].is_null() ? QString("-") : rows[i].to_text());
        lines.append(values.join('|'));
    }
    return lines.join('/');
}
