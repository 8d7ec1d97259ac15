// The checks of addresses and names, and the words that are no names.
#include "frame/checks.h"
#include "platform/reserved_words.h"

#include <QtTest/QTest>

namespace {

// The whole list as it stands, so that neither a word nor its spelling gets lost.
const char *const all_words =
    "ADD ALL Alphanumeric ALTER AND ANY Application AS ASC Assistant AUTOINCREMENT Avg BETWEEN BINARY BIT "
    "BOOLEAN BY BYTE CHAR CHARACTER COLUMN COMP COMPUTE CompactDatabase CONSTRAINT Container Count COuNTER "
    "CREATE CreateDatabase CreateField CreateGroup CreateIndex CreateObject CreateProperty CreateRelation "
    "CreateTableDef CreateUser CreateWorkspace CURRENCY CurrentUser DATABASE DATE DATETIME DELETE DESC "
    "Description DISALLOW DISTINCT DISTINCTROW Document DOUBLE DROP Echo Else End Eqv Error EXISTS Exit FALSE "
    "Field Fields FillCache FLOAT FLOAT4 FLOAT8 FOREIGN Form forms FROM Full FUNCTION GENERAL GetObject "
    "GetOption GotoPage GROUP GROUPBY GUID HAVING Idle IEEEDOUBLE TEEESINGLE If IGNORE Imp IN INDEX Indexes "
    "INNER INSERT InsertText INT INTEGER INTEGER1 INTEGER2 INTEGER4 INTO IS join key LEFT Level Like LOGICAL "
    "LOGICAL1 LONG LONGBINARY LONGTEXT Macro Match Max Min Mod MEMO Module MONEY Move NAME NewPassword NO Not "
    "NULL NUMBER NUMERIC Object OLEOBJECT OFF oN OpenRecordset OPTION OR ORDER Outer OWNERACCESS Parameter "
    "PARAMETERS Partial PERCENT PIVOT PRIMARY PROCEDURE Property Queries Query Quit REAL Recalc Recordset "
    "REFERENCES Refresh RefreshLink RegisterDatabase Relation Repaint RepairDatabase Report Reports Requery "
    "RIGHT SCREEN SECTION SELECT SET SetFocus SetOption SHORT SINGLE SMALLINT SOME SQL stDev StDevP STRING "
    "Sum TABLE TableDef TableDefs TableID TEXT TIME TIMESTAMP TOP TRANSFORM TRUE Type UNION UNIQUE UPDATE "
    "VALUE VALUES Var VarP VARBINARY VARCHAR WHERE WITH Workspace xor year yes yesno";

const QStringList words_of_statements{"FROM", "TO",     "AS",       "SELECT", "TABLE", "ALTER",
                                      "DROP", "DELETE", "POSITION", "ORDER",  "DESC"};

}

class checks_test : public QObject {
    Q_OBJECT
private slots:
    void addresses_data();
    void addresses();
    void field_names_data();
    void field_names();
    void query_names_data();
    void query_names();
    void the_list_has_203_words();
    void every_word_of_the_list_is_refused();
    void words_that_are_free_data();
    void words_that_are_free();
};

void checks_test::addresses_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("valid");
    QTest::newRow("a well-formed address of six characters is refused") << "a@b.co" << false;
    QTest::newRow("one of seven characters is accepted") << "a@bc.co" << true;
    QTest::newRow("an address with two at signs is refused") << "a@b@c.com" << false;
    QTest::newRow("an address that starts with an at sign is refused") << "@abc.com" << false;
    QTest::newRow("one without an at sign is refused") << "someone.example.org" << false;
    QTest::newRow("an at sign in the last four counts too") << "a@bcde@x.c" << false;
    QTest::newRow("a dot is not asked for") << "someone@localhost" << true;
    QTest::newRow("capitals, digits, underscore, dash and point") << "Some_1-x.Y@Ex-1_a.org" << true;
    QTest::newRow("a blank before the at sign is refused") << "some one@example.org" << false;
    QTest::newRow("a plus before the at sign is refused") << "some+one@example.org" << false;
    QTest::newRow("an accented letter is refused") << "andré@example.org" << false;
    QTest::newRow("a blank in the middle of the host is refused") << "someone@exam ple.org" << false;
    QTest::newRow("a leading blank is refused: nothing is trimmed") << " someone@example.org" << false;
    QTest::newRow("a trailing blank lies in the last four, which nobody looks at") << "someone@example.org " << true;
    QTest::newRow("odd letters in the last four neither") << "someone@example!?% " << true;
    QTest::newRow("just before the last four they are refused") << "someone@exam!.org" << false;
    QTest::newRow("the ending stands earlier too: looking stops there") << "a@x.comb!d.com" << true;
    QTest::newRow("the ending before the at sign: nothing behind it is looked at") << "me.com@b!d.com" << true;
    QTest::newRow("the ending earlier in other capitals is not the ending") << "a@x.COMb!d.com" << false;
    QTest::newRow("nothing") << "" << false;
}

