// What a table will hold of a piece, as the wizard tells beforehand.
#include "maps/stored_value.h"

#include <QtTest/QTest>

class stored_value_test : public QObject {
    Q_OBJECT
private slots:
    void each_value_data()
    {
        QTest::addColumn<QString>("piece");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("was_cut");
        QTest::newRow("without a text the trimmed piece") << "  Bath " << QStringList() << "Bath" << false;
        QTest::newRow("a text goes") << "City: Bath" << QStringList{"City:"} << "Bath" << false;
        QTest::newRow("in whatever capitals") << "CITY: Bath city:" << QStringList{"City:"} << "Bath" << false;
        QTest::newRow("an outer blank of the last text is lost in the store")
            << "a b a" << QStringList{"a "} << "b" << false; // "a" goes twice
        QTest::newRow("an outer blank of the first text, too") << "x y xz" << QStringList{" x", "q"} << "y z" << false;
        QTest::newRow("an inner one stays") << "a-b- c" << QStringList{"a", "- ", "b"} << "-c" << false;
        QTest::newRow("a text with @@@ is cut in two") << "one two" << QStringList{"one@@@two"} << "" << false;
        QTest::newRow("255 letters stay")
            << QString("x").repeated(255) << QStringList() << QString("x").repeated(255) << false;
        QTest::newRow("256 are cut to 250")
            << QString("x").repeated(256) << QStringList() << QString("x").repeated(250) << true;
        QTest::newRow("nothing is left") << "City" << QStringList{"City"} << "" << false;
        QTest::newRow("a blank as a text is lost in the store, so it shortens nothing")
            << QString("x ").repeated(128) + "x" << QStringList{" "} << QString("x ").repeated(125) << true;
        QTest::newRow("capitals go as well, so nothing is left to cut")
            << "b" + QString("aA").repeated(300) << QStringList{"a"} << "b" << false;
    }

    void each_value()
    {
        QFETCH(QString, piece);
        QFETCH(QStringList, texts);
        QFETCH(QString, stored);
        QFETCH(bool, was_cut);
        const maps::kept_value kept = maps::stored_value("city", piece, texts);
        QCOMPARE(kept.text, stored);
        QCOMPARE(kept.was_cut, was_cut);
    }
};

QTEST_GUILESS_MAIN(stored_value_test)
#include "stored_value_test.moc"
