#include "platform/real/outbox/delivery_line.h"

namespace outbox {

namespace {

QString counted(qint64 number, const char *one, const char *many)
{
    return QString::number(number) + QLatin1String(number == 1 ? one : many);
}

QString without_full_stop(const QString &sentence)
{
    return sentence.endsWith(u'.') ? sentence.chopped(1) : sentence;
}

QString waiting_line(const delivery_facts &facts)
{
    const QString waits = counted(facts.left.waiting, " mail waits in the Outbox", " mails wait in the Outbox");
    if (facts.keeps_all)
        return waits + QStringLiteral(": sending is switched off");
    if (facts.busy)
        return waits + QStringLiteral(": sending");
    if (!facts.failure.isEmpty() && !facts.next_try.isEmpty())
        return QStringLiteral("%1: %2: tried again at %3").arg(waits, without_full_stop(facts.failure), facts.next_try);
    if (!facts.failure.isEmpty())
        return QStringLiteral("%1: %2").arg(waits, without_full_stop(facts.failure));
    return facts.limited ? waits + QStringLiteral(": mailings go out evenly over the hour") : waits;
}

}

QString delivery_line(const delivery_facts &facts)
{
    QStringList sentences;
    if (facts.left.waiting > 0)
        sentences.append(waiting_line(facts));
    else if (facts.of_disk && !facts.failure.isEmpty())
        sentences.append(QStringLiteral("The Outbox cannot be tidied: ") + without_full_stop(facts.failure));
    if (facts.left.held > 0)
        sentences.append(counted(facts.left.held, " answer is held", " answers are held"));
    if (facts.left.refused > 0)
        sentences.append(counted(facts.left.refused, " mail was refused", " mails were refused"));
    if (facts.left.unknown > 0)
        sentences.append(counted(facts.left.unknown, " mail", " mails") + QStringLiteral(" may or may not have gone"));
    return sentences.join(QStringLiteral("; "));
}

QString trouble_words(const delivery_facts &facts)
{
    if (facts.keeps_all || facts.busy || facts.failure.isEmpty())
        return {};
    const QString what = without_full_stop(facts.failure) + u'.';
    return facts.next_try.isEmpty() ? what : QStringLiteral("%1 It is tried again at %2.").arg(what, facts.next_try);
}

}
