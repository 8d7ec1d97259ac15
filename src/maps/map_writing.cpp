#include "maps/map_writing.h"
#include "frame/checks.h"
#include "frame/store.h"
#include "frame/text.h"
#include "intake/map_parser.h"
#include "maps/map_wizard.h"
#include "platform/outside_effects.h"

#include <algorithm>

namespace maps {

namespace {

constexpr int widest_text = 255; // of a text column of the store

void insert_map(const QString &name)
{
    run_sql("insert into table_list_tbl (table_name,date_created,query_id,lastformat,seperator,subject) values(" +
            quote_sql(name) + ",date()," + map_wizard.account_id + ",yes," + quote_sql(map_wizard.map_separator) + "," +
            quote_sql(map_wizard.map_subject) + ")");
}

void insert_codes(const QString &fieldname)
{
    const QString field_id = first_value("select max(id) from format_tbl").to_text();
    for (const code_value &value : map_wizard.MapWHiddenR_frm) {
        if (value.fieldname == fieldname) {
            run_sql("insert into fcodes_tbl (fieldID,fielddesc,fieldCODE) values(" + field_id + "," +
                    quote_sql(value.description) + "," + quote_sql(value.code) + ")");
        }
    }
}

void write_field(const QString &name, const QString &table_id, const added_field &field)
{
    run_sql("insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) values(" +
            quote_sql(field.fieldname) + "," + quote_sql(field.position) + "," + quote_sql(field.ignore) + ",yes," +
            table_id + "," + QString::number(field.code) + ")");
    if (field.code == fixed_values)
        insert_codes(field.fieldname);
    run_sql("alter table " + name + " add column " + field.fieldname + " text(255)");
}

bool is_known_map(const QString &name)
{
    ado::Recordset rows;
    rows.Open("select  table_name from table_list_tbl", *session.store_connection);
    for (; !rows.EOF_(); rows.MoveNext()) {
        if (same_text(rows[0].text_or_empty(), name))
            return true;
    }
    return false;
}

bool fits_a_column(const QString &text)
{
    return trim(text).size() <= widest_text;
}

}

std::optional<map_name_fault> why_no_map_name(QString &name)
{
    if (!name_passes(name))
        return map_name_fault{QStringLiteral("Invalid query name. Special characters, keywords not allowed"),
                              message_icon::critical};
    if (is_known_map(name)) {
        return map_name_fault{
            QStringLiteral(
                "This map already exists. Please provide another name. If you want to use the new map for this format of "
                "\r\nmail in the future, you need to delete the old map first from the database Manager. To do this, import"
                "\r\n the existing map's data into the new map before deleting, or you will loose all data stored in that "
                "map. "),
            message_icon::exclamation};
    }
    return std::nullopt;
}

QString why_save_would_fail()
{
    if (!fits_a_column(map_wizard.map_subject)) {
        return QStringLiteral("This map cannot be saved: the subject of its mail is longer than %1 characters.")
            .arg(widest_text);
    }
    const QStringList fixed = column_names(QStringLiteral("model_tbl"));
    for (const added_field &field : map_wizard.MapWHiddenA_frm) {
        if (!fits_a_column(field.fieldname))
            return QStringLiteral("This map cannot be saved whole: the name of a field is too long.");
        if (fixed.contains(field.fieldname, Qt::CaseInsensitive)) {
            return QStringLiteral("This map cannot be saved whole: every map has a column %1 of its own.")
                .arg(field.fieldname);
        }
    }
    for (const code_value &value : map_wizard.MapWHiddenR_frm) {
        if (!fits_a_column(value.description) || !fits_a_column(value.code)) {
            return QStringLiteral("This map cannot be saved whole: a reference code of the field %1 is too long.")
                .arg(value.fieldname);
        }
    }
    return {};
}

void write_map(const QString &name)
{
    {
        // A kill between two fields would leave a map that looks whole, and takes mails with a part of its fields.
        const held_commits together;
        insert_map(name);
        const QString table_id = first_value("select max(table_id) from table_list_tbl").to_text();
        run_sql("select * into " + name + " from model_tbl");
        // From last to first: the columns stand in the reverse of the order of adding, on purpose.
        const auto &fields = map_wizard.MapWHiddenA_frm;
        std::for_each(fields.rbegin(), fields.rend(),
                      [&](const added_field &field) { write_field(name, table_id, field); });
    }
    map_wizard.map_name = name;
    before_outside_effect();
}

bool bring_mails_over(const QString &name)
{
    const QString account_table =
        first_value("select table_name from email_tbl where id=" + map_wizard.account_id).to_text();
    // In this order: what the new map takes is marked before the parser looks, and so gets no automatic answer.
    const bool remapped = intake::remap_account_mails(account_table, name);
    const bool parsed = intake::parse_unprocessed_mails();
    return remapped && parsed;
}
}
