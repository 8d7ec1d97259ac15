// Access tokens from a command: its output, its failures, its end.
#include "platform/real/mail/access_token.h"
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {

mail::client_settings with_command(const QString &command)
{
    mail::client_settings settings;
    settings.use_token = true;
    settings.token_command = command;
    return settings;
}

// What the failure of this command is called, and its words.
run_time_error failure_of(const QString &command, const net::patience &patience = {})
{
    try {
        mail::access_token(with_command(command), patience);
    } catch (const run_time_error &error) {
        return error;
    }
    return {0, "no failure"};
}

}

class access_token_test : public QObject {
    Q_OBJECT
private slots:

    void the_first_line_is_the_token_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("token");
        QTest::newRow("plain") << "echo ya29.abc-DEF_1"
                               << "ya29.abc-DEF_1";
        QTest::newRow("blanks around it") << "echo '  one  '"
                                          << "one";
        QTest::newRow("more lines behind it") << "printf 'two\\r\\nexpires 3600\\n'"
                                              << "two";
        QTest::newRow("no line end") << "printf three"
                                     << "three";
        QTest::newRow("a pipe, as typed") << "echo 'access four' | cut -d ' ' -f 2"
                                          << "four";
        QTest::newRow("a warning beside it") << "echo careful >&2; echo five"
                                             << "five";
        QTest::newRow("reads its empty input first") << "cat; echo six"
                                                     << "six";
        QTest::newRow("a long one") << "head -c 4000 /dev/zero | tr '\\0' a" << QString(4000, 'a');
    }
    void the_first_line_is_the_token()
    {
        QFETCH(QString, command);
        QFETCH(QString, token);
        QCOMPARE(mail::access_token(with_command(command), {}), token);
    }

    void a_failure_says_why_and_never_what_was_printed_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("a status") << "echo SECRET; echo 'sign in again' >&2; exit 3"
                                  << QStringList{"status 3", "sign in again"};
        QTest::newRow("no such program") << "/no/such/program" << QStringList{"status 127", "/no/such/program"};
        QTest::newRow("nothing printed") << "true" << QStringList{"printed none"};
        QTest::newRow("an empty line first") << "echo; echo" << QStringList{"printed none"};
        QTest::newRow("words instead of a token") << "echo SECRET SECRET" << QStringList{"printed none"};
        QTest::newRow("a control character") << "printf 'SECRET\\001'" << QStringList{"printed none"};
        QTest::newRow("a signal") << "echo SECRET; kill -9 $$" << QStringList{"signal"};
        QTest::newRow("only the first line of the complaint")
            << "echo broken >&2; echo SECRET >&2; exit 1" << QStringList{"status 1", "broken"};
        QTest::newRow("percent signs") << "echo '%1 %2 %3' >&2; exit 1" << QStringList{"status 1", "%1 %2 %3"};
        QTest::newRow("no command") << " " << QStringList{"no access token"};
    }
    void a_failure_says_why_and_never_what_was_printed()
    {
        QFETCH(QString, command);
        QFETCH(QStringList, words);
        const run_time_error error = failure_of(command);
        QVERIFY(net::is(error, net::trouble::not_configured));
        for (const QString &word : words)
            QVERIFY2(error.description.contains(word), qPrintable(error.description));
        QVERIFY2(!error.description.contains("SECRET"), qPrintable(error.description));
    }

    void a_token_is_remembered_until_it_is_refused()
    {
        const QTemporaryDir folder;
        const QString count = folder.filePath("count");
        const auto settings = with_command("echo x >> " + count + "; wc -l < " + count);
        QCOMPARE(mail::access_token(settings, {}), "1");
        QCOMPARE(mail::access_token(settings, {}), "1");
        mail::access_token_refused("another");
        QCOMPARE(mail::access_token(settings, {}), "1");
        mail::access_token_refused("1");
        QCOMPARE(mail::access_token(settings, {}), "2");
    }

    void another_command_is_another_token()
    {
        QCOMPARE(mail::access_token(with_command("echo one"), {}), "one");
        QCOMPARE(mail::access_token(with_command("echo two"), {}), "two");
    }

    void a_command_without_end_is_ended_with_all_it_started()
    {
        const QTemporaryDir folder;
        const QString number = folder.filePath("number");
        net::patience patience;
        patience.connect_ms = 500;
        QElapsedTimer since;
        since.start();
        const run_time_error error = failure_of("sleep 1000 & echo $! > " + number + "; wait", patience);
        QVERIFY(net::is(error, net::trouble::timed_out));
        QVERIFY(since.elapsed() < 5000);
        QFile file(number);
        QVERIFY(file.open(QFile::ReadOnly));
        const QString process = QString::fromLatin1(file.readAll().trimmed());
        QVERIFY(!process.isEmpty());
        const auto is_gone = [&process] {
            QFile status("/proc/" + process + "/stat");
            return !status.open(QFile::ReadOnly) || status.readAll().contains(") Z ");
        };
        QTRY_VERIFY(is_gone());
    }

    void a_command_that_prints_without_end() { QVERIFY(net::is(failure_of("yes SECRET"), net::trouble::timed_out)); }

    void giving_up_ends_the_command()
    {
        net::patience patience;
        int asked = 0;
        patience.give_up = [&asked] { return ++asked > 2; };
        QElapsedTimer since;
        since.start();
        QVERIFY(net::is(failure_of("sleep 1000", patience), net::trouble::cancelled));
        QVERIFY(since.elapsed() < 3000);
    }

    void a_place_gets_password_or_token()
    {
        net::place place;
        mail::client_settings settings = with_command("echo t0ken");
        mail::set_login(place, settings, "word", {});
        QCOMPARE(place.token, "t0ken");
        QCOMPARE(place.password, "");
        settings.token_command.clear();
        mail::set_login(place, settings, " typed ", {});
        QCOMPARE(place.token, "typed");
        settings.use_token = false;
        place = {};
        mail::set_login(place, settings, "word", {});
        QCOMPARE(place.password, "word");
        QCOMPARE(place.token, "");
    }
};

QTEST_GUILESS_MAIN(access_token_test)
#include "access_token_test.moc"
