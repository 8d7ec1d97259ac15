// A report in columns as a PDF file, read back by a PDF reader: pages, heads, wrapping, paper, and failures.
#include "platform/run_time_error.h"
#include "platform/widgets/report_output.h"
#include "platform/widgets/table_report.h"
#include "screens/desktop_printing.h"
#include "support/screens_driver.h"
#include "support/screens_pdf.h"
#include "support/test_store.h"

#include <QFile>
#include <QPainter>
#include <QPrinter>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

table_report::content small_report()
{
    table_report::content what;
    what.title = "Report on Sent Mails";
    what.head = {{"Emails sent from Account: ", "orders"}, {"Between: ", "11/1/2026 and 11/30/2026"}};
    what.columns = {{"To", 3}, {"Subject", 4}, {"Date", 2}};
    what.rows = {{"zoe@home.example", "Dear Zoë", "11/20/2026 1:02:03 PM"}};
    what.foot = "Generated on 11/21/2026";
    return what;
}

table_report::content report_of(const std::vector<QStringList> &rows)
{
    table_report::content what = small_report();
    what.rows = rows;
    return what;
}

// Words that say which row they belong to: "r17w1 r17w2 ...".
QString words_of_row(int row, int count)
{
    QStringList words;
    for (int word = 1; word <= count; ++word)
        words += QStringLiteral("r%1w%2").arg(row).arg(word);
    return words.join(u' ');
}

QStringList words_in(const QString &page, const QString &pattern)
{
    QStringList found;
    const QRegularExpression words(pattern);
    for (auto match = words.globalMatch(page); match.hasNext();)
        found += match.next().captured();
    return found;
}

QStringList saved_pages(const table_report::content &what)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("report.pdf");
    table_report report(what);
    save_as_pdf(report, path);
    return pdf_pages(path);
}

// A printer on paper of one report's own choice, whose pages come into a file.
void set_up_printer(QPrinter &printer, const QString &path, QPageSize::PageSizeId paper)
{
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    printer.setFullPage(true);
    printer.setPageSize(QPageSize(paper));
    printer.setPageMargins(QMarginsF(0, 0, 0, 0));
}

int painted_dots(const paged_report &report, int page)
{
    QImage picture(595, 842, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.scale(0.1, 0.1);
    report.paint_page(painter, page);
    painter.end();
    int dots = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            dots += picture.pixel(x, y) == 0xffffffff ? 0 : 1;
    return dots;
}

// Pages as coarse as a test needs them: each a number in words.
class numbered_pages : public paged_report {
public:
    QString title() const override { return "Numbers"; }
    QPageSize page_size() const override { return QPageSize(QPageSize::A5); }
    void lay_out(const QSizeF &page) override { laid_out_for = page; }
    int page_count() const override { return 4; }
    void paint_page(QPainter &painter, int page) const override
    {
        QFont font("Liberation Sans");
        font.setPixelSize(120);
        painter.setFont(font);
        painter.drawText(QPointF(720, 720), QStringLiteral("number %1").arg(page + 1));
    }
    QSizeF laid_out_for;
};

}

class report_output_test : public QObject {
    Q_OBJECT
private slots:
    void a_page_has_title_head_columns_rows_and_foot()
    {
        const QStringList pages = saved_pages(small_report());
        QCOMPARE(pages.size(), 1);
        QStringList lines;
        for (const QString &line : pages[0].split(u'\n', Qt::SkipEmptyParts))
            lines += line.simplified();
        QCOMPARE(lines, (QStringList{"Report on Sent Mails", "Emails sent from Account: orders",
                                     "Between: 11/1/2026 and 11/30/2026", "To Subject Date",
                                     "zoe@home.example Dear Zoë 11/20/2026 1:02:03 PM",
                                     "Generated on 11/21/2026 Page 1 of 1"}));
    }

    void ten_thousand_rows_stand_once_each_in_their_order()
    {
        std::vector<QStringList> rows;
        QStringList all;
        for (int row = 1; row <= 10000; ++row) {
            all += QStringLiteral("visitor%1@mail.example").arg(row);
            rows.push_back({all.last(), "Your order", "11/20/2026"});
        }
        const QStringList pages = saved_pages(report_of(rows));
        QVERIFY2(pages.size() > 100 && pages.size() < 500, qPrintable(QString::number(pages.size())));
        QStringList found;
        for (qsizetype page = 0; page < pages.size(); ++page) {
            found += words_in(pages[page], "visitor\\d+@mail\\.example");
            QCOMPARE(words_in(pages[page], "To +Subject +Date").size(), 1);
            QVERIFY(pages[page].contains(QStringLiteral("Page %1 of %2\n").arg(page + 1).arg(pages.size())));
            QCOMPARE(pages[page].contains("Report on Sent Mails"), page == 0);
        }
        QCOMPARE(found, all);
    }

