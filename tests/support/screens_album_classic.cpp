// Pictures of the page "Map mails", of "MapMail" and of its two companions, with a map that the Mail Mapping Wizard has
// made before (screens_album_maps.cpp).
#include "frame/session.h"
#include "screens/frame/menuFrm.h"
#include "screens/list_view.h"
#include "screens/maps/Ignore.h"
#include "screens/maps/fcodes_frm.h"
#include "screens/maps/mapmail_frm.h"
#include "screens/preferences/Format_mail_frm.h"
#include "support/screens_album.h"
#include "support/screens_map_wizard.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>

namespace {

struct classic_pictures {
    const album &pictures;
    menuFrm &console;
    QString size; // "" or "-small"

    void keep(const QString &name) const { pictures.keep(console, name + size); }
    void keep_modal(const QString &name) const { pictures.keep(*QApplication::activeModalWidget(), name + size); }
};

void store_orders()
{
    for (int number = 1; number <= 9; ++number) {
        session.store_connection->Execute(
            "insert into orders (tsl_subject,tsl_recdate,tsl_Email,tsl_status,tsl_body) values('Order " +
            QString::number(1000 + number) + "','8/1" + QString::number(number) +
            "/2026 10:00:00 AM','ann@mail.example','new','Name: Zo\u00eb Kr\u00e4mer\r\nCity: K\u00f6ln\r\nItem: "
            "Lavender, blue\r\nQuantity: 12')");
    }
}

void picture_raw_mails(const classic_pictures &taken)
{
    auto &page = the<Format_mail_frm>();
    page.show();
    taken.keep("Format_mail_frm");
    auto &accounts = control<QComboBox>(page, "query_c");
    accounts.setCurrentText("contact");
    taken.keep("Format_mail_frm-no-mails");
    accounts.setCurrentText("orders");
    auto &mails = control<list_view>(page, "inbox_lv");
    mails.setCurrentIndex(mails.model()->index(2, 0));
    taken.keep("Format_mail_frm-chosen");
    press<Format_mail_frm>("open_b");
}

void picture_companions(const classic_pictures &taken)
{
    in_modal<Ignore>([&taken](Ignore &texts) {
        control<QListWidget>(texts, "ignore_l").setCurrentRow(0);
        type(texts, "ignore_T", "!");
        taken.keep_modal("Ignore");
        texts.unload();
    });
    press<mapmail_frm>("Command6");
    in_modal<fcodes_frm>([&taken](fcodes_frm &codes) {
        taken.keep_modal("fcodes_frm");
        codes.unload();
    });
    press<mapmail_frm>("values_b");
}

void picture_fields(const classic_pictures &taken)
{
    taken.keep("mapmail_frm");
    auto &maps_there = control<QComboBox>(the<mapmail_frm>(), "sformats_c");
    maps_there.setCurrentText("garden_orders");
    emit maps_there.activated(maps_there.currentIndex());
    taken.keep("mapmail_frm-field");
    picture_companions(taken); // the field added last stands first: it has the codes
    press<mapmail_frm>("next_b");
    press<mapmail_frm>("next_b");
    press<mapmail_frm>("next_b");
    taken.keep("mapmail_frm-new");
    the<mapmail_frm>().unload();
}

}

void picture_classic_maps(const album &pictures, menuFrm &console)
{
    const QSize usual = console.size();
    store_orders();
    for (const char *size : {"", "-small"}) {
        console.resize(*size ? console.minimumSize() : QSize(1280, 800));
        const classic_pictures taken{pictures, console, size};
        picture_raw_mails(taken);
        picture_fields(taken);
    }
    console.resize(usual);
}
