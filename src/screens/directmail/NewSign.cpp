#include "screens/directmail/NewSign.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "platform/outside_effects.h"
#include "screens/directmail/Signature.h"
#include "screens/exact_text.h"
#include "ui_NewSign.h"

namespace {

bool is_stored(const QString &title)
{
    ado::Recordset signatures;
    signatures.Open("Select * from sign", *session.store_connection);
    for (; !signatures.EOF_(); signatures.MoveNext()) {
        if (same_text(signatures["signtitle"].text_or_empty(), title))
            return true;
    }
    return false;
}

}

NewSign::NewSign(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::NewSign>())
{
    ui->setupUi(this);

    connect(ui->Command1, &QPushButton::clicked, this, &NewSign::Command1_Click);
    connect(ui->Command2, &QPushButton::clicked, this, &NewSign::Command2_Click);
    connect(ui->Command3, &QPushButton::clicked, this, &NewSign::leave);
}

NewSign::~NewSign() = default;

void NewSign::Load()
{
    offered_title = ui->Text1->text();
    ui->Text1->setFocus();
    ui->Text1->selectAll();
}

std::optional<unsaved_work> NewSign::unsaved() const
{
    const bool is_changed = ui->Text1->text() != offered_title || !typed_text(*ui->Text2).isEmpty();
    return is_changed ? std::optional(unsaved_work{"NewSign.frm"}) : std::nullopt;
}

void NewSign::Command1_Click()
{
    clear_text(*ui->Text2);
    ui->Text2->setFocus();
}

void NewSign::Command2_Click()
{
    if (!guarded("NewSign.frm", "Command2", [this] { add_signature(); }))
        status_line("The signature could not be kept: " + session.err_description);
}

// A title of blanks is not empty here, and is kept as an empty one.
bool NewSign::is_complete()
{
    if (ui->Text1->text().isEmpty()) {
        say("Title of the Signature must be specified.", "Title.");
        ui->Text1->setFocus();
        return false;
    }
    if (typed_text(*ui->Text2).isEmpty()) {
        say("Please enter signature", "Title.");
        ui->Text2->setFocus();
        return false;
    }
    return true;
}

void NewSign::add_signature()
{
    if (!is_complete())
        return;
    open_store_if_closed();
    const QString title = trim(ui->Text1->text());
    if (is_stored(title)) {
        say("The Signature with the Title " + title + " already exists.", "Error.", message_icon::critical);
        ui->Text1->selectAll();
        return ui->Text1->setFocus();
    }
    run_sql("insert into sign values( " + quote_sql(title) + "," + quote_sql(crlf_line_ends(typed_text(*ui->Text2))) +
            "," + quote_sql("No") + " )");
    before_outside_effect(); // what could not be kept stays typed
    the<Signature>().add_title(title);
    unload();
}
