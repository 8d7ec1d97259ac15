// Upper case, folding and comparing letter by letter.
#include "platform/letter_case.h"

#include <QtTest/QTest>

class letter_case_test : public QObject {
    Q_OBJECT
private slots:
    void capitals_data();
    void capitals();
    void comparing_data();
    void comparing();
    void folding_joins_what_upper_case_joins();
    void a_lone_half_of_a_pair_is_a_letter();
};

void letter_case_test::capitals_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("upper");
    QTest::newRow("plain letters") << "Abz1_"
                                   << "ABZ1_";
    QTest::newRow("accented letters") << "éàñü"
                                      << "ÉÀÑÜ";
    QTest::newRow("a sharp s stays one letter") << "straße"
                                                << "STRAßE";
    QTest::newRow("a joined fi stays one letter") << "ﬁn"
                                                  << "ﬁN";
    QTest::newRow("greek and cyrillic") << "σж"
                                        << "ΣЖ";
    QTest::newRow("beyond the first plane") << "\U00010428"
                                            << "\U00010400";
    QTest::newRow("an emoji") << "\U0001F600"
                              << "\U0001F600";
}

void letter_case_test::capitals()
{
    QFETCH(QString, text);
    QTEST(upper_case(text), "upper");
    QCOMPARE(upper_case(text).size(), text.size());
}

void letter_case_test::comparing_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<int>("sign");
    QTest::newRow("equal but for case") << "ABC"
                                        << "abc" << 0;
    QTest::newRow("by letters, not by case") << "B"
                                             << "a" << 1;
    QTest::newRow("the shorter one first") << "ab"
                                           << "ABC" << -1;
    QTest::newRow("accented behind plain") << "z"
                                           << "é" << -1;
    QTest::newRow("by letter, not by half of a pair") << QString(QChar(0xFF5E)) << "\U0001F600" << -1;
    QTest::newRow("pairs that begin alike, in another case") << "a\U00010400"
                                                             << "a\U00010428" << 0;
    QTest::newRow("pairs that begin alike, another letter") << "a\U00010400z"
                                                            << "a\U00010429" << -1;
    QTest::newRow("a pair beside its first half") << QString("a\U00010400") << QString("a") + QChar(0xD801) << 1;
    QTest::newRow("two empty texts") << ""
                                     << "" << 0;
}

void letter_case_test::comparing()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(int, sign);
    const auto sign_of = [](int number) { return number < 0 ? -1 : number > 0 ? 1 : 0; };
    QCOMPARE(sign_of(compare_case_blind(a, b)), sign);
    QCOMPARE(sign_of(compare_case_blind(b, a)), -sign);
}

// A subject is stored as it came and looked for in capitals: the two must meet for every letter, or the mail would be
// stored again at each fetch.
void letter_case_test::folding_joins_what_upper_case_joins()
{
    for (char32_t letter = 1; letter < 0x2000; ++letter) {
        const QString as_it_came = QString::fromUcs4(&letter, 1);
        const QString twice = upper_case(upper_case(as_it_came));
        QVERIFY2(twice == upper_case(as_it_came), qPrintable(QString::number(letter, 16)));
        QVERIFY2(fold_case(fold_case(as_it_came)) == fold_case(as_it_came), qPrintable(QString::number(letter, 16)));
    }
    QCOMPARE(fold_case(u"ÉÀß"), QString("éàß"));
    QCOMPARE(fold_letter(U'Q'), U'q');
}

void letter_case_test::a_lone_half_of_a_pair_is_a_letter()
{
    const QString lone = QString("a") + QChar(0xD83D);
    QCOMPARE(upper_case(lone), QString("A") + QChar(0xD83D));
    QVERIFY(compare_case_blind(lone, u"a") > 0);
}

QTEST_GUILESS_MAIN(letter_case_test)
#include "letter_case_test.moc"
