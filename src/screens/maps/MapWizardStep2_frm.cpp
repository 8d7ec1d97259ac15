#include "screens/maps/MapWizardStep2_frm.h"
#include "accounts/account_checks.h"
#include "accounts/account_rows.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/store.h"
#include "intake/progress_page.h"
#include "screens/background_colour.h"
#include "screens/intake/mfetchinprogress_frm.h"
#include "screens/maps/MapWizardStep1_frm.h"
#include "screens/maps/map_wizard_doors.h"
#include "ui_MapWizardStep2_frm.h"

#include <QKeyEvent>
#include <QStandardItemModel>

namespace {

const char *const no_account = "No account is there yet. It says to which address a form of your site sends.\n"
                               "Choose Preferences > Accounts to add one.";

}

MapWizardStep2_frm::MapWizardStep2_frm(QWidget *parent)
    : wizard_screen(parent), ui(std::make_unique<Ui::MapWizardStep2_frm>()), rows(new QStandardItemModel(this))
{
    ui->setupUi(this);
    rows->setHorizontalHeaderLabels({"Query", "E-mail"});
    ui->inbox_lv->setModel(rows);
    ui->inbox_lv->setSelectionMode(QAbstractItemView::SingleSelection);
    ui->inbox_lv->remember_columns("MapWizardStep2_frm.inbox_lv", {220, 320});
    ui->inbox_lv->set_empty_text(no_account);
    show_editing(false);

    connect(ui->Edit_b, &QPushButton::clicked, this, &MapWizardStep2_frm::Edit_b_Click);
    connect(ui->inbox_lv, &QAbstractItemView::doubleClicked, this, &MapWizardStep2_frm::Edit_b_Click);
    connect(ui->change_b, &QPushButton::clicked, this, &MapWizardStep2_frm::change_b_Click);
    connect(ui->cancelc_b, &QPushButton::clicked, this, &MapWizardStep2_frm::cancelc_b_Click);
    connect(ui->help_b, &QPushButton::clicked, this, &MapWizardStep2_frm::show_own_help);
    connect(ui->back_b, &QPushButton::clicked, this, &MapWizardStep2_frm::back_b_Click);
    connect(ui->next_b, &QPushButton::clicked, this, &MapWizardStep2_frm::next_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &MapWizardStep2_frm::cancel_b_Click);
}

MapWizardStep2_frm::~MapWizardStep2_frm() = default;

void MapWizardStep2_frm::Load()
{
    read_accounts("form load");
    ui->next_b->setFocus();
}

// The page Accounts changes them too. Which one is selected stays, and what is typed.
void MapWizardStep2_frm::Activate()
{
    const QModelIndexList chosen = ui->inbox_lv->selectionModel()->selectedRows();
    const QString query = chosen.isEmpty() ? QString() : chosen.first().data().toString();
    read_accounts("Activate");
    const auto again = rows->findItems(query);
    if (!query.isEmpty() && !again.isEmpty())
        ui->inbox_lv->setCurrentIndex(again.first()->index());
}

void MapWizardStep2_frm::read_accounts(const char *routine)
{
    const bool read = guarded("mapwizardstep2.frm", routine, [this] {
        open_store_if_closed();
        PopulateQuery();
    });
    ui->inbox_lv->set_empty_text(read ? no_account : "The accounts cannot be shown.");
    if (!read)
        status_line("The accounts cannot be shown: " + session.err_description);
}

void MapWizardStep2_frm::PopulateQuery()
{
    rows->setRowCount(0);
    ado::Recordset accounts;
    accounts.Open("select * from email_TBL", *session.store_connection);
    for (; !accounts.EOF_(); accounts.MoveNext()) {
        rows->appendRow({new QStandardItem(accounts["query"].text_or_empty()),
                         new QStandardItem(accounts["email"].text_or_empty())});
    }
    accounts.Close();
}

// Enter means Save Changes as long as an account is being changed; Next would drop what is typed.
void MapWizardStep2_frm::show_editing(bool edits)
{
    ui->edit_fr->setVisible(edits);
    ui->change_b->setDefault(edits);
    ui->next_b->setDefault(!edits);
    ui->next_b->setEnabled(!edits);
    ui->next_b->setToolTip(edits ? "Save the changes of this account or cancel them first"
                                 : "Fetches your mail and goes on");
}

void MapWizardStep2_frm::Edit_b_Click()
{
    const QModelIndexList chosen = ui->inbox_lv->selectionModel()->selectedRows();
    if (chosen.isEmpty())
        return say("Please select an item from the list and click edit.");
    old_query = chosen.first().data().toString();
    ui->query_t->setText(old_query);
    ui->email_t->setText(chosen.first().siblingAtColumn(1).data().toString());
    show_editing(true);
    ui->query_t->setFocus();
    ui->query_t->selectAll();
}

void MapWizardStep2_frm::change_b_Click()
{
    const bool changed = guarded("mapwizardstep2.frm", "changeb click", [this] {
        open_store_if_closed();
        QString query = ui->query_t->text();
        const QString email = ui->email_t->text();
        if (!accounts::find(old_query)) {
            say(accounts::not_there(old_query));
            PopulateQuery();
            return cancelc_b_Click();
        }
        const auto fault = accounts::why_not_renamable(old_query, query, email);
        ui->query_t->setText(query);
        if (fault)
            return say(fault->message);
        accounts::rename(old_query, query, email);
        PopulateQuery();
        cancelc_b_Click();
    });
    if (!changed)
        status_line("The account was not changed: " + session.err_description);
}

void MapWizardStep2_frm::cancelc_b_Click()
{
    show_editing(false);
    ui->inbox_lv->setFocus();
}

void MapWizardStep2_frm::back_b_Click()
{
    unload();
    the<MapWizardStep1_frm>().show();
}

// The wait screen opens the sample mails when it has ended, also after Cancel: what was fetched before is there.
void MapWizardStep2_frm::next_b_Click()
{
    const wait_pointer waiting(*this);
    session.fetch_then_wizard = true;
    session.no_fetch = false;
    const bool page_written =
        guarded("mapwizardstep2.frm", "nextb click", [this] { intake::write_fetch_animation(GetBkColor(*this)); });
    if (page_written)
        the<mfetchinprogress_frm>().show_modal();
    session.fetch_then_wizard = false;
    if (page_written)
        unload();
    else
        status_line("Mail could not be fetched: " + session.err_description);
}

void MapWizardStep2_frm::cancel_b_Click()
{
    if (quits_map_wizard("mapwizardstep2.frm"))
        unload();
}

// Escape leaves the change first, then the wizard.
void MapWizardStep2_frm::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && ui->edit_fr->isVisible())
        cancelc_b_Click();
    else
        wizard_screen::keyPressEvent(event);
}

QSize MapWizardStep2_frm::sizeHint() const
{
    return {720, 500};
}
