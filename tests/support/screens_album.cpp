#include "support/screens_album.h"
#include "platform/app_folder.h"
#include "platform/mail_delivery.h"
#include "platform/outbox.h"
#include "platform/settings.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_frm.h"
#include "screens/list_view.h"
#include "screens/preferences/mail_client_frm.h"
#include "support/screens_driver.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

namespace {

using lines = std::vector<mail::check_line>;

void type(const char *name, const QString &text)
{
    auto &field = control<QLineEdit>(the<mail_client_frm>(), name);
    field.clear();
    QTest::keyClicks(&field, text);
}

void press_on_mail_page(const char *name)
{
    control<QPushButton>(the<mail_client_frm>(), name).click();
}

void choose(const char *name)
{
    control<QRadioButton>(the<mail_client_frm>(), name).click();
}

// What a test says; one that is to be seen running waits until it is stopped.
check_thread::routine says(const lines &told, const mail::check_outcome &outcome, bool goes_on = false)
{
    return [=](const mail::check_request &request, const net::patience &patience, const auto &tell) {
        for (const mail::check_line &line : told)
            tell(line);
        while (goes_on && !patience.give_up())
            QTest::qSleep(5);
        mail::check_outcome end = outcome;
        const mail::send_by sending = outcome.found.configured ? outcome.found.sending : request.settings.sending;
        end.found = request.settings;
        end.found.sending = sending;
        end.cancelled = goes_on;
        return end;
    };
}

void picture_test(const album &pictures, menuFrm &console, const QString &name, const lines &told, bool receives,
                  bool sends)
{
    mail::check_outcome outcome;
    outcome.receives = receives;
    outcome.sends = sends;
    the<mail_client_frm>().set_check(says(told, outcome));
    press_on_mail_page("test_b");
    const auto &result = control<QLabel>(the<mail_client_frm>(), "result_l");
    while (result.text() == "Testing ...")
        QTest::qWait(5);
    pictures.keep(console, "mail_client_frm-" + name);
}

// Of whoever typed nothing about sending.
void picture_fetching_alone(const album &pictures, menuFrm &console)
{
    using enum mail::check_state;
    mail::check_outcome outcome;
    outcome.receives = true;
    outcome.found.configured = true;
    outcome.found.sending = mail::send_by::keep;
    the<mail_client_frm>().set_check(says(
        {{"Mail server", good, "imap.rosecottage.example answers at port 993."},
         {"Signing in", good, "Signed in as zoe@rosecottage.example."},
         {"Sending server", warning,
          "Sending is not set up: No server was found for zoe@rosecottage.example; tried were "
          "smtp.rosecottage.example, mail.rosecottage.example. Type the server's name as your provider tells it."}},
        outcome));
    press_on_mail_page("test_b");
    const auto &result = control<QLabel>(the<mail_client_frm>(), "result_l");
    while (result.text() == "Testing ...")
        QTest::qWait(5);
    pictures.keep(console, "mail_client_frm-fetching-alone");
}

void picture_running_test(const album &pictures, menuFrm &console)
{
    const lines told{{"Mail server", mail::check_state::running, {}},
                     {"Mail server", mail::check_state::good, "imap.rosecottage.example answers, encrypted."},
                     {"Signing in", mail::check_state::running, {}}};
    the<mail_client_frm>().set_check(says(told, {}, true));
    press_on_mail_page("test_b");
    QTest::qWait(50);
    pictures.keep(console, "mail_client_frm-testing");
    press_on_mail_page("stop_b");
    const auto &result = control<QLabel>(the<mail_client_frm>(), "result_l");
    while (result.text() != "The test was stopped.")
        QTest::qWait(5);
    pictures.keep(console, "mail_client_frm-stopped");
}

void picture_tests(const album &pictures, menuFrm &console)
{
    using enum mail::check_state;
    const mail::check_line answers{"Mail server", good, "imap.rosecottage.example answers, encrypted."};
    const mail::check_line signs_in{"Signing in", good, "The user name and the password are right."};
    const mail::check_line folder{"Folder Tessaly_Inbox", good, "It is there."};
    picture_test(pictures, console, "good",
                 {answers,
                  signs_in,
                  folder,
                  {"Sending", good, "smtp.rosecottage.example takes mail from zoe@rosecottage.example."}},
                 true, true);
    picture_test(
        pictures, console, "no-such-name",
        {{"Mail server", failed,
          "There is no server with the name imap.rosecottage.example. Look whether the name is spelled right."},
         {"Signing in", skipped, {}},
         {"Sending", skipped, {}}},
        false, false);
    picture_test(pictures, console, "wrong-password",
                 {answers,
                  {"Signing in", failed,
                   "The server does not take this user name with this password. It says: [AUTHENTICATIONFAILED] "
                   "Authentication failed."},
                  {"Folder Tessaly_Inbox", skipped, {}},
                  {"Sending", skipped, {}}},
                 false, false);
    picture_test(pictures, console, "certificate",
                 {{"Mail server", failed,
                   "The certificate of imap.rosecottage.example is not valid: it expired on 1/3/2026. Nobody can be "
                   "sure that it is the right server."},
                  {"Sending", skipped, {}}},
                 false, false);
    picture_test(pictures, console, "not-sent",
                 {answers,
                  signs_in,
                  {"Folder Tessaly_Inbox", warning, "It is not there yet. The first fetch makes it."},
                  {"Sending", failed,
                   "smtp.rosecottage.example does not send as zoe@rosecottage.example. It says: 553 "
                   "5.7.1 Sender address rejected: not owned by user."}},
                 true, false);
}

void hand_over(int number)
{
    outbox::outgoing_mail mail;
    mail.SendingAccount = "orders@rosecottage.example";
    mail.To = QStringList{number % 5 == 3 ? QString("no address") : QString("visitor%1@mail.example").arg(number)};
    mail.Subject = number == 7 ? QString("A subject that does not want to end ").repeated(9)
                               : QString("Your order %1").arg(1000 + number);
    mail.body = "Dear visitor,\n\nthank you for your order. The plants leave the nursery on Monday.\n\nRose Cottage";
    outbox::hand_over(mail);
}

// The 11th within an hour is held.
void answer_visitor_2()
{
    outbox::outgoing_mail mail;
    mail.Kind = outbox::mail_kind::answer;
    mail.SendingAccount = "orders@rosecottage.example";
    mail.To = {"visitor2@mail.example"};
    mail.Subject = "Thank you for your order";
    outbox::hand_over(mail);
}

QString console_outbox()
{
    return app_folder() + "/outbox/";
}

}

