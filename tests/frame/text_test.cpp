// What the program means by trim, same, numeric, pieces and so on.
#include "frame/text.h"

#include <QtTest/QTest>

class text_test : public QObject {
    Q_OBJECT
private slots:
    void trim_takes_outer_blanks_only_data();
    void trim_takes_outer_blanks_only();
    void same_text_is_blind_to_case_letter_by_letter_data();
    void same_text_is_blind_to_case_letter_by_letter();
    void containing_data();
    void containing();
    void replacing_data();
    void replacing();
    void only_the_first_is_removed_data();
    void only_the_first_is_removed();
    void splitting_data();
    void splitting();
    void a_start_of_a_text_data();
    void a_start_of_a_text();
    void line_ends_data();
    void line_ends();
    void numeric_data();
    void numeric();
    void to_16_bits_data();
    void to_16_bits();
    void int16_failures_data();
    void int16_failures();
    void a_number_in_front_data();
    void a_number_in_front();
    void dates_as_text_data();
    void dates_as_text();
    void plain_numbers_data();
    void plain_numbers();
    void dates_from_text_data();
    void dates_from_text();
};

void text_test::trim_takes_outer_blanks_only_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("trimmed");
    QTest::newRow("outer blanks go") << "  a b  "
                                     << "a b";
    QTest::newRow("inner blanks stay") << "a   b"
                                       << "a   b";
    QTest::newRow("a line end stays") << " a\r\n"
                                      << "a\r\n";
    QTest::newRow("a tab stays") << "\ta\t "
                                 << "\ta\t";
    QTest::newRow("a no-break space stays") << QString(QChar(0xA0)) + "a" << QString(QChar(0xA0)) + "a";
    QTest::newRow("only blanks are nothing") << "   "
                                             << "";
    QTest::newRow("nothing stays nothing") << ""
                                           << "";
}

void text_test::trim_takes_outer_blanks_only()
{
    QFETCH(QString, text);
    QTEST(trim(text), "trimmed");
}

void text_test::same_text_is_blind_to_case_letter_by_letter_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<bool>("same");
    QTest::newRow("capitals do not count") << "Order"
                                           << "oRDER" << true;
    QTest::newRow("accented letters neither") << "été"
                                              << "ÉTÉ" << true;
    QTest::newRow("an accent counts") << "e"
                                      << "é" << false;
    QTest::newRow("a sharp s is not SS") << "Straße"
                                         << "STRASSE" << false;
    QTest::newRow("blanks count") << "a"
                                  << "a " << false;
    QTest::newRow("a longer one differs") << "ab"
                                          << "a" << false;
    QTest::newRow("letters beyond the first plane")
        << QString::fromUcs4(U"\U00010428", 1) << QString::fromUcs4(U"\U00010400", 1) << true;
    QTest::newRow("two empty texts") << ""
                                     << "" << true;
}

void text_test::same_text_is_blind_to_case_letter_by_letter()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QTEST(same_text(a, b), "same");
    QTEST(same_text(b, a), "same");
}

void text_test::containing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("part");
    QTest::addColumn<bool>("found");
    QTest::newRow("in other capitals") << "Please UnSubscribe me"
                                       << "UNSUBSCRIBE" << true;
    QTest::newRow("at the very end") << "1037 unsubscribe"
                                     << "Unsubscribe" << true;
    QTest::newRow("not there") << "subscribe"
                               << "unsubscribe" << false;
    QTest::newRow("nothing is contained in nothing") << "abc"
                                                     << "" << false;
    QTest::newRow("a point is no pattern") << "abc"
                                           << "." << false;
    QTest::newRow("a start that breaks off and begins again") << "aab"
                                                              << "ab" << true;
    QTest::newRow("the part is longer") << "ab"
                                        << "abc" << false;
}

void text_test::containing()
{
    QFETCH(QString, text);
    QFETCH(QString, part);
    QTEST(contains_text(text, part), "found");
}

void text_test::replacing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("by");
    QTest::addColumn<QString>("result");
    QTest::newRow("all of them, in any case") << "aXbxc"
                                              << "x"
                                              << "-"
                                              << "a-b-c";
    QTest::newRow("one pass: what comes together then stays") << "ababcc"
                                                              << "abc"
                                                              << ""
                                                              << "abc";
    QTest::newRow("they do not overlap") << "aaa"
                                         << "aa"
                                         << "b"
                                         << "ba";
    QTest::newRow("replacing nothing changes nothing") << "abc"
                                                       << ""
                                                       << "-"
                                                       << "abc";
    QTest::newRow("what is put in is not looked at again") << "a"
                                                           << "a"
                                                           << "aa"
                                                           << "aa";
    QTest::newRow("a sharp s in front does not move the place") << "ßßKEYx"
                                                                << "key"
                                                                << ""
                                                                << "ßßx";
    QTest::newRow("a letter whose capital is longer elsewhere") << "ŉKEYx"
                                                                << "key"
                                                                << ""
                                                                << "ŉx";
    QTest::newRow("percent signs are letters") << "a%1b"
                                               << "a"
                                               << "%2"
                                               << "%2%1b";
    QTest::newRow("a pair is never taken apart")
        << QString("\U0001F600x") << QString(QChar(0xDE00)) << "" << QString("\U0001F600x");
}

