#include "screens/maps/MapWizardFinalStep_frm.h"
#include "frame/error_log.h"
#include "frame/store.h"
#include "intake/auto_reply.h"
#include "maps/map_wizard.h"
#include "screens/maps/map_wizard_doors.h"
#include "screens/preferences/autoresponder.h"
#include "ui_MapWizardFinalStep_frm.h"

namespace {

// What became of the stored mails, and what will of those to come: a map that none fits promises nothing.
QString mails_in(const QString &map)
{
    const qint64 count = first_value("select count(*) from " + map).to_number();
    const QString &failure = maps::map_wizard.mails_left_behind;
    if (!failure.isEmpty())
        return "Not all mails could be brought over: " + failure;
    if (count == 0)
        return "No stored mail fits it yet.\n\nThe Mail Auditor tells of each mail why it does not fit.";
    return (count == 1 ? QString("1 mail is in its table.") : QString::number(count) + " mails are in its table.") +
           "\n\nEvery mail of this form that is fetched from now on goes into it by itself.";
}

}

MapWizardFinalStep_frm::MapWizardFinalStep_frm(QWidget *parent)
    : wizard_screen(parent), ui(std::make_unique<Ui::MapWizardFinalStep_frm>())
{
    ui->setupUi(this);

    connect(ui->autoresp_chk, &QCheckBox::clicked, this, &MapWizardFinalStep_frm::autoresp_chk_Click);
    connect(ui->map_b, &QPushButton::clicked, this, &MapWizardFinalStep_frm::map_b_Click);
    connect(ui->help_b, &QPushButton::clicked, this, &MapWizardFinalStep_frm::show_own_help);
    connect(ui->Command1, &QPushButton::clicked, this, &MapWizardFinalStep_frm::Command1_Click);
}

MapWizardFinalStep_frm::~MapWizardFinalStep_frm() = default;

void MapWizardFinalStep_frm::Load()
{
    const QString &map = maps::map_wizard.map_name;
    ui->autoresp_chk->setText("&Select to configure autoresponder for the map »" + map.toUpper());
    ui->done_l->setText("The map " + map + " is saved.");
    guarded("mapwizardfinalstep.frm", "form load",
            [&] { ui->done_l->setText("The map " + map + " is saved. " + mails_in(map)); });
    ui->Command1->setFocus();
}

// Checked it stays only where there is an autoresponder afterwards.
void MapWizardFinalStep_frm::autoresp_chk_Click()
{
    if (!ui->autoresp_chk->isChecked())
        return;
    const QString map = maps::map_wizard.map_name;
    if (is_loaded<autoresponder>() && !the<autoresponder>().leave())
        return ui->autoresp_chk->setChecked(false);
    the<autoresponder>().choose_map(map);
    the<autoresponder>().show_modal();
    bool has_one = false;
    guarded("mapwizardfinalstep.frm", "autoresp_chk", [&] { has_one = intake::stored_auto_reply(map).has_value(); });
    ui->autoresp_chk->setChecked(has_one);
}

void MapWizardFinalStep_frm::map_b_Click()
{
    unload();
    open_map_wizard_welcome();
}

void MapWizardFinalStep_frm::Command1_Click()
{
    maps::map_wizard = {};
    unload();
}

void MapWizardFinalStep_frm::cancel_b_Click()
{
    Command1_Click();
}

QSize MapWizardFinalStep_frm::sizeHint() const
{
    return {560, 320};
}
