#include "screens/screen.h"
#include "frame/error_log.h"
#include "frame/help.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "screens/spoken_names.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <map>

namespace {

struct screens_state {
    std::map<std::type_index, QWidget *> live;
    QPointer<QMdiArea> area;
} screens;

void forget_live_widget(const QWidget *widget)
{
    std::erase_if(screens.live, [widget](const auto &entry) { return entry.second == widget; });
}

// A dialog around a modal screen; the screen decides whether Escape and the window's cross end it, and what they do:
// its Cancel may have more to do than to go.
class modal_frame : public QDialog {
public:
    modal_frame(QWidget *over, QWidget &inside, bool may_close) : QDialog(over), inner(inside), closable(may_close) {}
    void reject() override
    {
        if (closable)
            inner.close();
    }

private:
    QWidget &inner;
    bool closable;
};

}

QWidget *live_widget(std::type_index type)
{
    const auto found = screens.live.find(type);
    return found == screens.live.end() ? nullptr : found->second;
}

void keep_live_widget(std::type_index type, QWidget *widget)
{
    screens.live[type] = widget;
    QObject::connect(widget, &QObject::destroyed, [widget] { forget_live_widget(widget); });
}

void own_screen(screen &made)
{
    made.owned = true;
}

void set_screen_area(QMdiArea *area)
{
    screens.area = area;
}

void unload_all_screens()
{
    const auto all = screens.live; // unloading changes the list
    for (const auto &[type, widget] : all) {
        if (auto *one = qobject_cast<screen *>(widget))
            one->unload();
    }
}

bool all_screens_may_be_left()
{
    const auto all = screens.live; // a question lets other things happen
    for (const auto &[type, widget] : all) {
        auto *one = qobject_cast<screen *>(live_widget(type));
        if (!one || !one->has_unsaved_work())
            continue;
        one->bring_to_front(); // for the user to see what the question is about
        if (!one->may_be_left())
            return false;
    }
    return true;
}

screen::screen(QWidget *parent) : QWidget(parent) {}

screen::~screen()
{
    forget_live_widget(this);
}

void screen::load()
{
    if (load_ran)
        return;
    load_ran = true;
    give_spoken_names(*this);
    Load();
}

bool screen::shown() const
{
    return load_ran && !is_gone && !outer_window()->isHidden();
}

QWidget *screen::outer_window() const
{
    if (dialog)
        return dialog;
    if (sub_window)
        return sub_window;
    return const_cast<screen *>(this);
}

void screen::show()
{
    load();
    if (is_gone) // its own Load ended it
        return;
    if (screens.area && opens_in_area())
        open_in_area(*screens.area);
    else
        open_as_window();
}

void screen::open_in_area(QMdiArea &area)
{
    const bool is_new = !sub_window;
    if (is_new) {
        sub_window = area.addSubWindow(this);
        const QRect room = area.viewport()->rect();
        const QSize size = sub_window->sizeHint().expandedTo(minimumSize()).boundedTo(room.size());
        sub_window->setGeometry(QRect(room.center() - QPoint(size.width(), size.height()) / 2, size).intersected(room));
    }
    if (sub_window->isMinimized())
        sub_window->showNormal();
    sub_window->show();
    QWidget::show();
    area.setActiveSubWindow(sub_window);
    if (is_new) { // Load has just seen to everything
        connect(sub_window, &QMdiSubWindow::aboutToActivate, this, [this] {
            if (!is_gone)
                Activate();
        });
    }
}

void screen::open_as_window()
{
    if (screens.area && !parentWidget()) {
        QWidget *console = screens.area->window();
        setParent(console, windowFlags() | Qt::Window);
        adjustSize();
        move(console->mapToGlobal(console->rect().center()) - rect().center());
    } else if (!parentWidget() && isHidden()) {
        adjustSize();
        move(QWidget::screen()->availableGeometry().center() - rect().center());
    }
    QWidget::show();
    raise();
    activateWindow();
}

void screen::show_modal()
{
    load();
    if (is_gone)
        return;
    QWidget *over = screens.area ? screens.area->window() : QApplication::activeWindow();
    const QPointer<screen> self(this);
    modal_frame frame(over, *this, closes_on_escape());
    dialog = &frame;
    frame.setWindowTitle(windowTitle());
    auto *layout = new QVBoxLayout(&frame);
    layout->setContentsMargins(0, 0, 0, 0);
    const QPointer<QWidget> first = focusWidget(); // forgotten when the screen moves into the frame
    layout->addWidget(this);
    for (QPushButton *button : findChildren<QPushButton *>()) {
        if (button->isDefault()) { // the dialog knows only of those that become so inside it
            button->setDefault(false);
            button->setDefault(true);
        }
    }
    QWidget::show();
    if (first)
        first->setFocus();
    frame.exec();
    if (!self)
        return;
    dialog = nullptr;
    setParent(nullptr); // the frame goes now, this screen when its events are done
    unload();
}

void screen::unload()
{
    if (is_gone)
        return;
    is_gone = true;
    forget_live_widget(this);
    QWidget *outer = outer_window();
    if (dialog)
        dialog->done(QDialog::Accepted);
    else
        outer->hide();
    if (owned)
        (dialog || !sub_window ? static_cast<QWidget *>(this) : outer)->deleteLater();
}

bool screen::leave()
{
    if (!may_be_left())
        return false;
    unload();
    return true;
}

bool screen::may_be_left(const char *routine)
{
    const std::optional<unsaved_work> work = unsaved();
    if (!work)
        return true;
    bool leaves = false;
    const bool was_asked =
        guarded(work->form, routine, [&] { leaves = yes_no_before_loss(work->question, windowTitle()); });
    if (!was_asked)
        status_line("What was typed is kept, as what was done before could not be: " + session.err_description);
    return leaves;
}

void screen::bring_to_front()
{
    if (!dialog)
        return show();
    dialog->raise();
    dialog->activateWindow();
}

void screen::closeEvent(QCloseEvent *event)
{
    if (!is_gone && (!closes_on_escape() || !may_be_left()))
        return event->ignore();
    event->accept();
    unload();
}

void screen::show_own_help()
{
    if (!show_help(help_topic()))
        status_line("There is no help file beside the program.");
}

bool screen::press_button_for_enter()
{
    auto *button = qobject_cast<QPushButton *>(focusWidget());
    for (QPushButton *other : findChildren<QPushButton *>()) {
        if (!button && other->isDefault() && other->isVisible())
            button = other;
    }
    if (button)
        button->click();
    return button;
}

void screen::keyPressEvent(QKeyEvent *event)
{
    const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_F1)
        show_own_help();
    else if (event->key() == Qt::Key_Escape && closes_on_escape())
        leave();
    else if (!is_enter || dialog || !press_button_for_enter()) // a dialog presses its default button itself
        QWidget::keyPressEvent(event);
}