void text_test::replacing()
{
    QFETCH(QString, text);
    QFETCH(QString, part);
    QFETCH(QString, by);
    QTEST(replace_all(text, part, by), "result");
    if (by.isEmpty())
        QTEST(remove_all(text, part), "result");
}

void text_test::only_the_first_is_removed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("result");
    QTest::newRow("the first of two") << "Name: my NAME: x"
                                      << "name:"
                                      << " my NAME: x";
    QTest::newRow("wherever it stands") << "xxName"
                                        << "name"
                                        << "xx";
    QTest::newRow("none") << "abc"
                          << "d"
                          << "abc";
    QTest::newRow("nothing") << "abc"
                             << ""
                             << "abc";
}

void text_test::only_the_first_is_removed()
{
    QFETCH(QString, text);
    QFETCH(QString, part);
    QTEST(remove_first(text, part), "result");
}

void text_test::splitting_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QStringList>("parts");
    QTest::newRow("nothing has no pieces") << ""
                                           << "," << QStringList{};
    QTest::newRow("no separator in it, one piece") << "abc"
                                                   << "," << QStringList{"abc"};
    QTest::newRow("an empty last piece counts") << "a,b,"
                                                << "," << QStringList{"a", "b", ""};
    QTest::newRow("empty lines count") << "\r\na\r\n\r\nb"
                                       << "\r\n"
                                       << QStringList{"", "a", "", "b"};
    QTest::newRow("a point is no pattern") << "a.b"
                                           << "." << QStringList{"a", "b"};
    QTest::newRow("a dash is no pattern") << "a-b-c"
                                          << "-" << QStringList{"a", "b", "c"};
    QTest::newRow("capitals of the separator count") << "aTabbtabc"
                                                     << "Tab" << QStringList{"a", "btabc"};
    QTest::newRow("an empty separator cuts nothing") << "abc"
                                                     << "" << QStringList{"abc"};
}

void text_test::splitting()
{
    QFETCH(QString, text);
    QFETCH(QString, separator);
    QTEST(pieces(text, separator), "parts");
}

void text_test::a_start_of_a_text_data()
{
    const QString emoji = "\U0001F600";
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("start");
    QTest::newRow("a start") << "abcdef" << 3 << "abc";
    QTest::newRow("more than there is") << "abc" << 9 << "abc";
    QTest::newRow("nothing of it") << "abc" << 0 << "";
    QTest::newRow("less than nothing is nothing, not all") << "abc" << -1 << "";
    QTest::newRow("a pair at the cut goes as a whole") << "a" + emoji << 2 << "a";
    QTest::newRow("a pair before the cut stays") << "a" + emoji + "b" << 3 << "a" + emoji;
    QTest::newRow("characters, not bytes") << QString(300, u'é') << 250 << QString(250, u'é');
}

void text_test::a_start_of_a_text()
{
    QFETCH(QString, text);
    QFETCH(int, count);
    QTEST(left(text, count), "start");
}

void text_test::line_ends_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("stored");
    QTest::newRow("each line feed gets a carriage return") << "a\nb\n"
                                                           << "a\r\nb\r\n";
    QTest::newRow("one more where there is one already") << "a\r\nb"
                                                         << "a\r\r\nb";
    QTest::newRow("a lone carriage return stays") << "a\rb"
                                                  << "a\rb";
    QTest::newRow("nothing") << ""
                             << "";
}

void text_test::line_ends()
{
    QFETCH(QString, text);
    QTEST(crlf_line_ends(text), "stored");
}

void text_test::numeric_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("number");
    for (const char *yes : {"1037", "000701", " 1037 ", "-5", "+5", "1,037", ".5", "5.", "1.25", "1e3", "1E+3", "1e-3"})
        QTest::newRow(qPrintable(QString("a number: %1").arg(yes))) << QString(yes) << true;
    for (const char *no :
         {"",    " ",    "-",    ".",      "Re 1037", "1037a", "1 037", "1.2.3", "1e", "e3",     "nan",
          "inf", "0x10", "&H10", "1037\n", "\t1",     "--5",   "5-",    ",5",    "$5", "\uFF15", "\u0661"})
        QTest::newRow(qPrintable(QString("no number: %1").arg(no))) << QString(no) << false;
}

void text_test::numeric()
{
    QFETCH(QString, text);
    QTEST(is_numeric(text), "number");
}

void text_test::to_16_bits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    QTest::newRow("small") << "7" << 7;
    QTest::newRow("the highest") << "32767" << 32767;
    QTest::newRow("the lowest") << "-32768" << -32768;
    QTest::newRow("with blanks and a comma") << " 1,037 " << 1037;
}

