// The yardstick of bench/start: a bare Qt window.
#include <QApplication>
#include <QMainWindow>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setStyle("fusion");
    QMainWindow window;
    window.setWindowTitle("bare_window");
    window.resize(1120, 720);
    window.show();
    return QApplication::exec();
}
