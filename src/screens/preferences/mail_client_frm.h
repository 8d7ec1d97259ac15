// The preferences page "Mail Client": where mail comes from, how it goes out, and a test that says in plain words what
// works. Its fields: mail_client_fields.h. What must be right before it saves: frame/mail_client_page.h.
#pragma once
#include "frame/mail_client_page.h"
#include "frame/messages.h"
#include "screens/preferences/check_thread.h"
#include "screens/screen.h"
#include <memory>
#include <optional>

namespace Ui {
class mail_client_frm;
}
class QLineEdit;
class mail_client_fields;

class mail_client_frm : public screen {
    Q_OBJECT
public:
    explicit mail_client_frm(QWidget *parent = nullptr);
    ~mail_client_frm() override;
    void Load() override;

    void show_test(); // opens the page with its Test button at hand

    void set_check(check_thread::routine check); // tests: in the place of the one that asks the servers
    QSize sizeHint() const override;

protected:
    std::optional<unsaved_work> unsaved() const override; // Cancel asks nothing
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void passwords_come();
    void show_asking(bool asks);
    void tell_fault(const char *routine, const mail_page::fault &fault, message_icon icon);
    void show_c_Click();
    void path_b_Click();
    void authority_b_Click();
    void test_b_Click();
    void stop_b_Click();
    void test_told(const mail::check_line &line);
    void test_ended(const mail::check_outcome &outcome);
    void outbox_b_Click();
    void ok_b_Click();
    void show_testing(bool runs);
    void forget_test();

    std::unique_ptr<Ui::mail_client_frm> ui;
    mail_client_fields *fields;
    std::optional<mail_page::entries> as_opened;
    check_thread::routine check;
    std::unique_ptr<check_thread> running; // while a test runs
};