void text_test::to_16_bits()
{
    QFETCH(QString, text);
    QFETCH(int, number);
    QCOMPARE(int(to_int16(text)), number);
}

void text_test::int16_failures_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("description");
    QTest::newRow("one above the highest") << "32768" << 6 << "Overflow";
    QTest::newRow("one below the lowest") << "-32769" << 6 << "Overflow";
    QTest::newRow("far above") << "1e300" << 6 << "Overflow";
    QTest::newRow("a word") << "seven" << 13 << "Type mismatch";
    QTest::newRow("nothing") << "" << 13 << "Type mismatch";
}

void text_test::int16_failures()
{
    QFETCH(QString, text);
    QFETCH(int, number);
    QFETCH(QString, description);
    try {
        to_int16(text);
    } catch (const run_time_error &error) {
        QCOMPARE(int(error.number), number);
        QCOMPARE(error.description, description);
        return;
    }
    QFAIL("no failure");
}

void text_test::a_number_in_front_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    QTest::newRow("a number") << "12" << 12;
    QTest::newRow("a number and more") << "12ab3" << 12;
    QTest::newRow("leading blanks") << " 3" << 3;
    QTest::newRow("none") << "ab" << 0;
    QTest::newRow("nothing") << "" << 0;
    QTest::newRow("below zero") << "-4" << -4;
    QTest::newRow("a very long one does not wrap round") << "99999999999999999999" << 2147483647;
}

void text_test::a_number_in_front()
{
    QFETCH(QString, text);
    QTEST(leading_number(text), "number");
}

void text_test::dates_as_text_data()
{
    QTest::addColumn<QDateTime>("moment");
    QTest::addColumn<QString>("shown");
    const auto at = [](int month, int day, int hour, int minute) {
        return QDateTime(QDate(2026, month, day), QTime(hour, minute, 3), Qt::UTC);
    };
    QTest::newRow("afternoon") << at(8, 13, 13, 2) << "8/13/2026 1:02:03 PM";
    QTest::newRow("morning") << at(11, 2, 9, 45) << "11/2/2026 9:45:03 AM";
    QTest::newRow("midnight is twelve") << at(1, 1, 0, 0) << "1/1/2026 12:00:03 AM";
    QTest::newRow("noon is twelve") << at(12, 31, 12, 0) << "12/31/2026 12:00:03 PM";
}

void text_test::dates_as_text()
{
    QFETCH(QDateTime, moment);
    QTEST(us_date_time(moment), "shown");
    QFETCH(QString, shown);
    QCOMPARE(us_date(moment.date()), shown.section(u' ', 0, 0));
}

void text_test::plain_numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("plain");
    QTest::newRow("digits") << "007"
                            << "007";
    QTest::newRow("blanks and commas go") << " 1,037,000 "
                                          << "1037000";
    QTest::newRow("sign, point and exponent stay") << "-1,000.50E+3"
                                                   << "-1000.50E+3";
    QTest::newRow("no comma behind the point") << "1.0,5"
                                               << "";
    QTest::newRow("a comma in front") << ",5"
                                      << "";
    QTest::newRow("a word") << "seven"
                            << "";
    QTest::newRow("nothing") << ""
                             << "";
}

void text_test::plain_numbers()
{
    QFETCH(QString, text);
    QTEST(plain_number(text), "plain");
}

void text_test::dates_from_text_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDate>("day");
    QTest::addColumn<QDateTime>("moment");
    const QDate day(2026, 8, 3);
    const QDateTime one_o_clock(day, QTime(13, 2, 3), Qt::UTC);
    QTest::newRow("a day") << "8/3/2026" << day << QDateTime();
    QTest::newRow("a moment") << "8/3/2026 1:02:03 PM" << QDate() << one_o_clock;
    QTest::newRow("midnight") << "8/3/2026 12:00:00 AM" << QDate() << QDateTime(day, QTime(0, 0), Qt::UTC);
    QTest::newRow("noon") << "8/3/2026 12:00:00 PM" << QDate() << QDateTime(day, QTime(12, 0), Qt::UTC);
    QTest::newRow("no such day") << "2/30/2026" << QDate() << QDateTime();
    QTest::newRow("the day first") << "13/8/2026" << QDate() << QDateTime();
    QTest::newRow("without seconds") << "8/3/2026 1:02 PM" << QDate() << QDateTime();
    QTest::newRow("a blank behind") << "8/3/2026 " << QDate() << QDateTime();
    QTest::newRow("a word") << "today" << QDate() << QDateTime();
    QTest::newRow("nothing") << "" << QDate() << QDateTime();
}

void text_test::dates_from_text()
{
    QFETCH(QString, text);
    QTEST(us_date_in(text), "day");
    QTEST(us_date_time_in(text), "moment");
    QVERIFY(!us_date_time_in(text).isValid() || us_date_time(us_date_time_in(text)) == text);
}

QTEST_GUILESS_MAIN(text_test)
#include "text_test.moc"
