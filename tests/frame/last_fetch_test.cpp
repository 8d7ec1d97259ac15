// What the status bar says of the last fetch: whole, stopped by the user, or failed.
#include "frame/last_fetch.h"
#include "frame/session.h"
#include "frame/status.h"
#include "platform/clock.h"

#include <QtTest/QTest>

namespace {

constexpr const char *rest_follows = ". What was taken in until then stands; the next fetch takes the rest.";

}

class last_fetch_test : public QObject {
    Q_OBJECT

    QDateTime moment;

    void note_at(int hour, fetch_end how)
    {
        moment.setTime(QTime(hour, 5, 0));
        note_fetch_end(how);
    }

private slots:
    void init()
    {
        session = {};
        moment = QDateTime(QDate(2026, 11, 21), QTime(9, 0), Qt::UTC);
        set_clock([this] { return moment; });
    }
    void cleanup() { set_clock({}); }

    void before_the_first_fetch_nothing_is_said()
    {
        QCOMPARE(last_fetch_words().line, QString());
        QCOMPARE(last_fetch_words().whole, QString());
    }

    void one_to_the_end_is_fetched()
    {
        note_at(9, fetch_end::whole);
        QCOMPARE(last_fetch_words().line, "Fetched 9:05:00 AM");
        QCOMPARE(last_fetch_words().whole, "Mail was last fetched 11/21/2026 9:05:00 AM");
    }

    void one_that_the_user_stopped_is_not()
    {
        note_at(9, fetch_end::stopped);
        QCOMPARE(last_fetch_words().line, "Fetch stopped 9:05:00 AM");
        QCOMPARE(last_fetch_words().whole, QString("You stopped fetching mail 11/21/2026 9:05:00 AM") + rest_follows);
    }

    void one_that_failed_is_not_and_the_last_one_to_the_end_is_still_known()
    {
        note_at(9, fetch_end::whole);
        note_at(10, fetch_end::failed);
        QCOMPARE(last_fetch_words().line, "Fetch failed 10:05:00 AM");
        QCOMPARE(last_fetch_words().whole, QString("Mail could not be fetched 11/21/2026 10:05:00 AM") + rest_follows +
                                               "\nMail was last fetched 11/21/2026 9:05:00 AM.");
    }

    void one_whose_mails_came_into_no_table_is_no_failure_of_fetching()
    {
        note_at(9, fetch_end::whole);
        note_at(10, fetch_end::unfilled);
        QCOMPARE(last_fetch_words().line, "Tables not filled 10:05:00 AM");
        QCOMPARE(last_fetch_words().whole,
                 "Mail was fetched 11/21/2026 10:05:00 AM, but not all of it could be put into "
                 "its tables. The next fetch tries it again.");
        QCOMPARE(session.last_fetch.time(), QTime(9, 5));
    }

    void the_latest_one_counts()
    {
        note_at(9, fetch_end::stopped);
        note_at(10, fetch_end::failed);
        QCOMPARE(last_fetch_words().line, "Fetch failed 10:05:00 AM");
        note_at(11, fetch_end::stopped);
        QCOMPARE(last_fetch_words().line, "Fetch stopped 11:05:00 AM");
        note_at(12, fetch_end::whole);
        QCOMPARE(last_fetch_words().line, "Fetched 12:05:00 PM");
    }

    void one_of_another_day_has_its_date()
    {
        note_at(9, fetch_end::failed);
        moment = moment.addDays(1);
        QCOMPARE(last_fetch_words().line, "Fetch failed 11/21/2026 9:05:00 AM");
    }

    void whoever_shows_it_is_told()
    {
        int told = 0;
        set_mails_changed_sink([&told] { ++told; });
        note_at(9, fetch_end::failed);
        set_mails_changed_sink({});
        QCOMPARE(told, 1);
    }
};

QTEST_GUILESS_MAIN(last_fetch_test)
#include "last_fetch_test.moc"
