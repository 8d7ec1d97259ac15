// The pointer that says that the program works, over a screen and the console. A screen that says so: wait_screen.h.
#pragma once
#include <QPointer>
#include <QWidget>

// While it lives, the pointer says that the program works. The two may go meanwhile.
class wait_pointer {
public:
    explicit wait_pointer(QWidget &screen);
    ~wait_pointer();
    wait_pointer(const wait_pointer &) = delete;
    wait_pointer &operator=(const wait_pointer &) = delete;

private:
    QPointer<QWidget> over;
    QPointer<QWidget> console;
};
