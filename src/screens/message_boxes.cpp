#include "screens/message_boxes.h"

#include <QApplication>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace {

QWidget *window_in_front()
{
    QWidget *modal = QApplication::activeModalWidget();
    return modal ? modal : QApplication::activeWindow();
}

QMessageBox::Icon box_icon(message_icon icon)
{
    switch (icon) {
    case message_icon::information:
        return QMessageBox::Information;
    case message_icon::exclamation:
        return QMessageBox::Warning;
    case message_icon::question:
        return QMessageBox::Question;
    case message_icon::critical:
        return QMessageBox::Critical;
    case message_icon::none:
        break;
    }
    return QMessageBox::NoIcon;
}

std::optional<QString> ask_for_text(const message_box &box)
{
    QInputDialog dialog(window_in_front());
    dialog.setWindowTitle(box.title);
    dialog.setLabelText(box.text);
    dialog.findChild<QLabel *>()->setTextFormat(Qt::PlainText);
    dialog.setTextValue(box.proposal);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.textValue();
}

QMessageBox::StandardButtons box_buttons(message_kind kind)
{
    switch (kind) {
    case message_kind::yes_no:
        return QMessageBox::Yes | QMessageBox::No;
    case message_kind::ok_cancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    default:
        return QMessageBox::Ok;
    }
}

QMessageBox::StandardButton default_button(const message_box &box)
{
    if (box.kind != message_kind::yes_no)
        return QMessageBox::Ok;
    return box.no_is_default ? QMessageBox::No : QMessageBox::Yes;
}

}

std::optional<QString> message_boxes::show(const message_box &box)
{
    if (box.kind == message_kind::input)
        return ask_for_text(box);
    QMessageBox dialog(window_in_front());
    dialog.setWindowTitle(box.title);
    dialog.setTextFormat(Qt::PlainText); // texts may hold what came by mail
    dialog.setText(box.text);
    dialog.setInformativeText(box.beside);
    dialog.setIcon(box_icon(box.icon));
    dialog.setStandardButtons(box_buttons(box.kind));
    dialog.setDefaultButton(default_button(box));
    if (box.kind == message_kind::yes_no) {
        dialog.setEscapeButton(QMessageBox::No);
        dialog.button(QMessageBox::Yes)->setEnabled(box.yes_works);
    }
    const int answer = dialog.exec();
    if (answer == QMessageBox::Yes || answer == QMessageBox::Ok)
        return QString();
    return std::nullopt;
}
