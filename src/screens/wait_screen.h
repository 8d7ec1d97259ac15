// The base of the screens that stand while long work blocks the program: an animation, and a bar with a count.
// The work begins when the screen has been painted once. The page it shows: intake/progress_page.h.
#pragma once
#include "screens/screen.h"
#include <QElapsedTimer>

class QLabel;
class QProgressBar;
class QTimer;
class picture_page;

class wait_screen : public screen {
    Q_OBJECT
public:
    wait_screen(const QString &name, const QString &title, QWidget *parent = nullptr);
    ~wait_screen() override;
    void Load() override; // shows the page of session.animation_file

protected:
    virtual void work() = 0; // the long work; progress that is reported meanwhile is shown
    bool closes_on_escape() const override { return false; }
    void paintEvent(QPaintEvent *event) override;

private:
    void Timer1_Timer();
    void show_progress(const QString &what, qint64 done, qint64 total);

    picture_page *WebBrowser1;
    QLabel *what_l;
    QProgressBar *progress_bar;
    QTimer *Timer1;
    bool painted = false;
    QElapsedTimer since_shown; // the last count on the screen
};
