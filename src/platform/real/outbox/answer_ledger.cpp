#include "platform/real/outbox/answer_ledger.h"
#include "platform/real/durable_file.h"
#include <QFile>
#include <algorithm>

namespace outbox {

namespace {

constexpr qsizetype most_answers = 10;
constexpr qint64 an_hour = 3600;
constexpr qsizetype lines_worth_cleaning = 1000;
const QString ledger_file = QStringLiteral("answers.ledger");

// A clock that was set back must not keep an answer for ever.
bool is_recent(qint64 then, qint64 seconds)
{
    return qAbs(seconds - then) < an_hour;
}

QByteArray line_of(const QString &address, qint64 then)
{
    return QByteArray::number(then) + ' ' + address.toUtf8() + '\n';
}

}

answer_ledger::answer_ledger(const QString &in_folder) : folder(in_folder), clean_at(lines_worth_cleaning)
{
    QFile file(folder + u'/' + ledger_file);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray all = file.readAll();
    for (const QByteArray &line : all.split('\n')) {
        const qsizetype blank = line.indexOf(' ');
        bool is_number = false;
        const qint64 then = line.first(qMax<qsizetype>(blank, 0)).toLongLong(&is_number);
        if (!is_number)
            continue; // torn by a full disk
        answers[QString::fromUtf8(line.sliced(blank + 1))].append(then);
        ++lines;
    }
}

bool answer_ledger::is_full(const QString &address, qint64 seconds) const
{
    const QList<qint64> then = answers.value(address.toCaseFolded());
    return std::count_if(then.begin(), then.end(), [seconds](qint64 one) { return is_recent(one, seconds); }) >=
           most_answers;
}

void answer_ledger::note(const QString &address, qint64 seconds)
{
    const QString key = address.toCaseFolded();
    answers[key].append(seconds);
    if (++lines > clean_at)
        clean(seconds);
    else
        append_to_file(folder + u'/' + ledger_file, line_of(key, seconds));
}

void answer_ledger::clean(qint64 seconds)
{
    QByteArray all;
    lines = 0;
    for (auto one = answers.begin(); one != answers.end();) {
        one->removeIf([seconds](qint64 then) { return !is_recent(then, seconds); });
        for (const qint64 then : *one)
            all += line_of(one.key(), then);
        lines += one->size();
        one = one->isEmpty() ? answers.erase(one) : std::next(one);
    }
    replace_durably(folder, {ledger_file, all});
    clean_at = qMax(lines_worth_cleaning, 2 * lines);
}

}
