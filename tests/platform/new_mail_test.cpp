// A new mail of the mail client: what is set on it is what lies in the Outbox.
#include "platform/outbox.h"
#include "platform/outside_effects.h"
#include "support/mailbox.h"
#include "support/test_store.h"
#include <QTest>

namespace {

struct new_mail_site : mailbox {
    std::unique_ptr<outlook::NewMail> item() { return application->CreateItem(0); }
    QByteArray eml() const
    {
        const auto kept = outbox::contents();
        return kept.empty() ? QByteArray() : bytes_of_file(folder.filePath("outbox/" + kept.back().id + ".eml"));
    }
};

}

class new_mail_test : public QObject {
    Q_OBJECT
private slots:

    void what_was_set_goes_out()
    {
        new_mail_site site;
        const auto item = site.item();
        item->Headers = {{"X-Entry", "1037"}};
        item->Body = "Hello\n";
        item->Kind = outbox::mail_kind::mailing;
        item->SendingAccount = "orders@example.org";
        item->Subject = "Spring";
        item->To = "ann@example.net";
        item->Send();
        const auto kept = outbox::contents();
        QCOMPARE(kept.size(), size_t(1));
        QCOMPARE(kept[0].state, outbox::mail_state::waiting);
        QCOMPARE(kept[0].Kind, outbox::mail_kind::mailing);
        QCOMPARE(kept[0].SendingAccount, "orders@example.org");
        QCOMPARE(kept[0].Subject, "Spring");
        QCOMPARE(kept[0].To, QStringList{"ann@example.net"});
        QVERIFY(site.eml().contains("\r\nX-Entry: 1037\r\n"));
        QVERIFY(site.eml().endsWith("\r\n\r\nHello\r\n"));
    }

    void nothing_goes_out_without_send()
    {
        new_mail_site site;
        site.item()->To = "ann@example.net";
        QCOMPARE(outbox::contents().size(), size_t(0));
    }

    void addresses_of_one_line_data()
    {
        QTest::addColumn<QString>("to");
        QTest::addColumn<QStringList>("addresses");
        QTest::addColumn<bool>("waits");
        QTest::newRow("one") << "ann@example.net" << QStringList{"ann@example.net"} << true;
        QTest::newRow("two") << "ann@example.net; bob@example.net" << QStringList{"ann@example.net", "bob@example.net"}
                             << true;
        QTest::newRow("no blank between") << "a@b.c;d@e.f" << QStringList{"a@b.c", "d@e.f"} << true;
        QTest::newRow("one behind the last") << "a@b.c; " << QStringList{"a@b.c"} << true;
        QTest::newRow("none") << "" << QStringList{""} << false;
        QTest::newRow("a blank before it stays, and is refused") << " a@b.c" << QStringList{" a@b.c"} << false;
        QTest::newRow("a line end") << "a@b.c\r\nBcc: d@e.f" << QStringList{"a@b.c\r\nBcc: d@e.f"} << false;
    }
    void addresses_of_one_line()
    {
        QFETCH(QString, to);
        new_mail_site site;
        const auto item = site.item();
        item->To = to;
        item->SendingAccount = "orders@example.org";
        item->Send();
        QTEST(outbox::contents().at(0).To, "addresses");
        QTEST(outbox::contents().at(0).state == outbox::mail_state::waiting, "waits");
    }

    void the_store_is_committed_before_it_lies_there()
    {
        new_mail_site site;
        size_t mails_at_commit = 99;
        const int registration = on_outside_effect([&] { mails_at_commit = outbox::contents().size(); });
        const auto item = site.item();
        item->To = "ann@example.net";
        item->Send();
        forget_outside_effect(registration);
        QCOMPARE(mails_at_commit, size_t(0));
    }

    void another_type_of_item()
    {
        new_mail_site site;
        QCOMPARE(error_number_of([&] { site.application->CreateItem(1); }), 5u);
    }
};

QTEST_GUILESS_MAIN(new_mail_test)
#include "new_mail_test.moc"
