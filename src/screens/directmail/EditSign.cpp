#include "screens/directmail/EditSign.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "platform/outside_effects.h"
#include "screens/directmail/Signature.h"
#include "screens/exact_text.h"
#include "ui_EditSign.h"

EditSign::EditSign(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::EditSign>())
{
    ui->setupUi(this);
    QPalette as_ground = ui->Text1->palette(); // it cannot be typed in and does not look so
    as_ground.setBrush(QPalette::Base, Qt::transparent);
    ui->Text1->setPalette(as_ground);

    connect(ui->Command1, &QPushButton::clicked, this, &EditSign::Command1_Click);
    connect(ui->Command2, &QPushButton::clicked, this, &EditSign::Command2_Click);
    connect(ui->Command3, &QPushButton::clicked, this, &EditSign::leave);
    connect(ui->help_b, &QPushButton::clicked, this, &EditSign::show_own_help);
}

EditSign::~EditSign() = default;

void EditSign::Load()
{
    const bool is_read = guarded("Editsign.frm", "Form_load", [this] {
        open_store_if_closed();
        ui->Text1->setText(the<Signature>().selected_title());
        ado::Recordset row;
        row.Open("Select signtext from sign where signtitle=" + quote_sql(trim(ui->Text1->text())),
                 *session.store_connection);
        if (!row.EOF_())
            ui->Text2->setPlainText(row["signtext"].text_or_empty());
        row.Close();
    });
    if (!is_read)
        status_line("The signature cannot be read: " + session.err_description);
    ui->Command2->setEnabled(is_read); // over what nobody has seen nothing is written
    stored_text = typed_text(*ui->Text2);
    ui->Text2->setFocus();
}

std::optional<unsaved_work> EditSign::unsaved() const
{
    const bool is_changed = typed_text(*ui->Text2) != stored_text;
    return is_changed ? std::optional(unsaved_work{"Editsign.frm"}) : std::nullopt;
}

void EditSign::Command1_Click()
{
    clear_text(*ui->Text2);
    ui->Text2->setFocus();
}

void EditSign::Command2_Click()
{
    if (!guarded("Editsign.frm", "Command2", [this] { update_signature(); }))
        status_line("The signature could not be changed: " + session.err_description);
}

void EditSign::update_signature()
{
    if (trim(typed_text(*ui->Text2)).isEmpty()) {
        say("Please enter signature");
        return ui->Text2->setFocus();
    }
    open_store_if_closed();
    const QString text = crlf_line_ends(trim(typed_text(*ui->Text2)));
    run_sql("update sign set signtext= " + quote_sql(text) + " where signtitle= " + quote_sql(trim(ui->Text1->text())));
    before_outside_effect(); // what could not be kept stays typed
    the<Signature>().show_preview(text);
    unload();
}
