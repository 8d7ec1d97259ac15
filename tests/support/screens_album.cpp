#include "support/screens_album.h"
#include "platform/settings.h"
#include "screens/frame/menuFrm.h"
#include "screens/preferences/mail_client_frm.h"
#include "support/screens_driver.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

namespace {

using lines = std::vector<mail::check_line>;

const QString encrypted = QStringLiteral("The connection is encrypted, and the certificate is good.");

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
          "smtp.rosecottage.example, mail.rosecottage.example. Type the server's name as your provider tells it. "
          "(There is no server called mail.rosecottage.example. Check the spelling, and that the network is up.)"}},
        outcome));
    press_on_mail_page("test_b");
    const auto &result = control<QLabel>(the<mail_client_frm>(), "result_l");
    while (result.text() == "Testing ...")
        QTest::qWait(5);
    pictures.keep(console, "mail_client_frm-fetching-alone");
}

void picture_running_test(const album &pictures, menuFrm &console)
{
    const lines told{{"Mail server", mail::check_state::good, "imap.rosecottage.example answers at port 993."},
                     {"Encryption", mail::check_state::good, encrypted},
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
    const mail::check_line answers{"Mail server", good, "imap.rosecottage.example answers at port 993."};
    const mail::check_line is_safe{"Encryption", good, encrypted};
    const mail::check_line signs_in{"Signing in", good, "Signed in as zoe@rosecottage.example."};
    const mail::check_line inbox{"Inbox", good, "It holds 12 mails."};
    const mail::check_line folder{"Folder Tessaly_Inbox", good, "It is there; fetched mail moves to it."};
    const mail::check_line sender{"Sending server", good, "smtp.rosecottage.example answers at port 465."};
    const mail::check_line is_safe_too{"Encryption of sending", good, encrypted};
    const mail::check_line signs_in_too{"Signing in to send", good, "Signed in as zoe@rosecottage.example."};
    const QString wrong_password =
        " does not accept this user name and password. It said: Authentication failed. Check both. Some servers want "
        "the whole address as user name, others only what stands before the @; many providers want an application "
        "password.";
    picture_test(
        pictures, console, "good",
        {answers,
         is_safe,
         signs_in,
         inbox,
         folder,
         sender,
         is_safe_too,
         signs_in_too,
         {"Sending address", good, "The server sends as zoe@rosecottage.example. Nothing was sent to find out."}},
        true, true);
    picture_test(pictures, console, "no-such-name",
                 {{"Mail server", failed,
                   "There is no server called imap.rosecottage.example. Check the spelling, and that the network is "
                   "up."},
                  {"Sending server", failed,
                   "There is no server called smtp.rosecottage.example. Check the spelling, and that the network is "
                   "up."}},
                 false, false);
    picture_test(pictures, console, "wrong-password",
                 {answers,
                  is_safe,
                  {"Signing in", failed, "imap.rosecottage.example" + wrong_password},
                  sender,
                  is_safe_too,
                  {"Signing in to send", failed, "smtp.rosecottage.example" + wrong_password}},
                 false, false);
    picture_test(
        pictures, console, "certificate",
        {answers,
         {"Encryption", failed,
          "The certificate of imap.rosecottage.example is not accepted: it has expired. Nothing was sent. "
          "Check the server's name. If it is a server of your own, name the file with the certificate of its "
          "authority."},
         sender,
         is_safe_too,
         signs_in_too,
         {"Sending address", good, "The server sends as zoe@rosecottage.example. Nothing was sent to find out."}},
        false, true);
    picture_test(pictures, console, "not-sent",
                 {answers,
                  is_safe,
                  signs_in,
                  inbox,
                  {"Folder Tessaly_Inbox", good, "It was missing and has been made; fetched mail moves to it."},
                  sender,
                  is_safe_too,
                  signs_in_too,
                  {"Sending address", failed,
                   "The server refuses to send as this address, zoe@rosecottage.example. Choose an address that "
                   "belongs to this user, or allow it in your account. It said: Sender address rejected: not owned by "
                   "user"}},
                 true, false);
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
