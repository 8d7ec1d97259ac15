// The dialect where it differs from SQLite's: names, texts, patterns, flags, dates, conversions, keys, order.
#include "support/statement_effects.h"
#include <QTest>

class dialect_test : public QObject {
    Q_OBJECT

private slots:
    void rules_data();
    void rules() { check_effect(); }
    void conversions_data();
    void conversions() { check_effect(); }
    void patterns_data();
    void patterns() { check_effect(); }
    void refused_data();
    void refused();
    void any_word_is_a_column_data();
    void any_word_is_a_column();
    void any_word_is_a_table_data();
    void any_word_is_a_table();
    void widths();
    void a_long_chain_of_numbers();
    void keys_are_never_given_twice();
    void a_copy_keeps_types_and_keys();
    void dropping_columns_is_all_or_none();
    void dates_as_text_data();
    void dates_as_text();
};

void dialect_test::rules_data()
{
    effect_columns();
    const QString accents = "insert into unsubscribe_tbl(email) values('é@X.FR')";
    effect("letters beyond ASCII ignore case", accents, "select count(*) from unsubscribe_tbl where email='É@x.fr'",
           "1");
    effect("and are left out of a list", accents + " ;; update cust set email='É@x.fr' where message_id=2",
           "select message_id from cust where email not in (select email from unsubscribe_tbl)", "");
    effect("a text in a list ignores case", "select message_id from cust where city in ('PARIS','ROME')", "", "1/3");
    effect("accents count", accents, "select count(*) from unsubscribe_tbl where email='e@x.fr'", "0");
    effect("a sharp s is no double s", "insert into unsubscribe_tbl(email) values('ß')",
           "select count(*) from unsubscribe_tbl where email='ss' or ucase(email)='SS'", "0");
    effect("blanks at the end count", "select count(*) from cust where city='Rome '", "", "0");
    effect("upper case beyond ASCII", accents, "select ucase(email) from unsubscribe_tbl where email='É@x.fr'",
           QString::fromUtf8("É@X.FR"));
    effect("double quotes hold a text", "select message_id from cust where city=\"Rome\"", "", "3");
    effect("not, with brackets", "select message_id from cust where not (city='Rome' or city='Paris')", "", "2");
    effect("Null is neither equal nor different", "select message_id from cust where first_name<>'Ann'", "", "2");
    effect("not in a list with a Null is nothing", "insert into unsubscribe_tbl(email) values(Null)",
           "select count(*) from cust where email not in (select email from unsubscribe_tbl)", "0");
    effect("empty is not Null", "update cust set city='' where message_id=1",
           "select count(*) from cust where city is null", "0");
    effect("yes is minus one", "select message_id from sales where tsl_processed=-1", "", "2");
    effect("a flag is a condition", "select message_id from sales where not tsl_processed", "", "1/3");
    effect("yes sorts first", "select message_id from sales order by tsl_processed,message_id desc", "", "2/3/1");
    effect("texts sort in any letters",
           "insert into unsubscribe_tbl(email) values('b') ;; insert into unsubscribe_tbl(email) values('C')",
           "select email from unsubscribe_tbl order by email", "ANN@b.org/b/C");
    effect("dates sort as dates, not as US text", "update cust set tsl_recdate='10/2/2025' where message_id=3",
           "select message_id from cust order by tsl_recdate desc", "2/1/3");
    effect("now is a column where there is one",
           "alter table cust add column now text(20) ;; "
           "update cust set now='x' where message_id=1",
           "select message_id from cust where now='x'", "1");
    effect("yes is a column where it is set", "alter table cust add column yes text(20) ;; update cust set yes='x'",
           "select [yes] from cust where message_id=1", "x");
    effect("line ends and blanks between words", "select\r\n city\tfrom  cust\n where message_id = 1 ", "", "Paris");
    effect("arithmetic keeps Null",
           "update unsub_detail set lasttoken=Null ;; "
           "update unsub_detail set lasttoken=lasttoken+1",
           "select lasttoken from unsub_detail", "-");
    effect("a quote in a text", "update cust set city='L''Île' where message_id=1",
           "select message_id from cust where city='l''île'", "1");
    effect("'0042' stays a text", "update cust set city='0042' where message_id=1",
           "select city from cust where message_id=1", "0042");
    effect("a date alone has no time", "select datevalue(tsl_recdate) from cust where message_id=1", "", "8/13/2026");
    effect("a number is no day of a text column", "insert into sentitems_tbl(tsl_sentdate) values('no date')",
           "select count(*) from sentitems_tbl where datevalue(tsl_sentdate)>=datevalue('1/1/2026')", "error 80040E07");
}

