#include "screens/maps/textarea_frm.h"
#include "ui_textarea_frm.h"

textarea_frm::textarea_frm(QWidget *parent) : wizard_screen(parent), ui(std::make_unique<Ui::textarea_frm>())
{
    ui->setupUi(this);

    connect(ui->help_b, &QPushButton::clicked, this, &textarea_frm::show_own_help);
    connect(ui->ok_b, &QPushButton::clicked, this, &textarea_frm::cancel_b_Click);
}

textarea_frm::~textarea_frm() = default;

void textarea_frm::Load()
{
    ui->ok_b->setFocus();
}

void textarea_frm::cancel_b_Click()
{
    unload();
}

QSize textarea_frm::sizeHint() const
{
    return {600, 420};
}
