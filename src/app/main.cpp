// The process's start. What it then does: screens/frame/opening.h.
#include "app/wiring.h"
#include "screens/desktop_style.h"
#include "screens/frame/opening.h"
#include "screens/icons.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setStyle(new desktop_style); // the application owns it
    QApplication::setWindowIcon(drawn_icon("tessaly"));
    QApplication::setQuitOnLastWindowClosed(false); // the console ends the process, after its question
    const wiring services_in_force;

    Main();
    return QApplication::exec();
}
