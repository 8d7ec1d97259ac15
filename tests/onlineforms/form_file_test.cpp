// Which page files are forms of the program's own.
#include "onlineforms/form_file.h"
#include "platform/run_time_error.h"
#include "support/plain_files.h"

#include <QTemporaryDir>
#include <QTest>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr uid_t nobody = 65534;

// Root may read every file, so a child that is nobody asks.
int number_that_nobody_gets(const QString &path)
{
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && setuid(nobody) != 0)
            _exit(1);
        try {
            onlineforms::why_not_form(path);
        } catch (const run_time_error &failure) {
            _exit(int(failure.number));
        }
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}

class form_file_test : public QObject {
    Q_OBJECT
private slots:
    void pages_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QString>("why_not");
        const QByteArray head = "<html><head></head>\r\n";
        QTest::newRow("a form") << head + "<!--#comment_start-->\r\n<!--form_tbl-->"
                                << "";
        QTest::newRow("the mark in capitals") << head + "<!--#COMMENT_START-->"
                                              << "";
        QTest::newRow("the mark at the very start") << QByteArray("<!--#comment_start--><html>") << "";
        QTest::newRow("another page") << head + "<body>Hello</body>"
                                      << "Invalid file";
        QTest::newRow("a blank in the mark") << head + "<!-- #comment_start -->"
                                             << "Invalid file";
        QTest::newRow("the words without the comment") << head + "#comment_start"
                                                       << "Invalid file";
        QTest::newRow("cut within the mark") << head + "<!--#comment_start-"
                                             << "Invalid file";
        QTest::newRow("an empty file") << QByteArray() << "Invalid file";
        QTest::newRow("a picture") << QByteArray("\x89PNG\r\n\x1a\n\0\0\xff\xfe", 12) << "Invalid file";
    }

    void pages()
    {
        QFETCH(QByteArray, page);
        const QTemporaryDir folder;
        const QString path = folder.filePath("form.htm");
        put_file(path, page);
        QTEST(onlineforms::why_not_form(path), "why_not");
    }

    void what_is_no_file_is_named_so()
    {
        const QTemporaryDir folder;
        QCOMPARE(onlineforms::why_not_form(folder.filePath("none.htm")), "Invalid file name");
        QCOMPARE(onlineforms::why_not_form(folder.path()), "Invalid file name");
        QCOMPARE(onlineforms::why_not_form(QString()), "Invalid file name");
    }

    void a_file_that_may_not_be_read_is_a_failure()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("form.htm");
        put_file(path, "<!--#comment_start-->");
        QCOMPARE(chmod(qPrintable(folder.path()), 0755), 0);
        QCOMPARE(number_that_nobody_gets(path), 0);
        QCOMPARE(chmod(qPrintable(path), 0000), 0);
        QCOMPARE(number_that_nobody_gets(path), 70);
    }
};

QTEST_GUILESS_MAIN(form_file_test)
#include "form_file_test.moc"
