// Step 3 (B) of the screen MapWizardStep4_frm: naming the fields, adding them, and the way out by Finish. Cutting, Back
// and Quit: MapWizardStep4_frm.cpp.
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/store.h"
#include "maps/field_entry.h"
#include "maps/mail_cutting.h"
#include "maps/map_wizard.h"
#include "screens/maps/MapWRefcode_frm.h"
#include "screens/maps/MapWStep4_Add_frm.h"
#include "screens/maps/MapWizardFinalStep_frm.h"
#include "screens/maps/MapWizardPView_frm.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "screens/maps/mapwizardsave_frm.h"
#include "ui_MapWizardStep4_frm.h"

#include <QClipboard>
#include <QGuiApplication>

void MapWizardStep4_frm::body_t_SelChange()
{
    ui->copy_b->setEnabled(ui->body_t->selection().length > 0);
}

void MapWizardStep4_frm::copy_b_Click()
{
    QGuiApplication::clipboard()->setText(ui->body_t->selected_text());
    ui->copy_b->setEnabled(false);
    ui->paste_b->setEnabled(true);
    ui->paste_b->setFocus();
}

void MapWizardStep4_frm::paste_b_Click()
{
    ui->field_t->setText(QGuiApplication::clipboard()->text());
    ui->paste_b->setEnabled(false);
    ui->field_t->setFocus();
}

void MapWizardStep4_frm::word_chosen(const QString &word)
{
    if (step == u"step3b")
        ui->field_t->setText(word);
}

void MapWizardStep4_frm::Line_c_Click()
{
    const auto piece = size_t(ui->Line_c->currentIndex());
    if (piece >= piece_places.size()) // -1, too
        return;
    text_stretch shown = piece_places[piece];
    if (shown.length == 0) // an empty piece is seen by its number
        shown.length = 2;
    ui->body_t->show_marked(shown);
}

// A field that is being changed is named above its boxes.
void MapWizardStep4_frm::hidden_t_Change(const QString &changed)
{
    ui->Frame2->setTitle(changed.isEmpty() ? QStringLiteral("The next field") : "Changing " + changed);
}

void MapWizardStep4_frm::code_ch_Click()
{
    ui->Values_b->setEnabled(ui->code_ch->isChecked());
}

void MapWizardStep4_frm::Values_b_Click()
{
    if (!ui->code_ch->isChecked())
        return;
    auto &codes = the<MapWRefcode_frm>();
    codes.set_changed_field(ui->hidden_t->text());
    codes.show_modal();
    if (!maps::map_wizard.code_values_set) // cancelled
        ui->code_ch->setChecked(false);
}

// False: the name, the position or the code will not do, and the user knows.
bool MapWizardStep4_frm::take_pending_field()
{
    QString name = ui->field_t->text();
    const QString entry = ui->Line_c->currentText();
    const auto fault = maps::why_not_addable(name, entry, ui->hidden_t->text(), ui->code_ch->isChecked());
    ui->field_t->setText(name);
    if (fault) {
        say(fault->message);
        if (fault->goes_to == maps::focus::field_t)
            ui->field_t->setFocus();
        else if (fault->goes_to == maps::focus::Values_b)
            ui->Values_b->setFocus();
        return false;
    }
    const int index = ui->Line_c->currentIndex();
    if (index < 0) {
        status_line("This mail holds no text to take a value from. Go back and choose another mail.");
        return false;
    }
    auto &wizard = maps::map_wizard;
    wizard.add_name = name;
    wizard.add_position = entry;
    wizard.add_value = maps::shown_piece(pieces[index], wizard.map_separator);
    return true;
}

void MapWizardStep4_frm::add_pending_field()
{
    auto &addition = the<MapWStep4_Add_frm>();
    addition.set_field(ui->hidden_t->text(), ui->code_ch->isChecked());
    addition.show_modal();
    if (!addition.saved())
        return;
    if (ui->Line_c->currentIndex() + 1 < ui->Line_c->count())
        ui->Line_c->setCurrentIndex(ui->Line_c->currentIndex() + 1);
    make_ready_for_next_field();
}

void MapWizardStep4_frm::make_ready_for_next_field()
{
    ui->field_t->clear();
    ui->hidden_t->clear();
    ui->code_ch->setChecked(false);
    ui->Values_b->setEnabled(false);
    QTextCursor nothing_selected = ui->body_t->textCursor();
    nothing_selected.clearSelection();
    ui->body_t->setTextCursor(nothing_selected);
    ui->copy_b->setEnabled(false);
    Line_c_Click();
    show_field_count();
    ui->field_t->setFocus();
}

void MapWizardStep4_frm::show_field_count()
{
    const size_t count = maps::map_wizard.MapWHiddenA_frm.size();
    if (count == 0)
        return ui->fields_l->setText("No field is added yet.");
    const QString newest = maps::map_wizard.MapWHiddenA_frm.back().fieldname;
    const QString words =
        count == 1 ? QString("1 field is added:") : QString::number(count) + " fields are added, last";
    ui->fields_l->setText(words + " " + newest);
}

// False: it cannot be read.
bool MapWizardStep4_frm::read_account_address(const char *form, const char *routine, QString &address)
{
    const bool read = guarded(form, routine, [&] {
        open_store_if_closed();
        ado::Recordset account;
        account.Open("select email from email_tbl where table_name=" + quote_sql(maps::map_wizard.mail_table),
                     *session.store_connection);
        address = account.EOF_() ? QString() : account["email"].text_or_empty();
    });
    if (!read)
        status_line("The fields cannot be shown: " + session.err_description);
    return read;
}

void MapWizardStep4_frm::pfields_b_Click()
{
    QString address;
    if (!read_account_address("mapwizardstep4.frm", "pfieldsb click", address))
        return;
    maps::map_wizard.finish_mode = false;
    auto &preview = the<MapWizardPView_frm>();
    preview.set_account(address);
    preview.show_modal();
    const int chosen = preview.field_to_change();
    if (chosen >= 0)
        change_field(maps::map_wizard.MapWHiddenA_frm[size_t(chosen)]);
}

void MapWizardStep4_frm::change_field(const maps::added_field &field)
{
    ui->field_t->setText(field.fieldname);
    ui->hidden_t->setText(field.fieldname);
    ui->Line_c->setCurrentIndex(ui->Line_c->findText(maps::as_separator(field.position)));
    ui->code_ch->setChecked(maps::take_back_code(field));
    ui->field_t->setFocus();
}

void MapWizardStep4_frm::finish_b_Click()
{
    QString address;
    if (!read_account_address("mapwizardstep45.frm", "Command17", address))
        return;
    maps::map_wizard.finish_mode = true;
    auto &preview = the<MapWizardPView_frm>();
    preview.set_account(address);
    preview.show_modal();
    if (!preview.save_wanted())
        return;
    auto &save = the<mapwizardsave_frm>();
    save.show_modal();
    if (!save.saved())
        return;
    unload();
    the<MapWizardFinalStep_frm>().show();
}
