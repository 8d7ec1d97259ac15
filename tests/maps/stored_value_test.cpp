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
        QTest::newRow("without a text the trimmed piece") << "  Bath " << QStringList() << "Bath";
        QTest::newRow("a text goes") << "City: Bath" << QStringList{"City:"} << "Bath";
        QTest::newRow("in whatever capitals") << "CITY: Bath city:" << QStringList{"City:"} << "Bath";
        QTest::newRow("an outer blank of the last text is lost in the store")
            << "a b a" << QStringList{"a "} << "b"; // "a" goes twice
        QTest::newRow("an outer blank of the first text, too") << "x y xz" << QStringList{" x", "q"} << "y z";
        QTest::newRow("an inner one stays") << "a-b- c" << QStringList{"a", "- ", "b"} << "-c";
        QTest::newRow("a text with @@@ is cut in two") << "one two" << QStringList{"one@@@two"} << "";
        QTest::newRow("255 letters stay") << QString("x").repeated(255) << QStringList() << QString("x").repeated(255);
        QTest::newRow("256 are cut to 250")
            << QString("x").repeated(256) << QStringList() << QString("x").repeated(250);
        QTest::newRow("nothing is left") << "City" << QStringList{"City"} << "";
    }

    void each_value()
    {
        QFETCH(QString, piece);
        QFETCH(QStringList, texts);
        QFETCH(QString, stored);
        QCOMPARE(maps::stored_value("city", piece, texts), stored);
    }
};

QTEST_GUILESS_MAIN(stored_value_test)
#include "stored_value_test.moc"
