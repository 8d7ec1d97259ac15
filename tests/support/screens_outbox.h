// The Outbox in tests: mails for it, its rows, its controls.
#pragma once
#include "platform/mail_delivery.h"
#include "platform/outbox.h"
#include "screens/frame/outbox_frm.h"
#include "screens/list_view.h"
#include "support/maildir_files.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <algorithm>

namespace outbox_hands {

inline void hand_over(const QString &to, const QString &subject, const QString &text = QStringLiteral("Hello"),
                      outbox::mail_kind kind = outbox::mail_kind::single)
{
    outbox::outgoing_mail mail;
    mail.Kind = kind;
    mail.SendingAccount = QStringLiteral("shop@shop.example");
    mail.To = QStringList{to};
    mail.Subject = subject;
    mail.body = text;
    outbox::hand_over(mail);
}

// Refused ones; by copying, so quickly.
inline void hand_over_many(const screens_site &site, int count)
{
    hand_over(QStringLiteral("nobody"), QStringLiteral("Order 1"));
    const QString model = outbox::contents().at(0).id;
    const QByteArray eml = outbox::bytes_of(model);
    const QByteArray state = bytes_of_file(site.file("outbox/" + model + ".json"));
    const auto write = [&site](const QString &name, const QByteArray &bytes) {
        QFile file(site.file("outbox/" + name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("a mail of the test cannot be written");
    };
    for (int number = 1; number < count; ++number) {
        const QString id = QStringLiteral("1767268800%1-a").arg(number, 6, 10, QChar(u'0'));
        write(id + ".eml", eml);
        write(id + ".json", state);
    }
}

inline list_view &rows()
{
    return control<list_view>(the<outbox_frm>(), "LV_outbox");
}

inline QString cell(int row, int column)
{
    return rows().model()->index(row, column).data().toString();
}

inline int row_count()
{
    return rows().model()->rowCount();
}

inline void select(int row)
{
    rows().setCurrentIndex(rows().model()->index(row, 0));
}

// To whom, from the top down.
inline QStringList selected()
{
    QModelIndexList lines = rows().selectionModel()->selectedRows();
    std::sort(lines.begin(), lines.end());
    QStringList to;
    for (const QModelIndex &line : lines)
        to += line.data().toString();
    return to;
}

inline QPushButton &button(const char *name)
{
    return control<QPushButton>(the<outbox_frm>(), name);
}

inline QString summary()
{
    return control<QLabel>(the<outbox_frm>(), "summary_l").text();
}

inline QString shown_reason()
{
    return control<QLabel>(the<outbox_frm>(), "why_l").text();
}

inline QString shown_text()
{
    return control<QPlainTextEdit>(the<outbox_frm>(), "text_t").toPlainText();
}

// As when it went out: it is gone, and the list follows what the delivery tells.
inline void send_away(const QString &to)
{
    for (const outbox::kept_mail &mail : outbox::contents())
        if (mail.To == QStringList{to})
            outbox::discard(mail.id);
    the<outbox_frm>().delivery_told({});
    QMetaObject::invokeMethod(&control<QTimer>(the<outbox_frm>(), "Timer1"), "timeout");
}

}
