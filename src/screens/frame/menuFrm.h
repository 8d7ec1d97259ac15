// The console: menu, toolbar, the area where every other screen opens, the auto-fetch timer, and the program's end.
// Its menu's names and captions: menu_tree.h.
#pragma once
#include <QMainWindow>

class QMenu;
class QTimer;
class console_area;
class status_text;

class menuFrm : public QMainWindow {
    Q_OBJECT
public:
    explicit menuFrm(QWidget *parent = nullptr);
    ~menuFrm() override;

    void Timer1_Timer(); // one tick: fetches when it is due

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void build_menu();
    void build_toolbar();
    QAction *command(const char *name) const;
    void works(const char *name, void (menuFrm::*handler)());

    void fetchmail_Click();
    void mauditor_mnu_Click();
    void exit_Click();
    void contents_Click();
    void showtips_Click();
    void about_Click();

    quint32 GetBkColor() const;

    console_area *area;
    QTimer *Timer1;
    status_text *lasting_line;
    bool closing = false; // the question was answered; a second close asks nothing
};
