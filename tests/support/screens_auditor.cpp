#include "support/screens_auditor.h"
#include "frame/store.h"

#include <QHeaderView>
#include <QTest>
#include <QToolButton>

void store_mail(screens_site &site, const QString &table, const QString &from, const QString &subject,
                const QString &date, const QString &body)
{
    site.store.run("insert into " + table + " (tsl_subject,tsl_recdate,tsl_Email,tsl_status,tsl_body) values(" +
                   quote_sql(subject) + ",'" + date + "'," + quote_sql(from) + ",'new'," + quote_sql(body) + ")");
}

auditor_site::auditor_site()
{
    store.add_account("orders", "orders@shop.example");
    store.add_account("contact", "hello@shop.example");
}

void auditor_site::store_mail(const QString &table, const QString &from, const QString &subject, const QString &date,
                              const QString &body)
{
    ::store_mail(*this, table, from, subject, date, body);
}

void auditor_site::store_mails(int count)
{
    for (int number = 0; number < count; ++number)
        store_mail("orders", "visitor" + QString::number(number) + "@mail.example", "Order " + QString::number(number));
}

void auditor_site::store_sent(const QString &to, const QString &subject, const QString &body)
{
    store.run("insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body,tsl_sentaccount,tsl_sentmailid) "
              "values(" +
              quote_sql(to) + "," + quote_sql(subject) + ",'8/7/2026 10:00:00 AM'," + quote_sql(body) +
              ",'orders','orders@shop.example')");
}

QStringList auditor_site::column(const QString &sql)
{
    QStringList texts;
    for (const QVariant &value : store.column(sql))
        texts += value.toString();
    return texts;
}

mailfrm &stored_mails_shown()
{
    session.no_fetch = true;
    the<mailfrm>().show();
    return the<mailfrm>();
}

mailfrm &sent_mails_shown()
{
    mailfrm &screen = stored_mails_shown();
    control<QToolButton>(screen, "sentitems_b").click();
    return screen;
}

QStringList column_texts(const list_view &list, int column)
{
    QStringList texts;
    for (int row = 0; row < list.model()->rowCount(); ++row)
        texts += list.model()->index(row, column).data().toString();
    return texts;
}

QStringList head_marks(const list_view &list)
{
    QStringList marks;
    for (int column = 0; column < list.model()->columnCount(); ++column)
        marks += list.model()->headerData(column, Qt::Horizontal, Qt::WhatsThisRole).toString();
    return marks;
}

void click_head(list_view &list, int column)
{
    QHeaderView &head = *list.header();
    const QPoint middle(head.sectionViewportPosition(column) + head.sectionSize(column) / 2, head.height() / 2);
    QTest::mouseClick(head.viewport(), Qt::LeftButton, {}, middle);
}

void click_row(list_view &list, int row, Qt::KeyboardModifiers keys)
{
    QTest::mouseClick(list.viewport(), Qt::LeftButton, keys, list.visualRect(list.model()->index(row, 0)).center());
}
