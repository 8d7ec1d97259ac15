// Mails that are composed with the mail client that reads and leaves: of which kind they are, as whom they go out.
#include "platform/outbox.h"
#include "support/open_mailbox.h"
#include <QFile>
#include <QTest>

namespace {

struct composing_site : open_mailbox_folder {
    composing_site()
    {
        QFile box(path("inbox.mbox"));
        if (box.open(QFile::WriteOnly))
            box.write("From ann@example.net Thu Aug  6 10:00:00 2026\nFrom: ann@example.net\nTo: shop@example.org\n"
                      "Subject: One\n\nHello\n\n");
        box.close();
        set_mbox(path("inbox.mbox"));
        sign_on();
    }
};

}

class composed_message_test : public QObject {
    Q_OBJECT
private slots:
    void it_is_of_the_kind_and_account_that_it_is_told()
    {
        composing_site site;
        site.messages->Compose();
        site.messages->Kind = outbox::mail_kind::mailing;
        site.messages->SendingAccount = "shop@example.org";
        site.messages->Headers = {{"List-Unsubscribe", "<mailto:shop@example.org?subject=Stop%201037>"}};
        site.messages->set_RecipAddress("bob@example.net");
        site.messages->Send();
        const auto kept = outbox::contents();
        QCOMPARE(kept.size(), size_t(1));
        QVERIFY(kept[0].Kind == outbox::mail_kind::mailing);
        QCOMPARE(kept[0].SendingAccount, "shop@example.org");
        const QByteArray bytes = outbox::bytes_of(kept[0].id);
        QVERIFY2(bytes.contains("From: shop@example.org"), bytes);
        QVERIFY2(bytes.contains("List-Unsubscribe: <mailto:shop@example.org?subject=Stop%201037>"), bytes);
    }

    void an_answer_is_one_and_the_next_mail_begins_anew()
    {
        composing_site site;
        site.messages->Reply();
        QVERIFY(site.messages->Kind == outbox::mail_kind::answer);
        QCOMPARE(site.messages->SendingAccount, "shop@example.org");
        site.messages->Send();
        site.messages->Compose();
        QVERIFY(site.messages->Kind == outbox::mail_kind::single);
        QCOMPARE(site.messages->SendingAccount, "");
        QVERIFY(site.messages->Headers.empty());
        const auto kept = outbox::contents();
        QCOMPARE(kept.size(), size_t(1));
        QVERIFY(kept[0].Kind == outbox::mail_kind::answer);
        QVERIFY(outbox::bytes_of(kept[0].id).contains("Auto-Submitted: auto-replied"));
    }

    // As an automatic answer is made: composed, not replied.
    void the_eleventh_composed_answer_is_held_too()
    {
        composing_site site;
        for (int number = 0; number < 11; ++number) {
            site.messages->Compose();
            site.messages->Kind = outbox::mail_kind::answer;
            site.messages->set_RecipAddress("ann@example.net");
            site.messages->Send();
        }
        QVERIFY(outbox::contents().back().state == outbox::mail_state::held);
        QCOMPARE(outbox::count().waiting, 10);
    }
};

QTEST_GUILESS_MAIN(composed_message_test)
#include "composed_message_test.moc"
