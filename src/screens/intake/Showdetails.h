// The reply to a mail of the Mail Auditor; to several, one after the other, each to its own sender with its own text.
// What is proposed and sent: intake/mail_reply.h.
#pragma once
#include "intake/mail_reply.h"
#include "screens/screen.h"
#include <memory>
#include <vector>

namespace Ui {
class Showdetails;
}

class Showdetails : public screen {
    Q_OBJECT
public:
    explicit Showdetails(QWidget *parent = nullptr);
    ~Showdetails() override;
    void Load() override;

    void set_mails(std::vector<intake::mail_line> lines); // before it is loaded
    QSize sizeHint() const override;

signals:
    void reply_sent();

protected:
    QString help_topic() const override;
    void keyPressEvent(QKeyEvent *event) override;
    std::optional<unsaved_work> unsaved() const override;

private:
    void show_mail();
    void go_on();
    void propose(const intake::mail_reply &reply);
    intake::mail_reply typed_reply() const;
    bool is_ready_to_send(const intake::mail_reply &reply);
    void tell_failure(bool handed_over);
    void send_b_Click();
    void skip_b_Click();
    void cancel_b_Click();

    std::unique_ptr<Ui::Showdetails> ui;
    std::vector<intake::sending_account> accounts; // as account_c lists them, below its first entry
    std::vector<intake::mail_line> mails;
    size_t shown_mail = 0;
    intake::mail_reply proposed; // as it was shown at first
};
