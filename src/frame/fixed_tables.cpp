#include "frame/fixed_tables.h"
#include "frame/text.h"

#include <algorithm>

const QStringList &fixed_tables()
{
    static const QStringList tables =
        QStringLiteral("install_tbl autofetch lastdate email_tbl table_list_tbl format_tbl fcodes_tbl autocontent "
                       "sentitems_tbl match_tbl mail_list_tbl mlist_details_tbl printreport_tbl mlistprintreport_tbl "
                       "mlistreportbody_tbl sign unsubscribe_tbl unsub_detail unsub_entryno unsub_msg unsubconfirm_tbl "
                       "form_tbl final_form_tbl form_sup_tbl form_links_tbl fnames_tbl felements_tbl htmlform_tbl "
                       "meta_tbl host_details lbl_save formula_tbl LabelSpec model_for_first model_tbl")
            .split(u' ');
    return tables;
}

bool harms_fixed_table(const QString &name)
{
    const auto is_name = [&name](const QString &table) {
        return same_text(name, table) || same_text(name, QString(table + QStringLiteral("_old")));
    };
    return std::any_of(fixed_tables().begin(), fixed_tables().end(), is_name);
}
