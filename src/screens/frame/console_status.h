// The console's status bar: the lasting line, how many mails no map has taken yet, how the last fetch ended, and what
// waits in the Outbox. Its words: frame/last_fetch.h, and about sending platform/mail_delivery.h.
#pragma once
#include <QObject>

class QLabel;
class QMainWindow;
class QTimer;
class QToolButton;
namespace delivery {
struct report;
}
class status_text;

class console_status : public QObject {
    Q_OBJECT
public:
    explicit console_status(QMainWindow &console);
    ~console_status() override;

    void show_delivery(const delivery::report &told);
    void fit(int width); // of the console: the rest is for the tips of the menu
    void count_mails();  // at once
    void show_last_fetch();

signals:
    void unprocessed_clicked();
    void outbox_clicked();

private:
    QToolButton *add_button(const char *name, const char *picture);
    void count_mails_soon();
    void count_mails_when_idle();

    QMainWindow &window;
    status_text *lasting_line;
    QToolButton *unprocessed_b;
    QLabel *fetched_l;
    QToolButton *outbox_b;
    QTimer *count_timer;
};
