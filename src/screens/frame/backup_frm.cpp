#include "screens/frame/backup_frm.h"
#include "frame/back_up_folder.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/say_surely.h"
#include "frame/session.h"
#include "frame/setup.h"
#include "frame/store.h"
#include "platform/dialogs.h"
#include "platform/services.h"
#include "platform/settings.h"
#include "screens/frame/Stage3.h"
#include "screens/frame/opening.h"
#include "screens/frame/stage5b.h"
#include "ui_backup_frm.h"

backup_frm::backup_frm(QWidget *parent) : setup_screen(parent), ui(std::make_unique<Ui::backup_frm>())
{
    ui->setupUi(this);

    connect(ui->Folder_t, &QLineEdit::textChanged, this, &backup_frm::Folder_t_Change);
    connect(ui->browserforfolders, &QPushButton::clicked, this, &backup_frm::browserforfolders_Click);
    connect(ui->next_b, &QPushButton::clicked, this, &backup_frm::next_b_Click);
    connect(ui->later_b, &QPushButton::clicked, this, &backup_frm::later_b_Click);
    connect(ui->back_b, &QPushButton::clicked, this, &backup_frm::back_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &backup_frm::leave_setup);
}

backup_frm::~backup_frm() = default;

void backup_frm::Load()
{
    guarded("Backup_frm.frm", "Form_Load", [this] {
        open_store_if_closed();
        in_setup = !is_installed();
    });
    ui->Folder_t->setText(GetSetting("main", "backup"));
    show_step();
    Folder_t_Change();
}

void backup_frm::show_step()
{
    ui->band->set_step(in_setup ? "Step 3 of 3" : "");
    ui->next_b->setText(in_setup ? "&Finish" : "OK");
    ui->next_b->setAccessibleName(in_setup ? "Finish" : "OK"); // it has been given the first caption as its name
    for (QPushButton *button : {ui->later_b, ui->back_b})
        button->setVisible(in_setup);
    if (in_setup) {
        setWindowTitle("Tessaly Setup");
        setMinimumSize(setup_screen::sizeHint()); // as the steps before it
    }
    ui->Folder_t->setFocus();
}

void backup_frm::Folder_t_Change()
{
    const QString former = former_back_up(ui->Folder_t->text());
    ui->former_l->setText("This folder holds a back-up of " + former +
                          ". It is deleted when you go on; the next one is made when you close Tessaly.");
    ui->former_l->setVisible(!former.isEmpty());
}

void backup_frm::browserforfolders_Click()
{
    guarded("backup.frm", "browseforfolders click", [this] {
        const auto chosen =
            services.dialogs ? services.dialogs->ShowFolder(ui->Folder_t->text()) : std::optional<QString>();
        if (!chosen)
            return say("No folder selected !");
        say("Folder Selected: " + *chosen);
        ui->Folder_t->setText(*chosen);
    });
}

void backup_frm::next_b_Click()
{
    bool kept = false;
    if (!guarded("Backup_frm.frm", "next_b", [&] { kept = keep_back_up_folder(ui->Folder_t->text(), in_setup); }))
        say_surely("Backup_frm.frm", "next_b", "The folder could not be made ready: " + session.err_description,
                   "Tessaly", message_icon::exclamation);
    if (kept && (!in_setup || end_setup()))
        unload();
}

// The console opens before this screen goes.
bool backup_frm::end_setup()
{
    if (!guarded("Backup_frm.frm", "next_b", finish_setup)) {
        say_surely("Backup_frm.frm", "next_b", "The setup could not be finished: " + session.err_description, "Tessaly",
                   message_icon::exclamation);
        return false;
    }
    Main();
    return true;
}

void backup_frm::later_b_Click()
{
    the<stage5b>().show();
    unload();
}

void backup_frm::back_b_Click()
{
    go_back_to(the<Stage3>());
}

bool backup_frm::holds_unsaved() const
{
    return in_setup && ui->Folder_t->text() != GetSetting("main", "backup");
}
