// Rows that come, go and change without a reset, over the Outbox's list. How a person sees it: outbox_frm_test.cpp.
#include "screens/frame/outbox_list.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QTest>

namespace {

// "b:Order 2" is the mail b with that subject.
std::vector<outbox::kept_mail> mails(const QStringList &texts)
{
    std::vector<outbox::kept_mail> made;
    for (const QString &text : texts) {
        outbox::kept_mail mail;
        mail.id = text.section(':', 0, 0);
        mail.Subject = text.section(':', 1);
        made.push_back(mail);
    }
    return made;
}

QString subjects(const outbox_list &list)
{
    QStringList all;
    for (int row = 0; row < list.rowCount(); ++row)
        all += list.index(row, outbox_list::subject_column).data().toString();
    return all.join(' ');
}

}

class sorted_list_test : public QObject {
    Q_OBJECT
private slots:
    void rows_come_go_and_change_without_a_reset_data()
    {
        QTest::addColumn<QStringList>("then");
        QTest::addColumn<bool>("sorted");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<int>("row_of_c");
        const QStringList all{"a:4", "b:3", "c:2", "d:1"};
        QTest::newRow("nothing changes") << all << false << "4 3 2 1" << 2;
        QTest::newRow("the first goes") << all.mid(1) << false << "3 2 1" << 1;
        QTest::newRow("several go") << QStringList{"c:2"} << false << "2" << 0;
        QTest::newRow("all go") << QStringList() << false << "" << -1;
        QTest::newRow("one comes in the middle")
            << QStringList{"a:4", "b:3", "bb:9", "c:2", "d:1"} << false << "4 3 9 2 1" << 3;
        QTest::newRow("one changes") << QStringList{"a:4", "b:3", "c:7", "d:1"} << false << "4 3 7 1" << 2;
        QTest::newRow("sorted, and one comes") << (all + QStringList{"e:2.5"}) << true << "1 2 2.5 3 4" << 1;
        QTest::newRow("sorted, and one changes") << QStringList{"a:4", "b:3", "c:7", "d:1"} << true << "1 3 4 7" << 3;
        QTest::newRow("sorted, and two go") << QStringList{"a:4", "c:2"} << true << "2 4" << 0;
    }
    void rows_come_go_and_change_without_a_reset()
    {
        QFETCH(QStringList, then);
        QFETCH(bool, sorted);
        outbox_list list;
        QAbstractItemModelTester whole(&list, QAbstractItemModelTester::FailureReportingMode::Fatal);
        list.set_mails(mails({"a:4", "b:3", "c:2", "d:1"}));
        if (sorted)
            list.sort(outbox_list::subject_column);
        QCOMPARE(subjects(list), sorted ? "1 2 3 4" : "4 3 2 1");
        const QPersistentModelIndex c = list.index(sorted ? 1 : 2, 0);
        QSignalSpy resets(&list, &QAbstractItemModel::modelReset);
        list.set_mails(mails(then));
        QTEST(subjects(list), "shown");
        QTEST(c.row(), "row_of_c");
        QCOMPARE(resets.size(), 0);
    }

    void a_thousand_of_two_thousand_selected_rows_go_at_once()
    {
        QStringList all, half;
        for (int number = 0; number < 2000; ++number) {
            all += QString("%1:%2").arg(number, 5).arg(number * 7919 % 2000);
            if (number % 2 == 0)
                half += all.last();
        }
        outbox_list list;
        list.set_mails(mails(all));
        list.sort(outbox_list::subject_column);
        QItemSelectionModel selection(&list);
        selection.select({list.index(0, 0), list.index(1999, 4)}, QItemSelectionModel::Select);
        QElapsedTimer time;
        time.start();
        list.set_mails(mails(half));
        QVERIFY2(time.elapsed() < 1000, qPrintable(QString::number(time.elapsed())));
        QCOMPARE(selection.selectedRows().size(), 1000);
    }
};

QTEST_MAIN(sorted_list_test)
#include "sorted_list_test.moc"