    void a_long_subject_wraps_and_no_row_is_cut_by_a_page()
    {
        std::vector<QStringList> rows;
        for (int row = 1; row <= 200; ++row)
            rows.push_back({"a@b.org", words_of_row(row, 5 + row % 13), "11/20/2026"});
        const QStringList pages = saved_pages(report_of(rows));
        QVERIFY(pages.size() > 3);
        for (int row = 1; row <= 200; ++row) {
            int pages_with_it = 0;
            for (const QString &page : pages) {
                const QStringList words = words_in(page, QStringLiteral("\\br%1w\\d+").arg(row));
                pages_with_it += words.isEmpty() ? 0 : 1;
                if (!words.isEmpty())
                    QCOMPARE(words.join(u' '), words_of_row(row, 5 + row % 13));
            }
            QCOMPARE(pages_with_it, 1);
        }
    }

    void what_needs_more_than_three_lines_ends_in_an_ellipsis()
    {
        const QStringList pages = saved_pages(report_of({{"a@b.org", words_of_row(1, 400), "11/20/2026"}}));
        QCOMPARE(pages.size(), 1);
        QCOMPARE(pages[0].count(QStringLiteral("…")), 1);
        const QStringList words = words_in(pages[0], "r1w\\d+");
        QVERIFY(words.size() > 10);
        QVERIFY(words.size() < 60);
        QCOMPARE(words.first(), "r1w1");
    }

    void a_text_without_blanks_is_broken_anywhere()
    {
        const QString address = QString("a").repeated(35) + "@" + QString("b").repeated(35) + ".example";
        const QString page = saved_pages(report_of({{address, "Hello", "11/20/2026"}}))[0];
        const QStringList lines = page.mid(page.indexOf("Date")).split(u'\n', Qt::SkipEmptyParts);
        QStringList pieces;
        for (qsizetype line = 1; line + 1 < lines.size(); ++line) // between the heads and the foot
            pieces += lines[line].simplified().section(u' ', 0, 0);
        QVERIFY(pieces.size() > 1);
        QCOMPARE(pieces.join(QString()), address);
    }

    void hostile_texts_make_no_lines_and_no_markup_of_their_own()
    {
        const QString hostile = "<b>one</b>\r\ntwo\u2028three\tfour\vfive";
        const QStringList pages = saved_pages(report_of({{"a@b.org", hostile, "11/20/2026"}}));
        QVERIFY2(pages[0].simplified().contains("<b>one</b> two three four five 11/20/2026"), qPrintable(pages[0]));
    }

    void a_text_of_a_million_letters_takes_no_more_room()
    {
        const QString endless = QString("never ends ").repeated(100000);
        const QStringList pages = saved_pages(report_of(std::vector<QStringList>(100, {endless, endless, endless})));
        QCOMPARE(pages.size(),
                 saved_pages(report_of(std::vector<QStringList>(
                                 100, {words_of_row(1, 400), words_of_row(1, 400), words_of_row(1, 400)})))
                     .size());
    }

    void endless_head_lines_leave_room_for_the_rows()
    {
        table_report::content what = small_report();
        what.head = std::vector<table_report::head_line>(7, {"Filters used: ", words_of_row(1, 900)});
        const QStringList pages = saved_pages(what);
        QCOMPARE(pages.size(), 1);
        QVERIFY(pages[0].contains("zoe@home.example"));
    }

    void without_rows_there_is_no_page()
    {
        table_report report(report_of({}));
        lay_out_on_own_paper(report);
        QCOMPARE(report.page_count(), 0);
    }

    void a_row_short_of_a_text_is_filled_up()
    {
        const QStringList pages = saved_pages(report_of({{"only@mail.example"}}));
        QVERIFY(pages[0].contains("only@mail.example"));
    }

    void the_paper_is_that_of_the_place_data()
    {
        QTest::addColumn<QLocale>("place");
        QTest::addColumn<QPageSize::PageSizeId>("size");
        QTest::newRow("Germany") << QLocale(QLocale::German, QLocale::Germany) << QPageSize::A4;
        QTest::newRow("Great Britain, though it measures in miles")
            << QLocale(QLocale::English, QLocale::UnitedKingdom) << QPageSize::A4;
        QTest::newRow("nowhere") << QLocale::c() << QPageSize::A4;
        QTest::newRow("United States") << QLocale(QLocale::English, QLocale::UnitedStates) << QPageSize::Letter;
        QTest::newRow("Canada, though it measures in metres")
            << QLocale(QLocale::French, QLocale::Canada) << QPageSize::Letter;
    }

