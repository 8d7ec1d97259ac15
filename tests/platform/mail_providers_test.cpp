// Servers guessed from an address, and the form of the delivered list.
#include "platform/app_folder.h"
#include "platform/mail_providers.h"
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString list_path = SOURCE_ROOT "/delivered/mail_providers.tsv";

QStringList list_lines()
{
    QFile list(list_path);
    if (!list.open(QFile::ReadOnly))
        qFatal("no list");
    QStringList lines = QString::fromUtf8(list.readAll()).split('\n');
    lines.removeIf([](const QString &line) { return line.startsWith('#') || line.isEmpty(); });
    return lines;
}

QString text_of(const mail::server_guess &guess)
{
    const mail::server &place = guess.place;
    const char *secured = place.secured == mail::security::tls        ? "tls"
                          : place.secured == mail::security::starttls ? "starttls"
                                                                      : "none";
    return QString("%1 %2 %3 %4").arg(place.host, QString::number(place.port), secured, place.user);
}

QStringList texts_of(const std::vector<mail::server_guess> &guesses)
{
    QStringList texts;
    for (const mail::server_guess &guess : guesses)
        texts.append(text_of(guess));
    return texts;
}

}

class mail_providers_test : public QObject {
    Q_OBJECT
private slots:

    void initTestCase()
    {
        QVERIFY(QFile::copy(list_path, folder.filePath("mail_providers.tsv")));
        set_app_folder(folder.path());
    }
    void cleanupTestCase() { set_app_folder({}); }

    void every_line_of_the_list_has_its_form()
    {
        const QRegularExpression server("^(-|[a-z0-9-]+(\\.[a-z0-9-]+)+ [0-9]+ (tls|starttls))$");
        const QRegularExpression domain("^[a-z0-9-]+(\\.[a-z0-9-]+)+$");
        QSet<QString> met;
        const QStringList lines = list_lines();
        QCOMPARE(lines.size(), 20);
        for (const QString &line : lines) {
            const QStringList column = line.split('\t');
            QVERIFY2(column.size() == 7, qPrintable(line));
            for (const QString &one : column[0].split(' ')) {
                QVERIFY2(domain.match(one).hasMatch(), qPrintable(line));
                QVERIFY2(!met.contains(one), qPrintable(one));
                met.insert(one);
            }
            QVERIFY2(!column[1].trimmed().isEmpty(), qPrintable(line));
            for (const int at : {2, 3, 4})
                QVERIFY2(server.match(column[at]).hasMatch(), qPrintable(column[at]));
            QVERIFY2(column[5] == "address" || column[5] == "local", qPrintable(line));
            QVERIFY2(column[6] == "-" || column[6].endsWith('.'), qPrintable(line));
        }
    }

    // Every domain of the list is found, and on the ports that belong to its kinds of encryption.
    void every_domain_of_the_list_is_guessed()
    {
        for (const QString &line : list_lines()) {
            const QStringList column = line.split('\t');
            for (const QString &domain : column[0].split(' ')) {
                const mail::address_guess guess = mail::guess_from_address("jane@" + domain);
                QCOMPARE(guess.provider, column[1]);
                QCOMPARE(guess.imap.size(), size_t(1));
                QCOMPARE(guess.smtp.size(), size_t(1));
                QVERIFY(guess.imap[0].is_known && guess.smtp[0].is_known);
                QCOMPARE(guess.imap[0].place.port,
                         mail::usual_port(mail::client_kind::imap, guess.imap[0].place.secured));
                QCOMPARE(guess.smtp[0].place.port, mail::usual_smtp_port(guess.smtp[0].place.secured));
                for (const mail::server_guess &one : guess.pop3)
                    QCOMPARE(one.place.port, mail::usual_port(mail::client_kind::pop3, one.place.secured));
            }
        }
    }

    void a_known_provider()
    {
        const mail::address_guess guess = mail::guess_from_address(" Jane.Doe@GoogleMail.COM ");
        QCOMPARE(guess.provider, "Gmail");
        QVERIFY(guess.note.contains("application password"));
        QCOMPARE(texts_of(guess.imap), QStringList{"imap.gmail.com 993 tls Jane.Doe@GoogleMail.COM"});
        QCOMPARE(texts_of(guess.pop3), QStringList{"pop.gmail.com 995 tls Jane.Doe@GoogleMail.COM"});
        QCOMPARE(texts_of(guess.smtp), QStringList{"smtp.gmail.com 465 tls Jane.Doe@GoogleMail.COM"});
    }

    void a_provider_whose_users_are_local_parts()
    {
        QCOMPARE(texts_of(mail::guess_from_address("jane@free.fr").imap), QStringList{"imap.free.fr 993 tls jane"});
    }

    void a_provider_without_pop3() { QVERIFY(mail::guess_from_address("jane@icloud.com").pop3.empty()); }

