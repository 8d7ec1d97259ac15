// The Outbox through its controls, over a real Outbox folder; nothing is delivered here.
#include "platform/mail_delivery.h"
#include "platform/outbox.h"
#include "platform/settings.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_frm.h"
#include "screens/frame/outbox_list.h"
#include "screens/list_view.h"
#include "screens/screen.h"
#include "support/maildir_files.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QAction>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QToolButton>

namespace {

void hand_over(const QString &to, const QString &subject, const QString &text = "Hello",
               outbox::mail_kind kind = outbox::mail_kind::single)
{
    outbox::outgoing_mail mail;
    mail.Kind = kind;
    mail.SendingAccount = "shop@shop.example";
    mail.To = QStringList{to};
    mail.Subject = subject;
    mail.body = text;
    outbox::hand_over(mail);
}

constexpr int all_rows = 5000;

// Refused ones; by copying, so quickly.
void hand_over_many(const screens_site &site)
{
    hand_over("nobody", "Order 1");
    const QString model = outbox::contents().at(0).id;
    const QByteArray eml = outbox::bytes_of(model);
    const QByteArray state = bytes_of_file(site.file("outbox/" + model + ".json"));
    const auto write = [&site](const QString &name, const QByteArray &bytes) {
        QFile file(site.file("outbox/" + name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("a mail of the test cannot be written");
    };
    for (int number = 1; number < all_rows; ++number) {
        const QString id = QStringLiteral("1767268800%1-a").arg(number, 6, 10, QChar(u'0'));
        write(id + ".eml", eml);
        write(id + ".json", state);
    }
}

list_view &rows()
{
    return control<list_view>(the<outbox_frm>(), "LV_outbox");
}

QString cell(int row, int column)
{
    return rows().model()->index(row, column).data().toString();
}

int row_count()
{
    return rows().model()->rowCount();
}

void select(int row)
{
    rows().setCurrentIndex(rows().model()->index(row, 0));
}

QPushButton &button(const char *name)
{
    return control<QPushButton>(the<outbox_frm>(), name);
}

QString shown_reason()
{
    return control<QLabel>(the<outbox_frm>(), "why_l").text();
}

QString shown_text()
{
    return control<QPlainTextEdit>(the<outbox_frm>(), "text_t").toPlainText();
}

}

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
        QVERIFY(!button("now_b").isEnabled());
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

    void the_list_follows_delivery_and_keeps_what_is_selected()
    {
        screens_site site;
        hand_over("ann@mail.example", "Order 17");
        hand_over("bob@mail.example", "Order 18");
        menuFrm console;
        console.show();
        control<QAction>(console, "outbox_mnu").trigger();
        select(1);
        hand_over("eva@mail.example", "Order 19");
        QVERIFY(outbox::discard(outbox::contents().front().id));
        delivery::report told;
        told.line = "2 mails wait in the Outbox: sending";
        console.delivery_told(told);
        QCOMPARE(control<QLabel>(the<outbox_frm>(), "summary_l").text(), told.line);
        QTRY_COMPARE(cell(1, 1), "Order 19");
        QCOMPARE(row_count(), 2);
        QCOMPARE(rows().selectionModel()->selectedRows().value(0).data().toString(), "bob@mail.example");
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

    void five_thousand_rows_leave_the_window_alive_data()
    {
        QTest::addColumn<QString>("click");
        QTest::addColumn<int>("left");
        QTest::newRow("deleted") << "delete_b" << 0;
        QTest::newRow("sent again") << "again_b" << all_rows;
    }
    void five_thousand_rows_leave_the_window_alive()
    {
        QFETCH(QString, click);
        QFETCH(int, left);
        screens_site site;
        hand_over_many(site);
        the<outbox_frm>().show();
        QCOMPARE(row_count(), all_rows);
        rows().selectAll();
        QElapsedTimer whole, since;
        qint64 longest = 0;
        QTimer turns;
        connect(&turns, &QTimer::timeout, this, [&] { longest = qMax(longest, since.restart()); });
        turns.start(0);
        if (click == "delete_b")
            site.boxes.will_say_yes(); // the other one asks only for those in doubt
        whole.start();
        since.start();
        button(click.toLatin1()).click();
        const QRegularExpression to_go("^[0-9]+ mails to go\\.$"); // unless all were done in the first slice
        QTRY_VERIFY_WITH_TIMEOUT(!control<QLabel>(the<outbox_frm>(), "summary_l").text().contains(to_go), 120000);
        qInfo("%lld ms in all, at most %lld without a turn", whole.elapsed(), longest);
        QCOMPARE(row_count(), left);
        QCOMPARE(outbox::contents().size(), size_t(left));
        QCOMPARE(outbox::count().waiting, left);
        QVERIFY2(longest < 1500, "a slice is a tenth of a second; the list is read once at the end");
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

    void the_status_bar_tells_what_waits_and_opens_the_outbox()
    {
        screens_site site;
        menuFrm console;
        console.show();
        auto &told = control<QToolButton>(console, "outbox_b");
        QVERIFY(!told.isVisible());
        delivery::report report;
        report.line = "2 mails wait: nobody answers at smtp.shop.example.";
        console.delivery_told(report);
        QVERIFY(told.isVisible());
        QCOMPARE(told.accessibleName(), "Outbox: 2 mails wait: nobody answers at smtp.shop.example.");
        told.click();
        QVERIFY(is_visible<outbox_frm>());
        console.delivery_told({});
        QVERIFY(!told.isVisible());
    }

    void a_long_line_does_not_widen_the_console()
    {
        screens_site site;
        menuFrm console;
        console.show();
        const int width = console.width();
        delivery::report report;
        report.line = "<b>" + QString("no answer ").repeated(200);
        console.delivery_told(report);
        QCoreApplication::processEvents();
        QCOMPARE(console.width(), width);
        QVERIFY(control<QToolButton>(console, "outbox_b").text().endsWith(u'\u2026'));
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