    void the_paper_is_that_of_the_place()
    {
        QFETCH(QLocale, place);
        QFETCH(QPageSize::PageSizeId, size);
        QCOMPARE(usual_page_size(place).id(), size);
    }

    void the_file_has_the_reports_title_and_paper()
    {
        const QTemporaryDir folder;
        numbered_pages report;
        save_as_pdf(report, folder.filePath("n.pdf"));
        const QString facts = pdf_facts(folder.filePath("n.pdf")).simplified();
        QVERIFY2(facts.contains("Title: Numbers "), qPrintable(facts));
        QVERIFY2(facts.contains("Pages: 4 "), qPrintable(facts));
        QVERIFY2(facts.contains("Page size: 420 x 595 pts"), qPrintable(facts)); // A5: 148 x 210 mm
    }

    void pages_may_be_chosen_and_the_layout_is_its_own_again()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("some.pdf");
        numbered_pages report;
        QPrinter printer(QPrinter::HighResolution);
        set_up_printer(printer, path, QPageSize::A4); // other paper than the report's own
        paint_report(report, printer, 2, 3);
        const QStringList pages = pdf_pages(path);
        QCOMPARE(pages.size(), 2);
        QVERIFY(pages[0].contains("number 2"));
        QVERIFY(pages[1].contains("number 3"));
        QCOMPARE(report.laid_out_for, report.page_size().size(QPageSize::Inch) * units_an_inch);
    }

    void a_page_that_larger_paper_does_not_need_is_told_and_nothing_printed()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("beyond.pdf");
        table_report report(report_of(std::vector<QStringList>(200, {"a@b.org", "Your order", "11/20/2026"})));
        lay_out_on_own_paper(report);
        const int own_pages = report.page_count();
        QVERIFY(own_pages > 1);
        QPrinter printer(QPrinter::HighResolution);
        set_up_printer(printer, path, QPageSize::A0);
        QString told;
        try {
            paint_report(report, printer, own_pages, own_pages);
        } catch (const run_time_error &error) {
            told = error.description;
        }
        QCOMPARE(told, QStringLiteral("There is no page %1: on this paper the report has 1 page.").arg(own_pages));
        QVERIFY(!QFile::exists(path));
        QCOMPARE(report.page_count(), own_pages); // laid out for its own paper again
    }

    void nothing_is_painted_beyond_the_last_page()
    {
        table_report report(small_report());
        lay_out_on_own_paper(report);
        QVERIFY(painted_dots(report, 0) > 0);
        QCOMPARE(painted_dots(report, 1), 0);
        QCOMPARE(painted_dots(report, -1), 0);
    }

    void a_printer_gets_what_the_file_gets()
    {
        const QTemporaryDir folder;
        table_report report(small_report());
        save_as_pdf(report, folder.filePath("file.pdf"));
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(folder.filePath("printer.pdf"));
        printer.setFullPage(true);
        set_paper(report, printer);
        paint_report(report, printer);
        QCOMPARE(pdf_pages(folder.filePath("printer.pdf")), pdf_pages(folder.filePath("file.pdf")));
    }

    void a_file_that_cannot_be_written_is_told()
    {
        const QTemporaryDir folder;
        numbered_pages report;
        QCOMPARE(error_number_of([&] { save_as_pdf(report, folder.filePath("no/such/folder/n.pdf")); }), 75u);
        QCOMPARE(error_number_of([&] { save_as_pdf(report, folder.path()); }), 75u);
    }

    void a_printer_that_cannot_be_begun_is_told()
    {
        const QTemporaryDir folder;
        numbered_pages report;
        QPrinter printer;
        set_up_printer(printer, folder.filePath("no/such/folder/n.pdf"), QPageSize::A4);
        QCOMPARE(error_number_of([&] { paint_report(report, printer); }), 482u);
        QCOMPARE(report.laid_out_for, report.page_size().size(QPageSize::Inch) * units_an_inch); // to be shown on
    }

    void the_print_dialog_can_be_left()
    {
        const Responder keeper; // nobody announced it, so it is rejected
        desktop_printing printing;
        numbered_pages report;
        QVERIFY(!printing.PrintReport(report));
        QCOMPARE(keeper.refused, QStringList{"Print"});
    }

    void without_a_print_server_there_is_no_printer()
    {
        qputenv("CUPS_SERVER", "127.0.0.1:1"); // nobody listens there
        desktop_printing printing;
        QCOMPARE(printing.availablePrinterNames(), QStringList());
    }
};

QTEST_MAIN(report_output_test)
#include "report_output_test.moc"