void dialect_test::conversions_data()
{
    effect_columns();
    const QString flag = "update form_tbl set fcode=%1";
    const QString row = "insert into form_tbl(fdesc) values('x') ;; ";
    for (const char *yes : {"yes", "True", "1", "-1", "7", "'yes'", "'ON'", "'True'", "'1'"})
        effect(qPrintable(QString("flag from ") + yes), row + flag.arg(yes), "select fcode from form_tbl", "True");
    for (const char *no : {"no", "False", "0", "'no'", "'OFF'", "'false'", "'0'", "Null"})
        effect(qPrintable(QString("no flag from ") + no), row + flag.arg(no), "select fcode from form_tbl", "False");
    effect("no flag from an empty text", row + flag.arg("''"), "select fcode from form_tbl", "error 80040E07");
    effect("no flag from a word", row + flag.arg("'maybe'"), "select fcode from form_tbl", "error 80040E07");
    const QString number = row + "update form_tbl set fposition=%1";
    effect("half goes to even, down", number.arg("'2.5'"), "select fposition from form_tbl", "2");
    effect("half goes to even, up", number.arg("3.5"), "select fposition from form_tbl", "4");
    effect("commas of thousands", number.arg("'1,000'"), "select fposition from form_tbl", "1000");
    effect("no number from a word", number.arg("'nan'"), "select fposition from form_tbl", "error 80040E07");
    effect("no number in base sixteen", number.arg("'0x10'"), "select fposition from form_tbl", "error 80040E07");
    const QString text = row + "update form_tbl set fquery=%1";
    effect("a number's digits", text.arg("3"), "select fquery from form_tbl", "3");
    effect("a negative number's digits", text.arg("-3"), "select fquery from form_tbl", "-3");
    effect("a date's US text", "update cust set city=tsl_recdate where message_id=1",
           "select city from cust where message_id=1", "8/13/2026 1:02:03 PM");
    effect("a column too long for another",
           "update autocontent set autocontent='" + QString(300, 'x') +
               "' ;; update autocontent set Subject=autocontent",
           "select Subject from autocontent", "error 80040E57");
    const QString date = "update cust set tsl_recdate=%1 where message_id=1";
    const QString look = "select tsl_recdate from cust where message_id=1";
    effect("day first when it must be", date.arg("'13/8/2026'"), look, "8/13/2026");
    effect("years of two digits", date.arg("'8/13/29'"), look, "8/13/2029");
    effect("and of the last century", date.arg("'8/13/30'"), look, "8/13/1930");
    effect("the afternoon", date.arg("'8/13/2026 1:02 pm'"), look, "8/13/2026 1:02:00 PM");
    effect("a time alone", date.arg("'13:02:03'"), look, "1:02:03 PM");
    effect("the other way of writing", date.arg("'2026-08-13 13:02:03'"), look, "8/13/2026 1:02:03 PM");
    effect("no such day", date.arg("'2/30/2026'"), look, "error 80040E07");
    effect("a day with dots", date.arg("'13.8.2026'"), look, "error 80040E07");
    effect("no date from an empty text", date.arg("''"), look, "error 80040E07");
}

