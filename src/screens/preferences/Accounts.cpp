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
    if (!guarded("Accounts.frm", "Form_load", [this] { PopulateQuery(); }))
        status_line("The accounts cannot be shown: " + session.err_description);
    ui->query_t->setFocus();
}

// The Mail Mapping Wizard changes accounts too. What is typed stays, unless it belongs to an account that is another
// one now.
void Accounts::Activate()
{
    const bool read = guarded("Accounts.frm", "Activate", [this] {
        const std::optional<accounts::entry> before = chosen;
        fill_query_c();
        if (!before)
            return;
        const auto now = accounts::find(before->query);
        const QSignalBlocker chosen_again(ui->query_c);
        ui->query_c->setCurrentIndex(now ? ui->query_c->findText(now->query) : 0);
        if (now != before)
            show_chosen();
    });
    if (!read)
        status_line("The accounts cannot be shown: " + session.err_description);
}

void Accounts::fill_query_c()
{
    const QStringList queries = accounts::query_list();
    const QSignalBlocker one_choice_at_the_end(ui->query_c);
    ui->query_c->clear();
    ui->query_c->addItems(queries);
}

void Accounts::PopulateQuery()
{
    fill_query_c();
    show_chosen();
}

QString Accounts::chosen_query() const
{
    return ui->query_c->currentIndex() > 0 ? ui->query_c->currentText() : QString();
}

void Accounts::query_c_Click()
{
    if (!guarded("Accounts.frm", "query_c", [this] { show_chosen(); }))
        status_line("The account cannot be shown: " + session.err_description);
}

// Enter then means Change: Add would make a second account of what was meant as a change.
void Accounts::show_chosen()
{
    const QString query = chosen_query();
    for (QPushButton *button : {ui->change_b, ui->Delete_b})
        button->setEnabled(!query.isEmpty());
    ui->add_b->setDefault(query.isEmpty());
    ui->change_b->setDefault(!query.isEmpty());
    ui->query_t->clear();
    ui->email_t->clear();
    chosen.reset();
    if (query.isEmpty())
        return;
    chosen = accounts::find(query);
    ui->query_t->setText(chosen ? chosen->query : QString());
    ui->email_t->setText(chosen ? chosen->email : QString());
}

void Accounts::tell(const accounts::fault &fault)
{
    say(fault.message);
    (fault.field == accounts::typed_field::query_t ? ui->query_t : ui->email_t)->setFocus();
}

void Accounts::tell_gone(const QString &query)
{
    say(accounts::not_there(query));
    PopulateQuery();
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
        if (!accounts::find(former)) // nothing would be changed, but the table of that name made anew
            return tell_gone(former);
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
    bool removed = false;
    const bool went_through = guarded("Accounts.frm", "Delete_b", [&] {
        if (!accounts::find(query))
            return tell_gone(query);
        removed = accounts::remove(query);
        if (removed)
            PopulateQuery();
    });
    if (!went_through) {
        status_line((removed ? "The accounts cannot be shown: " : "The account " + query + " could not be deleted: ") +
                    session.err_description);
    }
}
