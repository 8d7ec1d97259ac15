#include "screens/maps/MapWRefcode_frm.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "maps/map_wizard.h"
#include "maps/reference_codes.h"
#include "ui_MapWRefcode_frm.h"

#include <QKeyEvent>
#include <QScrollBar>

namespace {

const char *const about_dynamic = "The value that comes with each mail is the code itself, such as the number of an "
                                  "order.";
const char *const about_neither = "With fixed options, each option of your form gets a code of its own. A dynamic code "
                                  "comes ready with the mail.";

QStringList texts_of(const QListWidget &list)
{
    QStringList texts;
    for (int row = 0; row < list.count(); ++row)
        texts += list.item(row)->text();
    return texts;
}

}

MapWRefcode_frm::MapWRefcode_frm(QWidget *parent) : wizard_screen(parent), ui(std::make_unique<Ui::MapWRefcode_frm>())
{
    ui->setupUi(this);
    show_inputs(false);

    connect(ui->fixed_op, &QRadioButton::toggled, this, &MapWRefcode_frm::fixed_op_Click);
    connect(ui->dynamic_op, &QRadioButton::toggled, this, &MapWRefcode_frm::fixed_op_Click);
    connect(ui->add_b, &QPushButton::clicked, this, &MapWRefcode_frm::add_b_Click);
    // The two lists are one: a row of both is chosen, and they scroll together.
    connect(ui->desc_l, &QListWidget::currentRowChanged, ui->code_l, qOverload<int>(&QListWidget::setCurrentRow));
    connect(ui->code_l, &QListWidget::currentRowChanged, ui->desc_l, qOverload<int>(&QListWidget::setCurrentRow));
    connect(ui->desc_l->verticalScrollBar(), &QScrollBar::valueChanged, ui->code_l->verticalScrollBar(),
            &QScrollBar::setValue);
    connect(ui->code_l->verticalScrollBar(), &QScrollBar::valueChanged, ui->desc_l->verticalScrollBar(),
            &QScrollBar::setValue);
    connect(ui->help_b, &QPushButton::clicked, this, &MapWRefcode_frm::help_b_Click);
    connect(ui->submit_b, &QPushButton::clicked, this, &MapWRefcode_frm::submit_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &MapWRefcode_frm::cancel_b_Click);
}

MapWRefcode_frm::~MapWRefcode_frm() = default;

void MapWRefcode_frm::Load()
{
    guarded("Mapwrefcode.frm", "form load", [this] {
        const maps::code_choice choice = maps::choice_of(changed_field);
        ui->fixed_op->setChecked(choice.kind == maps::fixed_values);
        ui->dynamic_op->setChecked(choice.kind == maps::generated_dynamically);
        ui->desc_l->addItems(choice.descriptions);
        ui->code_l->addItems(choice.codes);
    });
    if (ui->fixed_op->isChecked())
        ui->desc_t->setFocus();
    else
        (ui->dynamic_op->isChecked() ? ui->dynamic_op : ui->fixed_op)->setFocus();
}

void MapWRefcode_frm::fixed_op_Click()
{
    show_inputs(ui->fixed_op->isChecked());
}

void MapWRefcode_frm::show_inputs(bool shown)
{
    const std::initializer_list<QWidget *> inputs{ui->desc_lb, ui->desc_t, ui->code_lb, ui->code_t,
                                                  ui->add_b,   ui->desc_l, ui->code_l};
    for (QWidget *input : inputs)
        input->setVisible(shown);
    ui->about_l->setVisible(!shown);
    ui->about_l->setText(ui->dynamic_op->isChecked() ? about_dynamic : about_neither);
}

void MapWRefcode_frm::add_b_Click()
{
    const QString description = ui->desc_t->text();
    const QString code = ui->code_t->text();
    const QString message = maps::why_no_code_value(description, code);
    if (!message.isEmpty()) {
        say(message);
        (description.isEmpty() ? ui->desc_t : ui->code_t)->setFocus();
        return;
    }
    ui->desc_l->addItem(description);
    ui->code_l->addItem(code);
    ui->desc_l->scrollToBottom();
    ui->desc_t->clear();
    ui->code_t->clear();
    ui->desc_t->setFocus();
}

void MapWRefcode_frm::submit_b_Click()
{
    maps::submit_code(ui->fixed_op->isChecked(), texts_of(*ui->desc_l), texts_of(*ui->code_l));
    unload();
}

void MapWRefcode_frm::cancel_b_Click()
{
    maps::cancel_code();
    unload();
}

// Enter in one of the boxes adds the pair.
void MapWRefcode_frm::keyPressEvent(QKeyEvent *event)
{
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enters && (focusWidget() == ui->desc_t || focusWidget() == ui->code_t))
        add_b_Click();
    else
        wizard_screen::keyPressEvent(event);
}

QSize MapWRefcode_frm::sizeHint() const
{
    return {520, 420};
}
