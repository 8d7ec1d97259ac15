// The last screen: stands while the data is backed up, tells when that failed, then the process ends.
#pragma once
#include "screens/screen.h"
#include <QElapsedTimer>
#include <memory>

namespace Ui {
class Exit_frm;
}
class QTimer;

class Exit_frm : public screen {
    Q_OBJECT
public:
    explicit Exit_frm(QWidget *parent = nullptr);
    ~Exit_frm() override;

protected:
    bool closes_on_escape() const override { return false; }
    bool opens_in_area() const override { return false; }
    void paintEvent(QPaintEvent *event) override;

private:
    void Timer1_Timer();
    void show_progress(const QString &what, qint64 done, qint64 total);

    std::unique_ptr<Ui::Exit_frm> ui;
    QTimer *Timer1;
    bool painted = false;
    QElapsedTimer since_shown; // the last count on the screen
};
