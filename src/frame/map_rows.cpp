#include "frame/map_rows.h"
#include "frame/store.h"
#include "frame/text.h"

namespace {

QStringList columns_of(const QString &table)
{
    ado::Recordset rows;
    rows.Open("select * from " + table, *session.store_connection);
    QStringList columns;
    for (int index = 0; index < rows.field_count(); ++index)
        columns += rows.Fields(index).Name();
    return columns;
}

}

void normalise_map_rows(const QString &table)
{
    for (const QString &column : columns_of(table)) {
        const QString upper = upper_case(column);
        if (upper != "TSL_RECDATE" && upper != "MESSAGE_ID")
            run_sql("update " + table + " set " + column + "='' where " + column + " is null");
    }
    run_sql("update " + table + " set tsl_recdate=now where  tsl_recdate is null");
    run_sql("update " + table + " set tsl_status='new' where  tsl_status is null or tsl_Status=''");
}
