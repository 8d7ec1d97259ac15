#include "screens/maps/fcodes_frm.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/store.h"
#include "maps/classic_map.h"
#include "screens/maps/mapmail_frm.h"
#include "ui_fcodes_frm.h"

#include <QCloseEvent>
#include <QKeyEvent>

fcodes_frm::fcodes_frm(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::fcodes_frm>())
{
    ui->setupUi(this);
    connect(ui->submit_b, &QPushButton::clicked, this, &fcodes_frm::submit_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &fcodes_frm::cancel_b_Click);
    connect(ui->help_b, &QPushButton::clicked, this, &fcodes_frm::show_own_help);
}

fcodes_frm::~fcodes_frm() = default;

void fcodes_frm::Load()
{
    guarded("Fcodes_frm.frm", "Form_load", [this] {
        ui->qt_code_fields->set_choice(maps::choice_in(the<mapmail_frm>().code()));
        open_store_if_closed();
    });
}

void fcodes_frm::submit_b_Click()
{
    guarded("Fcodes_frm.frm", "Submit_b", [this] {
        const code_fields &entered = *ui->qt_code_fields;
        const bool fixed = entered.fixed_is_set();
        const QString why =
            maps::why_no_classic_code(fixed, entered.dynamic_is_set(), !entered.descriptions().isEmpty());
        if (!why.isEmpty()) {
            say(why);
            if (fixed)
                ui->qt_code_fields->focus_description();
            return;
        }
        the<mapmail_frm>().set_code({fixed ? "fixed" : "dynamic", entered.descriptions(), entered.codes()});
        unload();
    });
}

void fcodes_frm::cancel_b_Click()
{
    the<mapmail_frm>().give_up_code();
    unload();
}

void fcodes_frm::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        return cancel_b_Click();
    screen::keyPressEvent(event);
}

// The cross is Cancel, too.
void fcodes_frm::closeEvent(QCloseEvent *event)
{
    if (shown())
        cancel_b_Click();
    event->accept();
}

QSize fcodes_frm::sizeHint() const
{
    return {520, 400};
}
