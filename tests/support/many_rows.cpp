#include "support/many_rows.h"
#include <algorithm>

QString padded(int number)
{
    return QString::number(number).rightJustified(5, u'0');
}

QString mixed(int number)
{
    return padded(number * 7919 % many_rows);
}

std::unique_ptr<test_store> empty_orders()
{
    auto store = std::make_unique<test_store>();
    store->add_account("orders", "orders@shop.example");
    store->add_account("sales", "sales@shop.example");
    return store;
}

void fill_orders(test_store &store)
{
    for (int number = 1; number <= many_rows; ++number)
        store.run("insert into orders(tsl_subject,tsl_Email,tsl_Status,tsl_recdate,tsl_body) values('" +
                  padded(number) + "','" + mixed(number) + "','" + QString::number(number % 10) +
                  "','8/13/2026 1:02:03 PM','" + QString(200, 'x') + "')");
}

QStringList numbers_where(const std::function<bool(int)> &wanted)
{
    QStringList numbers;
    for (int number = 1; number <= many_rows; ++number)
        if (wanted(number))
            numbers += padded(number);
    return numbers;
}

QString first_text(ado::Recordset &rows)
{
    return rows[0].is_null() ? QString("-") : rows[0].to_text();
}

QStringList forward(ado::Recordset &rows)
{
    QStringList texts;
    for (rows.MoveFirst(); !rows.EOF_(); rows.MoveNext())
        texts += first_text(rows);
    return texts;
}

QStringList backward(ado::Recordset &rows)
{
    QStringList texts;
    for (rows.MoveLast(); !rows.BOF(); rows.MovePrevious())
        texts += first_text(rows);
    return texts;
}

QStringList reversed(QStringList texts)
{
    std::reverse(texts.begin(), texts.end());
    return texts;
}

void go_to(ado::Recordset &rows, int number)
{
    for (rows.MoveFirst(); number > 1; --number)
        rows.MoveNext();
}

void open_rows(ado::Recordset &rows, const QString &sql, test_store &store, bool live)
{
    rows.Open(sql, store.connection(), live ? ado::cursor_type::keyset : ado::cursor_type::static_,
              live ? ado::lock_type::optimistic : ado::lock_type::read_only);
}
