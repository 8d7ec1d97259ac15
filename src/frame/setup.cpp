#include "frame/setup.h"
#include "frame/account_list.h"
#include "frame/store.h"
#include "frame/text.h"

namespace {

bool has_columns_of_model(const QString &table)
{
    ado::Recordset found;
    ado::Recordset model;
    found.Open("select * from [" + table + ']', *session.store_connection);
    model.Open("select * from model_for_first", *session.store_connection);
    if (found.field_count() != model.field_count())
        return false;
    for (int column = 0; column < model.field_count(); ++column) {
        const ado::Field there = found.Fields(column);
        const ado::Field wanted = model.Fields(column);
        if (!same_text(there.Name(), wanted.Name()) || there.Type() != wanted.Type())
            return false;
    }
    return true;
}

void make_account_table(const QString &query)
{
    const QString sql = "select * into [" + query + "] from model_for_first";
    const quint32 number = error_of(sql);
    if (number == 0 || (number == ado::syntax_error && has_columns_of_model(query)))
        return;
    run_sql(sql); // fails once more, now up to the handler
}

}

bool is_installed()
{
    auto &rows = *session.shared_rs;
    rows.Open("select * from install_tbl", *session.store_connection);
    const bool installed = !rows.EOF_() && rows["install"].to_flag();
    rows.Close();
    return installed;
}

void finish_setup()
{
    for (const stored_account &each : stored_accounts())
        make_account_table(each.query);
    run_sql("update install_tbl set install=yes");
}
