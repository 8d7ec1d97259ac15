#include "screens/preferences/Accounts.h"
#include "accounts/account_checks.h"
#include "accounts/account_rows.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "screens/icons.h"
#include "screens/preferences/page_list.h"
#include "ui_Accounts.h"

Accounts::Accounts(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::Accounts>())
{
    ui->setupUi(this);
    setWindowIcon(drawn_icon("accounts"));
    fill_page_list(*ui->Combo2, preference_page::accounts);

    connect(ui->query_c, &QComboBox::currentIndexChanged, this, &Accounts::query_c_Click);
    connect(ui->add_b, &QPushButton::clicked, this, &Accounts::add_b_Click);
    connect(ui->change_b, &QPushButton::clicked, this, &Accounts::change_b_Click);
    connect(ui->Delete_b, &QPushButton::clicked, this, &Accounts::Delete_b_Click);
    connect(ui->help_b, &QPushButton::clicked, this, &Accounts::show_own_help);
    connect(ui->close_b, &QPushButton::clicked, this, &Accounts::unload);
}

Accounts::~Accounts() = default;

void Accounts::Load()
{
    guarded("Accounts.frm", "Form_load", [this] { PopulateQuery(); });
    ui->query_t->setFocus();
}

void Accounts::PopulateQuery()
{
    const QStringList queries = accounts::query_list();
    const QSignalBlocker one_choice_at_the_end(ui->query_c);
    ui->query_c->clear();
    ui->query_c->addItems(queries);
    query_c_Click();
}

QString Accounts::chosen_query() const
{
    return ui->query_c->currentIndex() > 0 ? ui->query_c->currentText() : QString();
}

void Accounts::query_c_Click()
{
    const QString query = chosen_query();
    for (QPushButton *button : {ui->change_b, ui->Delete_b})
        button->setEnabled(!query.isEmpty());
    ui->query_t->clear();
    ui->email_t->clear();
    if (query.isEmpty())
        return;
    guarded("Accounts.frm", "query_c", [&] {
        const auto found = accounts::find(query);
        ui->query_t->setText(found ? found->query : QString());
        ui->email_t->setText(found ? found->email : QString());
    });
}

void Accounts::tell(const accounts::fault &fault)
{
    say(fault.message);
    (fault.field == accounts::typed_field::query_t ? ui->query_t : ui->email_t)->setFocus();
}

// Its row may stand without a table of that name; the list shows what there is.
void Accounts::tell_half_done(const QString &query)
{
    status_line("The account " + query + " could not be set up whole: " + session.err_description);
    guarded("Accounts.frm", "PopulateQuery", [this] { PopulateQuery(); });
}

void Accounts::add_b_Click()
{
    const QString query = ui->query_t->text();
    const QString email = ui->email_t->text();
    const bool went_through = guarded("Accounts.frm", "Add_b", [&] {
        if (const auto fault = accounts::why_not_addable(query, email))
            return tell(*fault);
        accounts::add(query, email);
        PopulateQuery();
        ui->query_t->setFocus();
    });
    if (!went_through)
        tell_half_done(query);
}

void Accounts::change_b_Click()
{
    const QString former = chosen_query();
    if (former.isEmpty())
        return;
    const QString query = ui->query_t->text();
    const QString email = ui->email_t->text();
    const bool went_through = guarded("Accounts.frm", "Change_b", [&] {
        if (const auto fault = accounts::why_not_changeable(former, query, email))
            return tell(*fault);
        accounts::change(former, query, email);
        PopulateQuery();
    });
    if (!went_through)
        tell_half_done(query);
}

void Accounts::Delete_b_Click()
{
    const QString query = chosen_query();
    if (query.isEmpty())
        return;
    guarded("Accounts.frm", "Delete_b", [&] {
        if (accounts::remove(query))
            PopulateQuery();
    });
}
