// The Outbox through its controls, over a real Outbox folder. What a server and a closing program do to it:
// outbox_sending_test.cpp, outbox_deed_test.cpp; how
// it follows: outbox_following_test.cpp.
#include "platform/mail_delivery.h"
#include "platform/outbox.h"
#include "platform/settings.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_frm.h"
#include "screens/frame/outbox_list.h"
#include "screens/list_view.h"
#include "screens/screen.h"
#include "support/screens_outbox.h"

#include <QAction>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace outbox_hands;

class outbox_frm_test : public QObject {
    Q_OBJECT
private slots:
    void the_menu_opens_it_empty()
    {
        screens_site site;
        menuFrm console;
        console.show();
        control<QAction>(console, "outbox_mnu").trigger();
        QVERIFY(is_visible<outbox_frm>());
        QCOMPARE(the<outbox_frm>().windowTitle(), "Outbox");
        QCOMPARE(row_count(), 0);
        QVERIFY(!button("again_b").isEnabled());
        QVERIFY(!button("delete_b").isEnabled());
    }

    void send_now_is_there_when_it_could_send_something_data()
    {
        QTest::addColumn<QStringList>("to");
        QTest::addColumn<QString>("sending");
        QTest::addColumn<bool>("works");
        QTest::addColumn<QString>("tip");
        const QString waits = "ann@mail.example", refused = "no address";
        QTest::newRow("a mail waits") << QStringList{waits, refused} << "smtp" << true
                                      << "Tries at once to send all that waits, also what was to be tried later";
        QTest::newRow("nothing is there") << QStringList() << "smtp" << false << "No mail waits to be sent.";
        QTest::newRow("only a refused one") << QStringList{refused} << "smtp" << false
                                            << "No mail waits for its turn. Send Again is for those that are held, "
                                               "refused or unknown.";
        QTest::newRow("sending is off") << QStringList{waits} << "keep" << false
                                        << "Sending is switched off in Preferences > Mail Client.";
    }
    void send_now_is_there_when_it_could_send_something()
    {
        QFETCH(QStringList, to);
        QFETCH(QString, sending);
        screens_site site;
        SaveSetting("mail_client", "send", sending);
        for (const QString &each : to)
            hand_over(each, "Order");
        the<outbox_frm>().show();
        QTEST(button("now_b").isEnabled(), "works");
        QTEST(button("now_b").toolTip(), "tip");
    }

    void a_mail_has_its_line()
    {
        screens_site site;
        SaveSetting("mail_client", "send", "smtp");
        hand_over("ann@mail.example", "Order 17");
        hand_over("no address", "Order 18");
        the<outbox_frm>().show();
        QCOMPARE(row_count(), 2);
        QCOMPARE(cell(0, 0), "ann@mail.example");
        QCOMPARE(cell(0, 1), "Order 17");
        QCOMPARE(cell(0, 2), "Waiting");
        QCOMPARE(cell(0, 3), "It goes out when its turn comes.");
        QVERIFY(!cell(0, 4).isEmpty());
        QCOMPARE(cell(1, 2), "Refused");
        QVERIFY(!cell(1, 3).isEmpty());
    }

    void a_waiting_mail_says_that_sending_is_off()
    {
        screens_site site;
        hand_over("ann@mail.example", "Order 17");
        the<outbox_frm>().show();
        QCOMPARE(cell(0, 3), "Sending is switched off in Preferences > Mail Client.");
    }

    void the_eleventh_answer_is_held_until_the_user_sends_it()
    {
        screens_site site;
        for (int number = 0; number < 11; ++number)
            hand_over("ann@mail.example", "Order " + QString::number(number), "Hello", outbox::mail_kind::answer);
        the<outbox_frm>().show();
        QCOMPARE(cell(9, 2), "Waiting");
        QCOMPARE(cell(10, 2), "Held");
        select(10);
        QCOMPARE(shown_reason(), outbox::contents()[10].reason);
        QVERIFY(shown_reason().contains("hour"));
        button("again_b").click();
        QCOMPARE(site.boxes.shown, QStringList()); // nobody has it yet: nothing to ask
        QCOMPARE(cell(10, 2), "Waiting");
    }

