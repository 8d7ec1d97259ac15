// Pictures of the Mail Mapping Wizard, on a usual and on the smallest console.
#include "frame/session.h"
#include "screens/exact_text.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/mailfrm.h"
#include "screens/list_view.h"
#include "screens/maps/MapWRefcode_frm.h"
#include "screens/maps/MapWStep4_Add_frm.h"
#include "screens/maps/MapWizardFinalStep_frm.h"
#include "screens/maps/MapWizardPView_frm.h"
#include "screens/maps/MapWizardStep1_frm.h"
#include "screens/maps/MapWizardStep2_frm.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "screens/maps/mapWizardStep3_frm.h"
#include "screens/maps/mapwizardsave_frm.h"
#include "screens/maps/textarea_frm.h"
#include "support/screens_album.h"
#include "support/screens_map_wizard.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

namespace {

struct wizard_pictures {
    const album &pictures;
    menuFrm &console;
    QString size; // "" or "-small"

    void keep(const QString &name) const { pictures.keep(console, name + size); }
    void keep_modal(const QString &name) const { pictures.keep(*QApplication::activeModalWidget(), name + size); }
};

template <typename T>
void click(T &screen, const char *button)
{
    control<QAbstractButton>(screen, button).click();
}

void picture_first_steps(const wizard_pictures &taken)
{
    the<MapWizardStep1_frm>().show();
    taken.keep("MapWizardStep1_frm");
    press<MapWizardStep1_frm>("next_b");
    taken.keep("MapWizardStep2_frm");
    auto &accounts = control<list_view>(the<MapWizardStep2_frm>(), "inbox_lv");
    accounts.setCurrentIndex(accounts.model()->index(0, 0));
    press<MapWizardStep2_frm>("Edit_b");
    taken.keep("MapWizardStep2_frm-editing");
    the<MapWizardStep2_frm>().unload();
    the<mapWizardStep3_frm>().show();
    taken.keep("mapWizardStep3_frm");
    auto &mails = control<list_view>(the<mapWizardStep3_frm>(), "inbox_lv");
    mails.model()->sort(2, Qt::DescendingOrder);
    mails.setCurrentIndex(mails.model()->index(3, 0));
    taken.keep("mapWizardStep3_frm-chosen");
    press<mapWizardStep3_frm>("Open_b");
}

void picture_cutting(const wizard_pictures &taken)
{
    taken.keep("MapWizardStep4_frm-a");
    click(the<MapWizardStep4_frm>(), "allval_op");
    taken.keep("MapWizardStep4_frm-a-separator");
    in_modal<textarea_frm>([&taken](textarea_frm &note) {
        taken.keep_modal("textarea_frm");
        click(note, "ok_b");
    });
    press<MapWizardStep4_frm>("textarea_b");
    cut_by("Colon(:)");
    taken.keep("MapWizardStep4_frm-b-separator");
    auto &positions = control<QComboBox>(the<MapWizardStep4_frm>(), "Line_c");
    positions.showPopup();
    taken.pictures.keep(*positions.view()->window(), "MapWizardStep4_frm-b-positions" + taken.size);
    positions.hidePopup();
}

void picture_adding(const wizard_pictures &taken)
{
    type(the<MapWizardStep4_frm>(), "field_t", "first_name");
    taken.keep("MapWizardStep4_frm-b");
    in_modal<MapWStep4_Add_frm>([&taken](MapWStep4_Add_frm &screen) {
        taken.keep_modal("MapWStep4_Add_frm");
        auto &value = control<exact_text>(screen, "fieldval_t");
        value.select({0, 6});
        taken.keep_modal("MapWStep4_Add_frm-selected");
        click(screen, "ignore_b");
        taken.keep_modal("MapWStep4_Add_frm-ignored");
        value.selectAll();
        click(screen, "ignore_b");
        taken.keep_modal("MapWStep4_Add_frm-nothing-left");
        click(screen, "cancel_b");
    });
    press<MapWizardStep4_frm>("next_b");
    add_field("first_name", 1, {"Name: "});
    add_field("city", 2, {"City: "});
    control<QCheckBox>(the<MapWizardStep4_frm>(), "code_ch").setChecked(true);
    in_modal<MapWRefcode_frm>([&taken](MapWRefcode_frm &screen) {
        taken.keep_modal("MapWRefcode_frm");
        click(screen, "dynamic_op");
        taken.keep_modal("MapWRefcode_frm-dynamic");
        click(screen, "fixed_op");
        for (int number = 1; number <= 4; ++number) {
            type(screen, "desc_t", "Lavender, blue, plant " + QString::number(number));
            type(screen, "code_t", "L" + QString::number(number));
            click(screen, "add_b");
        }
        taken.keep_modal("MapWRefcode_frm-fixed");
        click(screen, "submit_b");
    });
    press<MapWizardStep4_frm>("Values_b");
    type(the<MapWizardStep4_frm>(), "field_t", "item");
    control<exact_text>(the<MapWizardStep4_frm>(), "body_t").select({0, 4});
    taken.keep("MapWizardStep4_frm-b-code");
    add_field("item", 3, {"Item: "});
}

void picture_end(const wizard_pictures &taken, const QString &map_name)
{
    in_modal<MapWizardPView_frm>([&taken](MapWizardPView_frm &preview) {
        taken.keep_modal("MapWizardPView_frm");
        click(preview, "ok_b");
    });
    press<MapWizardStep4_frm>("pfields_b");
    in_modal<MapWizardPView_frm>([&taken, &map_name](MapWizardPView_frm &preview) {
        taken.keep_modal("MapWizardPView_frm-finish");
        const QString subject = maps::map_wizard.map_subject;
        maps::map_wizard.map_subject = QString("s").repeated(300);
        in_modal<mapwizardsave_frm>([&taken](mapwizardsave_frm &save) {
            taken.keep_modal("mapwizardsave_frm-warning");
            click(save, "cancel_b");
        });
        the<mapwizardsave_frm>().show_modal();
        maps::map_wizard.map_subject = subject;
        in_modal<mapwizardsave_frm>([&taken, &map_name](mapwizardsave_frm &save) {
            type(save, "mapname_t", map_name);
            taken.keep_modal("mapwizardsave_frm");
            click(save, "save_b");
        });
        click(preview, "save_b");
    });
    press<MapWizardStep4_frm>("finish_b");
    taken.keep("MapWizardFinalStep_frm");
    the<MapWizardFinalStep_frm>().unload();
}

void picture_without_fields(const wizard_pictures &taken)
{
    in_modal<MapWizardPView_frm>([&taken](MapWizardPView_frm &preview) {
        taken.keep_modal("MapWizardPView_frm-empty");
        click(preview, "ok_b");
    });
    press<MapWizardStep4_frm>("pfields_b");
}

void picture_wizard(const wizard_pictures &taken, const QString &map_name)
{
    picture_first_steps(taken);
    picture_cutting(taken);
    picture_without_fields(taken);
    the<MapWizardStep4_frm>().unload();
    choose_sample("Order 1001");
    cut_by_lines();
    picture_adding(taken);
    picture_end(taken, map_name);
}

}

void picture_map_wizard(const album &pictures, menuFrm &console)
{
    if (is_loaded<mailfrm>())
        the<mailfrm>().unload();
    const QSize usual = console.size();
    console.resize(1280, 800);
    picture_wizard({pictures, console, ""}, "garden_orders");
    console.resize(console.minimumSize());
    picture_wizard({pictures, console, "-small"}, "more_orders");
    session.store_connection->Execute("delete from orders");
    session.store_connection->Execute("delete from contact");
    for (const char *size : {"", "-small"}) {
        console.resize(*size ? console.minimumSize() : QSize(1280, 800));
        the<mapWizardStep3_frm>().show();
        pictures.keep(console, QString("mapWizardStep3_frm-empty") + size);
        the<mapWizardStep3_frm>().unload();
    }
    console.resize(usual);
}
