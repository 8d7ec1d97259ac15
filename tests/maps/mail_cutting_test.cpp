// The sample mail in numbered pieces, as the wizard cuts and shows it.
#include "frame/text.h"
#include "intake/map_fit.h"
#include "maps/mail_cutting.h"

#include <QtTest/QTest>

class mail_cutting_test : public QObject {
    Q_OBJECT
private slots:
    void the_separators_offered();
    void a_body_is_cut_data();
    void a_body_is_cut();
    void the_parser_counts_the_same_pieces_where_lines_end_in_crlf_data();
    void the_parser_counts_the_same_pieces_where_lines_end_in_crlf();
    void a_tab_is_cut_here_and_not_by_the_parser();
    void a_piece_is_shown_data();
    void a_piece_is_shown();
    void the_numbered_mail_data();
    void the_numbered_mail();
    void entries_and_positions_data();
    void entries_and_positions();
    void positions_as_the_preview_shows_them();
};

void mail_cutting_test::the_separators_offered()
{
    QStringList captions;
    QStringList stored;
    for (const auto &choice : maps::separator_choices()) {
        captions += choice.caption;
        stored += choice.stored;
    }
    QCOMPARE(captions, (QStringList{"Comma(,)", "Tab", "Full stop(.)", "Hyphen(-)", "Underscore(_)", "Colon(:)",
                                    "Semi colon(;)"}));
    QCOMPARE(stored, (QStringList{",", "Tab", ".", "-", "_", ":", ";"}));
}

void mail_cutting_test::a_body_is_cut_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QStringList>("cut");
    const auto row = [](const char *what, const QString &body, const QString &separator, const QStringList &cut) {
        QTest::newRow(what) << body << separator << cut;
    };
    row("lines keep their carriage return", "a\r\nb", "Line", {"a\r", "b"});
    row("empty lines count", "\r\n\r\nb", "Line", {"\r", "\r", "b"});
    row("an end of line at the end makes a last empty piece", "a\r\n", "Line", {"a\r", ""});
    row("outer blanks of the whole mail go first", "  a\r\n b  ", "Line", {"a\r", " b"});
    row("a lone line feed cuts", "a\nb", "Line", {"a", "b"});
    row("a lone carriage return does not", "a\rb", "Line", {"a\rb"});
    row("the line separator of Unicode does not", QString("a") + QChar(0x2028) + "b", "Line",
        {QString("a") + QChar(0x2028) + "b"});
    row("a no-break space is no blank to trim", QChar(0xa0) + QString("a"), "Line", {QChar(0xa0) + QString("a")});
    row("the word in other capitals", "a\nb", "LINE", {"a", "b"});
    row("an empty mail has no pieces", "", "Line", {});
    row("nor has one of blanks", "   ", ",", {});
    row("a comma", "a,b,,c", ",", {"a", "b", "", "c"});
    row("line ends stay inside the pieces", "a,\r\nb", ",", {"a", "\r\nb"});
    row("Tab is a real tab", "a\tb Tab c", "Tab", {"a", "b Tab c"});
    row("a full stop is no pattern", "a.b-c", ".", {"a", "b-c"});
    row("a hyphen", "a-b", "-", {"a", "b"});
    row("an underscore", "a_b", "_", {"a", "b"});
    row("a colon", "a:b", ":", {"a", "b"});
    row("a semicolon", "a;b", ";", {"a", "b"});
    row("a separator that does not occur leaves one piece", "abc", ";", {"abc"});
}

void mail_cutting_test::a_body_is_cut()
{
    QFETCH(QString, body);
    QFETCH(QString, separator);
    QTEST(maps::cut_sample(body, separator), "cut");
}

void mail_cutting_test::the_parser_counts_the_same_pieces_where_lines_end_in_crlf_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<bool>("same");
    QTest::newRow("CR LF") << "a\r\n\r\nb\r\n" << true;
    QTest::newRow("outer blanks") << "  a\r\nb  " << true;
    QTest::newRow("LF alone: the difference stays as it is") << "a\nb" << false;
}

