#include "platform/real/jet/like.h"
#include "platform/letter_case.h"
#include <QList>
#include <string>

namespace jet {

namespace {

using letters = std::u32string;

letters folded(QStringView text)
{
    const QList<uint> points = text.toUcs4();
    letters made;
    made.reserve(size_t(points.size()));
    for (const uint point : points)
        made += fold_letter(point);
    return made;
}

// Whether a letter is in the set whose inside is pattern[start..end).
bool in_set(char32_t letter, const letters &pattern, size_t start, size_t end)
{
    bool inverted = false;
    if (start < end && (pattern[start] == U'!' || pattern[start] == U'^')) {
        inverted = true;
        ++start;
    }
    bool found = false;
    for (size_t at = start; at < end; ++at) {
        if (at + 2 < end && pattern[at + 1] == U'-') {
            found = found || (letter >= pattern[at] && letter <= pattern[at + 2]);
            at += 2;
        } else {
            found = found || letter == pattern[at];
        }
    }
    return found != inverted;
}

// One step of the pattern other than %: whether it takes the letter, and where the pattern goes on.
bool takes(char32_t letter, const letters &pattern, size_t &at)
{
    if (pattern[at] == U'_') {
        ++at;
        return true;
    }
    if (pattern[at] != U'[')
        return pattern[at++] == letter;
    const size_t start = at + 1;
    const size_t end = pattern.find(U']', start);
    at = end + 1;
    return start == end || in_set(letter, pattern, start, end);
}

}

bool pattern_is_whole(QStringView pattern)
{
    for (qsizetype at = pattern.indexOf(u'['); at >= 0; at = pattern.indexOf(u'[', at)) {
        at = pattern.indexOf(u']', at);
        if (at < 0)
            return false;
    }
    return true;
}

// Goes back to the last % only, so the time is at most text times pattern.
bool is_like(QStringView text, QStringView pattern)
{
    const letters letters_in = folded(text);
    const letters steps = folded(pattern);
    size_t at = 0, step = 0;
    size_t retry_at = 0, retry_step = std::u32string::npos;
    while (at < letters_in.size()) {
        if (step < steps.size() && steps[step] == U'%') {
            retry_step = ++step;
            retry_at = at;
            continue;
        }
        if (step < steps.size() && takes(letters_in[at], steps, step)) {
            ++at;
            continue;
        }
        if (retry_step == std::u32string::npos)
            return false;
        step = retry_step;
        at = ++retry_at;
    }
    while (step < steps.size() && steps[step] == U'%')
        ++step;
    return step == steps.size();
}

}
