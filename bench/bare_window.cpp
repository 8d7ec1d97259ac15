// The yardstick of bench/start: a bare Qt window. Prints a line as soon as it was painted, and ends.
#include <QApplication>
#include <QMainWindow>
#include <cstdio>

namespace {

class bare_window : public QMainWindow {
protected:
    void paintEvent(QPaintEvent *event) override
    {
        QMainWindow::paintEvent(event);
        std::printf("visible\n");
        std::fflush(stdout);
        _Exit(0);
    }
};

}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setStyle("fusion");
    bare_window window;
    window.resize(1100, 700);
    window.show();
    return QApplication::exec();
}
