#include "screens/maps/MapWStep4_Add_frm.h"
#include "frame/error_log.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "maps/field_entry.h"
#include "maps/map_wizard.h"
#include "maps/stored_value.h"
#include "ui_MapWStep4_Add_frm.h"

namespace {

constexpr int stored_lines = 3; // 250 letters in a window of usual width
constexpr int ignored_lines = 4;

}

MapWStep4_Add_frm::MapWStep4_Add_frm(QWidget *parent)
    : wizard_screen(parent), ui(std::make_unique<Ui::MapWStep4_Add_frm>())
{
    ui->setupUi(this);
    ui->stored_t->setFixedHeight(fontMetrics().lineSpacing() * stored_lines + 12);
    ui->ignore_l->setFixedHeight(fontMetrics().lineSpacing() * ignored_lines + 12);

    connect(ui->fieldval_t, &QPlainTextEdit::selectionChanged, this, &MapWStep4_Add_frm::fieldval_t_SelChange);
    connect(ui->ignore_b, &QPushButton::clicked, this, &MapWStep4_Add_frm::ignore_b_Click);
    connect(ui->help_b, &QPushButton::clicked, this, &MapWStep4_Add_frm::show_own_help);
    connect(ui->save_b, &QPushButton::clicked, this, &MapWStep4_Add_frm::save_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &MapWStep4_Add_frm::cancel_b_Click);
}

MapWStep4_Add_frm::~MapWStep4_Add_frm() = default;

void MapWStep4_Add_frm::set_field(const QString &changed, bool wants_code)
{
    changed_field = changed;
    with_code = wants_code;
}

void MapWStep4_Add_frm::Load()
{
    const auto &wizard = maps::map_wizard;
    ui->field_lb->setText(wizard.add_name);
    ui->position_lb->setText(wizard.add_position);
    QFont bold = font();
    bold.setBold(true);
    ui->field_lb->setFont(bold);
    ui->ignore_b->setEnabled(false);
    ignored = maps::kept_supporting_texts(wizard.add_name);
    ui->fieldval_t->set_text(maps::without_supporting_texts(wizard.add_value, ignored));
    show_ignored_texts();
    show_stored_value();
    ui->fieldval_t->setFocus();
}

void MapWStep4_Add_frm::show_ignored_texts()
{
    ui->ignore_l->clear();
    for (const QString &text : ignored)
        ui->ignore_l->addItem("“" + text + "”"); // outer blanks count, so they are seen
    ui->ignore_l->setVisible(!ignored.isEmpty());
    ui->ignore_lb->setVisible(!ignored.isEmpty());
}

void MapWStep4_Add_frm::show_stored_value()
{
    const auto &wizard = maps::map_wizard;
    const maps::kept_value stored = maps::stored_value(wizard.add_name, wizard.add_value, ignored);
    ui->stored_t->set_text(stored.text);
    if (stored.text.isEmpty())
        ui->stored_note_l->setText("Nothing is left of the value of this mail.");
    else if (stored.was_cut)
        ui->stored_note_l->setText("The value is longer than 255 characters, so its first 250 are stored.");
    else
        ui->stored_note_l->clear();
    ui->stored_note_l->setVisible(!ui->stored_note_l->text().isEmpty());
}

void MapWStep4_Add_frm::fieldval_t_SelChange()
{
    ui->ignore_b->setEnabled(ui->fieldval_t->selection().length > 0);
}

void MapWStep4_Add_frm::ignore_b_Click()
{
    const QString text = ui->fieldval_t->selected_text();
    if (text.isEmpty())
        return;
    ignored += text;
    ui->fieldval_t->set_text(maps::ignoring(ui->fieldval_t->text(), text));
    ui->ignore_b->setEnabled(false);
    show_ignored_texts();
    show_stored_value();
    ui->fieldval_t->setFocus();
}

void MapWStep4_Add_frm::save_b_Click()
{
    const bool kept = guarded("MapWizardStep4_add_frm.frm", "save_b", [this] {
        open_store_if_closed(); // without it no map can be saved: better said at this field than behind the last one
        const auto &wizard = maps::map_wizard;
        maps::keep_field(wizard.add_name, wizard.add_position, ignored, ui->fieldval_t->text(), changed_field,
                         with_code);
        was_saved = true;
    });
    if (!kept)
        return status_line("The field cannot be added: " + session.err_description);
    unload();
}

void MapWStep4_Add_frm::cancel_b_Click()
{
    unload();
}

QSize MapWStep4_Add_frm::sizeHint() const
{
    return {600, 430};
}
