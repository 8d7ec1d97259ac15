// The Mail Auditor: answering the selected mails, with the checks of Showdetails in their order, the mail in the Outbox
// and its row among the sent ones.
#include "frame/session.h"
#include "platform/clock.h"
#include "platform/mail_delivery.h"
#include "platform/mail_settings.h"
#include "platform/mail_text.h"
#include "platform/outbox.h"
#include "support/screens_auditor.h"
#include "support/screens_map_wizard.h"
#include "support/smtp_sink.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScopeGuard>
#include <QTest>
#include <QToolButton>

namespace {

const char *const select_account = "Please select an account by which you are going to send the mail(s)";
const char *const bad_address = "Please enter a valid email id.";
const char *const no_subject = "This mail has no subject. Do you want to send it so?";
const char *const throw_away = "This reply was not sent. Do you want to throw it away?";

void choose_account(Showdetails &reply, const QString &name = "orders")
{
    control<QComboBox>(reply, "account_c").setCurrentText(name);
}

QString text_of(Showdetails &reply, const char *line)
{
    return control<QLineEdit>(reply, line).text();
}

void press_in(Showdetails &reply, const char *button)
{
    QTest::mouseClick(&control<QPushButton>(reply, button), Qt::LeftButton);
}

void press_reply(const char *button = "Inreply_b")
{
    QTest::mouseClick(&control<QToolButton>(the<mailfrm>(), button), Qt::LeftButton);
}

// One stored mail, selected.
struct selected_mail : auditor_site {
    explicit selected_mail(const QString &subject = "Roses?", const QString &from = "ann@mail.example",
                           const QString &body = "Which?\r\nThese?")
    {
        store_mail("orders", from, subject, "8/6/2026 9:00:00 AM", body);
        set_clock([] { return QDateTime(QDate(2026, 11, 21), QTime(13, 2, 3), Qt::UTC); });
        click_row(control<list_view>(stored_mails_shown(), "LV_sub"), 0);
    }
    ~selected_mail() { set_clock({}); }
    QStringList sent() { return column("select tsl_to from sentitems_tbl"); }
};

}

class auditor_reply_test : public QObject {
    Q_OBJECT
private slots:
    void it_proposes_the_accounts_the_subject_and_the_text()
    {
        selected_mail site;
        in_modal<Showdetails>([](Showdetails &reply) {
            const auto &accounts = control<QComboBox>(reply, "account_c");
            QCOMPARE(accounts.count(), 3);
            QCOMPARE(accounts.currentText(), "Select Account");
            QCOMPARE(accounts.itemText(1), "orders");
            QCOMPARE(accounts.itemText(2), "contact");
            QCOMPARE(text_of(reply, "to_t"), "ann@mail.example");
            QCOMPARE(text_of(reply, "subject_t"), "Re: Roses?");
            QCOMPARE(control<QPlainTextEdit>(reply, "body_t").toPlainText(),
                     "\n-----Your Original Message-----\nWhich?\nThese?");
            QVERIFY(control<QLabel>(reply, "count_l").isHidden());
            QVERIFY(control<QPushButton>(reply, "skip_b").isHidden());
            press_in(reply, "cancel_b");
        });
        press_reply();
        QCOMPARE(site.boxes.shown, QStringList()); // nothing was typed, so nothing is lost
        QCOMPARE(site.sent(), QStringList());
    }

    void a_subject_that_has_a_re_gets_another()
    {
        selected_mail site("Re: Roses?");
        in_modal<Showdetails>([](Showdetails &reply) {
            QCOMPARE(text_of(reply, "subject_t"), "Re: Re: Roses?");
            press_in(reply, "cancel_b");
        });
        press_reply();
    }

    void the_checks_come_in_their_order()
    {
        selected_mail site;
        in_modal<Showdetails>([&site](Showdetails &reply) {
            type(reply, "to_t", "a@b.co"); // six characters
            type(reply, "subject_t", " ");
            press_in(reply, "send_b");
            QCOMPARE(site.boxes.shown, QStringList{select_account});
            choose_account(reply);
            press_in(reply, "send_b");
            QCOMPARE(site.boxes.shown, (QStringList{select_account, bad_address}));
            type(reply, "to_t", "a@b.com");
            site.boxes.will_say_no();
            press_in(reply, "send_b");
            QCOMPARE(site.boxes.shown, (QStringList{select_account, bad_address, no_subject}));
            QCOMPARE(outbox::waiting_count(), 0);
            QCOMPARE(site.sent(), QStringList());
            site.boxes.will_say_yes();
            press_in(reply, "send_b");
        });
        press_reply();
        QCOMPARE(outbox::contents().at(0).Subject.trimmed(), "");
        QCOMPARE(site.sent(), QStringList{"a@b.com"});
    }

