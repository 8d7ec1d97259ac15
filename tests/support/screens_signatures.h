// The screens of signatures in tests: a site with two of them, and the picker's controls.
#pragma once
#include "screens/directmail/Signature.h"
#include "screens/preferences/Preference.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <functional>

inline Signature &picker()
{
    return the<Signature>();
}

inline QListWidget &List1()
{
    return control<QListWidget>(picker(), "List1");
}

inline QString preview()
{
    return control<QLabel>(picker(), "Label2").text();
}

inline void press(const char *name)
{
    control<QPushButton>(picker(), name).click();
}

template <typename T>
void press_on(const char *name)
{
    control<QPushButton>(the<T>(), name).click();
}

inline QStringList titles()
{
    QStringList texts;
    for (int row = 0; row < List1().count(); ++row)
        texts += List1().item(row)->text();
    return texts;
}

// What happens in the modal screen that the press opens; ends it when it is still there afterwards.
template <typename T>
bool in_modal(const char *opener, const std::function<void()> &deeds)
{
    bool was_open = false;
    QTimer::singleShot(0, [&] {
        was_open = is_visible<T>() && QApplication::activeModalWidget();
        if (was_open)
            deeds();
        if (is_loaded<T>())
            the<T>().unload();
    });
    press(opener);
    return was_open;
}

struct signature_site : screens_site {
    signature_site()
    {
        store.run("insert into sign values( 'Shop','Kind regards','No' )");
        store.run("insert into sign values( 'Private','Yours','Yes' )");
    }
    QString row(const QString &title)
    {
        return store.cell("select signtext from sign where signtitle='" + title + "'") + "|" +
               store.cell("select signselected from sign where signtitle='" + title + "'");
    }
    QString selected() { return store.cell("select signtitle from sign where signselected='Yes'"); }
    message_box box(size_t number = 0) { return boxes.boxes.at(number); }
};

// The picker as the preferences open it.
struct preferences_site : signature_site {
    preferences_site()
    {
        the<Preference>().show();
        control<QPushButton>(the<Preference>(), "Command3").click();
    }
    static QString label() { return control<QLabel>(the<Preference>(), "sign_l").text(); }
};
