// Full-text search over the pages of the help.
#include "frame/help_search.h"

#include <QTest>

namespace {

QStringList names_found(const std::vector<help::searched_page> &pages, const QString &typed)
{
    QStringList names;
    for (const help::search_result &result : help::search(pages, help::words_of(typed)))
        names += result.name;
    return names;
}

const std::vector<help::searched_page> &some_pages()
{
    static const std::vector<help::searched_page> pages{
        {"outbox", "Outbox", "What waits to be sent. A mail that was refused stays here."},
        {"fetch", "Fetch Mail", "Takes the form mail out of the Inbox. Nothing is sent. The mail, the mail, the mail."},
        {"backup", "Back-up", "Your data is copied into a folder."},
    };
    return pages;
}

}

class help_search_test : public QObject {
    Q_OBJECT
private slots:
    void typed_text_falls_into_words_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("nothing") << "" << QStringList();
        QTest::newRow("blanks and signs") << "  ?! - " << QStringList();
        QTest::newRow("two words") << " back  up " << QStringList{"back", "up"};
        QTest::newRow("a hyphen parts") << "back-up" << QStringList{"back", "up"};
        QTest::newRow("an underline joins") << "Tessaly_Inbox" << QStringList{"Tessaly_Inbox"};
        QTest::newRow("the same word twice") << "mail mail" << QStringList{"mail"};
    }
    void typed_text_falls_into_words()
    {
        QFETCH(QString, typed);
        QFETCH(QStringList, words);
        QCOMPARE(help::words_of(typed), words);
    }

    void pages_are_found_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("nothing typed finds nothing") << "" << QStringList();
        QTest::newRow("a word in any case") << "REFUSED" << QStringList{"outbox"};
        QTest::newRow("the beginning of a word") << "refus" << QStringList{"outbox"};
        QTest::newRow("not the middle of a word") << "fused" << QStringList();
        QTest::newRow("every word must be there") << "sent folder" << QStringList();
        QTest::newRow("two words of one page") << "data folder" << QStringList{"backup"};
        QTest::newRow("a title counts before a text") << "outbox" << QStringList{"outbox"};
        QTest::newRow("the page that speaks of it comes first") << "mail" << QStringList{"fetch", "outbox"};
        QTest::newRow("equal ones keep their order") << "sent" << QStringList{"outbox", "fetch"};
    }
    void pages_are_found()
    {
        QFETCH(QString, typed);
        QFETCH(QStringList, names);
        QCOMPARE(names_found(some_pages(), typed), names);
    }

    void the_excerpt_shows_the_word()
    {
        const QString text = QString("Many words come first here. ").repeated(10) + "Then the needle stands. " +
                             QString("And many more follow. ").repeated(10);
        const auto found = help::search({{"page", "Page", text}}, {"needle"});
        QCOMPARE(found.size(), size_t(1));
        QVERIFY(found[0].excerpt.contains("Then the needle stands."));
        QVERIFY(found[0].excerpt.startsWith("... "));
        QVERIFY(found[0].excerpt.endsWith(" ..."));
        QVERIFY(found[0].excerpt.size() < 140);
    }

    void a_short_text_is_its_own_excerpt()
    {
        const auto found = help::search({{"page", "Page", "The needle."}}, {"needle"});
        QCOMPARE(found[0].excerpt, "The needle.");
    }

    void a_word_of_the_title_alone_shows_the_texts_beginning()
    {
        const auto found = help::search({{"page", "Needle", "Something else."}}, {"needle"});
        QCOMPARE(found[0].excerpt, "Something else.");
    }
};

QTEST_GUILESS_MAIN(help_search_test)
#include "help_search_test.moc"