    void the_question_comes_for_a_blank_subject_and_for_re_alone_data()
    {
        QTest::addColumn<QString>("subject");
        QTest::addColumn<bool>("asked");
        QTest::newRow("nothing") << "" << true;
        QTest::newRow("blanks") << "   " << true;
        QTest::newRow("Re: alone") << "Re:" << true;
        QTest::newRow("Re: and the blank behind it") << "Re: " << true;
        QTest::newRow("in small letters") << "re:" << true;
        QTest::newRow("Re without its colon") << "Re" << false;
        QTest::newRow("a subject") << "Re: x" << false;
    }

    void the_question_comes_for_a_blank_subject_and_for_re_alone()
    {
        QFETCH(QString, subject);
        QFETCH(bool, asked);
        selected_mail site;
        if (asked)
            site.boxes.will_say_yes();
        in_modal<Showdetails>([&subject](Showdetails &reply) {
            choose_account(reply);
            control<QLineEdit>(reply, "subject_t").setText(subject);
            press_in(reply, "send_b");
        });
        press_reply();
        QCOMPARE(site.boxes.shown, asked ? QStringList{no_subject} : QStringList());
        QCOMPARE(site.sent(), QStringList{"ann@mail.example"});
    }

    void the_mail_goes_into_the_outbox_from_the_chosen_account()
    {
        selected_mail site;
        in_modal<Showdetails>([](Showdetails &reply) {
            choose_account(reply, "contact");
            control<QPlainTextEdit>(reply, "body_t").insertPlainText("The white ones.");
            press_in(reply, "send_b");
        });
        press_reply();
        const auto kept = outbox::contents();
        QCOMPARE(kept.size(), size_t(1));
        QVERIFY(kept[0].Kind == outbox::mail_kind::single);
        QVERIFY(kept[0].state == outbox::mail_state::waiting);
        QCOMPARE(kept[0].SendingAccount, "hello@shop.example");
        QCOMPARE(kept[0].To, QStringList{"ann@mail.example"});
        QCOMPARE(kept[0].Subject, "Re: Roses?");
        QString text = mail::readable_text(outbox::bytes_of(kept[0].id));
        QCOMPARE(text.replace("\r\n", "\n").trimmed(),
                 "The white ones.\n-----Your Original Message-----\nWhich?\nThese?");
        QVERIFY(!is_loaded<Showdetails>());
    }

    void it_goes_out_by_itself_while_the_program_delivers()
    {
        const smtp_sink server;
        selected_mail site;
        const mail::client_settings usual = mail::read_client_settings();
        mail::client_settings settings = usual;
        settings.sending = mail::send_by::smtp;
        settings.smtp = {"127.0.0.1", server.port(), mail::security::none, {}};
        settings.smtp_logs_in = false;
        mail::write_client_settings(settings);
        const auto back = qScopeGuard([&usual] {
            delivery::stop();
            mail::write_client_settings(usual);
        });
        delivery::start([](const delivery::report &) {});
        in_modal<Showdetails>([](Showdetails &reply) {
            choose_account(reply);
            press_in(reply, "send_b");
        });
        press_reply();
        QTRY_COMPARE(server.mails().size(), 1);
        QCOMPARE(server.mails()[0].recipients, QByteArrayList{"ann@mail.example"});
        QTRY_COMPARE(outbox::contents().size(), size_t(0));
    }

    void its_row_holds_each_value_quoted_and_the_present_date()
    {
        selected_mail site("Pat's");
        in_modal<Showdetails>([](Showdetails &reply) {
            choose_account(reply);
            type(reply, "subject_t", "Re: Pat's ''roses''");
            control<QPlainTextEdit>(reply, "body_t").setPlainText("It's\nhere");
            press_in(reply, "send_b");
        });
        press_reply();
        QCOMPARE(site.column("select tsl_subject from sentitems_tbl"), QStringList{"Re: Pat's ''roses''"});
        QCOMPARE(site.column("select tsl_sentdate from sentitems_tbl"), QStringList{"11/21/2026 1:02:03 PM"});
        QCOMPARE(site.column("select tsl_body from sentitems_tbl"), QStringList{"It's\r\nhere"});
        QCOMPARE(site.column("select tsl_sentaccount from sentitems_tbl"), QStringList{"orders"});
        QCOMPARE(site.column("select tsl_sentmailid from sentitems_tbl"), QStringList{"orders@shop.example"});
        QCOMPARE(site.store.column("select tsl_sentformat from sentitems_tbl"), QVariantList{QVariant()});
    }