void mail_cutting_test::the_parser_counts_the_same_pieces_where_lines_end_in_crlf()
{
    QFETCH(QString, body);
    const auto wizard = maps::cut_sample(body, "Line").size();
    const auto parser = pieces(body, intake::cutting_separator("Line")).size();
    QTEST(wizard == parser, "same");
}

void mail_cutting_test::a_tab_is_cut_here_and_not_by_the_parser()
{
    QCOMPARE(maps::cut_sample("a\tb", "Tab").size(), 2);
    QCOMPARE(pieces("a\tb", intake::cutting_separator("Tab")).size(), 1);
}

void mail_cutting_test::a_piece_is_shown_data()
{
    QTest::addColumn<QString>("piece");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QString>("shown");
    QTest::newRow("a line loses its carriage return") << "a\r"
                                                      << "Line"
                                                      << "a";
    QTest::newRow("every carriage return") << "\ra\rb\r"
                                           << "Line"
                                           << "ab";
    QTest::newRow("a line feed stays in line mode") << "a\nb"
                                                    << "Line"
                                                    << "a\nb";
    QTest::newRow("and goes in separator mode") << "a\r\nb"
                                                << ","
                                                << "ab";
    QTest::newRow("blanks stay") << " a "
                                 << ","
                                 << " a ";
    QTest::newRow("a no-break space stays") << QString(QChar(0xa0)) << "," << QString(QChar(0xa0));
    QTest::newRow("Unicode's line separator stays") << QString(QChar(0x2028)) << "," << QString(QChar(0x2028));
}

void mail_cutting_test::a_piece_is_shown()
{
    QFETCH(QString, piece);
    QFETCH(QString, separator);
    QTEST(maps::shown_piece(piece, separator), "shown");
}

void mail_cutting_test::the_numbered_mail_data()
{
    QTest::addColumn<QStringList>("cut");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QString>("numbered");
    QTest::newRow("lines") << QStringList{"Name: Ann\r", "", "City"} << "Line"
                           << "Name: Ann  <Separator1>\r\n  <Separator2>\r\nCity  <Separator3>\r\n";
    QTest::newRow("separators") << QStringList{"a", "\r\nb"} << ","
                                << "a  <Separator1>\r\nb  <Separator2>\r\n";
    QTest::newRow("no pieces") << QStringList{} << "Line"
                               << "";
    QTest::newRow("signs of other worlds stay") << QStringList{"<b>%1"} << "Line"
                                                << "<b>%1  <Separator1>\r\n";
}

void mail_cutting_test::the_numbered_mail()
{
    QFETCH(QStringList, cut);
    QFETCH(QString, separator);
    QTEST(maps::numbered_body(cut, separator), "numbered");
}

void mail_cutting_test::entries_and_positions_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("position");
    QTest::newRow("the third") << maps::separator_entry(3) << "Line3";
    QTest::newRow("no blank between word and number") << "Separator12"
                                                      << "Line12";
    QTest::newRow("in any capitals") << "sEPARATOR1"
                                     << "Line1";
    QTest::newRow("only the first") << "SeparatorSeparator2"
                                    << "LineSeparator2";
    QTest::newRow("none chosen") << ""
                                 << "";
}

void mail_cutting_test::entries_and_positions()
{
    QFETCH(QString, entry);
    QTEST(maps::as_position(entry), "position");
}

void mail_cutting_test::positions_as_the_preview_shows_them()
{
    QCOMPARE(maps::separator_entry(1), QString("Separator1"));
    QCOMPARE(maps::as_separator("Line3"), QString("Separator3"));
    QCOMPARE(maps::as_separator(maps::as_position("Separator40")), QString("Separator40"));
}

QTEST_GUILESS_MAIN(mail_cutting_test)
#include "mail_cutting_test.moc"