void dialect_test::patterns_data()
{
    effect_columns();
    const auto like = [](const char *name, const QString &text, const QString &pattern, bool fits) {
        effect(name, "update cust set city='" + text + "' where message_id=1",
               "select count(*) from cust where message_id=1 and city like '" + pattern + "'", fits ? "1" : "0");
    };
    like("the end", "Paris", "Par%", true);
    like("the start", "Paris", "%IS", true);
    like("one letter", "Paris", "P_ris", true);
    like("one letter is not none", "Pris", "P_ris", false);
    like("one of", "Paris", "[opq]aris", true);
    like("a range", "Paris", "[A-Q]aris", true);
    like("none of", "Paris", "[!a-o]aris", true);
    like("none of, the other sign", "Paris", "[^p]aris", false);
    like("a star is a star", "Paris", "Par*", false);
    like("a star is found", "Par*", "Par*", true);
    like("a question mark is one", "P?", "p?", true);
    like("a hash is one", "1#", "1#", true);
    like("a percent sign in brackets", "50%", "50[%]", true);
    like("many runs", QString(60, 'a') + "b", "%a%a%a%a%a%b", true);
    like("letters beyond ASCII", QString::fromUtf8("Évry"), QString::fromUtf8("éVR%"), true);
    like("empty fits everything", "", "%", true);
    effect("an open bracket is refused", "select count(*) from cust where city like '[ab'", "", "error 80040E14");
    effect("a number as its text", "select message_id from cust where message_id like '[12]'", "", "1/2");
    effect("a date as its text", "select message_id from cust where tsl_recdate like '8/13/%'", "", "1");
    effect("Null fits nothing", "select message_id from cust where first_name not like 'A%'", "", "2");
}

void dialect_test::refused_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<quint32>("number");
    const auto row = [](const char *name, const QString &statement, quint32 number) {
        QTest::newRow(name) << statement << number;
    };
    row("nothing", "", ado::syntax_error);
    row("two statements", "delete from cust; delete from sales", ado::syntax_error);
    row("a semicolon", "delete from cust;", ado::syntax_error);
    row("something left over", "select * from cust where city='x' city", ado::syntax_error);
    row("an open text", "select * from cust where city='x", ado::syntax_error);
    row("an open bracket", "select * from [cust", ado::syntax_error);
    row("no value", "select * from cust where message_id=", ado::syntax_error);
    row("another language", "create table x(a text)", ado::syntax_error);
    row("a function nobody knows", "select * from cust where lower(city)='x'", ado::syntax_error);
    row("too deep", "select * from cust where " + QString(5000, '(') + "1=1" + QString(5000, ')'), ado::syntax_error);
    row("too many minus signs", "select * from cust where 1=" + QString("- ").repeated(5000) + "1", ado::syntax_error);
    row("two points in a number", "select * from cust where message_id=1.2.3", ado::syntax_error);
    row("two points in a list of numbers", "delete from cust where message_id in (1,1.2.3)", ado::syntax_error);
    row("more values than columns", "insert into sign(signtitle) values('a','b')", ado::syntax_error);
    row("an unknown column", "select * from cust where nowhere='x'", ado::unknown_column);
    row("an unknown column of an insert", "insert into cust(nowhere) values('x')", ado::unknown_column);
    row("an unknown table", "select * from nowhere", ado::unknown_table);
    row("an unknown table dropped", "drop table nowhere", ado::unknown_table);
    row("SQLite's own tables", "select * from sqlite_sequence", ado::unknown_table);
    row("SQLite's schema", "select * from sqlite_master", ado::unknown_table);
    row("a column there already", "alter table cust add column CITY text(255)", ado::column_exists);
    row("one key for all rows", "update sales set message_id=1 or message_id=0", ado::duplicate_key);
    row("a key of another row", "insert into sales(message_id) values(1)", ado::duplicate_key);
    row("a wider text than there is", "alter table cust add column x text(256)", ado::syntax_error);
    row("a reserved word", "select * into Query from model_tbl", ado::syntax_error);
    row("a reserved word in small letters", "select * into select from model_tbl", ado::syntax_error);
    row("a number against a text column", "select * from cust where city=5", ado::type_mismatch);
    row("a text against a flag", "select * from sales where tsl_processed='yes'", ado::type_mismatch);
    row("a text against a date", "select * from cust where tsl_recdate='8/13/2026'", ado::type_mismatch);
    row("a number in a list of texts", "select * from cust where city in (1,2)", ado::type_mismatch);
}

void dialect_test::refused()
{
    QFETCH(QString, statement);
    QFETCH(quint32, number);
    test_store store;
    fill_sample_store(store);
    QCOMPARE(error_number_of([&] { store.run(statement); }), number);
    QCOMPARE(store.cell("select count(*) from cust"), "3");
}

