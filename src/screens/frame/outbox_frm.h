// The Outbox: what waits to be sent, what is held or was refused, and what nobody knows about, with what the user may
// do. What sends: platform/mail_delivery.h. Its rows: outbox_list.h. What it does to many of them: outbox_deed.h.
#pragma once
#include "screens/screen.h"
#include <memory>

namespace Ui {
class outbox_frm;
}
namespace delivery {
struct report;
}
namespace outbox {
struct kept_mail;
}
class QTimer;
class outbox_deed;
class outbox_list;

class outbox_frm : public screen {
    Q_OBJECT
public:
    explicit outbox_frm(QWidget *parent = nullptr);
    ~outbox_frm() override;
    void Load() override;

    void delivery_told(const delivery::report &told); // the list follows a little later
    bool is_at_work() const;                          // on what the user wanted done to many mails
    void finish();                                    // it, at once: the program ends
    QSize sizeHint() const override;

signals:
    void done_with_work();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void show_mails();
    void show_summary(const QString &line);
    void show_whether_now(const delivery::report &told, bool sending_is_off);
    void LV_outbox_Click();
    void again_b_Click();
    void delete_b_Click();
    void now_b_Click();
    void close_b_Click();
    std::vector<outbox::kept_mail> selected_mails() const;
    void do_to_selected(const char *routine, qsizetype (*what)(const QStringList &ids));
    void show_what_is_to_go();
    void deed_ended();

    std::unique_ptr<Ui::outbox_frm> ui;
    outbox_list *rows; // a child of this screen
    QTimer *Timer1;
    outbox_deed *deed;
    bool closes_when_done = false;
    bool list_changes = false; // row by row; what is read is looked at when it is whole
    QString shown_id;          // of the mail that is read
};
