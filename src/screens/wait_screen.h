// The base of the screens that stand while long work blocks the program: an animation, and a bar with a count.
// Where the work can be cancelled there is a button for it. The work begins when the screen has been painted once. The
// page it shows: intake/progress_page.h.
#pragma once
#include "screens/screen.h"
#include <QElapsedTimer>

class QLabel;
class QProgressBar;
class QPushButton;
class QTimer;
class picture_page;

class wait_screen : public screen {
    Q_OBJECT
public:
    wait_screen(const QString &name, const QString &title, QWidget *parent = nullptr);
    ~wait_screen() override;
    void Load() override; // shows the page of session.animation_file; no picture where that is empty

protected:
    virtual void work() = 0; // the long work; progress that is reported meanwhile is shown
    bool closes_on_escape() const override { return false; }
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

    void offer_cancel(); // shows the button; Escape is the same
    // Whether it was pressed. Lets the screen paint and listen meanwhile, so it may be asked at any time.
    bool cancel_wanted();

private:
    void Timer1_Timer();
    void show_progress(const QString &what, qint64 done, qint64 total);
    void let_paint();
    void cancel_b_Click();

    picture_page *WebBrowser1;
    QLabel *what_l;
    QProgressBar *progress_bar;
    QPushButton *cancel_b;
    QTimer *Timer1;
    bool painted = false;
    bool cancelled = false;
    QElapsedTimer since_shown;    // the last count on the screen
    QElapsedTimer since_listened; // the last look at what the user does
};
