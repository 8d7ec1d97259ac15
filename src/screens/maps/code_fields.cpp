#include "screens/maps/code_fields.h"
#include "frame/messages.h"
#include "maps/map_wizard.h"
#include "ui_code_fields.h"

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

// The two lists are one: a row of both is chosen, and they scroll together.
void follow(QListWidget &leader, QListWidget &follower)
{
    QObject::connect(&leader, &QListWidget::currentRowChanged, &follower,
                     [&follower](int row) { follower.setCurrentRow(row); });
    QObject::connect(leader.verticalScrollBar(), &QScrollBar::valueChanged, follower.verticalScrollBar(),
                     &QScrollBar::setValue);
}

}

code_fields::code_fields(QWidget *parent) : QWidget(parent), ui(std::make_unique<Ui::code_fields>())
{
    ui->setupUi(this);
    follow(*ui->desc_l, *ui->code_l);
    follow(*ui->code_l, *ui->desc_l);
    kind_Click();

    connect(ui->fixed_op, &QRadioButton::toggled, this, &code_fields::kind_Click);
    connect(ui->dynamic_op, &QRadioButton::toggled, this, &code_fields::kind_Click);
    connect(ui->add_b, &QPushButton::clicked, this, &code_fields::add_b_Click);
}

code_fields::~code_fields() = default;

void code_fields::set_choice(const maps::code_choice &choice)
{
    ui->fixed_op->setChecked(choice.kind == maps::fixed_values);
    ui->dynamic_op->setChecked(choice.kind == maps::generated_dynamically);
    ui->desc_l->addItems(choice.descriptions);
    ui->code_l->addItems(choice.codes);
    if (ui->fixed_op->isChecked())
        ui->desc_t->setFocus();
    else
        (ui->dynamic_op->isChecked() ? ui->dynamic_op : ui->fixed_op)->setFocus();
}

bool code_fields::fixed_is_set() const
{
    return ui->fixed_op->isChecked();
}

bool code_fields::dynamic_is_set() const
{
    return ui->dynamic_op->isChecked();
}

QStringList code_fields::descriptions() const
{
    return texts_of(*ui->desc_l);
}

QStringList code_fields::codes() const
{
    return texts_of(*ui->code_l);
}

void code_fields::focus_description()
{
    ui->desc_t->setFocus();
}

void code_fields::kind_Click()
{
    const bool fixed = ui->fixed_op->isChecked();
    const std::initializer_list<QWidget *> inputs{ui->desc_lb, ui->desc_t, ui->code_lb, ui->code_t,
                                                  ui->add_b,   ui->desc_l, ui->code_l};
    for (QWidget *input : inputs)
        input->setVisible(fixed);
    ui->about_l->setVisible(!fixed);
    ui->about_l->setText(ui->dynamic_op->isChecked() ? about_dynamic : about_neither);
}

void code_fields::add_b_Click()
{
    const QString description = ui->desc_t->text();
    const QString code = ui->code_t->text();
    const QString message = maps::why_no_code_value(description, code);
    if (!message.isEmpty()) {
        say(message);
        return (description.isEmpty() ? ui->desc_t : ui->code_t)->setFocus();
    }
    ui->desc_l->addItem(description);
    ui->code_l->addItem(code);
    ui->desc_l->scrollToBottom();
    ui->desc_t->clear();
    ui->code_t->clear();
    ui->desc_t->setFocus();
}

void code_fields::keyPressEvent(QKeyEvent *event)
{
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enters && (ui->desc_t->hasFocus() || ui->code_t->hasFocus()))
        add_b_Click();
    else
        QWidget::keyPressEvent(event);
}