    void a_mail_that_may_have_gone_is_sent_again_only_when_the_user_says_so()
    {
        screens_site site;
        hand_over("ann@mail.example", "Order 17");
        QFile state(site.file("outbox/" + outbox::contents()[0].id + ".json"));
        QVERIFY(state.open(QIODevice::WriteOnly)); // damaged: nobody knows what became of the mail
        state.close();
        the<outbox_frm>().show();
        QCOMPARE(cell(0, 2), "Unknown");
        select(0);
        site.boxes.will_say_no();
        button("again_b").click();
        QCOMPARE(site.boxes.shown,
                 QStringList{"Nobody knows whether this mail has arrived. If it has, it arrives twice "
                             "now.\n\nSend it again?"});
        QCOMPARE(cell(0, 2), "Unknown");
        site.boxes.will_say_yes();
        button("again_b").click();
        QCOMPARE(cell(0, 2), "Waiting");
    }

    void a_selected_mail_is_read_as_plain_text()
    {
        screens_site site;
        hand_over("ann@mail.example", "Order 17", "Gr\u00fc\u00dfe <b>und</b> Dank");
        the<outbox_frm>().show();
        select(0);
        QCOMPARE(shown_text(), "Gr\u00fc\u00dfe <b>und</b> Dank");
        rows().clearSelection();
        QCOMPARE(shown_text(), "");
    }

    void a_text_without_end_is_cut()
    {
        screens_site site;
        hand_over("ann@mail.example", "Long", QString("word ").repeated(100000));
        the<outbox_frm>().show();
        select(0);
        QVERIFY(shown_text().size() < 101000);
        QVERIFY(shown_text().endsWith("(The text is longer than what is shown here.)"));
    }

    void deleting_asks_first()
    {
        screens_site site;
        hand_over("ann@mail.example", "Order 17");
        hand_over("bob@mail.example", "Order 18");
        the<outbox_frm>().show();
        select(0);
        site.boxes.will_say_no();
        button("delete_b").click();
        QCOMPARE(outbox::contents().size(), size_t(2));
        site.boxes.will_say_yes();
        button("delete_b").click();
        QCOMPARE(site.boxes.shown.last(), "Delete this mail from the Outbox? What has not gone out never will.");
        QCOMPARE(row_count(), 1);
        QCOMPARE(cell(0, 1), "Order 18");
        QCOMPARE(outbox::contents().size(), size_t(1));
    }

    void a_refused_mail_waits_again_without_a_question()
    {
        screens_site site;
        hand_over("no address", "Order 18");
        the<outbox_frm>().show();
        select(0);
        button("again_b").click();
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(cell(0, 2), "Waiting");
    }

    void heads_sort_and_the_selection_follows()
    {
        screens_site site;
        for (const char *to : {"eva@mail.example", "ann@mail.example", "Bob@mail.example"})
            hand_over(to, "Order");
        the<outbox_frm>().show();
        select(0);
        QTest::mouseClick(rows().header()->viewport(), Qt::LeftButton, {},
                          {rows().header()->sectionViewportPosition(0) + 8, 5});
        QCOMPARE(cell(0, 0) + ' ' + cell(1, 0) + ' ' + cell(2, 0),
                 "ann@mail.example Bob@mail.example eva@mail.example");
        QCOMPARE(rows().selectionModel()->selectedRows().value(0).row(), 2);
    }

    void a_thousand_mails_open_at_once()
    {
        screens_site site;
        for (int number = 0; number < 1000; ++number)
            hand_over("ann@mail.example", "Order " + QString::number(number));
        QElapsedTimer time;
        time.start();
        the<outbox_frm>().show();
        QCOMPARE(row_count(), 1000);
        QVERIFY(time.elapsed() < 2000);
    }

    void ten_thousand_rows_are_sorted_at_once()
    {
        std::vector<outbox::kept_mail> mails(10000);
        for (size_t number = 0; number < mails.size(); ++number) {
            mails[number].id = QString::number(number);
            mails[number].To = QStringList{"ann@mail.example"};
            mails[number].Subject = "Order " + QString::number(number * 7919 % 10000);
        }
        outbox_list list;
        list.set_mails(mails);
        QElapsedTimer time;
        time.start();
        list.sort(outbox_list::subject_column);
        QVERIFY(time.elapsed() < 2000);
        QCOMPARE(list.index(0, 1).data().toString(), "Order 0");
        QCOMPARE(list.index(9999, 1).data().toString(), "Order 9999");
    }

    void escape_closes()
    {
        screens_site site;
        the<outbox_frm>().show();
        QTest::keyClick(&rows(), Qt::Key_Escape);
        QVERIFY(!is_loaded<outbox_frm>());
    }
};

QTEST_MAIN(outbox_frm_test)
#include "outbox_frm_test.moc"
