// Commits that are held back: by whom, against what, and what is on disk once nobody holds them any more. What commits
// otherwise: durability_test.cpp.
#include "platform/outside_effects.h"
#include "support/read_store.h"
#include "support/test_store.h"

#include <QCoreApplication>
#include <QTest>
#include <QTimer>
#include <memory>

namespace {

constexpr int beyond_one_transaction = 20001; // statements: one more than are left to a kill

struct watched_store : test_store {
    watched_store() { connection().barrier(); }

    void write(int times = 1)
    {
        for (int each = 0; each < times; ++each)
            run("insert into unsubscribe_tbl(email) values('ann@example.net')");
    }
    int on_disk() const { return read_store(path(), "select count(*) from unsubscribe_tbl").value(0).toInt(); }
};

}

class held_commits_test : public QObject {
    Q_OBJECT
private slots:
    void an_effect_meanwhile_commits_nothing()
    {
        watched_store store;
        const held_commits together;
        store.write();
        before_outside_effect();
        QVERIFY(commits_are_held());
        QCOMPARE(store.on_disk(), 0);
    }

    void the_first_effect_behind_commits_all()
    {
        watched_store store;
        {
            const held_commits together;
            store.write(3);
        }
        QVERIFY(!commits_are_held());
        QCOMPARE(store.on_disk(), 0); // letting go alone is no effect
        before_outside_effect();
        QCOMPARE(store.on_disk(), 3);
    }

    void whoever_holds_within_another_does_not_let_go_for_it()
    {
        watched_store store;
        auto outer = std::make_unique<held_commits>();
        store.write();
        {
            const held_commits inner;
            store.write();
        }
        QVERIFY(commits_are_held());
        before_outside_effect();
        QCOMPARE(store.on_disk(), 0);
        outer.reset();
        QVERIFY(!commits_are_held());
        before_outside_effect();
        QCOMPARE(store.on_disk(), 2);
    }

    void a_failure_lets_go()
    {
        watched_store store;
        QVERIFY(error_number_of([&store] {
                    const held_commits together;
                    store.write();
                    store.run("insert into no_such_table(email) values('a')");
                }) != 0);
        QVERIFY(!commits_are_held());
        before_outside_effect();
        QCOMPARE(store.on_disk(), 1); // what was written before it stays, as ever
    }

    void many_statements_or_a_long_time_commit_by_themselves()
    {
        watched_store store;
        store.write(beyond_one_transaction);
        QVERIFY2(store.on_disk() > 0, qPrintable(QString::number(store.on_disk())));
    }

    void held_neither_many_statements_nor_a_long_time_do()
    {
        watched_store store;
        {
            const held_commits together;
            store.write(beyond_one_transaction);
            QCOMPARE(store.on_disk(), 0);
        }
        store.write(); // and it is done at the next chance
        QCOMPARE(store.on_disk(), beyond_one_transaction);
    }

    void held_the_event_loop_commits_nothing_when_it_waits()
    {
        watched_store store;
        {
            const held_commits together;
            store.write();
            QTimer::singleShot(20, qApp, &QCoreApplication::quit);
            QCoreApplication::exec();
            QCOMPARE(store.on_disk(), 0);
        }
        QTimer::singleShot(20, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
        QCOMPARE(store.on_disk(), 1);
    }
};

QTEST_GUILESS_MAIN(held_commits_test)
#include "held_commits_test.moc"
