#include "screens/preferences/password_edit.h"

#include <QAccessibleWidget>

namespace {

class silent_field : public QAccessibleWidget {
public:
    explicit silent_field(password_edit *field) : QAccessibleWidget(field, QAccessible::EditableText) {}

    QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Value)
            return QAccessibleWidget::text(kind);
        return QString(static_cast<password_edit *>(widget())->text().size(), u'\u2022');
    }
    void setText(QAccessible::Text kind, const QString &text) override
    {
        if (kind == QAccessible::Value)
            static_cast<password_edit *>(widget())->setText(text);
        else
            QAccessibleWidget::setText(kind, text);
    }
    QAccessible::State state() const override
    {
        QAccessible::State known = QAccessibleWidget::state();
        known.passwordEdit = true;
        known.editable = true;
        return known;
    }
};

QAccessibleInterface *silent_interface(const QString &, QObject *object)
{
    auto *field = qobject_cast<password_edit *>(object);
    return field ? new silent_field(field) : nullptr;
}

}

password_edit::password_edit(QWidget *parent) : QLineEdit(parent)
{
    QAccessible::installFactory(silent_interface); // once; Qt knows it already after that
    setEchoMode(QLineEdit::Password);
}
