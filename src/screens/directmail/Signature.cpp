#include "screens/directmail/Signature.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "platform/outside_effects.h"
#include "screens/directmail/EditSign.h"
#include "screens/directmail/NewSign.h"
#include "screens/preferences/Preference.h"
#include "ui_Signature.h"

#include <QCloseEvent>
#include <QKeyEvent>

namespace {

const char *const picker_in_log = "Signature.frm";

// Its title, which may be empty; none where no row is selected.
std::optional<QString> stored_choice()
{
    ado::Recordset rows;
    rows.Open("select * from sign where signselected='Yes'", *session.store_connection);
    return rows.EOF_() ? std::nullopt : std::optional(rows["signtitle"].text_or_empty());
}

}

Signature::Signature(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::Signature>())
{
    ui->setupUi(this);

    connect(ui->List1, &QListWidget::itemSelectionChanged, this, &Signature::List1_Click);
    connect(ui->List1, &QListWidget::itemDoubleClicked, this, &Signature::Command1_Click);
    connect(ui->Command1, &QPushButton::clicked, this, &Signature::Command1_Click);
    connect(ui->Command2, &QPushButton::clicked, this, &Signature::Command2_Click);
    connect(ui->Command3, &QPushButton::clicked, this, &Signature::Command3_Click);
    connect(ui->Command4, &QPushButton::clicked, this, &Signature::Command4_Click);
    connect(ui->Command5, &QPushButton::clicked, this, &Signature::Command5_Click);
}

Signature::~Signature() = default;

void Signature::Load()
{
    const bool is_read = guarded(picker_in_log, "Form_load", [this] {
        open_store_if_closed();
        ado::Recordset signatures;
        signatures.Open("Select * from sign", *session.store_connection);
        for (; !signatures.EOF_(); signatures.MoveNext())
            ui->List1->add_title(signatures["signtitle"].text_or_empty(),
                                 signatures["signselected"].text_or_empty() == u"Yes");
        signatures.Close();
    });
    if (!is_read)
        status_line("The signatures cannot be shown: " + session.err_description);
    ui->List1->setFocus();
}

QString Signature::selected_title() const
{
    const QList<QListWidgetItem *> selected = ui->List1->selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text();
}

void Signature::add_title(const QString &title)
{
    ui->List1->add_title(title, false);
}

void Signature::show_preview(const QString &signtext)
{
    ui->Label2->setText(signtext);
}

void Signature::List1_Click()
{
    ui->Label2->clear();
    if (ui->List1->selectedItems().isEmpty())
        return;
    const bool is_read = guarded(picker_in_log, "List1", [this] {
        open_store_if_closed();
        ado::Recordset row;
        row.Open("select signtext from sign where signtitle=" + quote_sql(selected_title()), *session.store_connection);
        if (!row.EOF_())
            ui->Label2->setText(row["signtext"].text_or_empty());
        row.Close();
    });
    if (!is_read)
        status_line("The signature cannot be shown: " + session.err_description);
}

// A signature may have an empty title, so the selection is asked and not the text.
bool Signature::nothing_selected(const QString &command)
{
    if (!ui->List1->selectedItems().isEmpty())
        return false;
    say("Select an item from the list and click " + command + ".", "Error.", message_icon::critical);
    return true;
}

void Signature::Command1_Click()
{
    bool is_one_selected = false;
    if (!guarded(picker_in_log, "Command1", [&] { is_one_selected = !nothing_selected("Edit"); }))
        status_line("The signature cannot be changed: " + session.err_description);
    if (is_one_selected)
        the<EditSign>().show_modal();
}

void Signature::Command2_Click()
{
    const bool went_through = guarded(picker_in_log, "Command2", [this] {
        if (is_to_be_removed())
            remove_selected();
    });
    if (!went_through)
        status_line("The signature could not be removed: " + session.err_description);
}

bool Signature::is_to_be_removed()
{
    return !nothing_selected("Remove") &&
           ok_cancel("The Signature titled " + selected_title() + " will be removed.", "Confirm.");
}

void Signature::remove_selected()
{
    open_store_if_closed();
    run_sql("delete from sign where signtitle=" + quote_sql(trim(selected_title())));
    before_outside_effect(); // what stays in the store stays in the list
    const QSignalBlocker the_next_one_is_not_selected_instead(ui->List1);
    delete ui->List1->selectedItems().first();
    ui->List1->setCurrentRow(-1);
    ui->Label2->clear();
}

void Signature::Command3_Click()
{
    the<NewSign>().show_modal();
}

void Signature::Command4_Click()
{
    const bool went_through = guarded(picker_in_log, "Command4", [this] {
        if (nothing_selected("OK"))
            return;
        choose_selected();
        unload();
    });
    if (!went_through)
        status_line("The signature could not be chosen: " + session.err_description);
}

void Signature::choose_selected()
{
    open_store_if_closed();
    run_sql("update sign set signselected='No' where signselected= " + quote_sql("Yes"));
    run_sql("update sign set signselected='Yes' where signtitle= " + quote_sql(trim(selected_title())));
    const std::optional<QString> chosen = stored_choice();
    before_outside_effect(); // nobody is told of what could not be kept
    tell_opener(chosen);
}

// The preferences then say that none is chosen, though the store keeps the one that was, on purpose: the page tells it
// when it is opened anew.
void Signature::Command5_Click()
{
    tell_opener(std::nullopt);
    unload();
}

// The composer, when it opens the picker, fills its list of signatures anew from here too.
void Signature::tell_opener(const std::optional<QString> &title)
{
    if (session.signature_for_preferences && is_loaded<Preference>())
        the<Preference>().show_signature(title);
    session.signature_for_composer = false;
    session.signature_for_preferences = false;
}

// The window's cross and Escape are Cancel.
void Signature::closeEvent(QCloseEvent *event)
{
    event->accept();
    Command5_Click();
}

void Signature::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        Command5_Click();
    else
        screen::keyPressEvent(event);
}
