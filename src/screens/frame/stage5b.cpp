#include "screens/frame/stage5b.h"
#include "frame/error_log.h"
#include "frame/say_surely.h"
#include "frame/setup.h"
#include "frame/setup_pages.h"
#include "frame/store.h"
#include "screens/frame/opening.h"
#include "ui_stage5b.h"

stage5b::stage5b(QWidget *parent) : setup_screen(parent), ui(std::make_unique<Ui::stage5b>())
{
    ui->setupUi(this);

    connect(ui->finish_b, &QPushButton::clicked, this, &stage5b::finish_b_Click);
}

stage5b::~stage5b() = default;

void stage5b::Load()
{
    guarded("Stage5b.frm", "Form_load", [this] {
        QStringList details;
        for (const QString &query : setup_pages::account_names())
            details += setup_pages::account_details(query);
        ui->accounts_t->setPlainText(details.join("\n\n"));
    });
    ui->finish_b->setFocus();
}

void stage5b::finish_b_Click()
{
    const bool finished = guarded("Stage5b.frm", "finish_b", [] {
        open_store_if_closed();
        finish_setup();
    });
    if (!finished)
        return say_surely("Stage5b.frm", "finish_b", "The setup could not be finished: " + session.err_description,
                          "Tessaly", message_icon::critical);
    Main();
    unload();
}
