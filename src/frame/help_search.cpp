#include "frame/help_search.h"

#include <algorithm>

namespace {

constexpr int title_weight = 50;
constexpr int most_counted = 10; // a word that a page repeats says no more about it
constexpr qsizetype before_word = 40;
constexpr qsizetype excerpt_length = 120;

// Where the word begins a word of the text, from a place on; -1: nowhere.
qsizetype word_place(const QString &text, const QString &word, qsizetype from)
{
    qsizetype at = text.indexOf(word, from, Qt::CaseInsensitive);
    while (at > 0 && text[at - 1].isLetterOrNumber())
        at = text.indexOf(word, at + 1, Qt::CaseInsensitive);
    return at;
}

int times_in(const QString &text, const QString &word)
{
    int times = 0;
    for (qsizetype at = word_place(text, word, 0); at >= 0 && times < most_counted; at = word_place(text, word, at + 1))
        ++times;
    return times;
}

// 0: a word is missing.
int worth_of(const help::searched_page &page, const QStringList &words)
{
    int worth = 0;
    for (const QString &word : words) {
        const int own = times_in(page.title, word) * title_weight + times_in(page.text, word);
        if (own == 0)
            return 0;
        worth += own;
    }
    return worth;
}

QString excerpt_of(const QString &text, const QString &word)
{
    const qsizetype found = qMax<qsizetype>(word_place(text, word, 0), 0);
    qsizetype begin = qMax<qsizetype>(found - before_word, 0);
    if (begin > 0)
        begin = text.indexOf(u' ', begin) + 1; // at a whole word; there is one, or the blank before the word itself
    begin = qMin(begin, found);
    const QString cut = text.mid(begin, excerpt_length).simplified();
    return (begin > 0 ? QStringLiteral("... ") : QString()) + cut +
           (begin + excerpt_length < text.size() ? QStringLiteral(" ...") : QString());
}

}

QStringList help::words_of(const QString &typed)
{
    QStringList words;
    QString word;
    const QString ended = typed + u' ';
    for (const QChar letter : ended) {
        if (letter.isLetterOrNumber() || letter == u'_') {
            word += letter;
        } else if (!word.isEmpty()) {
            words += word;
            word.clear();
        }
    }
    words.removeDuplicates();
    return words;
}

std::vector<help::search_result> help::search(const std::vector<searched_page> &pages, const QStringList &words)
{
    std::vector<std::pair<int, search_result>> found;
    for (const searched_page &page : pages) {
        const int worth = words.isEmpty() ? 0 : worth_of(page, words);
        if (worth > 0)
            found.push_back({worth, {page.name, page.title, excerpt_of(page.text, words.first())}});
    }
    std::stable_sort(found.begin(), found.end(), [](const auto &a, const auto &b) { return a.first > b.first; });
    std::vector<search_result> results;
    for (auto &[worth, result] : found)
        results.push_back(std::move(result));
    return results;
}
