// Pictures of the first-run setup and of the page "Accounts".
#include "screens/frame/Stage1.h"
#include "screens/frame/Stage3.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/stage5b.h"
#include "screens/preferences/Accounts.h"
#include "support/screens_album.h"
#include "support/screens_driver.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace {

template <typename T>
void picture_both_sizes(const album &pictures, const QString &name)
{
    pictures.keep(the<T>(), name);
    const QSize usual = the<T>().size();
    the<T>().resize(1280, 800);
    pictures.keep(the<T>(), name + "-wide");
    the<T>().resize(usual);
}

}

// Before the console is there, as the setup stands alone.
void picture_setup(const album &pictures)
{
    the<Stage1>().show();
    pictures.keep(the<Stage1>(), "Stage1-empty");
    control<QLineEdit>(the<Stage1>(), "Admin_t").setText("Zo\u00eb Kr\u00e4mer");
    control<QLineEdit>(the<Stage1>(), "org_t").setText("Rose Cottage Nursery");
    control<QLineEdit>(the<Stage1>(), "url_T").setText("www.rosecottage.example");
    picture_both_sizes<Stage1>(pictures, "Stage1");
    the<Stage1>().unload();
    the<Stage3>().show();
    auto &queries = control<QListWidget>(the<Stage3>(), "query_l");
    pictures.keep(the<Stage3>(), "Stage3");
    queries.setCurrentRow(1);
    control<QLineEdit>(the<Stage3>(), "query_t").setText("workshops");
    picture_both_sizes<Stage3>(pictures, "Stage3-chosen");
    the<Stage3>().unload();
    the<stage5b>().show();
    picture_both_sizes<stage5b>(pictures, "stage5b");
    the<stage5b>().unload();
}

void picture_accounts(const album &pictures, menuFrm &console)
{
    const QSize usual = console.size();
    the<Accounts>().show();
    pictures.keep(console, "Accounts");
    control<QComboBox>(the<Accounts>(), "query_c").setCurrentIndex(2);
    console.resize(1280, 800);
    pictures.keep(console, "Accounts-chosen");
    auto &list = control<QComboBox>(the<Accounts>(), "Combo2");
    list.showPopup();
    pictures.keep(*list.view()->window(), "Accounts-pages");
    list.hidePopup();
    the<Accounts>().unload();
    console.resize(console.minimumSize());
    the<Accounts>().show();
    pictures.keep(console, "Accounts-smallest");
    the<Accounts>().unload();
    console.resize(usual);
}