void album::keep(QWidget &window, const QString &name) const
{
    QTest::qWait(30); // the animation's first frame
    window.grab().save(folder + "/" + desktop + "-" + name + ".png");
}

void picture_mail_client(const album &pictures, menuFrm &console)
{
    const QSize usual = console.size();
    SaveSetting("mail_client", "kind", {});
    SaveSetting("mail_client", "maildir", {});
    console.resize(1280, 800);
    the<mail_client_frm>().show();
    pictures.keep(console, "mail_client_frm-empty");
    type("address_t", "zoe@gmail.com");
    pictures.keep(console, "mail_client_frm-provider");
    type("address_t", "zoe@rosecottage.example");
    type("password_t", "not a password");
    pictures.keep(console, "mail_client_frm-typed");
    picture_running_test(pictures, console);
    picture_tests(pictures, console);
    picture_fetching_alone(pictures, console);
    choose("pop3_o");
    control<QComboBox>(the<mail_client_frm>(), "security_c").setCurrentIndex(2);
    type("host_t", "pop.rosecottage.example");
    pictures.keep(console, "mail_client_frm-pop3-not-encrypted");
    choose("mbox_o");
    pictures.keep(console, "mail_client_frm-mbox");
    choose("maildir_o");
    pictures.keep(console, "mail_client_frm-maildir");
    the<mail_client_frm>().unload();
    console.resize(console.minimumSize());
    the<mail_client_frm>().show();
    pictures.keep(console, "mail_client_frm-smallest");
    the<mail_client_frm>().unload();
    console.resize(usual);
}

void picture_outbox(const album &pictures, menuFrm &console)
{
    the<outbox_frm>().show();
    pictures.keep(console, "outbox_frm-empty");
    SaveSetting("mail_client", "send", "smtp");
    for (int number = 1; number <= 14; ++number)
        hand_over(number);
    for (int number = 0; number < 11; ++number)
        answer_visitor_2();
    QFile state(console_outbox() + outbox::contents().front().id + ".json");
    if (state.open(QIODevice::WriteOnly)) // damaged: nobody knows whether the first one has gone
        state.close();
    the<outbox_frm>().unload();
    the<outbox_frm>().show();
    auto &rows = control<list_view>(the<outbox_frm>(), "LV_outbox");
    rows.scrollToBottom();
    rows.setCurrentIndex(rows.model()->index(24, 0));
    delivery::report told;
    told.line =
        "20 mails wait in the Outbox: nobody answers at smtp.rosecottage.example, port 465: tried again at 14:05; "
        "1 answer is held; 3 mails were refused; 1 mail may or may not have gone";
    console.delivery_told(told);
    pictures.keep(console, "outbox_frm-mixed");
    const QSize usual = console.size();
    the<outbox_frm>().unload();
    console.resize(760, 540);
    the<outbox_frm>().show();
    auto &shown = control<list_view>(the<outbox_frm>(), "LV_outbox");
    shown.setCurrentIndex(shown.model()->index(2, 0));
    pictures.keep(console, "help-outbox_frm");
    console.resize(usual);
    for (int number = 15; number <= 400; ++number)
        hand_over(number);
    the<outbox_frm>().unload();
    the<outbox_frm>().show();
    pictures.keep(console, "outbox_frm-long");
    the<outbox_frm>().unload();
    console.delivery_told({});
    SaveSetting("mail_client", "send", {});
}
