// "MapMail" in tests: a saved map of three fields beside one stored mail, and its companions driven through their
// controls.
#pragma once
#include "maps/map_wizard.h"
#include "screens/maps/mapmail_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QComboBox>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

// An account "orders" with the map "clients" of three fields, the second with fixed codes, the third a dynamic one.
struct classic_site {
    screens_site screens;

    classic_site()
    {
        test_store &store = screens.store;
        const qint64 account = store.add_account("orders", "orders@shop.example");
        store.run("insert into orders (tsl_subject,tsl_recdate,tsl_Email,tsl_status,tsl_body) "
                  "values('Order','1/2/2026','zoe@home.example','new','Name: Zoe\r\nCity: Bonn\r\nNo: 17')");
        store.add_map("clients", account, "Order",
                      {{"first_name", 1, true, "Name:@@@!"}, {"city", 2, false, {}}, {"ticket", 3, true, "No:"}});
        store.run("update format_tbl set fcodegen=1 where fname='city'");
        store.run("update format_tbl set fcodegen=2 where fname='ticket'");
        const QString city = store.cell("select id from format_tbl where fname='city'");
        store.run("insert into fcodes_tbl (fieldID,fielddesc,fieldCODE) values(" + city + ",'Bonn','B')");
        store.run("insert into fcodes_tbl (fieldID,fielddesc,fieldCODE) values(" + city + ",'Paris','P')");
        maps::map_wizard = {};
        maps::map_wizard.mail_table = "orders";
        maps::map_wizard.mail_id = "1";
    }

    mapmail_frm &screen()
    {
        the<mapmail_frm>().show();
        return the<mapmail_frm>();
    }
    mapmail_frm &screen_with_map()
    {
        choose(screen(), "sformats_c", "clients");
        return the<mapmail_frm>();
    }
    static void choose(mapmail_frm &screen, const char *name, const QString &entry)
    {
        auto &list = control<QComboBox>(screen, name);
        list.setCurrentText(entry);
        emit list.activated(list.currentIndex());
    }
};

inline void press_in(const QWidget &screen, const char *name)
{
    control<QPushButton>(screen, name).click();
}

// Works in the modal companion that the press opens.
template <typename companion>
void press_and_in(const mapmail_frm &screen, const char *button, const std::function<void(companion &)> &work)
{
    Responder expected({"Ignore characters", "Code Generation"});
    QTimer::singleShot(0, &the<mapmail_frm>(), [&] {
        work(the<companion>());
        if (is_loaded<companion>())
            the<companion>().unload();
    });
    press_in(screen, button);
    QCOMPARE(expected.refused, QStringList());
}

inline QStringList entries(const QListWidget &list)
{
    QStringList texts;
    for (int row = 0; row < list.count(); ++row)
        texts += list.item(row)->text();
    return texts;
}
