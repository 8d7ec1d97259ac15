// What the servers of other tests show as their certificates is what it is called: asked of the openssl program.
#include "support/certificates.h"
#include <QProcess>
#include <QTest>

class certificates_test : public QObject {
    Q_OBJECT
private slots:
    void each_is_what_it_is_called_data();
    void each_is_what_it_is_called();
    void each_key_belongs_to_its_certificate();

private:
    certificates made;
};

static QString openssl(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("openssl"), arguments);
    if (!process.waitForFinished())
        return QStringLiteral("openssl cannot run: ") + process.errorString();
    return QString::fromUtf8(process.readAll());
}

void certificates_test::each_is_what_it_is_called_data()
{
    QTest::addColumn<certificate_files>("files");
    QTest::addColumn<QStringList>("host");
    QTest::addColumn<QString>("verdict");
    const QStringList by_name{"-verify_hostname", "localhost"};
    const QStringList by_address{"-verify_ip", "127.0.0.1"};
    QTest::newRow("good for localhost") << made.good() << by_name << ": OK";
    QTest::newRow("good for 127.0.0.1") << made.good() << by_address << ": OK";
    QTest::newRow("not good for another name")
        << made.good() << QStringList{"-verify_hostname", "mail.example.org"} << "hostname mismatch";
    QTest::newRow("another host") << made.other_host() << by_name << "hostname mismatch";
    QTest::newRow("another host, there") << made.other_host() << QStringList{"-verify_hostname", "mail.example.org"}
                                         << ": OK";
    QTest::newRow("expired") << made.expired() << by_name << "certificate has expired";
    QTest::newRow("unknown authority") << made.unknown_authority() << by_name << "unable to get local issuer";
    QTest::newRow("self-signed") << made.self_signed() << by_name << "self-signed certificate";
}

void certificates_test::each_is_what_it_is_called()
{
    QFETCH(certificate_files, files);
    QFETCH(QStringList, host);
    QFETCH(QString, verdict);
    const QString said =
        openssl(QStringList{"verify", "-no-CApath", "-CAfile", made.authority(), "-purpose", "sslserver"} + host +
                QStringList{files.certificate});
    QVERIFY2(said.contains(verdict), qPrintable(said));
}

void certificates_test::each_key_belongs_to_its_certificate()
{
    for (const certificate_files &files :
         {made.good(), made.other_host(), made.expired(), made.unknown_authority(), made.self_signed()}) {
        const QString of_key = openssl({"pkey", "-in", files.key, "-pubout"});
        QVERIFY2(of_key.startsWith(QStringLiteral("-----BEGIN PUBLIC KEY-----")), qPrintable(of_key));
        QCOMPARE(openssl({"x509", "-in", files.certificate, "-noout", "-pubkey"}), of_key);
    }
}

QTEST_GUILESS_MAIN(certificates_test)
#include "certificates_test.moc"
