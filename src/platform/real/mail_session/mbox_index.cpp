#include "platform/real/mail_session/mbox_index.h"
#include "platform/real/mail_session/from_line.h"
#include <QHash>
#include <ctime>

namespace mbox {

namespace {

constexpr qint64 piece_size = 1024 * 1024;
constexpr qint64 resting_ns = 10'000'000'000;

// Collects the mails of a file piece by piece. Behind a piece comes the next one from where a mail could begin that
// did not show whole.
class walk {
public:
    walk(const file &in, const file_state &at_first) : mails(in), size(at_first.size) {}

    std::vector<mail_place> all()
    {
        for (qint64 at = 0; at < size && places.size() <= most_mails;) {
            const QByteArray piece = mails.read(at, qMin(piece_size, size - at));
            if (piece.isEmpty())
                break;
            at = take(piece, at);
        }
        end_mail(size);
        places.resize(qMin(places.size(), most_mails));
        return std::move(places);
    }

private:
    // Gives where the next piece begins.
    qint64 take(QByteArrayView piece, qint64 at)
    {
        const bool is_last = at + piece.size() >= size;
        // A From line and the one below it must be whole, and so must what the print is made of.
        const qsizetype sure = is_last ? piece.size() : piece.size() - longest_from_lines;
        if (at == 0 && piece.startsWith("From "))
            begin_mail(piece, 0);
        for (qsizetype found = piece.indexOf("\nFrom "); found >= 0 && found < sure;
             found = piece.indexOf("\nFrom ", found + 1)) {
            const QByteArrayView here = piece.sliced(found + 1);
            if (begins_mail(here.first(qMin(here.size(), longest_from_lines))))
                begin_mail(here, at + found + 1);
        }
        return is_last ? size : at + sure;
    }

    void begin_mail(QByteArrayView bytes, qint64 at)
    {
        if (places.size() > most_mails)
            return;
        end_mail(at);
        places.push_back({at, 0, print_of(bytes)});
    }

    void end_mail(qint64 at)
    {
        if (!places.empty() && places.back().size == 0)
            places.back().size = at - places.back().at;
    }

    const file &mails;
    const qint64 size;
    std::vector<mail_place> places;
};

bool is_resting(const file_state &state)
{
    return qint64(time(nullptr)) * 1000000000 - state.changed_ns >= resting_ns;
}

bool ends_in_empty_line(const file &mails, const file_state &state)
{
    const QByteArray end = mails.read(qMax<qint64>(0, state.size - 4), qMin<qint64>(4, state.size));
    return end.endsWith("\n\n") || end.endsWith("\n\r\n");
}

}

quint64 print_of(QByteArrayView first_bytes)
{
    return qHash(first_bytes.first(qMin(first_bytes.size(), qsizetype(print_size))), 0);
}

index index_of(const file &mails)
{
    index found{mails.state(), {}, false};
    found.mails = walk(mails, found.state).all();
    found.left_out_last = !found.mails.empty() && !ends_in_empty_line(mails, found.state) && !is_resting(found.state);
    if (found.left_out_last)
        found.mails.pop_back();
    return found;
}

}
