// Full-text search over the pages of the help. Every word must occur in a page, also as the beginning of a longer one.
#pragma once
#include <QString>
#include <QStringList>
#include <vector>

namespace help {

struct searched_page {
    QString name;
    QString title;
    QString text;
};

struct search_result {
    QString name;
    QString title;
    QString excerpt; // around the first word that was found
};

QStringList words_of(const QString &typed);

// The best first: words in the title count most, then how often they stand in the text.
std::vector<search_result> search(const std::vector<searched_page> &pages, const QStringList &words);

}
