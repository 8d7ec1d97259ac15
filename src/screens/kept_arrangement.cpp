#include "screens/kept_arrangement.h"

#include <QApplication>
#include <QWidget>

void keep_all_arrangements()
{
    for (QWidget *widget : QApplication::allWidgets())
        if (auto *one = dynamic_cast<kept_arrangement *>(widget))
            one->keep_arrangement();
}