void dialect_test::any_word_is_a_column_data()
{
    QTest::addColumn<QString>("word");
    for (const char *word :
         {"CASE",    "CHECK",     "COLLATE", "COMMIT",      "DEFAULT", "ESCAPE", "EXCEPT", "INTERSECT", "LIMIT",
          "NOTHING", "RETURNING", "THEN",    "TRANSACTION", "USING",   "WHEN",   "rowid",  "oid",       "ABORT",
          "JET",     "sqlite_x",  "month",   "ucase",       "glob",    "window", "temp",   "main"})
        QTest::newRow(word) << word;
}

void dialect_test::any_word_is_a_column()
{
    QFETCH(QString, word);
    test_store store;
    fill_sample_store(store);
    store.run("alter table cust add column " + word + " text(255)");
    store.run("update cust set " + word + "='x' where message_id=(select max(message_id) from cust)");
    store.run("insert into cust(city," + word + ") values('Bonn','y')");
    QCOMPARE(
        rows_of(store, "select message_id," + word + " from cust where " + word + "<>'' order by " + word + " desc"),
        "4|y/3|x");
    ado::Recordset rows;
    rows.Open("select * from cust where " + word + " is null", store.connection(), ado::cursor_type::keyset,
              ado::lock_type::optimistic);
    rows.MoveNext();
    rows.Fields(word).set_value(QString("z"));
    rows.Update();
    QCOMPARE(store.cell("select " + word + " from cust where message_id=2"), "z");
}

void dialect_test::any_word_is_a_table_data()
{
    QTest::addColumn<QString>("word");
    for (const char *word : {"CASE", "CHECK", "COLLATE", "LIMIT", "RETURNING", "TRANSACTION", "Where", "Set", "Values",
                             "Into", "Like", "sqlite_orders", "SQLITE_x", "web-orders", "web.orders", "1and1", "rowid"})
        QTest::newRow(word) << word;
}

void dialect_test::any_word_is_a_table()
{
    QFETCH(QString, word);
    test_store store;
    store.run("select * into [" + word + "] from model_for_first");
    store.run("alter table " + word + " add column city text(255)");
    store.run("insert into " + word + "(tsl_subject,city) values('s','Rome')");
    store.run("update " + word + " set city='Bonn' where message_id=(select max(message_id) from " + word + ")");
    QCOMPARE(rows_of(store, "select message_id,city from " + word + " where tsl_processed=no order by city"), "1|Bonn");
    ado::Recordset rows;
    rows.Open("select * from " + word, store.connection(), ado::cursor_type::keyset, ado::lock_type::optimistic);
    rows.AddNew();
    rows.Update();
    QCOMPARE(rows["message_id"].to_number(), 2);
    rows.Close();
    store.run("delete from " + word + " where message_id=1");
    store.run("select * into [" + word + "_old] from " + word);
    store.run("drop table " + word);
    QCOMPARE(error_number_of([&] { store.run("select * from " + word); }), quint32(ado::unknown_table));
    QCOMPARE(store.cell("select count(*) from " + word + "_old"), "1");
}

void dialect_test::widths()
{
    test_store store;
    fill_sample_store(store);
    for (const int length : {250, 251, 255}) {
        const QString value(length, QChar(u'é'));
        store.run("update cust set city='" + value + "' where message_id=1");
        QCOMPARE(store.cell("select city from cust where message_id=1"), value);
    }
    const QString longer(256, 'x');
    QCOMPARE(error_number_of([&] { store.run("update cust set city='" + longer + "'"); }),
             quint32(ado::value_too_long));
    QCOMPARE(error_number_of([&] { store.run("insert into cust(city) values('" + longer + "')"); }),
             quint32(ado::value_too_long));
    store.run("update cust set city='" + QString("''").repeated(255) + "' where message_id=1");
    QCOMPARE(store.cell("select city from cust where message_id=1"), QString(255, '\''));
    store.run("update cust set tsl_subject='" + QString(70000, 'x') + "' where message_id=1");
    QCOMPARE(store.cell("select tsl_subject from cust where message_id=1").size(), 70000);
    QCOMPARE(store.column("select city from cust where message_id>1"), (QVariantList{"paRma", "Rome"}));
}

