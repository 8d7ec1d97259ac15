// A site for tests of the Mail Mapping Wizard: one account "orders", and the wizard standing before the save.
#pragma once
#include "frame/session.h"
#include "maps/field_entry.h"
#include "support/intake_site.h"

struct wizard_site : intake_site {
    explicit wizard_site(const QString &separator = QStringLiteral("Line"),
                         const QString &subject = QStringLiteral("Order"))
    {
        add_account("orders", "orders@example.org");
        maps::map_wizard = {};
        maps::map_wizard.mail_table = "orders";
        maps::map_wizard.mail_id = "1";
        maps::map_wizard.account_id = "1";
        maps::map_wizard.map_subject = subject;
        maps::map_wizard.map_separator = separator;
    }
    ~wizard_site() { maps::map_wizard = {}; }

    // As "Add this field" leaves it: piece from 1.
    void add_field(const QString &name, int piece, const QStringList &supporting_texts = {}) const
    {
        maps::keep_field(name, "Separator" + QString::number(piece), supporting_texts, {}, {}, false);
    }
    void add_coded_field(const QString &name, int piece, const QStringList &descriptions,
                         const QStringList &codes) const
    {
        maps::map_wizard.code_kind = maps::fixed_values;
        maps::map_wizard.code_values_set = true;
        maps::map_wizard.code_descs = descriptions;
        maps::map_wizard.code_codes = codes;
        maps::keep_field(name, "Separator" + QString::number(piece), {}, {}, {}, true);
    }
    QStringList columns_of(const QString &table) const
    {
        ado::Recordset rows;
        rows.Open("select * from [" + table + "]", *session.store_connection);
        QStringList names;
        for (int index = 0; index < rows.field_count(); ++index)
            names += rows.Fields(index).Name();
        return names;
    }
};
