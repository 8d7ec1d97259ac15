// The help file of this build, read by our own reader; and damaged ones, which may be refused but do no harm.
#include "platform/help_file.h"
#include "platform/real/chm/contents_list.h"
#include "platform/real/chm/lzx.h"
#include "platform/run_time_error.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

namespace {

QByteArray bytes_at(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("there is no %s", qPrintable(path));
    return file.readAll();
}

QString built_file()
{
    return qEnvironmentVariable("HELP_FILE");
}

QString pages_folder()
{
    return QStringLiteral(SOURCE_ROOT "/delivered/help");
}

// What was read of it, or nothing where it was refused.
std::optional<help::help_file> read_or_refused(const QByteArray &bytes)
{
    try {
        return help::help_file_in(bytes);
    } catch (const run_time_error &error) {
        if (error.number != 57 || error.description.isEmpty())
            qFatal("refused with the wrong words");
        return {};
    }
}

}

class help_file_test : public QObject {
    Q_OBJECT
private slots:
    void every_page_and_picture_comes_out_as_it_went_in()
    {
        const help::help_file held = help::read_help_file(built_file());
        const QDir folder(pages_folder());
        QStringList names = folder.entryList({"*.html"}, QDir::Files);
        QVERIFY(names.size() > 1);
        QCOMPARE(held.pages().size(), names.size());
        for (const QString &picture : QDir(folder.filePath("pictures")).entryList({"*.png"}, QDir::Files))
            names += "pictures/" + picture;
        for (const QString &name : names)
            QVERIFY2(held.bytes_of(name) == bytes_at(folder.filePath(name)), qPrintable(name));
    }

    void it_opens_at_the_start_page() { QCOMPARE(help::read_help_file(built_file()).start_page, "start.html"); }

    void its_contents_have_titles_and_pages()
    {
        const auto contents = help::read_help_file(built_file()).contents;
        QVERIFY(!contents.empty());
        QCOMPARE(contents.front().title, "Welcome");
        QCOMPARE(contents.front().page, "start.html");
        QCOMPARE(contents.front().depth, 0);
    }

    void names_are_found_in_any_case()
    {
        const help::help_file held = help::read_help_file(built_file());
        QVERIFY(held.bytes_of("START.html").has_value());
        QVERIFY(!held.bytes_of("no_such_page.html").has_value());
    }

    void a_missing_file_is_told()
    {
        try {
            help::read_help_file("/no/such/folder/tslhlp.chm");
            QFAIL("it was read");
        } catch (const run_time_error &error) {
            QCOMPARE(error.number, 53U);
            QVERIFY(error.description.contains("/no/such/folder/tslhlp.chm"));
        }
    }