    void the_usual_names()
    {
        const mail::address_guess guess = mail::guess_from_address("Shop@Nursery.Example.ORG");
        QCOMPARE(guess.provider, "");
        QCOMPARE(guess.note, "");
        QVERIFY(!guess.imap[0].is_known);
        const QString user = " Shop@Nursery.Example.ORG";
        QCOMPARE(texts_of(guess.imap),
                 (QStringList{"imap.nursery.example.org 993 tls" + user, "imap.nursery.example.org 143 starttls" + user,
                              "mail.nursery.example.org 993 tls" + user, "mail.nursery.example.org 143 starttls" + user,
                              "nursery.example.org 993 tls" + user, "nursery.example.org 143 starttls" + user}));
        QCOMPARE(texts_of(guess.pop3).first(), "pop.nursery.example.org 995 tls" + user);
        QCOMPARE(texts_of(guess.pop3)[3], "pop3.nursery.example.org 110 starttls" + user);
        QCOMPARE(texts_of(guess.smtp),
                 (QStringList{"smtp.nursery.example.org 465 tls" + user, "smtp.nursery.example.org 587 starttls" + user,
                              "mail.nursery.example.org 465 tls" + user, "mail.nursery.example.org 587 starttls" + user,
                              "nursery.example.org 465 tls" + user, "nursery.example.org 587 starttls" + user}));
    }

    void a_subdomain_of_a_provider_is_another_domain()
    {
        const mail::address_guess guess = mail::guess_from_address("jane@shop.gmail.com");
        QCOMPARE(guess.provider, "");
        QCOMPARE(guess.imap[0].place.host, "imap.shop.gmail.com");
    }

    void letters_beyond_ascii_in_the_domain()
    {
        QCOMPARE(mail::guess_from_address(QString::fromUtf8("jane@G\u00e4rtnerei.example")).imap[0].place.host,
                 "imap.xn--grtnerei-0za.example");
    }

    void from_no_address_nothing_is_guessed_data()
    {
        QTest::addColumn<QString>("address");
        QTest::newRow("nothing") << "";
        QTest::newRow("no at sign") << "gmail.com";
        QTest::newRow("nobody") << "@gmail.com";
        QTest::newRow("nowhere") << "jane@";
        QTest::newRow("a blank inside") << "jane doe@gmail.com";
        QTest::newRow("a line end") << "jane\r\n@gmail.com";
        QTest::newRow("a line end in the domain") << "jane@gmail\n.com";
        QTest::newRow("two at signs") << "jane@evil.example@gmail.com";
        QTest::newRow("a domain of one word") << "jane@com";
        QTest::newRow("an address in numbers") << "jane@192.0.2.1";
        QTest::newRow("an address in brackets") << "jane@[192.0.2.1]";
        QTest::newRow("an empty label") << "jane@example..org";
        QTest::newRow("a dot at the end") << "jane@example.org.";
        QTest::newRow("a hyphen at the head") << "jane@-example.org";
        QTest::newRow("a path") << "jane@example.org/../evil";
        QTest::newRow("a port") << "jane@example.org:993";
        QTest::newRow("a column mark") << "jane@gmail.com\tevil";
        QTest::newRow("a label too long") << "jane@" + QString(64, 'a') + ".org";
        QTest::newRow("a domain too long") << "jane@" + QString("a.").repeated(200) + "org";
        QTest::newRow("endless") << QString(1000000, 'a') + "@example.org";
    }
    void from_no_address_nothing_is_guessed()
    {
        QFETCH(QString, address);
        const mail::address_guess guess = mail::guess_from_address(address);
        QCOMPARE(guess.provider, "");
        QVERIFY(guess.imap.empty() && guess.pop3.empty() && guess.smtp.empty());
    }

    void damaged_lines_are_passed_over()
    {
        const QTemporaryDir damaged;
        QFile list(damaged.filePath("mail_providers.tsv"));
        QVERIFY(list.open(QFile::WriteOnly));
        list.write(
            "example.org\n"
            "example.org\tHalf\timap.example.org 993 tls\n"
            "example.org\tWhole\timap.example.org 993\tpop.example.org 995 ssl3\tsmtp.example.org 465 tls\taddress\t-\n"
            "\xff\xfe\t\t\t\t\t\t\n");
        list.close();
        set_app_folder(damaged.path());
        const mail::address_guess guess = mail::guess_from_address("jane@example.org");
        set_app_folder(folder.path());
        QCOMPARE(guess.provider, "Whole");
        QVERIFY(guess.imap.empty() && guess.pop3.empty());
        QCOMPARE(guess.smtp.size(), size_t(1));
    }

    void without_a_list_the_usual_names()
    {
        const QTemporaryDir empty;
        set_app_folder(empty.path());
        const mail::address_guess guess = mail::guess_from_address("jane@gmail.com");
        set_app_folder(folder.path());
        QCOMPARE(guess.provider, "");
        QCOMPARE(guess.imap[0].place.host, "imap.gmail.com");
    }

private:
    QTemporaryDir folder;
};

QTEST_GUILESS_MAIN(mail_providers_test)
#include "mail_providers_test.moc"