    void an_address_that_no_mail_can_be_written_to_is_refused_at_once()
    {
        selected_mail site;
        in_modal<Showdetails>([&site](Showdetails &reply) {
            choose_account(reply);
            type(reply, "to_t", "a@b..com"); // well formed by the check of addresses
            press_in(reply, "send_b");
            QCOMPARE(site.boxes.shown, QStringList{"The Recipient name is unknown."});
            QCOMPARE(session.err_form, "Showdetails.frm");
            QCOMPARE(session.err_routine, "send_b");
            QCOMPARE(outbox::contents().size(), size_t(0));
            QCOMPARE(site.sent(), QStringList());
            QVERIFY(is_visible<Showdetails>());
            type(reply, "to_t", "a@b.com");
            press_in(reply, "send_b");
        });
        press_reply();
        QCOMPARE(site.sent(), QStringList{"a@b.com"});
    }

    void a_reply_that_cannot_be_listed_is_not_sent_twice()
    {
        selected_mail site;
        site.store.run("drop table sentitems_tbl");
        in_modal<Showdetails>([](Showdetails &reply) {
            choose_account(reply);
            press_in(reply, "send_b"); // and it closes
        });
        press_reply();
        QCOMPARE(outbox::contents().size(), size_t(1));
        QCOMPARE(session.err_form, "Showdetails.frm");
        QCOMPARE(session.err_routine, "send_b");
        QVERIFY(site.status_lines.last().startsWith("The reply goes out, but it could not be listed: "));
    }

    void a_reply_that_the_outbox_does_not_take_stays_on_the_screen()
    {
        selected_mail site;
        QFile in_its_place(site.file("outbox"));
        QDir(site.file("outbox")).removeRecursively();
        QVERIFY(in_its_place.open(QIODevice::WriteOnly));
        in_its_place.close();
        in_modal<Showdetails>([&site](Showdetails &reply) {
            choose_account(reply);
            press_in(reply, "send_b");
            QVERIFY(is_visible<Showdetails>());
            QVERIFY(site.boxes.shown.value(0).startsWith("The reply could not be sent. "));
            QCOMPARE(site.sent(), QStringList());
            press_in(reply, "cancel_b");
        });
        press_reply();
        QCOMPARE(session.err_routine, "send_b");
    }

    void several_mails_are_answered_one_after_the_other_each_to_its_sender()
    {
        auditor_site site;
        site.store_mails(4);
        auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
        for (const int row : {0, 1, 3})
            click_row(list, row, row == 0 ? Qt::NoModifier : Qt::ControlModifier);
        in_modal<Showdetails>([](Showdetails &reply) {
            QCOMPARE(control<QLabel>(reply, "count_l").text(), "Reply 1 of 3");
            choose_account(reply, "contact");
            press_in(reply, "send_b");
            QCOMPARE(control<QLabel>(reply, "count_l").text(), "Reply 2 of 3");
            QCOMPARE(text_of(reply, "to_t"), "visitor1@mail.example");
            QCOMPARE(text_of(reply, "subject_t"), "Re: Order 1");
            press_in(reply, "skip_b");
            QCOMPARE(text_of(reply, "to_t"), "visitor3@mail.example");
            QVERIFY(!control<QPushButton>(reply, "skip_b").isEnabled());
            QCOMPARE(control<QComboBox>(reply, "account_c").currentText(), "contact");
            press_in(reply, "send_b");
        });
        press_reply();
        QCOMPARE(site.column("select tsl_to from sentitems_tbl"),
                 (QStringList{"visitor0@mail.example", "visitor3@mail.example"}));
        QCOMPARE(outbox::contents().at(1).To, QStringList{"visitor3@mail.example"});
    }

    void cancel_ends_the_ones_that_are_left_too()
    {
        auditor_site site;
        site.store_mails(3);
        control<list_view>(stored_mails_shown(), "LV_sub").selectAll();
        in_modal<Showdetails>([](Showdetails &reply) {
            choose_account(reply);
            press_in(reply, "send_b");
            QTest::keyClick(&reply, Qt::Key_Escape);
        });
        press_reply();
        QCOMPARE(site.column("select tsl_to from sentitems_tbl"), QStringList{"visitor0@mail.example"});
    }

    void what_the_search_hides_is_not_answered()
    {
        auditor_site site;
        site.store_mails(3);
        auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
        list.selectAll();
        control<QLineEdit>(the<mailfrm>(), "Insearch_t").setText("order 2");
        in_modal<Showdetails>([](Showdetails &reply) {
            QVERIFY(control<QLabel>(reply, "count_l").isHidden());
            QCOMPARE(text_of(reply, "to_t"), "visitor2@mail.example");
            press_in(reply, "cancel_b");
        });
        control<QAction>(the<mailfrm>(), "replym").trigger();
    }