    void no_help_file_is_refused_data()
    {
        const QByteArray good = bytes_at(built_file());
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("a text") << QByteArray("This is no help file.").repeated(50);
        QTest::newRow("only its first four letters") << QByteArray("ITSF");
        QTest::newRow("only its head") << good.left(0x60);
        QTest::newRow("a head and zeros") << good.left(0x60) + QByteArray(5000, '\0');
        QTest::newRow("a head and ones") << good.left(0x60) + QByteArray(5000, '\xff');
        QByteArray far_directory = good;
        far_directory.replace(0x48, 8, QByteArray(7, '\xff') + '\x7f');
        QTest::newRow("its directory lies beyond the end") << far_directory;
        QByteArray negative_directory = good;
        negative_directory.replace(0x48, 8, QByteArray(8, '\xff'));
        QTest::newRow("its directory lies before the beginning") << negative_directory;
    }
    void no_help_file_is_refused()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!read_or_refused(bytes).has_value());
    }

    // Cut anywhere: refused, or read as far as it goes.
    void a_cut_file_does_no_harm()
    {
        const QByteArray good = bytes_at(built_file());
        const qsizetype all = help::help_file_in(good).files.size();
        const qsizetype step = qMax<qsizetype>(good.size() / 200, 1);
        for (qsizetype length = 0; length < good.size(); length += step) {
            const auto held = read_or_refused(good.left(length));
            QVERIFY(!held || held->files.size() <= all);
        }
    }

    void flipped_bytes_do_no_harm_data()
    {
        QTest::addColumn<int>("seed");
        for (int seed = 1; seed <= 40; ++seed)
            QTest::addRow("seed %d", seed) << seed;
    }
    void flipped_bytes_do_no_harm()
    {
        QFETCH(int, seed);
        const QByteArray good = bytes_at(built_file());
        QRandomGenerator dice{quint32(seed)};
        QElapsedTimer timer;
        timer.start();
        for (int round = 0; round < 10; ++round) {
            QByteArray bytes = good;
            const int flips = dice.bounded(1, 12);
            for (int flip = 0; flip < flips; ++flip) { // the head and the directory get their share
                const bool at_head = dice.bounded(2) == 0;
                const qsizetype room = at_head ? qMin<qsizetype>(bytes.size(), 4600) : bytes.size();
                bytes[dice.bounded(int(room))] = char(dice.bounded(256));
            }
            if (const auto held = read_or_refused(bytes))
                QVERIFY(!held->pages().isEmpty());
        }
        QVERIFY2(timer.elapsed() < 60000, qPrintable(QString::number(timer.elapsed())));
    }

    void a_damaged_stretch_takes_only_its_own_files_away()
    {
        QByteArray bytes = bytes_at(built_file());
        const help::help_file whole = help::help_file_in(bytes);
        // The packed pages end the file. A stretch that begins with zeros cannot be unpacked, and one of them at least
        // begins in the last 70,000 bytes.
        constexpr int spoilt = 70000;
        bytes.replace(bytes.size() - spoilt, spoilt, QByteArray(spoilt, 0));
        const auto held = read_or_refused(bytes);
        QVERIFY(held.has_value());
        QVERIFY(held->files.size() < whole.files.size());
        int kept = 0; // what lies where the damage begins may be garbled
        for (const auto &[name, content] : held->files.asKeyValueRange())
            kept += whole.bytes_of(name) == content;
        QVERIFY2(kept > whole.files.size() / 4, qPrintable(QString::number(kept)));
    }

    void contents_are_nested_and_forgiving()
    {
        const auto lines =
            chm::contents_in("<ul><li><object><param name=\"Name\" value=\"Mail &amp; more\"></object>"
                             "<ul><li><OBJECT><PARAM name=\"Name\" value=\"Inbox\">"
                             "<PARAM NAME=\"Local\" VALUE=\"a.html\"></OBJECT></ul></ul></ul></ul>"
                             "<object></object><ul><object><param name=\"name\" value=\"Last\"></object>");
        QCOMPARE(lines.size(), size_t(3));
        QCOMPARE(lines[0].title, "Mail & more");
        QCOMPARE(lines[0].page, "");
        QCOMPARE(lines[0].depth, 0);
        QCOMPARE(lines[1].page, "a.html");
        QCOMPARE(lines[1].depth, 1);
        QCOMPARE(lines[2].title, "Last");
        QCOMPARE(lines[2].depth, 0);
    }

    void contents_that_never_end_stay_small()
    {
        const auto lines =
            chm::contents_in(QByteArray("<ul><object><param name=\"Name\" value=\"x\"></object>").repeated(20000));
        QVERIFY(lines.size() <= 10000);
        for (const help::contents_line &line : lines)
            QVERIFY(line.depth <= 20);
    }

    void noise_is_no_packed_stretch()
    {
        QRandomGenerator dice{7};
        for (int round = 0; round < 300; ++round) {
            QByteArray noise(dice.bounded(1, 3000), Qt::Uninitialized);
            for (char &byte : noise)
                byte = char(dice.bounded(256));
            const auto plain = chm::unpack_lzx(noise, 0x10000, 15 + round % 7);
            QVERIFY(!plain || plain->size() == 0x10000);
        }
    }
};

QTEST_GUILESS_MAIN(help_file_test)
#include "help_file_test.moc"
