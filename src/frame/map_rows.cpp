#include "frame/map_rows.h"
#include "frame/store.h"
#include "frame/text.h"

void normalise_map_rows(const QString &table)
{
    for (const QString &column : column_names(table)) {
        const QString upper = upper_case(column);
        if (upper != "TSL_RECDATE" && upper != "MESSAGE_ID")
            run_sql("update " + table + " set " + column + "='' where " + column + " is null");
    }
    run_sql("update " + table + " set tsl_recdate=now where  tsl_recdate is null");
    run_sql("update " + table + " set tsl_status='new' where  tsl_status is null or tsl_Status=''");
}
