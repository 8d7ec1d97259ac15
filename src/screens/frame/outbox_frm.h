// The Outbox: what waits to be sent, what is held or was refused, and what nobody knows about, with what the user may
// do. What sends: platform/mail_delivery.h. Its rows: outbox_list.h.
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
class outbox_list;

class outbox_frm : public screen {
    Q_OBJECT
public:
    explicit outbox_frm(QWidget *parent = nullptr);
    ~outbox_frm() override;
    void Load() override;

    void delivery_told(const delivery::report &told); // the list follows a little later
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void show_mails();
    void show_summary(const delivery::report &told);
    void LV_outbox_Click();
    void again_b_Click();
    void delete_b_Click();
    void now_b_Click();
    void close_b_Click();
    std::vector<outbox::kept_mail> selected_mails() const;
    void do_to_selected(const char *routine, qsizetype (*deed)(const QStringList &ids));
    void go_on();

    struct deed_under_way {
        const char *routine = "";
        qsizetype (*deed)(const QStringList &ids) = nullptr;
        QStringList left;
        qsizetype left_alone = 0;
    };

    std::unique_ptr<Ui::outbox_frm> ui;
    outbox_list *rows; // a child of this screen
    QTimer *Timer1, *Timer2;
    deed_under_way under_way;
    QString shown_id; // of the mail that is read
};
