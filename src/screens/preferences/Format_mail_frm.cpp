#include "screens/preferences/Format_mail_frm.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/say_surely.h"
#include "frame/status.h"
#include "frame/store.h"
#include "maps/map_wizard.h"
#include "maps/sample_mails.h"
#include "platform/outside_effects.h"
#include "screens/icons.h"
#include "screens/maps/map_wizard_doors.h"
#include "screens/maps/mapmail_frm.h"
#include "screens/maps/sample_mail_list.h"
#include "screens/preferences/page_list.h"
#include "ui_Format_mail_frm.h"

using maps::map_wizard;

namespace {

const char *const page_in_log = "Format_mail_frm.frm";
const char *const choose_first = "Choose an account above to see its raw mails.";
const char *const no_mails = "No mail is stored for this account.\nChoose Mail > Fetch Mail to gather its form mails.";

}

Format_mail_frm::Format_mail_frm(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::Format_mail_frm>())
{
    using enum sample_mail_list::column;
    rows = new sample_mail_list({from, subject, received}, this);
    ui->setupUi(this);
    setWindowIcon(drawn_icon("mauditor_mnu"));
    fill_page_list(*ui->Combo1, preference_page::map_mails); // in capitals, as everywhere: one list for all pages
    ui->qt_splitter->setStretchFactor(0, 3);
    ui->qt_splitter->setStretchFactor(1, 2);
    ui->qt_splitter->remember_place("Format_mail_frm.qt_splitter");
    ui->inbox_lv->setModel(rows);
    ui->inbox_lv->remember_columns("Format_mail_frm.inbox_lv", {200, 320, 170});
    ui->inbox_lv->set_empty_text(choose_first);
    lead_to_page(*ui->Command3, preference_page::accounts);
    lead_to_page(*ui->Command4, preference_page::online_form);

    connect(ui->query_c, &QComboBox::currentIndexChanged, this, &Format_mail_frm::query_c_Click);
    connect(ui->inbox_lv->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &Format_mail_frm::inbox_lv_ItemClick);
    connect(ui->inbox_lv, &QAbstractItemView::doubleClicked, this, &Format_mail_frm::open_b_Click);
    connect(ui->delete_l, &QPushButton::clicked, this, &Format_mail_frm::delete_l_Click);
    connect(ui->open_b, &QPushButton::clicked, this, &Format_mail_frm::open_b_Click);
    connect(ui->help_b, &QPushButton::clicked, this, &Format_mail_frm::show_own_help);
    connect(ui->close_b, &QPushButton::clicked, this, &Format_mail_frm::unload);
}

Format_mail_frm::~Format_mail_frm() = default;

void Format_mail_frm::Load()
{
    guarded(page_in_log, "Form_load", [this] {
        open_store_if_closed();
        const QSignalBlocker one_choice_at_the_end(ui->query_c);
        ui->query_c->addItem("Select the query");
        query_ch = {QString()};
        ado::Recordset accounts;
        accounts.Open("Select * from email_tbl", *session.store_connection);
        for (; !accounts.EOF_(); accounts.MoveNext()) {
            ui->query_c->addItem(accounts["query"].text_or_empty());
            query_ch += accounts["table_name"].text_or_empty();
        }
        accounts.Close();
    });
    enable_buttons();
    ui->query_c->setFocus();
}

QString Format_mail_frm::chosen_table() const
{
    return query_ch.value(ui->query_c->currentIndex());
}

void Format_mail_frm::choose_account(const QString &table)
{
    const qsizetype entry = query_ch.indexOf(table);
    if (entry > 0)
        ui->query_c->setCurrentIndex(int(entry));
}

void Format_mail_frm::query_c_Click()
{
    if (!guarded(page_in_log, "query_c_click", [this] { show_mails(); }))
        status_line("The mails of this account cannot be shown: " + session.err_description);
    enable_buttons();
}

void Format_mail_frm::show_mails()
{
    rows->set_mails({});
    ui->body_t->set_text({});
    const QString table = chosen_table();
    ui->inbox_lv->set_empty_text(table.isEmpty() ? choose_first : no_mails);
    if (table.isEmpty())
        return;
    open_store_if_closed();
    rows->set_mails(maps::raw_mails(table));
}

void Format_mail_frm::inbox_lv_ItemClick()
{
    ui->body_t->set_text({});
    enable_buttons();
    const QModelIndexList chosen = ui->inbox_lv->selectionModel()->selectedRows();
    if (chosen.size() != 1) // of many there is no one text to read
        return;
    guarded(page_in_log, "inbox_lv_itemclick", [&] {
        open_store_if_closed();
        ui->body_t->set_text(maps::stored_body(chosen_table(), rows->mail(chosen.first().row()).message_id));
    });
}

void Format_mail_frm::enable_buttons()
{
    ui->delete_l->setEnabled(ui->inbox_lv->selectionModel()->hasSelection());
}

void Format_mail_frm::delete_l_Click()
{
    QStringList ids;
    for (const QModelIndex &index : ui->inbox_lv->selectionModel()->selectedRows())
        ids += rows->mail(index.row()).message_id;
    if (ids.isEmpty())
        return;
    bool deleted = false;
    const bool went_through = guarded(page_in_log, "delete_l_Click", [&] {
        open_store_if_closed();
        maps::delete_raw_mails(chosen_table(), ids);
        before_outside_effect(); // what is told to be deleted is
        deleted = true;
        say(ids.size() == 1 ? QStringLiteral("The mail was deleted.")
                            : QString::number(ids.size()) + " mails were deleted.");
        show_mails();
    });
    if (!went_through) {
        status_line((deleted ? "The mails were deleted. Those that are left cannot be shown: "
                             : "The mails could not be deleted: ") +
                    session.err_description);
    }
    enable_buttons();
}

void Format_mail_frm::open_b_Click()
{
    const QModelIndexList chosen = ui->inbox_lv->selectionModel()->selectedRows();
    if (chosen.isEmpty())
        return say_surely(page_in_log, "open_b", "Please select a mail");
    if (bring_map_wizard_to_front()) // what is recorded here is its memory
        return say_surely(page_in_log, "open_b", "The Mail Mapping Wizard is open. Finish or quit it first.");
    const bool known = guarded(page_in_log, "open_b", [&] {
        open_store_if_closed();
        const maps::sample_mail &mail = rows->mail(chosen.first().row());
        map_wizard.mail_table = chosen_table();
        map_wizard.mail_id = mail.message_id;
        map_wizard.map_subject = mail.subject;
        map_wizard.account_id = maps::account_id_of(chosen_table());
    });
    if (!known)
        return;
    unload();
    if (is_loaded<mapmail_frm>()) // of the mail that was opened before
        the<mapmail_frm>().unload();
    the<mapmail_frm>().show();
}

QSize Format_mail_frm::sizeHint() const
{
    return {860, 560};
}
