#include "screens/frame/Stage3.h"
#include "frame/account_list.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/say_surely.h"
#include "frame/setup_pages.h"
#include "screens/frame/Stage1.h"
#include "screens/frame/backup_frm.h"
#include "ui_Stage3.h"

Stage3::Stage3(QWidget *parent) : setup_screen(parent), ui(std::make_unique<Ui::Stage3>())
{
    ui->setupUi(this);

    for (QLineEdit *field : {ui->query_t, ui->email_t})
        connect(field, &QLineEdit::textChanged, this, &Stage3::typed_Change);
    connect(ui->add_b, &QPushButton::clicked, this, &Stage3::add_b_Click);
    connect(ui->query_l, &QListWidget::itemSelectionChanged, this, &Stage3::query_l_Click);
    connect(ui->Command1, &QPushButton::clicked, this, &Stage3::Command1_Click); // "Delete query"
    connect(ui->Reset_b, &QPushButton::clicked, this, &Stage3::Reset_b_Click);
    connect(ui->back_b, &QPushButton::clicked, this, &Stage3::back_b_Click);
    connect(ui->next_b, &QPushButton::clicked, this, &Stage3::next_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &Stage3::leave_setup);
}

Stage3::~Stage3() = default;

// Accounts of a setup that was left in the middle are there again.
void Stage3::Load()
{
    guarded("Stage2.frm", "Form_load", [this] { ui->query_l->addItems(setup_pages::account_names()); });
    query_l_Click();
    typed_Change();
    ui->query_t->setFocus();
}

bool Stage3::holds_unsaved() const
{
    return !ui->query_t->text().isEmpty() || !ui->email_t->text().isEmpty();
}

// Enter adds what is typed; with nothing typed it goes on.
void Stage3::typed_Change()
{
    ui->add_b->setDefault(holds_unsaved());
    ui->next_b->setDefault(!holds_unsaved());
}

void Stage3::add_b_Click()
{
    guarded("Stage2.frm", "add_b", [this] {
        const QString query = ui->query_t->text();
        const QString email = ui->email_t->text();
        QStringList listed;
        for (int row = 0; row < ui->query_l->count(); ++row)
            listed += ui->query_l->item(row)->text();
        if (const QString fault = setup_pages::why_not_addable(query, email, listed); !fault.isEmpty())
            return say(fault);
        add_account_row(query, email);
        ui->query_l->addItem(query);
        Reset_b_Click();
    });
}

QString Stage3::chosen_query() const
{
    const auto chosen = ui->query_l->selectedItems();
    return chosen.isEmpty() ? QString() : chosen.front()->text();
}

void Stage3::query_l_Click()
{
    guarded("Stage2.frm", "query_l", [this] { ui->details_l->setText(setup_pages::account_details(chosen_query())); });
}

void Stage3::Command1_Click()
{
    const QString query = chosen_query();
    if (query.isEmpty())
        return say_surely("Stage2.frm", "Command1", "Please select a query to be deleted");
    guarded("Stage2.frm", "Command1", [&] {
        setup_pages::delete_account(query);
        delete ui->query_l->selectedItems().front();
    });
}

void Stage3::Reset_b_Click()
{
    ui->query_t->clear();
    ui->email_t->clear();
    ui->query_t->setFocus();
}

void Stage3::back_b_Click()
{
    go_back_to(the<Stage1>());
}

void Stage3::next_b_Click()
{
    guarded("Stage2.frm", "next_b", [this] {
        if (const QString fault = setup_pages::why_not_on(ui->email_t->text()); !fault.isEmpty())
            return say(fault);
        the<backup_frm>().show();
        unload();
    });
}
