// The list of fixed tables against the store as it is delivered.
#include "frame/fixed_tables.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest/QTest>

class fixed_tables_test : public QObject {
    Q_OBJECT
private slots:
    void they_are_those_of_the_delivered_store();
};

void fixed_tables_test::they_are_those_of_the_delivered_store()
{
    QFile schema(QStringLiteral(SOURCE_ROOT) + "/delivered/store/schema.sql");
    QVERIFY(schema.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(schema.readAll());
    QStringList delivered;
    static const QRegularExpression table("CREATE TABLE \"([^\"]+)\"");
    for (auto found = table.globalMatch(text); found.hasNext();)
        delivered += found.next().captured(1);
    QVERIFY(delivered.contains("install_tbl"));
    QCOMPARE(fixed_tables(), delivered);
}

QTEST_GUILESS_MAIN(fixed_tables_test)
#include "fixed_tables_test.moc"
