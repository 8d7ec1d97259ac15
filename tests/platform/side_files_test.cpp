// Whether a journal beside a file was left by that very file: told from the first 100 bytes of the file, and from the
// page that the journal kept of them. Both are written here by hand, as the format says.
#include "platform/real/jet/side_files.h"
#include "support/plain_files.h"

#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest/QTest>

namespace {

constexpr int page_size = 512, sector_size = 512;

void put_number(QByteArray &bytes, int at, quint32 number)
{
    qToBigEndian(number, bytes.data() + at);
}

// The first page of a file: the counter of its changes, its pages, and the change for which the pages were counted.
QByteArray first_page(quint32 changes, quint32 pages, quint32 counted_at)
{
    QByteArray page(page_size, '\0');
    page.replace(0, 16, QByteArray("SQLite format 3\0", 16));
    qToBigEndian(quint16(page_size), page.data() + 16);
    put_number(page, 24, changes);
    put_number(page, 28, pages);
    put_number(page, 92, counted_at);
    return page;
}

// A journal of one segment with one page in it.
QByteArray journal_of(quint32 pages_before, quint32 number, const QByteArray &page, quint32 records = 1)
{
    QByteArray journal(sector_size, '\0');
    journal.replace(0, 8, "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7");
    put_number(journal, 8, records);
    put_number(journal, 16, pages_before);
    put_number(journal, 20, sector_size);
    put_number(journal, 24, page_size);
    QByteArray record(4, '\0');
    put_number(record, 0, number);
    return journal + record + page + QByteArray(4, '\0');
}

const QByteArray another_page(page_size, 'x');

}

class side_files_test : public QObject {
    Q_OBJECT
private slots:
    void a_journal_belongs_to_the_file_that_left_it_data();
    void a_journal_belongs_to_the_file_that_left_it();
};

void side_files_test::a_journal_belongs_to_the_file_that_left_it_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("journal");
    QTest::addColumn<bool>("belongs");
    const auto row = [](const char *name, const QByteArray &file, const QByteArray &journal, bool belongs) {
        QTest::newRow(name) << file << journal << belongs;
    };
    constexpr quint32 last = 0xffffffff;
    row("the first page is not changed yet", first_page(7, 9, 7), journal_of(9, 1, first_page(7, 9, 7)), true);
    row("the first page is changed", first_page(8, 10, 8), journal_of(9, 1, first_page(7, 9, 7)), true);
    row("the file is two changes on", first_page(9, 10, 9), journal_of(9, 1, first_page(7, 9, 7)), false);
    row("the file is older", first_page(6, 9, 6), journal_of(9, 1, first_page(7, 9, 7)), false);
    row("the counter begins anew with this change", first_page(0, 9, 0), journal_of(9, 1, first_page(last, 9, last)),
        true);
    row("the counter began anew a change before", first_page(1, 9, 1), journal_of(9, 1, first_page(last, 9, last)),
        false);
    row("the file is one change before the new beginning", first_page(last, 9, last),
        journal_of(9, 1, first_page(0, 9, 0)), false);
    row("no first page, as many pages", first_page(7, 9, 7), journal_of(9, 2, another_page), true);
    row("no first page, other pages", first_page(7, 8, 7), journal_of(9, 2, another_page), false);
    row("no first page, and the pages were counted before the last change", first_page(7, 8, 6),
        journal_of(9, 2, another_page), true);
    row("no first page, and the pages were never counted", first_page(0, 0, 0), journal_of(9, 2, another_page), true);
    row("pages counted for the counter's new beginning", first_page(0, 9, 0), journal_of(9, 2, another_page), true);
    row("other pages counted for the counter's new beginning", first_page(0, 8, 0), journal_of(9, 2, another_page),
        false);
    row("a journal of no record, not synced", first_page(7, 9, 7), journal_of(9, 1, first_page(3, 9, 3), 0), true);
    row("a number of records that means all that follow", first_page(7, 9, 7),
        journal_of(9, 1, first_page(3, 9, 3), last), false);
    row("more records told than there are", first_page(7, 9, 7), journal_of(9, 1, first_page(3, 9, 3), 1000), false);
    row("a journal of size 0", first_page(7, 9, 7), {}, false);
    row("a journal cut in its beginning", first_page(7, 9, 7), journal_of(9, 1, first_page(7, 9, 7)).first(27), false);
    row("a journal that was finished", first_page(7, 9, 7), QByteArray(sector_size, '\0'), false);
    row("a file of size 0", {}, journal_of(0, 2, another_page), false);
    row("a file cut in its header", first_page(7, 9, 7).first(99), journal_of(9, 1, first_page(7, 9, 7)), false);
}

void side_files_test::a_journal_belongs_to_the_file_that_left_it()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, journal);
    const QTemporaryDir folder;
    put_file(folder.filePath("a.mdb"), file);
    put_file(folder.filePath("a.mdb-journal"), journal);
    QTEST(jet::belongs_beside(folder.filePath("a.mdb").toLocal8Bit(), "-journal"), "belongs");
}

QTEST_GUILESS_MAIN(side_files_test)
#include "side_files_test.moc"
