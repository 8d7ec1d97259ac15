// How many mailings may go out: so many an hour, a sixth of them at once at most. What is left is kept in a file, so
// that a restart gives nothing away.
#pragma once
#include <QString>

namespace outbox {

class mailing_rate {
public:
    mailing_rate(const QString &folder, int an_hour); // 0: no limit
    qsizetype allowed(qint64 seconds);                // at this moment
    void note_one(qint64 seconds);                    // one goes out
    qint64 next_moment(qint64 seconds);               // when the next one may go; seconds itself when it may now

private:
    void fill(qint64 seconds);

    QString folder;
    double limit, most;
    double tokens;
    qint64 at = 0;
};

}
