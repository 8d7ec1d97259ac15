// The printed report: what it shows, printing with and without a printer, and saving it as a PDF file.
#include "frame/session.h"
#include "platform/outside_effects.h"
#include "platform/run_time_error.h"
#include "platform/widgets/paged_report.h"
#include "platform/widgets/report_viewer.h"
#include "screens/intake/PrintRpt.h"
#include "support/screens_access_keys.h"
#include "support/screens_driver.h"
#include "support/screens_pdf.h"
#include "support/screens_site.h"
#include "support/scripted_dialogs.h"
#include "support/scripted_printing.h"

#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace {

void add_row(screens_site &site, const QString &to, const QString &date)
{
    site.store.run(
        "insert into printreport_tbl (sentaccount,between1,filtersused,dynsubjectfield,subjectcontains,mailgen,"
        "matching,sentto,sentsubject,sentdate,gendate) values('orders','11/1/2026 and 11/30/2026',"
        "',Filter1:city=Par','name','None','2','mailings 2','" +
        to + "','Dear visitor','" + date + "','11/21/2026')");
}

// A report with one row.
struct report_site : screens_site {
    report_site() { add_row(*this, "a@b.org", "11/9/2026"); }
};

// And a printer for it.
struct printer_site : report_site {
    printer_site() { printers.names = QStringList{"Laser"}; }
    scripted_printing printers;
};

PrintRpt &shown_report()
{
    the<PrintRpt>().show();
    return the<PrintRpt>();
}

void press_button(const char *name)
{
    control<QPushButton>(the<PrintRpt>(), name).click();
}

QByteArray bytes_in(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}

