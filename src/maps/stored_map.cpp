#include "maps/stored_map.h"
#include "frame/store.h"
#include "frame/text.h"
#include "intake/map_fit.h"
#include "maps/map_wizard.h"
#include "maps/sample_mails.h"

namespace maps {

namespace {

void read_codes(const QString &field_id, stored_field &field)
{
    ado::Recordset rows;
    rows.Open("select * from fcodes_tbl where fieldid=" + field_id, *session.store_connection);
    for (; !rows.EOF_(); rows.MoveNext()) {
        field.descriptions += rows["fielddesc"].text_or_empty();
        field.codes += rows["fieldcode"].text_or_empty();
    }
    rows.Close();
}

stored_field field_in(ado::Recordset &row)
{
    stored_field field;
    field.fname = row["fname"].text_or_empty();
    field.fposition = row["fposition"].text_or_empty();
    field.fignore = row["fignore"].text_or_empty();
    field.finclude = row["finclude"].to_flag();
    field.fcodegen = row["fcodegen"].is_null() ? int(no_code) : int(row["fcodegen"].to_number());
    if (field.fcodegen == fixed_values)
        read_codes(row["id"].to_text(), field);
    return field;
}

QString blanks(qsizetype count)
{
    return QString(qMax<qsizetype>(count, 0), u' ');
}

// At least one blank, so that a long entry does not run into the next column.
QString at_least_one(qsizetype count)
{
    return blanks(qMax<qsizetype>(count, 1));
}

QString yes_or_no(bool flag)
{
    return flag ? QStringLiteral("Yes") : QStringLiteral("No");
}

QString summary_line(const stored_field &field, bool is_code_field)
{
    const QString flag = yes_or_no(field.finclude);
    const QString texts = intake::supporting_texts(field.fignore).join(u',');
    return field.fposition + blanks(12 - field.fposition.size()) + field.fname + at_least_one(17 - field.fname.size()) +
           flag + blanks(19 - flag.size()) + texts + at_least_one(17 - texts.size()) + yes_or_no(is_code_field) +
           QStringLiteral("\r\n");
}

}

QStringList maps_of_account(const QString &account_table)
{
    QStringList names;
    const QString account = account_id_of(account_table);
    if (account.isEmpty())
        return names;
    ado::Recordset rows;
    rows.Open("select * from table_list_tbl where query_id=" + account, *session.store_connection);
    for (; !rows.EOF_(); rows.MoveNext())
        names += rows["table_name"].text_or_empty();
    rows.Close();
    return names;
}

stored_map read_map(const QString &name)
{
    stored_map map;
    ado::Recordset fields;
    fields.Open("select * from format_tbl where table_id=(select table_id from table_list_tbl where table_name=" +
                    quote_sql(name) + ")",
                *session.store_connection);
    for (; !fields.EOF_(); fields.MoveNext())
        map.fields.push_back(field_in(fields));
    fields.Close();
    ado::Recordset row;
    row.Open("select * from table_list_tbl where table_name=" + quote_sql(name), *session.store_connection);
    if (row.EOF_())
        return map;
    map.seperator = row["seperator"].text_or_empty();
    return map;
}

QString map_summary(const QString &account_table, const std::vector<stored_field> &fields, int code_field)
{
    QString summary = QStringLiteral("Enclosed are the set of fields mapped to account query ") + account_table +
                      QStringLiteral("\r\n"
                                     "Line no     Field name      Doesnt include     Ignore       Code field\r\n"
                                     "                                  field name \r\n") +
                      QString(74, u'*') + QStringLiteral("\r\n");
    for (size_t at = 0; at < fields.size(); ++at)
        summary += summary_line(fields[at], int(at) == code_field);
    return summary;
}

}
