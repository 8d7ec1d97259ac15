#include "screens/maps/mapWizardStep3_frm.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/store.h"
#include "maps/map_wizard.h"
#include "screens/maps/MapWizardStep2_frm.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "screens/maps/map_wizard_doors.h"
#include "screens/maps/sample_mail_list.h"
#include "screens/preferences/mail_client_frm.h"
#include "screens/preferences/page_list.h"
#include "ui_mapWizardStep3_frm.h"

using maps::map_wizard;

mapWizardStep3_frm::mapWizardStep3_frm(QWidget *parent)
    : wizard_screen(parent), ui(std::make_unique<Ui::mapWizardStep3_frm>())
{
    using enum sample_mail_list::column;
    rows = new sample_mail_list({to, subject, received, from, message_id, table_name, account_id}, this);
    ui->setupUi(this);
    ui->qt_splitter->setStretchFactor(0, 3);
    ui->qt_splitter->setStretchFactor(1, 2);
    ui->qt_splitter->remember_place("mapWizardStep3_frm.qt_splitter");
    ui->inbox_lv->setModel(rows);
    ui->inbox_lv->setSelectionMode(QAbstractItemView::SingleSelection);
    for (const auto key : {message_id, table_name, account_id})
        ui->inbox_lv->setColumnHidden(int(key), true);
    ui->inbox_lv->set_empty_text("No mail can be shown.");
    ui->inbox_lv->remember_columns("mapWizardStep3_frm.inbox_lv", {190, 220, 160, 180});

    connect(ui->inbox_lv->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &mapWizardStep3_frm::inbox_lv_Click);
    connect(ui->inbox_lv, &QAbstractItemView::doubleClicked, this, &mapWizardStep3_frm::Open_b_Click);
    connect(ui->mail_client_b, &QPushButton::clicked, this, &mapWizardStep3_frm::mail_client_b_Click);
    connect(ui->help_b, &QPushButton::clicked, this, &mapWizardStep3_frm::show_own_help);
    connect(ui->back_b, &QPushButton::clicked, this, &mapWizardStep3_frm::back_b_Click);
    connect(ui->Open_b, &QPushButton::clicked, this, &mapWizardStep3_frm::Open_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &mapWizardStep3_frm::cancel_b_Click);
}

mapWizardStep3_frm::~mapWizardStep3_frm() = default;

void mapWizardStep3_frm::Load()
{
    map_wizard.mail_table.clear();
    map_wizard.mail_id.clear();
    bool all_shown = false;
    if (!guarded("mapwizardstep3.frm", "form load", [&] { all_shown = show_mails(); }))
        status_line("The mails cannot be shown: " + session.err_description);
    const bool empty = all_shown && rows->rowCount() == 0; // not for a failure: there is mail, maybe
    ui->Frame2->setVisible(!empty);
    ui->empty_fr->setVisible(empty);
    ui->Open_b->setDefault(!empty);
    ui->back_b->setDefault(empty);
    (empty ? static_cast<QWidget *>(ui->mail_client_b) : ui->inbox_lv)->setFocus();
}

// False: accounts had to be left out, and the user knows.
bool mapWizardStep3_frm::show_mails()
{
    const wait_pointer waiting(*this);
    open_store_if_closed();
    maps::sample_mails all = maps::all_sample_mails();
    rows->set_mails(std::move(all.mails));
    if (all.accounts_left_out == 0)
        return true;
    const QString words = all.accounts_left_out == 1
                              ? QStringLiteral("The mails of 1 account cannot be shown: ")
                              : QStringLiteral("The mails of %1 accounts cannot be shown: ").arg(all.accounts_left_out);
    status_line(words + session.err_description);
    return false;
}

void mapWizardStep3_frm::inbox_lv_Click()
{
    ui->body_t->set_text({});
    map_wizard.mail_id.clear();
    const QModelIndexList chosen = ui->inbox_lv->selectionModel()->selectedRows();
    if (chosen.isEmpty())
        return;
    const maps::sample_mail &mail = rows->mail(chosen.first().row());
    const bool read = guarded("mapwizardstep3.frm", "inboxlv itemclick", [&] {
        open_store_if_closed();
        ui->body_t->set_text(maps::stored_body(mail.table_name, mail.message_id));
        map_wizard.mail_table = mail.table_name;
        map_wizard.mail_id = mail.message_id;
        map_wizard.account_id = mail.account_id;
    });
    if (!read)
        status_line("This mail cannot be shown: " + session.err_description);
}

void mapWizardStep3_frm::mail_client_b_Click()
{
    open_page(preference_page::mail_client);
    if (is_visible<mail_client_frm>()) // an open page may have wanted to stay
        the<mail_client_frm>().show_test();
}

void mapWizardStep3_frm::back_b_Click()
{
    unload();
    the<MapWizardStep2_frm>().show();
}

void mapWizardStep3_frm::Open_b_Click()
{
    const QModelIndexList chosen = ui->inbox_lv->selectionModel()->selectedRows();
    if (chosen.isEmpty() || map_wizard.mail_id.isEmpty())
        return say("Please select a mail");
    map_wizard.map_subject = rows->mail(chosen.first().row()).subject;
    unload();
    the<MapWizardStep4_frm>().show();
}

void mapWizardStep3_frm::cancel_b_Click()
{
    if (quits_map_wizard("mapwizardstep3.frm"))
        unload();
}

QSize mapWizardStep3_frm::sizeHint() const
{
    return {900, 580};
}