void dialect_test::a_long_chain_of_numbers()
{
    test_store store;
    fill_sample_store(store);
    QString statement = "update sales set tsl_processed=-1 where 1=2 ";
    for (int id = 2; id <= 32767; ++id)
        statement += " or message_id=" + QString::number(id);
    store.run(statement);
    QCOMPARE(store.column("select tsl_processed from sales"), (QVariantList{"False", "True", "True"}));
    QString texts = "select count(*) from cust where city='x'";
    for (int i = 0; i < 3000; ++i)
        texts += " or city='c" + QString::number(i) + "'";
    QCOMPARE(store.cell(texts + " or city='ROME'"), "1");
}

void dialect_test::keys_are_never_given_twice()
{
    test_store store;
    fill_sample_store(store);
    store.run("delete from cust where message_id=3");
    store.run("insert into cust(city) values('x')");
    QCOMPARE(store.cell("select max(message_id) from cust"), "4");
    store.run("delete from cust");
    store.run("insert into cust(city) values('x')");
    QCOMPARE(store.cell("select max(message_id) from cust"), "5");
    store.run("insert into cust(message_id,city) values(40000,'x')");
    store.run("insert into cust(city) values('x')");
    QCOMPARE(store.cell("select max(message_id) from cust"), "40001");
}

void dialect_test::a_copy_keeps_types_and_keys()
{
    test_store store;
    fill_sample_store(store);
    store.run("delete from sales where message_id=2");
    store.run("select * into sales_old from sales");
    store.run("insert into sales_old(tsl_recdate,tsl_processed) values('8/13/2026','yes')");
    QCOMPARE(rows_of(store, "select message_id,tsl_recdate,tsl_processed from sales_old where message_id=4"),
             "4|8/13/2026|True");
    QCOMPARE(error_number_of([&] { store.run("update sales_old set tsl_Status='" + QString(256, 'x') + "'"); }),
             quint32(ado::value_too_long));
    store.run("insert into orders(tsl_subject) values('first')");
    QCOMPARE(store.cell("select max(message_id) from orders"), "1");
    QCOMPARE(error_number_of([&] { store.run("select * into SALES_OLD from sales"); }), quint32(ado::syntax_error));
}

void dialect_test::dropping_columns_is_all_or_none()
{
    test_store store;
    fill_sample_store(store);
    QCOMPARE(error_number_of([&] { store.run("alter table cust drop column city,nowhere"); }),
             quint32(ado::unknown_column));
    QCOMPARE(store.cell("select city from cust where message_id=1"), "Paris");
    store.run("alter table cust drop column city,first_name");
    QCOMPARE(rows_of(store, "select * from cust where message_id=2"), "2|Order|9/1/2026|bad|sent|bad");
    store.run("alter table sales drop column tsl_recdate");
    QCOMPARE(error_number_of([&] { store.run("select tsl_recdate from sales"); }), quint32(ado::unknown_column));
}

void dialect_test::dates_as_text_data()
{
    QTest::addColumn<QDateTime>("date");
    QTest::addColumn<QString>("text");
    const auto at = [](QDate date, QTime time) { return QDateTime(date, time, Qt::UTC); };
    QTest::newRow("midnight") << at(QDate(2026, 8, 13), QTime(0, 0)) << "8/13/2026";
    QTest::newRow("past midnight") << at(QDate(2026, 8, 13), QTime(0, 0, 1)) << "8/13/2026 12:00:01 AM";
    QTest::newRow("noon") << at(QDate(2026, 8, 3), QTime(12, 0)) << "8/3/2026 12:00:00 PM";
    QTest::newRow("day zero") << at(QDate(1899, 12, 30), QTime(13, 2, 3)) << "1:02:03 PM";
    QTest::newRow("day zero at midnight") << at(QDate(1899, 12, 30), QTime(0, 0)) << "12:00:00 AM";
}

void dialect_test::dates_as_text()
{
    QFETCH(QDateTime, date);
    QFETCH(QString, text);
    QCOMPARE(ado::Value(date).to_text(), text);
    QCOMPARE(ado::Value(text).to_date(), date);
}

QTEST_GUILESS_MAIN(dialect_test)
#include "dialect_test.moc"
