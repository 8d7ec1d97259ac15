#include "screens/frame/Stage1.h"
#include "frame/error_log.h"
#include "frame/say_surely.h"
#include "frame/session.h"
#include "frame/setup_pages.h"
#include "screens/frame/Stage3.h"
#include "ui_Stage1.h"

Stage1::Stage1(QWidget *parent) : setup_screen(parent), ui(std::make_unique<Ui::Stage1>())
{
    ui->setupUi(this);

    connect(ui->url_T, &QLineEdit::textChanged, this, &Stage1::url_T_Change);
    connect(ui->next_b, &QPushButton::clicked, this, &Stage1::next_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &Stage1::leave_setup);
}

Stage1::~Stage1() = default;

void Stage1::Load()
{
    ui->dext_t->hide(); // a holder, like the hidden twins of other screens
    const setup_pages::owner kept = setup_pages::kept_owner();
    ui->url_T->setText(kept.url);
    ui->Admin_t->setText(kept.admin);
    ui->org_t->setText(kept.org);
    ui->Admin_t->setFocus();
}

setup_pages::owner Stage1::typed() const
{
    return {ui->Admin_t->text(), ui->org_t->text(), ui->url_T->text()};
}

bool Stage1::holds_unsaved() const
{
    const setup_pages::owner now = typed();
    const setup_pages::owner kept = setup_pages::kept_owner();
    return now.admin != kept.admin || now.org != kept.org || now.url != kept.url;
}

void Stage1::url_T_Change()
{
    ui->dext_t->setText(setup_pages::site_ending(ui->url_T->text()));
}

void Stage1::next_b_Click()
{
    const setup_pages::owner now = typed();
    if (const QString fault = setup_pages::why_not_kept(now); !fault.isEmpty()) {
        say_surely("Stage1.frm", "next_b", fault);
        return (now.admin.isEmpty() ? ui->Admin_t : ui->org_t)->setFocus();
    }
    if (!guarded("Stage1.frm", "next_b", [&now] { setup_pages::keep_owner(now); }))
        return say_surely("Stage1.frm", "next_b", "The settings could not be saved: " + session.err_description,
                          "Tessaly", message_icon::critical);
    the<Stage3>().show();
    unload();
}
