#include "screens/preferences/mail_client_frm.h"
#include "frame/auto_fetch.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/say_surely.h"
#include "frame/session.h"
#include "platform/dialogs.h"
#include "platform/services.h"
#include "screens/frame/outbox_frm.h"
#include "screens/icons.h"
#include "screens/preferences/check_steps.h"
#include "screens/preferences/mail_client_fields.h"
#include "screens/preferences/page_list.h"
#include "ui_mail_client_frm.h"

#include <QKeyEvent>

namespace {

const char *const client_in_log = "mail_client_frm.frm";
const char *const page_title = "Mail Client";
const char *const untested =
    "Press Test to see whether mail can be fetched and sent. Nothing is sent to anybody and no mail is changed.";
const char *const lies_in_file =
    "The settings are saved. No keyring answered, so the password lies in the settings file, "
    "which only your own login may open.";

}

mail_client_frm::mail_client_frm(QWidget *parent)
    : screen(parent), ui(std::make_unique<Ui::mail_client_frm>()), check(mail::check_mail_client)
{
    ui->setupUi(this);
    setWindowIcon(drawn_icon("mail_client"));
    fields = new mail_client_fields(*ui, this);
    fill_page_list(*ui->Combo1, preference_page::mail_client);
    forget_test();

    connect(ui->show_c, &QCheckBox::toggled, this, &mail_client_frm::show_c_Click);
    for (QRadioButton *choice : {ui->imap_o, ui->pop3_o, ui->maildir_o, ui->mbox_o})
        connect(choice, &QRadioButton::clicked, this, &mail_client_frm::forget_test); // it was about another one
    connect(ui->path_b, &QPushButton::clicked, this, &mail_client_frm::path_b_Click);
    connect(ui->authority_b, &QPushButton::clicked, this, &mail_client_frm::authority_b_Click);
    connect(ui->test_b, &QPushButton::clicked, this, &mail_client_frm::test_b_Click);
    connect(ui->stop_b, &QPushButton::clicked, this, &mail_client_frm::stop_b_Click);
    connect(ui->outbox_b, &QPushButton::clicked, this, &mail_client_frm::outbox_b_Click);
    connect(ui->help_b, &QPushButton::clicked, this, &mail_client_frm::show_own_help);
    connect(ui->ok_b, &QPushButton::clicked, this, &mail_client_frm::ok_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &mail_client_frm::leave);
}

mail_client_frm::~mail_client_frm() = default; // a test that runs is cancelled

void mail_client_frm::Load()
{
    guarded(client_in_log, "Form_load", [this] {
        ui->in_force_l->setText(mail_page::in_force_text());
        fields->show_entries(mail_page::stored_settings());
        as_opened = fields->typed_entries();
        if (passwords::ask(this, [this] { passwords_come(); }))
            show_asking(true);
        else
            passwords_come();
    });
    ui->address_t->setFocus();
}

void mail_client_frm::passwords_come()
{
    show_asking(false);
    guarded(client_in_log, "Form_load", [this] {
        mail_page::entries stored = mail_page::stored_settings();
        mail_page::add_passwords(stored);
        fields->show_passwords(stored);
        const mail_page::entries shown = fields->typed_entries();
        as_opened->password = shown.password; // the rest may have been typed over meanwhile
        as_opened->smtp_password = shown.smtp_password;
    });
}

void mail_client_frm::show_asking(bool asks)
{
    fields->show_asking(asks);
    ui->ok_b->setEnabled(!asks);
    ui->test_b->setEnabled(!asks);
}

void mail_client_frm::set_check(check_thread::routine other)
{
    check = std::move(other);
}

void mail_client_frm::show_c_Click()
{
    for (QLineEdit *field : {ui->password_t, ui->smtp_password_t})
        field->setEchoMode(ui->show_c->isChecked() ? QLineEdit::Normal : QLineEdit::Password);
}

void mail_client_frm::path_b_Click()
{
    const bool is_file = fields->kind() == mail::client_kind::mbox;
    const auto chosen = is_file ? services.dialogs->ShowOpen(ui->path_t->text(), "*")
                                : services.dialogs->ShowFolder(ui->path_t->text());
    if (chosen)
        ui->path_t->setText(*chosen);
}

void mail_client_frm::authority_b_Click()
{
    if (const auto chosen = services.dialogs->ShowOpen(ui->authority_t->text(), "*.pem *.crt *.cer"))
        ui->authority_t->setText(*chosen);
}

