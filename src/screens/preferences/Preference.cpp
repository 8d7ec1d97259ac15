#include "screens/preferences/Preference.h"
#include "frame/auto_fetch.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "platform/outside_effects.h"
#include "platform/services.h"
#include "screens/directmail/Signature.h"
#include "screens/kept_font.h"
#include "screens/preferences/autoresponder.h"
#include "screens/preferences/page_list.h"
#include "ui_Preference.h"

namespace {

const char *const general_in_log = "Preference.frm";
const char *const no_signature = "No signature configured/selected";

}

Preference::Preference(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::Preference>())
{
    using enum preference_page;
    ui->setupUi(this);
    fill_page_list(*ui->Combo1, general);
    lead_to_page(*ui->Command4, accounts);
    lead_to_page(*ui->Command5, labels);
    lead_to_page(*ui->Command6, online_form);

    // toggled: a screen reader ticks it without a click
    connect(ui->autofetch_ch, &QCheckBox::toggled, this, &Preference::autofetch_ch_Click);
    connect(ui->Command1, &QPushButton::clicked, this, &Preference::Command1_Click);
    connect(ui->Command2, &QPushButton::clicked, this, &Preference::Command2_Click);
    connect(ui->Command3, &QPushButton::clicked, this, &Preference::Command3_Click);
    connect(ui->Command8, &QPushButton::clicked, this, [] { the<autoresponder>().show(); });
    connect(ui->help_b, &QPushButton::clicked, this, &Preference::show_own_help);
    connect(ui->close_b, &QPushButton::clicked, this, &Preference::close);
}

Preference::~Preference() = default;

void Preference::Load()
{
    const bool is_read = guarded(general_in_log, "Form_load", [this] {
        open_store_if_closed();
        ui->font_l->setText(font_words(kept_font()));
        show_auto_fetch();
        ado::Recordset signature;
        signature.Open("select signtitle from sign where signselected='Yes'", *session.store_connection);
        show_signature(signature.EOF_() ? std::nullopt : std::optional(signature["signtitle"].text_or_empty()));
        signature.Close();
    });
    if (!is_read)
        status_line("The preferences cannot be shown: " + session.err_description);
    ui->Command1->setEnabled(is_read); // over what nobody has seen nothing is written
    ui->autofetch_ch->setFocus();
}

void Preference::show_auto_fetch()
{
    const std::optional<int> minutes = kept_minutes();
    ui->autofetch_ch->setChecked(minutes.has_value());
    ui->minutes_t->setText(QString::number(minutes.value_or(0)));
    ui->minutes_t->setEnabled(minutes.has_value());
    ui->in_force_l->setText("In force now: " + auto_fetch_words(minutes));
    minutes_shown = chosen_minutes();
}

QString Preference::chosen_minutes() const
{
    return ui->autofetch_ch->isChecked() ? ui->minutes_t->text() : QString();
}

// All else on this page is kept as it is chosen.
std::optional<unsaved_work> Preference::unsaved() const
{
    return chosen_minutes() == minutes_shown ? std::nullopt : std::optional(unsaved_work{general_in_log});
}

void Preference::show_signature(const std::optional<QString> &title)
{
    ui->sign_l->setText(title.value_or(no_signature));
}

void Preference::autofetch_ch_Click()
{
    ui->minutes_t->setEnabled(ui->autofetch_ch->isChecked());
    if (!ui->autofetch_ch->isChecked())
        return;
    ui->minutes_t->setFocus();
    ui->minutes_t->selectAll();
}

void Preference::Command1_Click()
{
    if (!guarded(general_in_log, "Command1", [this] { set_minutes(); }))
        status_line("Auto-fetch could not be set: " + session.err_description);
}

void Preference::set_minutes()
{
    typed_minutes typed{auto_fetch_off, {}};
    if (ui->autofetch_ch->isChecked())
        typed = read_typed_minutes(ui->minutes_t->text());
    if (!typed.refusal.isEmpty()) {
        say(typed.refusal, "General", message_icon::critical);
        ui->minutes_t->setFocus();
        return ui->minutes_t->selectAll();
    }
    open_store_if_closed();
    const bool is_kept = keep_minutes(typed.minutes);
    before_outside_effect(); // what is told to be in force is kept
    if (!is_kept)
        return status_line("Auto-fetch could not be set: the store has no row for it.");
    end_auto_fetch_pause(); // the user's own wish does not wait for the ticks' patience
    show_auto_fetch();
}

void Preference::Command2_Click()
{
    const std::optional<chosen_font> chosen = services.dialogs->ShowFont(kept_font());
    if (!chosen)
        return;
    ui->font_l->setText(font_words(*chosen));
    if (!guarded(general_in_log, "Command2", [&chosen] { keep_font(*chosen); }))
        status_line("The font could not be kept: " + session.err_description);
}

void Preference::Command3_Click()
{
    session.signature_for_preferences = true;
    the<Signature>().show();
}
