#include "screens/maps/MapWizardStep1_frm.h"
#include "screens/maps/MapWizardStep2_frm.h"
#include "screens/maps/map_wizard_doors.h"
#include "ui_MapWizardStep1_frm.h"

MapWizardStep1_frm::MapWizardStep1_frm(QWidget *parent)
    : wizard_screen(parent), ui(std::make_unique<Ui::MapWizardStep1_frm>())
{
    ui->setupUi(this);

    connect(ui->help_b, &QPushButton::clicked, this, &MapWizardStep1_frm::show_own_help);
    connect(ui->next_b, &QPushButton::clicked, this, &MapWizardStep1_frm::next_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &MapWizardStep1_frm::cancel_b_Click);
}

MapWizardStep1_frm::~MapWizardStep1_frm() = default;

void MapWizardStep1_frm::Load()
{
    ui->next_b->setFocus();
}

void MapWizardStep1_frm::next_b_Click()
{
    unload();
    the<MapWizardStep2_frm>().show();
}

void MapWizardStep1_frm::cancel_b_Click()
{
    if (quits_map_wizard("mapwizardstep1.frm"))
        unload();
}

QSize MapWizardStep1_frm::sizeHint() const
{
    return {720, 480};
}
