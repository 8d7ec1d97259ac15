#include "intake/map_reading.h"
#include "frame/store.h"
#include "frame/text.h"

namespace intake {

namespace {

void read_fields(const QString &table_id, mail_map &map)
{
    auto &rows = *session.format_rs;
    rows.Open("select * from format_tbl where table_id=" + table_id, *session.store_connection);
    for (; !rows.EOF_(); rows.MoveNext()) {
        map.fields.push_back({rows["fname"].text_or_empty(), piece_number(rows["fposition"].text_or_empty()),
                              supporting_texts(rows["fignore"].text_or_empty()), rows["finclude"].to_flag()});
    }
    rows.Close();
}

QStringList columns_of(const QString &table)
{
    QStringList columns;
    for (const QString &name : column_names(table))
        columns += upper_case(name);
    return columns;
}

}

mail_map read_mail_map(ado::Recordset &row)
{
    mail_map map;
    map.table_name = row["table_name"].text_or_empty();
    map.separator = cutting_separator(row["seperator"].text_or_empty());
    map.subject = row["subject"].text_or_empty();
    read_fields(row["table_id"].text_or_empty(), map);
    return map;
}

mail_map mail_map_named(const QString &table_name)
{
    ado::Recordset row;
    row.Open("select * from table_list_tbl where table_name=" + quote_sql(table_name), *session.store_connection);
    return read_mail_map(row);
}

QString field_without_column(const mail_map &map)
{
    const QStringList every_maps = columns_of(QStringLiteral("model_tbl"));
    const QStringList present = columns_of(map.table_name);
    for (const map_field &field : map.fields) {
        const QString column = upper_case(trim(field.name));
        if (every_maps.contains(column) || !present.contains(column))
            return field.name;
    }
    return {};
}

}
