#include "screens/maps/Ignore.h"
#include "frame/messages.h"
#include "screens/maps/mapmail_frm.h"
#include "ui_Ignore.h"

#include <QKeyEvent>

Ignore::Ignore(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::Ignore>())
{
    ui->setupUi(this);
    ui->remove_b->setEnabled(false);
    ui->whole_ch->setToolTip("Has no effect: each field has texts of its own");

    connect(ui->Add_b, &QPushButton::clicked, this, &Ignore::Add_b_Click);
    connect(ui->remove_b, &QPushButton::clicked, this, &Ignore::remove_b_Click);
    connect(ui->ignore_l, &QListWidget::currentRowChanged, ui->remove_b,
            [this](int row) { ui->remove_b->setEnabled(row >= 0); });
    connect(ui->Submit_b, &QPushButton::clicked, this, &Ignore::Submit_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &Ignore::unload);
    connect(ui->help_b, &QPushButton::clicked, this, &Ignore::show_own_help);
}

Ignore::~Ignore() = default;

void Ignore::Load()
{
    ui->ignore_l->addItems(the<mapmail_frm>().ignored_texts());
    ui->ignore_T->setFocus();
}

void Ignore::Add_b_Click()
{
    if (ui->ignore_T->text().isEmpty()) {
        say("Please enter character");
    } else {
        ui->ignore_l->addItem(ui->ignore_T->text());
        ui->ignore_T->clear();
    }
    ui->ignore_T->setFocus();
}

void Ignore::remove_b_Click()
{
    delete ui->ignore_l->takeItem(ui->ignore_l->currentRow());
}

void Ignore::Submit_b_Click()
{
    QStringList texts;
    for (int row = 0; row < ui->ignore_l->count(); ++row)
        texts += ui->ignore_l->item(row)->text();
    the<mapmail_frm>().set_ignored_texts(texts);
    unload();
}

// Enter in the box adds what was typed, as the list is filled one text after another.
void Ignore::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && ui->ignore_T->hasFocus() && !ui->ignore_T->text().isEmpty())
        return Add_b_Click();
    screen::keyPressEvent(event);
}
