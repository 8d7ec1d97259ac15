// The console: menu, toolbar, the area where every other screen opens, the auto-fetch timer, and the program's end.
// Its menu's names and captions: menu_tree.h; what they do: menuFrm_commands.cpp; its status bar: console_status.h.
#pragma once
#include <QMainWindow>

class QMenu;
class QTimer;
namespace delivery {
struct report;
}
class console_area;
class console_status;

class menuFrm : public QMainWindow {
    Q_OBJECT
public:
    explicit menuFrm(QWidget *parent = nullptr);
    ~menuFrm() override;

    void Timer1_Timer();                // one tick: fetches when it is due
    void start_delivery_when_painted(); // asking a keyring may take seconds: the window comes first
    void start_delivery(); // what waits in the Outbox goes out from here on, and the status bar tells of it
    void delivery_told(const delivery::report &told);

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void build_menu();
    void connect_commands();
    void build_toolbar();
    QAction *command(const char *name) const;
    void works(const char *name, void (menuFrm::*handler)());

    // menuFrm_commands.cpp
    void bkp_folder_mnu_Click();
    void rst_bkp_Click();
    void fetchmail_Click();
    void mauditor_mnu_Click();
    void mmw_Click();
    void outbox_mnu_Click();
    void lprint_Click();
    void general_Click();
    void account_Click();
    void mail_client_mnu_Click();
    void exit_Click();
    void contents_Click();
    void open_help(const QString &topic);
    void showtips_Click();
    void about_Click();
    void openex_mnu_Click();
    void openmy_mnu_Click();

    console_area *area;
    QTimer *Timer1;
    console_status *status;
    bool delivery_is_due = false;
    bool closing = false; // the question was answered; a second close asks nothing
};
