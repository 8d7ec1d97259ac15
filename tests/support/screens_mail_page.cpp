#include "support/screens_mail_page.h"
#include "screens/preferences/mail_client_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>

namespace page {

namespace {

template <typename T>
T &part(const char *name)
{
    return control<T>(the<mail_client_frm>(), name);
}

}

QLineEdit &field(const char *name)
{
    return part<QLineEdit>(name);
}

void type(const char *name, const QString &text)
{
    field(name).setFocus();
    field(name).selectAll();
    QTest::keyClick(&field(name), Qt::Key_Delete);
    QTest::keyClicks(&field(name), text);
}

void press(const char *button)
{
    part<QPushButton>(button).click();
}

void choose(const char *radio)
{
    part<QRadioButton>(radio).click();
}

void tick(const char *box)
{
    part<QCheckBox>(box).click();
}

void pick(const char *list, int line)
{
    auto &box = part<QComboBox>(list);
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Home);
    for (int at = 0; at < line; ++at)
        QTest::keyClick(&box, Qt::Key_Down);
}

void set_port(const char *field, int port)
{
    part<QSpinBox>(field).setValue(port);
}

QString label(const char *name)
{
    return part<QLabel>(name).text();
}

QString list_choice(const char *name)
{
    return part<QComboBox>(name).currentText();
}

QString steps()
{
    QStringList lines;
    auto &list = part<QListWidget>("steps_li");
    for (int row = 0; row < list.count(); ++row)
        lines += list.item(row)->data(Qt::AccessibleTextRole).toString();
    return lines.join(u'\n');
}

bool test_has_ended()
{
    return !part<QPushButton>("stop_b").isVisible();
}

}
