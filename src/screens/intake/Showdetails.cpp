#include "screens/intake/Showdetails.h"
#include "frame/checks.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/text.h"
#include "platform/mail_session.h"
#include "screens/exact_text.h"
#include "screens/icons.h"
#include "ui_Showdetails.h"

#include <QCloseEvent>
#include <QKeyEvent>

Showdetails::Showdetails(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::Showdetails>())
{
    ui->setupUi(this);
    setWindowIcon(drawn_icon("reply"));

    connect(ui->send_b, &QPushButton::clicked, this, &Showdetails::send_b_Click);
    connect(ui->skip_b, &QPushButton::clicked, this, &Showdetails::skip_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &Showdetails::cancel_b_Click);
}

Showdetails::~Showdetails() = default;

void Showdetails::set_mails(std::vector<intake::mail_line> lines)
{
    mails = std::move(lines);
}

void Showdetails::Load()
{
    ui->account_c->addItem("Select Account");
    guarded("Showdetails.frm", "Form_load", [this] {
        accounts = intake::sending_accounts();
        for (const intake::sending_account &each : accounts)
            ui->account_c->addItem(each.query);
    });
    show_mail();
    ui->account_c->setFocus();
}

void Showdetails::show_mail()
{
    const bool are_several = mails.size() > 1;
    ui->count_l->setVisible(are_several);
    ui->count_l->setText("Reply " + QString::number(shown_mail + 1) + " of " + QString::number(mails.size()));
    ui->skip_b->setVisible(are_several);
    ui->skip_b->setEnabled(shown_mail + 1 < mails.size());
    propose({}); // what cannot be read must not leave the former mail's recipient behind
    const bool was_read = guarded("Showdetails.frm", "Form_load", [this] {
        if (shown_mail >= mails.size())
            return;
        const intake::mail_line &line = mails[shown_mail];
        propose(intake::reply_to(line.table.isEmpty() ? intake::sent_mail_text(line) : intake::stored_mail_text(line)));
    });
    ui->send_b->setEnabled(was_read);
    if (!was_read)
        status_line("The mail to be answered could not be read: " + session.err_description);
}

void Showdetails::propose(const intake::mail_reply &reply)
{
    ui->to_t->setText(reply.to);
    ui->subject_t->setText(reply.subject);
    ui->subject_t->setCursorPosition(0);
    ui->body_t->setPlainText(reply.body);
    proposed = typed_reply(); // the boxes may hold less than they were given
}

intake::mail_reply Showdetails::typed_reply() const
{
    return {trim(ui->to_t->text()), ui->subject_t->text(), typed_text(*ui->body_t)};
}

// The account stays chosen: what is answered together mostly goes out from one.
void Showdetails::go_on()
{
    if (++shown_mail >= mails.size())
        return unload();
    show_mail();
    ui->body_t->setFocus();
}

bool Showdetails::is_ready_to_send(const intake::mail_reply &reply)
{
    if (ui->account_c->currentIndex() <= 0) {
        say("Please select an account by which you are going to send the mail(s)");
        ui->account_c->setFocus();
        return false;
    }
    if (!valid_email(reply.to)) {
        say("Please enter a valid email id.");
        ui->to_t->setFocus();
        return false;
    }
    if (intake::lacks_subject(reply.subject) && !yes_no("This mail has no subject. Do you want to send it so?")) {
        ui->subject_t->setFocus();
        return false;
    }
    return true;
}

void Showdetails::send_b_Click()
{
    bool wanted = false, handed_over = false;
    const bool all_went = guarded("Showdetails.frm", "send_b", [&] {
        const intake::mail_reply reply = typed_reply();
        wanted = is_ready_to_send(reply);
        if (!wanted)
            return;
        const intake::sending_account &account = accounts[size_t(ui->account_c->currentIndex()) - 1];
        intake::hand_over_reply(reply, account);
        handed_over = true;
        intake::log_reply(reply, account);
    });
    if (!all_went)
        tell_failure(handed_over);
    if (!handed_over)
        return;
    emit reply_sent();
    go_on();
}

// What was handed over goes out, whatever came after it: the reply must not be sent a second time.
void Showdetails::tell_failure(bool handed_over)
{
    if (handed_over)
        return status_line("The reply goes out, but it could not be listed: " + session.err_description);
    const bool is_unknown = session.err_number == mapi::unknown_recipient;
    const QString words = is_unknown ? QStringLiteral("The Recipient name is unknown.")
                                     : "The reply could not be sent. " + session.err_description;
    if (is_unknown)
        ui->to_t->setFocus();
    const bool was_shown = guarded("Showdetails.frm", "send_b", [&] {
        say(words, "Tessaly", is_unknown ? message_icon::information : message_icon::exclamation);
    });
    if (!was_shown)
        status_line(words);
}

std::optional<unsaved_work> Showdetails::unsaved() const
{
    const intake::mail_reply typed = typed_reply();
    if (typed.to == proposed.to && typed.subject == proposed.subject && typed.body == proposed.body)
        return std::nullopt;
    return unsaved_work{"Showdetails.frm", "This reply was not sent. Do you want to throw it away?"};
}

void Showdetails::skip_b_Click()
{
    if (may_be_left("skip_b"))
        go_on();
}

void Showdetails::cancel_b_Click()
{
    if (may_be_left("cancel_b"))
        unload();
}

// Enter alone sends nothing: a mail cannot be taken back.
void Showdetails::keyPressEvent(QKeyEvent *event)
{
    const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (is_enter && event->modifiers().testFlag(Qt::ControlModifier))
        return ui->send_b->click();
    if (event->key() == Qt::Key_Escape)
        return cancel_b_Click();
    if (is_enter) {
        if (auto *button = qobject_cast<QPushButton *>(focusWidget()))
            button->click();
        return;
    }
    screen::keyPressEvent(event);
}

QSize Showdetails::sizeHint() const
{
    return {680, 480};
}

QString Showdetails::help_topic() const
{
    return "Showdetails";
}