class PrintRpt_test : public QObject {
    Q_OBJECT
private slots:
    void it_shows_the_report_and_saves_it_as_pdf()
    {
        screens_site site;
        add_row(site, "older@mail.example", "11/9/2026 8:00:00 AM");
        add_row(site, "newer@mail.example", "11/20/2026 1:02:03 PM");
        scripted_dialogs dialogs;
        dialogs.choices = {site.file("november.pdf")};
        QCOMPARE(control<report_viewer>(shown_report(), "CRViewer").GetCurrentPageNumber(), 1);
        press_button("save_b");
        QCOMPARE(dialogs.asked, QStringList{"Report on Sent Mails.pdf|PDF files|*.pdf"});
        const QStringList pages = pdf_pages(site.file("november.pdf"));
        QCOMPARE(pages.size(), 1);
        QStringList lines;
        for (const QString &line : pages[0].split(u'\n', Qt::SkipEmptyParts))
            lines += line.simplified();
        QCOMPARE(lines, (QStringList{"Report on Sent Mails", "Emails sent from Account: orders",
                                     "Between: 11/1/2026 and 11/30/2026", "Filters used: Filter1:city=Par",
                                     "Dynamic subject fields: name", "Subject contains words: None",
                                     "Mails generated: 2", "Matching kinds: mailings 2", "To Subject Date",
                                     "newer@mail.example Dear visitor 11/20/2026 1:02:03 PM",
                                     "older@mail.example Dear visitor 11/9/2026 8:00:00 AM",
                                     "Generated on 11/21/2026 Page 1 of 1"}));
        QCOMPARE(site.status_lines, QStringList{"The report was saved as " + site.file("november.pdf")});
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void an_empty_report_says_so_instead_of_a_blank_page()
    {
        const screens_site site;
        const auto &words = control<QLabel>(shown_report(), "empty_l");
        QVERIFY(words.isVisible());
        QVERIFY(words.text().startsWith("There is no report to print."));
        QVERIFY(!control<QPushButton>(the<PrintRpt>(), "print_b").isEnabled());
        QVERIFY(!control<QPushButton>(the<PrintRpt>(), "save_b").isEnabled());
    }

    void a_report_that_cannot_be_read_is_told()
    {
        screens_site site;
        site.store.run("drop table printreport_tbl");
        const QString words = control<QLabel>(shown_report(), "empty_l").text();
        QVERIFY(control<QLabel>(the<PrintRpt>(), "empty_l").isVisible());
        QCOMPARE(session.err_routine, "Form_Load");
        QVERIFY(!session.err_description.isEmpty());
        QCOMPARE(words, "The report could not be read.\n" + session.err_description);
        QVERIFY(!control<QPushButton>(the<PrintRpt>(), "print_b").isEnabled());
    }

    void a_store_that_cannot_be_kept_before_a_box_is_told()
    {
        report_site site;
        const scripted_printing printers;
        shown_report();
        const int full = on_outside_effect([] { throw run_time_error{61, QStringLiteral("Disk full")}; });
        press_button("print_b"); // there is no printer, which is said in a box
        forget_outside_effect(full);
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(session.err_routine, "print_b");
        QCOMPARE(site.status_lines.last(), "Disk full");
    }

    void its_access_keys_are_single_and_none_is_one_of_the_menus()
    {
        report_site site;
        const menuFrm console;
        shown_report();
        const QString keys = access_keys(the<PrintRpt>());
        QCOMPARE(keys.size(), 3);
        QCOMPARE(repeated_letter(keys + menu_keys(console) + "C"), QString()); // C: the composer brings its menu
    }

    void without_a_printer_it_says_what_to_do()
    {
        report_site site;
        const scripted_printing printers;
        shown_report();
        press_button("print_b");
        QCOMPARE(site.boxes.shown,
                 QStringList{"No printer is set up on this computer.\n\nSave as PDF keeps the report in a file, which "
                             "can be printed elsewhere."});
        QCOMPARE(printers.printed, QStringList());
    }

    void with_a_printer_it_prints()
    {
        printer_site site;
        shown_report();
        press_button("print_b");
        QCOMPARE(site.printers.printed, QStringList{"Report on Sent Mails"});
        QCOMPARE(site.status_lines, QStringList{"The report was handed to the printer."});
    }

    void cancelling_the_print_dialog_says_nothing()
    {
        printer_site site;
        site.printers.user_agrees = false;
        shown_report();
        press_button("print_b");
        QCOMPARE(site.status_lines, QStringList());
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void a_printer_that_fails_is_told_and_logged()
    {
        printer_site site;
        site.printers.fails = true;
        shown_report();
        press_button("print_b");
        QCOMPARE(site.boxes.shown, QStringList{"The report could not be printed.\n\nPrinter error"});
        QCOMPARE(session.err_number, 482u);
        QCOMPARE(session.err_form, "PrintRpt.frm");
        QCOMPARE(session.err_routine, "print_b");
    }

    void a_file_that_is_there_is_replaced_only_on_yes()
    {
        report_site site;
        QFile former(site.file("mine.pdf"));
        QVERIFY(former.open(QIODevice::WriteOnly) && former.write("dear to me") == 10);
        former.close();
        scripted_dialogs dialogs;
        dialogs.choices = {site.file("mine.pdf"), site.file("mine.pdf"), std::nullopt};
        shown_report();
        site.boxes.will_say_no();
        press_button("save_b");
        QCOMPARE(site.boxes.shown, QStringList{"The file mine.pdf is there already. Replace it?"});
        QVERIFY(site.boxes.boxes[0].no_is_default);
        QCOMPARE(bytes_in(site.file("mine.pdf")), "dear to me");
        site.boxes.will_say_yes();
        press_button("save_b");
        QVERIFY(bytes_in(site.file("mine.pdf")).startsWith("%PDF"));
        press_button("save_b"); // Cancel in the file dialog
        QCOMPARE(site.boxes.shown.size(), 2);
    }

    void a_name_without_its_ending_gets_it()
    {
        report_site site;
        scripted_dialogs dialogs;
        dialogs.choices = {site.file("november"), site.file("december.PDF")};
        shown_report();
        press_button("save_b");
        press_button("save_b");
        QVERIFY(QFile::exists(site.file("november.pdf")));
        QVERIFY(QFile::exists(site.file("december.PDF")));
    }

    void a_file_that_cannot_be_written_is_told()
    {
        report_site site;
        scripted_dialogs dialogs;
        dialogs.choices = {site.file("no/such/folder/n.pdf")};
        shown_report();
        press_button("save_b");
        QCOMPARE(site.boxes.shown.size(), 1);
        QVERIFY2(site.boxes.shown[0].startsWith("The report could not be saved.\n\nThe file " +
                                                site.file("no/such/folder/n.pdf") + " cannot be written"),
                 qPrintable(site.boxes.shown[0]));
        QCOMPARE(session.err_routine, "save_b");
    }

    void close_and_escape_close_it()
    {
        const screens_site site;
        shown_report();
        press_button("close_b");
        QVERIFY(!is_visible<PrintRpt>());
        QTest::keyClick(&shown_report(), Qt::Key_Escape);
        QVERIFY(!is_visible<PrintRpt>());
    }
};

QTEST_MAIN(PrintRpt_test)
#include "PrintRpt_test.moc"
