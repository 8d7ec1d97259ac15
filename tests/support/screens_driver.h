// Driving screens in tests: controls by name, a keeper that reports unscripted dialogs, and a clean end.
#pragma once
#include <QObject>
#include <QStringList>
#include <QWidget>
#include <QtGlobal>

// The control of that name; ends the test program when there is none.
template <typename T>
T &control(const QObject &screen, const char *name)
{
    auto *found = screen.findChild<T *>(QString::fromLatin1(name));
    if (!found)
        qFatal("There is no control %s", name);
    return *found;
}

// Sees every dialog that opens while it lives. One whose title was not announced is rejected and reported in refused.
class Responder : public QObject {
public:
    explicit Responder(const QStringList &expected_titles = {});
    ~Responder() override;

    QStringList refused;
    QStringList seen;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QStringList expected;
};

// What the access keys of a screen in the console's area lack: a caption that has none, or one of another control or of
// the console's menus. "" when nothing.
QString key_clash(const QWidget &screen);

// Begins and ends a test function: no screen lives, the session is fresh, settings are empty.
void forget_screens();
