// Failures: caught, kept in the session, and appended to the log to the byte.
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "platform/app_folder.h"
#include "platform/clock.h"
#include "platform/outside_effects.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <utility>

namespace {

// What the log is to hold: the former text read line by line, each line followed by a line end, then the five texts;
// the whole written anew.
QByteArray rewritten(const QByteArray &former, const QStringList &entry)
{
    QByteArray text;
    QByteArray rest = former;
    while (!rest.isEmpty()) {
        const qsizetype end = rest.indexOf("\r\n");
        text += (end < 0 ? rest : rest.first(end)) + "\r\n";
        rest = end < 0 ? QByteArray() : rest.sliced(end + 2);
    }
    return text + entry.join("\r\n").toUtf8();
}

struct logged_folder {
    logged_folder()
    {
        session = {};
        set_app_folder(folder.path());
        set_clock([] { return QDateTime(QDate(2026, 8, 13), QTime(13, 2, 3), Qt::UTC); });
        set_status_sink([this](const QString &line) { status_lines += line; });
    }
    ~logged_folder()
    {
        set_app_folder({});
        set_clock({});
        set_status_sink({});
        session = {};
    }
    QString path() const { return folder.filePath("errorlog.txt"); }
    QByteArray bytes() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void write(const QByteArray &bytes) const
    {
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    QTemporaryDir folder;
    QStringList status_lines;
};

void fail_with(quint32 number, const QString &description)
{
    guarded("Mailfrm.frm", "write_data", [&] { throw run_time_error{number, description}; });
}

}

class error_log_test : public QObject {
    Q_OBJECT
private slots:
    void a_routine_without_a_failure_leaves_no_log();
    void a_failure_is_kept_and_logged();
    void nothing_after_the_failure_runs();
    void an_entry_is_five_lines_without_a_last_line_end();
    void a_second_entry_begins_on_its_own_line();
    void a_store_error_is_logged_as_a_signed_number();
    void line_ends_inside_a_description_become_blanks();
    void accented_letters_are_utf_8();
    void what_stood_in_the_log_stays_data();
    void what_stood_in_the_log_stays();
    void thousands_of_entries();
    void an_empty_routine_name_keeps_the_lines_apart_as_a_rewriting_would();
    void a_log_that_cannot_be_written_gives_a_status_line();
    void the_program_is_busy_in_a_guarded_routine();
    void what_the_store_was_given_is_committed();
    void a_store_that_cannot_be_committed_is_told_and_logged_all_the_same();
};

void error_log_test::a_routine_without_a_failure_leaves_no_log()
{
    const logged_folder here;
    QVERIFY(guarded("Mailfrm.frm", "write_data", [] {}));
    QVERIFY(!QFile::exists(here.path()));
    QCOMPARE(session.err_number, 0u);
}

void error_log_test::a_failure_is_kept_and_logged()
{
    const logged_folder here;
    QVERIFY(!guarded("Mailfrm.frm", "Form_load", [] { throw run_time_error{6, "Overflow"}; }));
    QCOMPARE(session.err_number, 6u);
    QCOMPARE(session.err_description, QString("Overflow"));
    QCOMPARE(session.err_form, QString("Mailfrm.frm"));
    QCOMPARE(session.err_routine, QString("Form_load"));
}

void error_log_test::nothing_after_the_failure_runs()
{
    const logged_folder here;
    bool went_on = false;
    guarded("a", "b", [&] {
        guarded("c", "d", [] { throw run_time_error{6, "Overflow"}; });
        went_on = true; // the inner routine ended, the outer one goes on
    });
    QVERIFY(went_on);
    QCOMPARE(session.err_form, QString("c"));
    QCOMPARE(here.bytes().count("\r\n"), 4);
}

void error_log_test::an_entry_is_five_lines_without_a_last_line_end()
{
    const logged_folder here;
    fail_with(6, "Overflow");
    QCOMPARE(here.bytes(), QByteArray("8/13/2026 1:02:03 PM\r\n6\r\nOverflow\r\nMailfrm.frm\r\nwrite_data"));
}

void error_log_test::a_second_entry_begins_on_its_own_line()
{
    const logged_folder here;
    fail_with(6, "Overflow");
    fail_with(13, "Type mismatch");
    QCOMPARE(here.bytes(), QByteArray("8/13/2026 1:02:03 PM\r\n6\r\nOverflow\r\nMailfrm.frm\r\nwrite_data\r\n"
                                      "8/13/2026 1:02:03 PM\r\n13\r\nType mismatch\r\nMailfrm.frm\r\nwrite_data"));
}

void error_log_test::a_store_error_is_logged_as_a_signed_number()
{
    const logged_folder here;
    fail_with(0x80040E14, "Syntax error");
    QCOMPARE(here.bytes().split('\n')[1], QByteArray("-2147217900\r"));
}

void error_log_test::line_ends_inside_a_description_become_blanks()
{
    const logged_folder here;
    fail_with(5, "one\r\ntwo\nthree\rfour");
    QCOMPARE(here.bytes().split('\n')[2], QByteArray("one two three four\r"));
    QCOMPARE(here.bytes().count('\n'), 4);
}

void error_log_test::accented_letters_are_utf_8()
{
    const logged_folder here;
    fail_with(5, "caf\u00E9");
    QVERIFY(here.bytes().contains("caf\xC3\xA9\r\n"));
}

void error_log_test::what_stood_in_the_log_stays_data()
{
    QTest::addColumn<QByteArray>("former");
    QTest::newRow("an empty file") << QByteArray("");
    QTest::newRow("a whole entry") << QByteArray("a\r\nb\r\nc\r\nd\r\ne");
    QTest::newRow("a last line with its line end") << QByteArray("a\r\nb\r\n");
    QTest::newRow("empty lines at the end") << QByteArray("a\r\n\r\n\r\n");
    QTest::newRow("a single letter") << QByteArray("a");
    QTest::newRow("only a line end") << QByteArray("\r\n");
}

void error_log_test::what_stood_in_the_log_stays()
{
    QFETCH(QByteArray, former);
    const logged_folder here;
    here.write(former);
    fail_with(6, "Overflow");
    QCOMPARE(here.bytes(), rewritten(former, {"8/13/2026 1:02:03 PM", "6", "Overflow", "Mailfrm.frm", "write_data"}));
}

void error_log_test::thousands_of_entries()
{
    const logged_folder here;
    constexpr int entries = 3000;
    QByteArray expected;
    for (int number = 0; number < entries; ++number) {
        fail_with(quint32(number), QString("failure %1\nwith two lines").arg(number));
        const QString description = QString("failure %1 with two lines").arg(number);
        if (number > 0)
            expected += "\r\n";
        expected +=
            QStringList{"8/13/2026 1:02:03 PM", QString::number(number), description, "Mailfrm.frm", "write_data"}
                .join("\r\n")
                .toUtf8();
    }
    QCOMPARE(here.bytes(), expected);
    QCOMPARE(rewritten(expected, {"x"}), expected + "\r\nx");
}

void error_log_test::an_empty_routine_name_keeps_the_lines_apart_as_a_rewriting_would()
{
    const logged_folder here;
    QByteArray expected;
    for (int time = 0; time < 3; ++time) {
        guarded("Mailfrm.frm", "", [] { throw run_time_error{6, ""}; });
        expected = rewritten(expected, {"8/13/2026 1:02:03 PM", "6", "", "Mailfrm.frm", ""});
    }
    QCOMPARE(here.bytes(), expected);
}

void error_log_test::a_log_that_cannot_be_written_gives_a_status_line()
{
    logged_folder here;
    QVERIFY(QDir().mkdir(here.path())); // a folder in its place: not writable for root either
    fail_with(6, "Over\nflow");
    QCOMPARE(here.status_lines.size(), 1);
    QVERIFY(here.status_lines[0].contains("write_data"));
    QVERIFY(here.status_lines[0].contains("Over flow"));
    QCOMPARE(session.err_number, 6u);
}

void error_log_test::the_program_is_busy_in_a_guarded_routine()
{
    const logged_folder here;
    bool inside = false;
    guarded("a", "b", [&] { inside = busy(); });
    QVERIFY(inside);
    guarded("a", "b", [] { throw run_time_error{6, "Overflow"}; });
    QVERIFY(!busy());
}

void error_log_test::what_the_store_was_given_is_committed()
{
    const logged_folder here;
    int commits = 0;
    const int registration = on_outside_effect([&] { ++commits; });
    fail_with(6, "Overflow");
    forget_outside_effect(registration);
    QVERIFY(commits > 0);
}

void error_log_test::a_store_that_cannot_be_committed_is_told_and_logged_all_the_same()
{
    const logged_folder here;
    bool refuse = true; // as a store does: what it could not commit it has given up, and the next commit has nothing
    const int registration = on_outside_effect([&] {
        if (std::exchange(refuse, false))
            throw run_time_error{0x80004005, "disk full"};
    });
    fail_with(6, "Overflow");
    forget_outside_effect(registration);
    QCOMPARE(here.status_lines.size(), 1);
    QVERIFY(here.status_lines[0].contains("disk full"));
    QVERIFY(here.bytes().contains("\r\nOverflow\r\n"));
}

QTEST_GUILESS_MAIN(error_log_test)
#include "error_log_test.moc"
