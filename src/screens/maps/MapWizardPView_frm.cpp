#include "screens/maps/MapWizardPView_frm.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "maps/field_entry.h"
#include "maps/fit_preview.h"
#include "maps/mail_cutting.h"
#include "maps/map_wizard.h"
#include "screens/wait_pointer.h"
#include "ui_MapWizardPView_frm.h"

#include <QStandardItemModel>

namespace {

const char *const no_fields = "No fields added yet.";

}

MapWizardPView_frm::MapWizardPView_frm(QWidget *parent)
    : wizard_screen(parent), ui(std::make_unique<Ui::MapWizardPView_frm>()), rows(new QStandardItemModel(this))
{
    ui->setupUi(this);
    rows->setHorizontalHeaderLabels({"Field number", "Field name", "Field Value", "Reference code"});
    ui->inbox_lv->setModel(rows);
    ui->inbox_lv->setSelectionMode(QAbstractItemView::SingleSelection);
    ui->inbox_lv->header()->setSectionsClickable(false); // the order of adding is the order of the columns, reversed
    ui->inbox_lv->remember_columns("MapWizardPView_frm.inbox_lv", {140, 120, 200, 150});
    ui->inbox_lv->set_empty_text(no_fields);

    connect(ui->inbox_lv, &QAbstractItemView::doubleClicked, this, [this] {
        if (!ui->Open_b->isHidden())
            Open_b_Click();
    });
    connect(ui->Open_b, &QPushButton::clicked, this, &MapWizardPView_frm::Open_b_Click);
    connect(ui->save_b, &QPushButton::clicked, this, &MapWizardPView_frm::save_b_Click);
    connect(ui->ok_b, &QPushButton::clicked, this, &MapWizardPView_frm::ok_b_Click);
    connect(ui->help_b, &QPushButton::clicked, this, &MapWizardPView_frm::show_own_help);
    connect(ui->cancel_b, &QPushButton::clicked, this, &MapWizardPView_frm::cancel_b_Click);
}

MapWizardPView_frm::~MapWizardPView_frm() = default;

void MapWizardPView_frm::set_account(const QString &address)
{
    ui->mapAcount_lb->setText(address);
}

void MapWizardPView_frm::Load()
{
    const bool finishes = maps::map_wizard.finish_mode;
    setWindowTitle(finishes ? "Save Map" : "Preview Fields");
    ui->qt_band->set_title(finishes ? "Is this the map?" : "The fields so far");
    ui->qt_band->set_hint(finishes ? "Each field becomes a column of the new table."
                                   : "A field that is opened for changing is added again, at the end.");
    ui->qt_band->set_step("Step 3 of 4 (B)");
    ui->ok_b->setVisible(!finishes);
    ui->Open_b->setVisible(!finishes);
    ui->save_b->setVisible(finishes);
    ui->cancel_b->setVisible(finishes);
    ui->fit_l->setVisible(finishes);
    (finishes ? ui->save_b : ui->ok_b)->setDefault(true);
    show_fields();
    if (finishes)
        show_fit();
    ui->inbox_lv->setFocus();
}

void MapWizardPView_frm::show_fields()
{
    guarded("mapwizardpview.frm", "formload", [this] {
        for (const maps::added_field &field : maps::map_wizard.MapWHiddenA_frm) {
            rows->appendRow({new QStandardItem(maps::as_separator(field.position)), new QStandardItem(field.fieldname),
                             new QStandardItem(field.value), new QStandardItem(maps::code_caption(field.code))});
        }
    });
    ui->inbox_lv->setCurrentIndex(rows->index(0, 0));
}

void MapWizardPView_frm::show_fit()
{
    const bool counted = guarded("mapwizardpview.frm", "formload", [this] {
        const wait_pointer waiting(*this);
        const maps::fit_count count = maps::count_fitting_mails();
        ui->fit_l->setText(
            QStringLiteral("fits %1 of the %2 stored mails of this account").arg(count.fits).arg(count.mails));
    });
    if (!counted)
        status_line("How many mails fit cannot be told: " + session.err_description);
}

void MapWizardPView_frm::Open_b_Click()
{
    guarded("mapwizarpvuew", "open b click", [this] {
        if (rows->rowCount() == 0)
            return say(no_fields);
        const QModelIndexList chosen = ui->inbox_lv->selectionModel()->selectedRows();
        taken_back = chosen.isEmpty() ? 0 : chosen.first().row();
        unload();
    });
}

void MapWizardPView_frm::save_b_Click()
{
    if (rows->rowCount() == 0)
        return say(no_fields);
    leads_to_save = true;
    unload();
}

void MapWizardPView_frm::ok_b_Click()
{
    unload();
}

void MapWizardPView_frm::cancel_b_Click()
{
    unload();
}

QSize MapWizardPView_frm::sizeHint() const
{
    return {600, 420};
}
