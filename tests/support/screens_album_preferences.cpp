// Pictures of the preferences pages "General" and "Online Form", of the signatures, and of technical support.
#include "frame/store.h"
#include "screens/directmail/EditSign.h"
#include "screens/directmail/NewSign.h"
#include "screens/directmail/Signature.h"
#include "screens/frame/TechSupport.h"
#include "screens/frame/menuFrm.h"
#include "screens/message_boxes.h"
#include "screens/preferences/OnlinePref.h"
#include "screens/preferences/Preference.h"
#include "screens/screen.h"
#include "support/screens_album.h"
#include "support/screens_driver.h"

#include <QApplication>
#include <QListWidget>
#include <QTimer>

namespace {

template <typename T>
void picture_modal(const album &pictures, const QString &name)
{
    QTimer::singleShot(0, [&] {
        pictures.keep(*QApplication::activeModalWidget(), name);
        the<T>().unload();
    });
    the<T>().show_modal();
}

void picture_signatures(const album &pictures, menuFrm &console)
{
    the<Signature>().show();
    pictures.keep(console, "Signature");
    control<QListWidget>(the<Signature>(), "List1").setCurrentRow(0);
    pictures.keep(console, "Signature-chosen");
    picture_modal<NewSign>(pictures, "NewSign");
    picture_modal<EditSign>(pictures, "EditSign");
    the<Signature>().unload();
}

void picture_labels_question(const album &pictures)
{
    message_boxes boxes;
    QTimer::singleShot(100, [&pictures] {
        pictures.keep(*QApplication::activeModalWidget(), "lprint");
        QApplication::activeModalWidget()->close();
    });
    boxes.show({message_kind::yes_no,
                "You have not generated the labels yet. Would you like to generate labels now?",
                "Label Printing",
                message_icon::question,
                {},
                true,
                "The screens that make labels are not there yet.",
                false});
}

}

void picture_preferences(const album &pictures, menuFrm &console)
{
    run_sql("insert into sign values( 'Shop','Kind regards\nZo\u00eb Kr\u00e4mer\nRose Cottage Nursery','Yes' )");
    run_sql("insert into sign values( 'Private','Yours, Zo\u00eb','No' )");
    unload_all_screens();
    const QSize usual = console.size();
    the<Preference>().show();
    pictures.keep(console, "Preference");
    the<Preference>().unload();
    run_sql("Update autofetch set minutes=1");
    console.resize(console.minimumSize());
    the<Preference>().show();
    pictures.keep(console, "Preference-smallest");
    the<Preference>().unload();
    the<OnlinePref>().show();
    pictures.keep(console, "OnlinePref-smallest");
    the<OnlinePref>().unload();
    console.resize(usual);
    the<OnlinePref>().show();
    pictures.keep(console, "OnlinePref");
    the<OnlinePref>().unload();
    picture_signatures(pictures, console);
    picture_modal<TechSupport>(pictures, "TechSupport");
    picture_labels_question(pictures);
    run_sql("Update autofetch set minutes=-1");
    run_sql("delete from sign");
}
