// The tips that the splash shows one at a time: a file of one tip a line beside the program.
#pragma once
#include <QString>
#include <QStringList>

class tip_list {
public:
    void read(const QString &file); // a missing file gives no tips; one that cannot be read throws

    bool isEmpty() const { return tips.isEmpty(); }
    QString current() const; // "" without tips
    void next();             // round and round
    void previous();
    void start_with(qsizetype number); // any number; taken round

    static bool shown_at_start(); // the user's choice, true until it is made
    static void set_shown_at_start(bool show);

private:
    QStringList tips;
    qsizetype position = 0;
};
