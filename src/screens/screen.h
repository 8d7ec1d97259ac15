// The base of every screen: one live instance, a Load of its own that runs once, and the ways to show and to end it.
// Lists: list_view.h. Boxes: message_boxes.h. The wait screens' base: wait_screen.h.
#pragma once
#include <QString>
#include <QWidget>
#include <optional>
#include <type_traits>
#include <typeindex>

class QDialog;
class QMdiArea;
class QMdiSubWindow;

// What a screen would lose by being left.
struct unsaved_work {
    const char *form; // the screen's word in the log
    QString question = QStringLiteral("What was typed here is not saved. Go on without saving?");
};

class screen : public QWidget {
    Q_OBJECT
public:
    explicit screen(QWidget *parent = nullptr);
    ~screen() override;

    void load();       // runs Load once, without showing anything; the constructor does not
    void show();       // loads, then opens it in the console's area (alone, where there is none) and brings it to front
    void show_modal(); // loads, then opens it as a dialog over the console and returns when it is unloaded
    void unload();     // gone at once: the<T>() gives a new one from here on; deleted when its events are done
    bool leave();      // unloads, as the window's cross and Escape do; false: the user keeps what would be lost

    // Asks where something would be lost; without the question (the store refuses) it is kept. routine: for the log.
    bool may_be_left(const char *routine = "Form_QueryUnload");
    bool has_unsaved_work() const { return load_ran && !is_gone && unsaved(); }
    void bring_to_front();

    bool loaded() const { return load_ran; }
    bool shown() const; // also while it is an icon in the area, or the console is one

    virtual void Load() {}
    virtual void Activate() {} // each time it comes to the front of the console's area again

protected:
    bool press_button_for_enter(); // the one that has the keyboard, else the default one; false: there is none
    void show_own_help();          // what F1 does; says so where there is no help file
    virtual QString help_topic() const { return objectName(); }
    virtual std::optional<unsaved_work> unsaved() const { return std::nullopt; }
    virtual bool closes_on_escape() const { return true; }
    virtual bool opens_in_area() const { return true; } // false: a window of its own over the console
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    friend void own_screen(screen &made);
    void open_in_area(QMdiArea &area);
    void open_as_window();
    QWidget *outer_window() const;

    bool load_ran = false;
    bool is_gone = false;
    bool owned = false;                  // made by the<T>(), so unload deletes it
    QMdiSubWindow *sub_window = nullptr; // while in the area
    QDialog *dialog = nullptr;           // while modal
};

// Where screens open. nullptr: each in a window of its own (tests).
void set_screen_area(QMdiArea *area);

void unload_all_screens();
bool all_screens_may_be_left(); // asks each one that holds something unsaved; false: the user keeps one

QWidget *live_widget(std::type_index type); // nullptr when there is none
void keep_live_widget(std::type_index type, QWidget *widget);
void own_screen(screen &made);

// The one live T, made when there is none.
template <typename T>
T &the()
{
    if (QWidget *live = live_widget(typeid(T)))
        return static_cast<T &>(*live);
    auto *made = new T;
    keep_live_widget(typeid(T), made);
    if constexpr (std::is_base_of_v<screen, T>)
        own_screen(*made);
    return *made;
}

// Both ask without making one.
template <typename T>
bool is_loaded()
{
    const QWidget *live = live_widget(typeid(T));
    return live && static_cast<const T *>(live)->loaded();
}

template <typename T>
bool is_visible()
{
    const QWidget *live = live_widget(typeid(T));
    return live && static_cast<const T *>(live)->shown();
}
