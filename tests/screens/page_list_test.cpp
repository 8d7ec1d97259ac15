// The pages of the preferences as one dialog: each page's list leads to each other one, and at most one is open. Each
// page by itself: Accounts_test.cpp and its neighbours.
#include "screens/frame/menuFrm.h"
#include "screens/preferences/Accounts.h"
#include "screens/preferences/Format_mail_frm.h"
#include "screens/preferences/OnlinePref.h"
#include "screens/preferences/Preference.h"
#include "screens/preferences/mail_client_frm.h"
#include "screens/preferences/page_list.h"
#include "support/screens_driver.h"
#include "support/screens_page_site.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QWheelEvent>

namespace {

const QStringList captions{"GENERAL", "ACCOUNTS", "ONLINE FORM", "MAP MAILS", "MAIL CLIENT"};

template <typename T>
QStringList name_if_loaded(const char *caption)
{
    return is_loaded<T>() ? QStringList{caption} : QStringList();
}

QStringList loaded_pages()
{
    return name_if_loaded<Preference>("GENERAL") + name_if_loaded<Accounts>("ACCOUNTS") +
           name_if_loaded<OnlinePref>("ONLINE FORM") + name_if_loaded<Format_mail_frm>("MAP MAILS") +
           name_if_loaded<mail_client_frm>("MAIL CLIENT");
}

screen &loaded_page()
{
    for (const std::type_index type :
         {std::type_index(typeid(Preference)), std::type_index(typeid(Accounts)), std::type_index(typeid(OnlinePref)),
          std::type_index(typeid(Format_mail_frm)), std::type_index(typeid(mail_client_frm))}) {
        auto *page = qobject_cast<screen *>(live_widget(type));
        if (page && page->loaded())
            return *page;
    }
    qFatal("no page is loaded");
}

// By the list of the page that is open.
void choose_page(const QString &caption)
{
    for (QComboBox *list : loaded_page().findChildren<QComboBox *>()) {
        const int line = list->findText(caption, Qt::MatchExactly | Qt::MatchCaseSensitive);
        if (line >= 0 && list->findText("LABELS") >= 0) {
            emit list->activated(line);
            return;
        }
    }
    qFatal("the page has no list of pages");
}

}

class page_list_test : public QObject {
    Q_OBJECT
private slots:
    void each_page_leads_to_each_other_one_and_closes_itself()
    {
        screens_site site;
        menuFrm console;
        console.show();
        open_page(preference_page::general);
        QCOMPARE(loaded_pages(), QStringList{"GENERAL"});
        for (const QString &from : captions) {
            for (const QString &to : captions) {
                choose_page(from);
                QCOMPARE(loaded_pages(), QStringList{from});
                choose_page(to);
                QCOMPARE(loaded_pages(), QStringList{to});
            }
        }
        QCOMPARE(site.boxes.shown, QStringList());
        forget_screens();
    }

    void a_page_that_stays_keeps_its_own_entry()
    {
        page_site site;
        open_page(preference_page::mail_client);
        type_good_settings();
        site.boxes.will_say_no();
        choose_page("GENERAL");
        QCOMPARE(loaded_pages(), QStringList{"MAIL CLIENT"});
        QCOMPARE(control<QComboBox>(the<mail_client_frm>(), "Combo1").currentText(), "MAIL CLIENT");
        site.boxes.will_say_yes();
        choose_page("GENERAL");
        QCOMPARE(loaded_pages(), QStringList{"GENERAL"});
    }

    void the_wheel_over_the_list_does_not_leave_the_page()
    {
        screens_site site;
        open_page(preference_page::general);
        auto &list = control<QComboBox>(the<Preference>(), "Combo1");
        const QPointF place = list.rect().center();
        QWheelEvent turn(place, list.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                         false);
        QApplication::sendEvent(&list, &turn);
        QCOMPARE(loaded_pages(), QStringList{"GENERAL"});
        QCOMPARE(list.currentText(), "GENERAL");
    }

    void tab_goes_from_the_top_to_the_bottom_data()
    {
        QTest::addColumn<QString>("caption");
        for (const QString &caption : captions)
            QTest::newRow(qPrintable(caption)) << caption;
    }

    void tab_goes_from_the_top_to_the_bottom()
    {
        QFETCH(QString, caption);
        screens_site site;
        open_page(preference_page::general);
        choose_page(caption);
        QWidget *first = &loaded_page();
        do {
            first = first->nextInFocusChain();
        } while (!(first->focusPolicy() & Qt::TabFocus) || !loaded_page().isAncestorOf(first));
        auto *list = qobject_cast<QComboBox *>(first);
        QVERIFY2(list && list->currentText() == caption, qPrintable(first->objectName()));
    }

    void each_page_has_help_and_one_way_to_call_close_data() { tab_goes_from_the_top_to_the_bottom_data(); }
    void each_page_has_help_and_one_way_to_call_close()
    {
        QFETCH(QString, caption);
        screens_site site;
        open_page(preference_page::general);
        choose_page(caption);
        QCOMPARE(control<QPushButton>(loaded_page(), "help_b").text().remove('&'), "Help");
        if (caption != "MAIL CLIENT") // it is left by OK or Cancel
            QCOMPARE(control<QPushButton>(loaded_page(), "close_b").text(), "Clo&se");
    }

    void the_access_keys_of_a_page_are_its_own_data()
    {
        QTest::addColumn<QString>("caption");
        for (const char *caption : {"GENERAL", "ACCOUNTS", "ONLINE FORM", "MAP MAILS"})
            QTest::newRow(caption) << caption;
    }

    void the_access_keys_of_a_page_are_its_own()
    {
        QFETCH(QString, caption);
        screens_site site;
        open_page(preference_page::general);
        choose_page(caption);
        QCOMPARE(key_clash(loaded_page()), "");
    }

    // It has more controls than there are letters; OK and Cancel are Enter and Escape.
    void the_access_keys_of_the_mail_client_are_its_own()
    {
        screens_site site;
        open_page(preference_page::mail_client);
        QStringList found;
        for (const QAbstractButton *button : loaded_page().findChildren<QAbstractButton *>())
            if (button->objectName() != "stop_b") // takes the place of Test while it runs
                found += button->text();
        for (const QLabel *label : loaded_page().findChildren<QLabel *>())
            if (label->buddy())
                found += label->text();
        QString keys = "fmlwpho"; // the console's menus
        for (const QString &caption : found.filter("&")) {
            const QChar key = caption[caption.indexOf('&') + 1].toLower();
            QVERIFY2(!keys.contains(key), qPrintable(caption));
            keys += key;
        }
        QVERIFY2(keys.size() > 20, qPrintable(keys));
    }
};

QTEST_MAIN(page_list_test)
#include "page_list_test.moc"
