#include "screens/maps/MapWRefcode_frm.h"
#include "frame/error_log.h"
#include "frame/store.h"
#include "maps/reference_codes.h"
#include "ui_MapWRefcode_frm.h"

MapWRefcode_frm::MapWRefcode_frm(QWidget *parent) : wizard_screen(parent), ui(std::make_unique<Ui::MapWRefcode_frm>())
{
    ui->setupUi(this);

    connect(ui->help_b, &QPushButton::clicked, this, &MapWRefcode_frm::show_own_help);
    connect(ui->submit_b, &QPushButton::clicked, this, &MapWRefcode_frm::submit_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &MapWRefcode_frm::cancel_b_Click);
}

MapWRefcode_frm::~MapWRefcode_frm() = default;

void MapWRefcode_frm::Load()
{
    guarded("Mapwrefcode.frm", "form load", [this] {
        ui->qt_code_fields->set_choice(maps::choice_of(changed_field));
        open_store_if_closed();
    });
}

void MapWRefcode_frm::submit_b_Click()
{
    const code_fields &entered = *ui->qt_code_fields;
    maps::submit_code(entered.fixed_is_set(), entered.descriptions(), entered.codes());
    unload();
}

void MapWRefcode_frm::cancel_b_Click()
{
    maps::cancel_code();
    unload();
}

QSize MapWRefcode_frm::sizeHint() const
{
    return {520, 420};
}
