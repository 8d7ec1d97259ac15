// The Mail Auditor in tests: stored and sent mails, its lists, and its rows clicked.
#pragma once
#include "screens/intake/Showdetails.h"
#include "screens/intake/mailfrm.h"
#include "screens/list_view.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

void store_mail(screens_site &site, const QString &table, const QString &from, const QString &subject,
                const QString &date, const QString &body = "Text");

// Two accounts, "orders" and "contact", without mails.
struct auditor_site : screens_site {
    auditor_site();
    void store_mail(const QString &table, const QString &from, const QString &subject,
                    const QString &date = "8/6/2026 9:00:00 AM", const QString &body = "Text");
    void store_mails(int count); // in "orders": from visitor0@mail.example, "Order 0", and so on
    void store_sent(const QString &to, const QString &subject, const QString &body = "Body of it");
    QStringList column(const QString &sql);
};

mailfrm &stored_mails_shown(); // nothing is fetched
mailfrm &sent_mails_shown();
QStringList column_texts(const list_view &list, int column);
QStringList head_marks(const list_view &list);
void click_head(list_view &list, int column);
void click_row(list_view &list, int row, Qt::KeyboardModifiers keys = {});
