#include "support/screens_map_wizard.h"
#include "screens/exact_text.h"
#include "screens/list_view.h"
#include "screens/maps/MapWStep4_Add_frm.h"
#include "screens/maps/MapWizardPView_frm.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "screens/maps/mapWizardStep3_frm.h"
#include "screens/maps/mapwizardsave_frm.h"

#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

namespace {

QString literal(const QString &text)
{
    return "'" + QString(text).replace("'", "''") + "'";
}

void ignore_text(MapWStep4_Add_frm &screen, const QString &text)
{
    auto &value = control<exact_text>(screen, "fieldval_t");
    const qsizetype at = value.text().indexOf(text);
    if (at < 0)
        qFatal("The value does not hold %s", qPrintable(text));
    value.select({at, text.size()});
    control<QPushButton>(screen, "ignore_b").click();
}

}

map_wizard_site::map_wizard_site() : account(store.add_account("orders", "orders@shop.example"))
{
    maps::map_wizard = {};
    store_mail("orders", "Order", order_body, "8/13/2026 10:00:00 AM");
    store_mail("orders", "Order", "Name: Bob Reed\r\nCity: Cork\r\nItem: Sage\r\nQuantity: 3\r\n",
               "8/9/2026 11:00:00 AM", "bob@mail.example");
    store_mail("orders", "Which roses?", "Do they grow in the shade?", "12/1/2025 9:00:00 PM", "eve@mail.example");
    store_mail("orders", "order ", "Name: Kim\r\nCity: Ulm\r\nItem: Thyme\r\nQuantity: 1\r\n", "8/14/2026 9:00:00 AM",
               "kim@mail.example");
}

void map_wizard_site::store_mail(const QString &table, const QString &subject, const QString &body,
                                 const QString &received, const QString &from)
{
    store.run("insert into " + table +
              " (tsl_subject,tsl_recdate,tsl_Email,tsl_Status,tsl_body,tsl_processed) values(" + literal(subject) +
              "," + literal(received) + "," + literal(from) + ",'new'," + literal(body) + ",no)");
}

void type(QWidget &screen, const char *line_edit, const QString &text)
{
    auto &field = control<QLineEdit>(screen, line_edit);
    field.setFocus();
    field.selectAll();
    field.insert(text); // also letters that no key stands for
}

void choose_sample(const QString &subject)
{
    the<mapWizardStep3_frm>().show();
    auto &list = control<list_view>(the<mapWizardStep3_frm>(), "inbox_lv");
    const QModelIndexList found =
        list.model()->match(list.model()->index(0, 1), Qt::DisplayRole, subject, 1, Qt::MatchExactly);
    if (found.isEmpty())
        qFatal("There is no sample %s", qPrintable(subject));
    list.setCurrentIndex(found.first());
    press<mapWizardStep3_frm>("Open_b");
}

void open_cutting(map_wizard_site &site, const QString &table, qint64 message_id)
{
    maps::map_wizard.mail_table = table;
    maps::map_wizard.mail_id = QString::number(message_id);
    maps::map_wizard.account_id = QString::number(site.account);
    maps::map_wizard.map_subject =
        site.store.cell("select tsl_subject from " + table + " where message_id=" + QString::number(message_id));
    the<MapWizardStep4_frm>().show();
}

void cut_by_lines()
{
    control<QRadioButton>(the<MapWizardStep4_frm>(), "seplines_op").click();
    press<MapWizardStep4_frm>("next_b");
}

void cut_by(const QString &separator_caption)
{
    control<QRadioButton>(the<MapWizardStep4_frm>(), "allval_op").click();
    auto &choice = control<QComboBox>(the<MapWizardStep4_frm>(), "allval_c");
    choice.setCurrentIndex(choice.findText(separator_caption));
    press<MapWizardStep4_frm>("next_b");
}

void add_field(const QString &name, int piece, const QStringList &ignored)
{
    type(the<MapWizardStep4_frm>(), "field_t", name);
    if (piece > 0)
        control<QComboBox>(the<MapWizardStep4_frm>(), "Line_c").setCurrentIndex(piece - 1);
    in_modal<MapWStep4_Add_frm>([&ignored](MapWStep4_Add_frm &screen) {
        for (const QString &text : ignored)
            ignore_text(screen, text);
        control<QPushButton>(screen, "save_b").click();
    });
    press<MapWizardStep4_frm>("next_b");
}

void finish_as(const QString &map_name)
{
    in_modal<MapWizardPView_frm>([&map_name](MapWizardPView_frm &preview) {
        in_modal<mapwizardsave_frm>([&map_name](mapwizardsave_frm &save) {
            type(save, "mapname_t", map_name);
            control<QPushButton>(save, "save_b").click();
        });
        control<QPushButton>(preview, "save_b").click();
    });
    press<MapWizardStep4_frm>("finish_b");
}

QStringList added_fields()
{
    QStringList rows;
    for (const maps::added_field &field : maps::map_wizard.MapWHiddenA_frm) {
        rows +=
            QStringList{field.fieldname, field.position, field.ignore, QString::number(field.code), field.value}.join(
                '|');
    }
    return rows;
}