void mail_client_frm::show_test()
{
    show();
    ui->test_b->setFocus();
}

void mail_client_frm::test_b_Click()
{
    const mail_page::entries typed = fields->typed_entries();
    if (const auto fault = mail_page::untestable(typed))
        return tell_fault("test_b", *fault, message_icon::information);
    clear_steps(*ui->steps_li);
    ui->result_l->setText("Testing ...");
    show_testing(true);
    running = std::make_unique<check_thread>(check,
                                             mail::check_request{typed.settings, typed.password,
                                                                 typed.smtp_password.value_or(typed.password),
                                                                 typed.address, fields->sending_is_guessed()},
                                             nullptr);
    connect(running.get(), &check_thread::told, this, &mail_client_frm::test_told);
    connect(running.get(), &check_thread::ended, this, &mail_client_frm::test_ended);
}

void mail_client_frm::stop_b_Click()
{
    if (!running)
        return;
    running->cancel();
    ui->stop_b->setEnabled(false);
    ui->result_l->setText("Stopping the test ...");
}

void mail_client_frm::test_told(const mail::check_line &line)
{
    show_step(*ui->steps_li, line);
}

void mail_client_frm::test_ended(const mail::check_outcome &outcome)
{
    running.release()->deleteLater(); // it speaks at this moment
    ui->result_l->setText(outcome_text(outcome));
    if (!outcome.cancelled)
        fields->show_found(outcome.found);
    show_testing(false);
    (outcome.receives ? ui->ok_b : ui->test_b)->setFocus();
}

void mail_client_frm::show_testing(bool runs)
{
    if (runs)
        ui->steps_li->show();
    for (QWidget *part : {ui->mailbox_fr, ui->kind_fr, ui->fetching_fr, ui->sending_fr, ui->advanced_fr})
        static_cast<QWidget *>(part)->setEnabled(!runs); // what is tested is what is seen
    ui->ok_b->setEnabled(!runs);
    ui->stop_b->setEnabled(true);
    ui->stop_b->setVisible(runs);
    if (runs)
        ui->stop_b->setFocus();
    ui->test_b->setVisible(!runs);
}

void mail_client_frm::forget_test()
{
    ui->result_l->setText(untested);
    clear_steps(*ui->steps_li);
    ui->steps_li->hide();
}

void mail_client_frm::outbox_b_Click()
{
    the<outbox_frm>().show();
}

void mail_client_frm::tell_fault(const char *routine, const mail_page::fault &fault, message_icon icon)
{
    say_surely(client_in_log, routine, fault.words, page_title, icon);
    if (auto *field = findChild<QWidget *>(fault.field))
        field->setFocus();
}

void mail_client_frm::ok_b_Click()
{
    const mail_page::entries typed = fields->typed_entries();
    if (const auto fault = mail_page::first_fault(typed))
        return tell_fault("ok_b", *fault, message_icon::exclamation);
    const bool was_in_file = passwords::where(passwords::of::mailbox) == passwords::place::settings_file;
    auto place = passwords::place::nowhere;
    if (!guarded(client_in_log, "ok_b", [&] { place = mail_page::save(typed); }))
        return say_surely(client_in_log, "ok_b", "The settings could not be saved: " + session.err_description,
                          page_title, message_icon::critical);
    end_auto_fetch_pause(); // what the ticks know of the server is old
    if (place == passwords::place::settings_file && !was_in_file)
        say_surely(client_in_log, "ok_b", lies_in_file, page_title, message_icon::exclamation);
    unload();
}

std::optional<unsaved_work> mail_client_frm::unsaved() const
{
    const bool is_touched = running || (as_opened && fields->typed_entries() != *as_opened);
    if (!is_touched)
        return std::nullopt;
    return unsaved_work{client_in_log, "What is typed on this page is not saved yet. Leave it without saving?"};
}

// Escape stops a test first, then leaves the page.
void mail_client_frm::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && running)
        stop_b_Click();
    else
        screen::keyPressEvent(event);
}

// Where there is no room for two columns, the second one stands below the first.
void mail_client_frm::resizeEvent(QResizeEvent *event)
{
    constexpr int room_for_two = 800;
    ui->qt_columns->setDirection(width() < room_for_two ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    screen::resizeEvent(event);
}

QSize mail_client_frm::sizeHint() const
{
    return {1000, 740};
}
