// The process's start. What it then does: screens/frame/opening.h.
#include "app/wiring.h"
#include "screens/frame/opening.h"
#include "screens/icons.h"

#include <QApplication>
#include <QStyleFactory>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setWindowIcon(drawn_icon("tessaly"));
    QApplication::setQuitOnLastWindowClosed(false); // the console ends the process, after its question
    const wiring services_in_force;

    Main();
    return QApplication::exec();
}
