// Pictures of the autoresponder, on a usual and on the smallest console.
#include "screens/frame/menuFrm.h"
#include "screens/preferences/autoresponder.h"
#include "support/screens_album.h"
#include "support/screens_driver.h"
#include "support/screens_map_wizard.h"

#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

namespace {

void fill_reply(autoresponder &screen)
{
    control<QComboBox>(screen, "mapname_c").setCurrentIndex(1);
    type(screen, "subject_t", "Thank you for your order");
    type(screen, "prefix_t", "Order no.");
    type(screen, "token_t", "007");
    type(screen, "suffix_t", "at Rose Cottage Nursery");
    control<QComboBox>(screen, "dynamic_c").setCurrentIndex(1);
    control<QComboBox>(screen, "greetfield_c").setCurrentIndex(1);
    control<QPlainTextEdit>(screen, "autocontent_t")
        .setPlainText("We have your order and pack it within two days.\n\nEllen Marsh\nRose Cottage Nursery");
    control<QPushButton>(screen, "enable_b").click();
}

}

void picture_autoresponder(const album &pictures, menuFrm &console)
{
    const QSize usual = console.size();
    console.resize(1280, 800);
    the<autoresponder>().show();
    const bool has_maps = control<QComboBox>(the<autoresponder>(), "mapname_c").count() > 1;
    pictures.keep(console, has_maps ? "autoresponder-no-choice" : "autoresponder-empty");
    if (has_maps) {
        fill_reply(the<autoresponder>());
        for (const char *kind : {"standard_o", "dynamic_o", "token_o"}) {
            control<QRadioButton>(the<autoresponder>(), kind).click();
            pictures.keep(console, QString("autoresponder-") + kind);
        }
        the<autoresponder>().unload();
        console.resize(console.minimumSize());
        the<autoresponder>().show();
        fill_reply(the<autoresponder>());
        control<QRadioButton>(the<autoresponder>(), "token_o").click();
        pictures.keep(console, "autoresponder-smallest");
    }
    the<autoresponder>().unload();
    console.resize(usual);
}
