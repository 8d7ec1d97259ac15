#include "screens/wizard_band.h"

#include <QGridLayout>
#include <QLabel>

wizard_band::wizard_band(QWidget *parent)
    : QFrame(parent), title_l(new QLabel(this)), hint_l(new QLabel(this)), step_l(new QLabel(this))
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    title_l->setObjectName("wizard_title_l");
    hint_l->setObjectName("wizard_hint_l");
    step_l->setObjectName("wizard_step_l");
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.4);
    large.setBold(true);
    title_l->setFont(large);
    title_l->setTextFormat(Qt::PlainText);
    hint_l->setTextFormat(Qt::PlainText);
    hint_l->setWordWrap(true);
    hint_l->hide();
    step_l->setTextFormat(Qt::PlainText);
    auto *places = new QGridLayout(this);
    places->addWidget(title_l, 0, 0);
    places->addWidget(step_l, 0, 1, Qt::AlignRight | Qt::AlignVCenter);
    places->addWidget(hint_l, 1, 0, 1, 2);
    places->setColumnStretch(0, 1);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
}

QString wizard_band::title() const
{
    return title_l->text();
}

QString wizard_band::hint() const
{
    return hint_l->text();
}

QString wizard_band::step() const
{
    return step_l->text();
}

void wizard_band::set_title(const QString &text)
{
    title_l->setText(text);
}

void wizard_band::set_hint(const QString &text)
{
    hint_l->setText(text);
    hint_l->setVisible(!text.isEmpty());
}

void wizard_band::set_step(const QString &text)
{
    step_l->setText(text);
}