    void what_was_typed_is_not_lost_unasked()
    {
        selected_mail site;
        in_modal<Showdetails>([&site](Showdetails &reply) {
            control<QPlainTextEdit>(reply, "body_t").insertPlainText("Dear Ann");
            site.boxes.will_say_no();
            QTest::keyClick(&reply, Qt::Key_Escape);
            QCOMPARE(site.boxes.shown, QStringList{throw_away});
            QVERIFY(site.boxes.boxes.at(0).no_is_default);
            QVERIFY(is_visible<Showdetails>());
            site.boxes.will_say_yes();
            press_in(reply, "cancel_b");
        });
        press_reply();
        QCOMPARE(site.sent(), QStringList());
    }

    void enter_sends_nothing_and_control_enter_does()
    {
        selected_mail site;
        in_modal<Showdetails>([&site](Showdetails &reply) {
            choose_account(reply);
            QTest::keyClick(&control<QLineEdit>(reply, "subject_t"), Qt::Key_Return);
            QCOMPARE(site.sent(), QStringList());
            QVERIFY(is_visible<Showdetails>());
            QTest::keyClick(&control<QPlainTextEdit>(reply, "body_t"), Qt::Key_Return, Qt::ControlModifier);
        });
        press_reply();
        QCOMPARE(site.sent(), QStringList{"ann@mail.example"});
    }

    void a_sent_mail_is_answered_to_its_recipient_and_the_list_shows_it()
    {
        auditor_site site;
        site.store_sent("cat@mail.example", "Thanks", "For the roses");
        mailfrm &screen = sent_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub_si");
        click_row(list, 0);
        in_modal<Showdetails>([](Showdetails &reply) {
            QCOMPARE(text_of(reply, "to_t"), "cat@mail.example");
            QCOMPARE(text_of(reply, "subject_t"), "Re: Thanks");
            QCOMPARE(control<QPlainTextEdit>(reply, "body_t").toPlainText(),
                     "\n-----Your Original Message-----\nFor the roses");
            choose_account(reply);
            press_in(reply, "send_b");
        });
        press_reply("SReply_b");
        QCOMPARE(column_texts(list, 1), (QStringList{"Thanks", "Re: Thanks"}));
    }

    void a_reply_leaves_the_list_of_a_report_alone()
    {
        auditor_site site;
        site.store_sent("cat@mail.example", "Thanks");
        site.store_sent("dan@mail.example", "Offer");
        mailfrm &screen = sent_mails_shown();
        screen.show_sent_mails({{{}, 2, "dan@mail.example", "Offer", {}}});
        auto &list = control<list_view>(screen, "LV_sub_si");
        click_row(list, 0);
        in_modal<Showdetails>([](Showdetails &reply) {
            choose_account(reply);
            press_in(reply, "send_b");
        });
        control<QAction>(screen, "sreplym").trigger();
        QCOMPARE(column_texts(list, 1), QStringList{"Offer"});
        QCOMPARE(site.rows_of("sentitems_tbl"), 3);
    }

    void a_mail_of_tricks_is_answered_as_plain_text()
    {
        selected_mail site("Line\r\nBcc: all@mail.example", "ann@mail.example",
                           "<img src=http://mail.example/x.gif><b>bold</b>");
        in_modal<Showdetails>([](Showdetails &reply) {
            QCOMPARE(text_of(reply, "subject_t"), "Re: Line  Bcc: all@mail.example");
            QVERIFY(control<QPlainTextEdit>(reply, "body_t")
                        .toPlainText()
                        .endsWith("\n<img src=http://mail.example/x.gif><b>bold</b>"));
            choose_account(reply);
            press_in(reply, "send_b");
        });
        press_reply();
        const outbox::kept_mail kept = outbox::contents().at(0);
        QCOMPARE(kept.Subject, "Re: Line  Bcc: all@mail.example");
        QCOMPARE(kept.To, QStringList{"ann@mail.example"});
        const QByteArray bytes = outbox::bytes_of(kept.id);
        const QByteArray head = bytes.first(bytes.indexOf("\r\n\r\n"));
        QVERIFY2(head.contains("\r\nSubject: ") && !head.contains("\nBcc:"), head);
        QVERIFY2(bytes.contains("\r\nContent-Type: text/plain"), head); // the markup shows as it is
    }

    void a_subject_longer_than_its_column_is_cut_before_it_is_sent()
    {
        selected_mail site(QString(400, 'W'));
        in_modal<Showdetails>([](Showdetails &reply) {
            QCOMPARE(text_of(reply, "subject_t").size(), 255);
            choose_account(reply);
            press_in(reply, "send_b");
        });
        press_reply();
        QCOMPARE(site.column("select tsl_subject from sentitems_tbl"), QStringList{"Re: " + QString(251, 'W')});
        QCOMPARE(outbox::contents().at(0).Subject.size(), 255);
        QCOMPARE(session.err_number, 0U);
    }
};

QTEST_MAIN(auditor_reply_test)
#include "auditor_reply_test.moc"
