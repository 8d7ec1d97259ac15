// Reaching the store: quoting, opening, one statement.
#include "frame/store.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

class store_test : public QObject {
    Q_OBJECT
private slots:
    void quoting_data();
    void quoting();
    void a_quoted_text_comes_back_as_it_was_data();
    void a_quoted_text_comes_back_as_it_was();
    void a_closed_store_is_opened_again();
    void an_open_store_stays_open();
    void a_statement_is_asked_for_its_error_number();
};

void store_test::quoting_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("quoted");
    QTest::newRow("a text") << "abc"
                            << "'abc'";
    QTest::newRow("nothing gives two quotes") << ""
                                              << "''";
    QTest::newRow("a missing text gives two quotes") << QString() << "''";
    QTest::newRow("one quote is doubled") << "O'Neil"
                                          << "'O''Neil'";
    QTest::newRow("every quote is doubled") << "''"
                                            << "''''''";
    QTest::newRow("outer blanks go") << "  a b  "
                                     << "'a b'";
    QTest::newRow("a last line end stays") << "a\r\n"
                                           << "'a\r\n'";
    QTest::newRow("tabs stay") << "\ta\t"
                               << "'\ta\t'";
    QTest::newRow("blanks behind a line end go, the line end stays") << "a\n  "
                                                                     << "'a\n'";
    QTest::newRow("only blanks give two quotes") << "   "
                                                 << "''";
    QTest::newRow("double quotes and percent signs are letters") << "\"%1\""
                                                                 << "'\"%1\"'";
}

void store_test::quoting()
{
    QFETCH(QString, value);
    QTEST(quote_sql(value), "quoted");
}

void store_test::a_quoted_text_comes_back_as_it_was_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("quotes") << "it's 'so' \"said\"";
    QTest::newRow("a statement") << "'); drop table email_tbl; --";
    QTest::newRow("brackets, question marks, colons") << "[a] ? :b @c $d %_";
    QTest::newRow("line ends") << "a\r\nb\nc\r\r\n";
    QTest::newRow("letters of the world") << "é ß Ж 漢 \U0001F600";
}

void store_test::a_quoted_text_comes_back_as_it_was()
{
    QFETCH(QString, text);
    const intake_site site;
    site.run("insert into unsub_msg (msg_name,unsubmsg) values('one'," + quote_sql(text) + ")");
    QCOMPARE(site.column("select unsubmsg from unsub_msg where msg_name='one' and unsubmsg=" + quote_sql(text)),
             QStringList{text});
}

void store_test::a_closed_store_is_opened_again()
{
    const intake_site site;
    session.store_connection->Close();
    QCOMPARE(session.store_connection->State(), 0);
    open_store_if_closed();
    QCOMPARE(session.store_connection->State(), 1);
    QCOMPARE(site.column("select install from install_tbl"), QStringList{"True"});
}

void store_test::an_open_store_stays_open()
{
    const intake_site site;
    site.run("update install_tbl set install=no");
    open_store_if_closed();
    QCOMPARE(site.column("select install from install_tbl"), QStringList{"False"});
    QCOMPARE(session.store_connection->Provider, QString("microsoft.jet.oledb.4.0"));
    QCOMPARE(session.store_connection->ConnectionString, site.folder.filePath("mailapp.mdb"));
}

void store_test::a_statement_is_asked_for_its_error_number()
{
    const intake_site site;
    QCOMPARE(error_of("select * into roses from model_for_first"), 0u);
    QCOMPARE(error_of("select * into Roses from model_for_first"), 0x80040E14u); // it exists
    QCOMPARE(error_of("drop table tulips"), 0x80040E37u);
    QCOMPARE(site.log_entries(), QStringList()); // an answer, no failure
}

QTEST_GUILESS_MAIN(store_test)
#include "store_test.moc"