void checks_test::addresses()
{
    QFETCH(QString, address);
    QTEST(valid_email(address), "valid");
}

void checks_test::field_names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("valid");
    QTest::newRow("a word") << "City" << true;
    QTest::newRow("letters, digits, underscore") << "first_name2" << true;
    QTest::newRow("a map field named first name is refused: no blanks") << "first name" << false;
    QTest::newRow("a leading blank is refused") << " a" << false;
    QTest::newRow("a trailing blank is refused") << "a " << false;
    QTest::newRow("a digit first is refused") << "1st" << false;
    QTest::newRow("an underscore first is refused") << "_a" << false;
    QTest::newRow("a dash is refused") << "e-mail" << false;
    QTest::newRow("a point is refused") << "e.mail" << false;
    QTest::newRow("an accented letter is refused") << "prénom" << false;
    QTest::newRow("a colon is refused") << "Name:" << false;
    QTest::newRow("a reserved word is not this check's business") << "select" << true;
    QTest::newRow("nothing is refused") << "" << false;
    QTest::newRow("blanks are refused") << "   " << false;
}

void checks_test::field_names()
{
    QFETCH(QString, name);
    QTEST(valid_name(name), "valid");
}

void checks_test::query_names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("valid");
    QTest::newRow("a word") << "orders" << true;
    QTest::newRow("a dash is allowed") << "web-orders" << true;
    QTest::newRow("a point is allowed") << "web.orders" << true;
    QTest::newRow("a dash first is refused") << "-orders" << false;
    QTest::newRow("a blank is refused") << "web orders" << false;
    QTest::newRow("nothing is refused") << "" << false;
    QTest::newRow("Select is refused") << "Select" << false;
    QTest::newRow("sELECT is refused, in any mix of capitals") << "sELECT" << false;
    QTest::newRow("a name with a reserved word in it is allowed") << "selected" << true;
    QTest::newRow("a word of the longer list only is allowed") << "Query" << true;
    for (const QString &word : words_of_statements)
        QTest::newRow(qPrintable(word + " is refused")) << word << false;
}

void checks_test::query_names()
{
    QFETCH(QString, name);
    QTEST(valid_query_name(name), "valid");
}

void checks_test::the_list_has_203_words()
{
    QCOMPARE(reserved_words().size(), 203);
    QCOMPARE(reserved_words(), QString(all_words).split(u' '));
    QCOMPARE(reserved_query_words().size(), 12);
}

void checks_test::every_word_of_the_list_is_refused()
{
    for (const QString &word : QString(all_words).split(u' ') + words_of_statements) {
        QVERIFY2(!reserved_word_free(word), qPrintable(word));
        QVERIFY2(!reserved_word_free(word.toLower()), qPrintable(word));
        QVERIFY2(!reserved_word_free(word.toUpper()), qPrintable(word));
    }
}

void checks_test::words_that_are_free_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<bool>("is_free");
    QTest::newRow("a plain name") << "City" << true;
    QTest::newRow("IEEESINGLE is not refused") << "IEEESINGLE" << true;
    QTest::newRow("what stands in its place is") << "teeesingle" << false;
    QTest::newRow("the value is not trimmed") << " SELECT" << true;
    QTest::newRow("a word of the shorter list only") << "to" << false;
    QTest::newRow("position too") << "Position" << false;
    QTest::newRow("nothing is no word") << "" << true;
    QTest::newRow("a part of a word") << "Sel" << true;
}

void checks_test::words_that_are_free()
{
    QFETCH(QString, word);
    QTEST(reserved_word_free(word), "is_free");
}

QTEST_GUILESS_MAIN(checks_test)
#include "checks_test.moc"
