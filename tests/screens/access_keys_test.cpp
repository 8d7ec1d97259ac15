// Each access key leads to one place: in every screen, together with the console's menus where it opens beside them,
// and in every menu.
#include "maps/map_wizard.h"
#include "screens/frame/menuFrm.h"
#include "support/screens_map_wizard.h"
#include "walked_screens.h" // made at configuring: WALKED_SCREENS, and their headers

#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStackedWidget>
#include <QTest>
#include <functional>

namespace {

struct walked_window {
    QString name;
    std::function<screen &()> make;
};

template <typename... Screens>
std::vector<walked_window> windows_of()
{
    return {{Screens::staticMetaObject.className(), []() -> screen & { return the<Screens>(); }}...};
}

const std::vector<walked_window> &all_windows()
{
    static const auto all = windows_of<WALKED_SCREENS>();
    return all;
}

// Windows of their own, from which the console's menus cannot be reached. All other screens stand in the console.
const QStringList beside_the_console{"EditSign",        "Exit_frm",          "Ignore",
                                     "MapWRefcode_frm", "MapWStep4_Add_frm", "MapWizardPView_frm",
                                     "NewSign",         "Showdetails",       "Stage1",
                                     "Stage3",          "TechSupport",       "fcodes_frm",
                                     "frmAbout",        "frmSplash",         "genrepwait_frm",
                                     "help_frm",        "mapinprogress_frm", "mapwizardsave_frm",
                                     "stage5b",         "textarea_frm",      "mfetchinprogress_frm"};

struct key_holder {
    QString key;
    QString name;
    const QWidget *control;
};

QString key_in(const QString &caption)
{
    return QKeySequence::mnemonic(caption).toString().section('+', -1);
}

// Whether it is visible now or not: what is hidden is shown sooner or later.
std::vector<key_holder> holders_in(const QWidget &window)
{
    std::vector<key_holder> holders;
    const auto add = [&holders](const QWidget *control, const QString &caption) {
        if (const QString key = key_in(caption); !key.isEmpty())
            holders.push_back({key, control->objectName(), control});
    };
    for (const auto *button : window.findChildren<QAbstractButton *>())
        add(button, button->text());
    for (const auto *label : window.findChildren<QLabel *>())
        if (label->buddy())
            add(label, label->text());
    for (const auto *group : window.findChildren<QGroupBox *>())
        add(group, group->title());
    return holders;
}

// The page of that stack which the control stands on.
const QWidget *page_of(const QWidget &control, const QStackedWidget &stack)
{
    for (int page = 0; page < stack.count(); ++page)
        if (stack.widget(page)->isAncestorOf(&control))
            return stack.widget(page);
    return nullptr;
}

// Controls that take turns in one place.
bool take_turns(const QWidget &window, const key_holder &one, const key_holder &other)
{
    for (const auto *stack : window.findChildren<QStackedWidget *>()) {
        const QWidget *page = page_of(*one.control, *stack);
        const QWidget *others = page_of(*other.control, *stack);
        if (page && others && page != others)
            return true;
    }
    const auto is_below = [&](const key_holder &holder, const char *part) {
        const auto *box = window.findChild<QWidget *>(part);
        return box && box->isAncestorOf(holder.control);
    };
    const auto are = [&](const char *first, const char *second) {
        return (one.name == first && other.name == second) || (one.name == second && other.name == first);
    };
    // The two steps of cutting a mail; received mails, which have reasons, and sent ones; a test that runs and one that
    // does not.
    return (is_below(one, "why_fr") && is_below(other, "sentitems_fr")) ||
           (is_below(one, "sentitems_fr") && is_below(other, "why_fr")) ||
           (is_below(one, "Frame1") && is_below(other, "Frame2")) ||
           (is_below(one, "Frame2") && is_below(other, "Frame1")) || are("test_b", "stop_b");
}

QStringList clashes_in(const QWidget &window)
{
    QStringList clashes;
    const auto holders = holders_in(window);
    for (size_t one = 0; one < holders.size(); ++one)
        for (size_t other = one + 1; other < holders.size(); ++other)
            if (holders[one].key == holders[other].key && !take_turns(window, holders[one], holders[other]))
                clashes += holders[one].key + ": " + holders[one].name + ", " + holders[other].name;
    return clashes;
}

QStringList clashes_with(const QWidget &window, const QMenuBar &menus)
{
    QStringList clashes;
    for (const key_holder &holder : holders_in(window))
        for (const QAction *menu : menus.actions())
            if (menu->isVisible() && key_in(menu->text()) == holder.key)
                clashes += holder.key + ": " + holder.name + ", menu " + menu->text();
    return clashes;
}

QStringList clashes_in(const QList<QAction *> &entries)
{
    QStringList keys;
    QStringList clashes;
    for (const QAction *entry : entries) {
        const QString key = key_in(entry->text());
        if (!key.isEmpty() && keys.contains(key))
            clashes += key + ": " + entry->text();
        keys += key;
    }
    return clashes;
}

}

class access_keys_test : public QObject {
    Q_OBJECT
private slots:
    void screens_are_walked()
    {
        QVERIFY(all_windows().size() > 25);
        QStringList names;
        for (const walked_window &window : all_windows())
            names += window.name;
        for (const QString &name : beside_the_console)
            QVERIFY2(names.contains(name), qPrintable(name));
    }

    void each_key_of_a_window_leads_to_one_place_data()
    {
        QTest::addColumn<int>("number");
        for (size_t number = 0; number < all_windows().size(); ++number)
            QTest::newRow(qPrintable(all_windows()[number].name)) << int(number);
    }

    void each_key_of_a_window_leads_to_one_place()
    {
        QFETCH(int, number);
        const walked_window &walked = all_windows()[size_t(number)];
        map_wizard_site site;
        menuFrm console;
        session.no_fetch = true;
        screen &window = walked.make();
        window.load();
        QStringList clashes = clashes_in(window);
        if (!beside_the_console.contains(walked.name))
            clashes += clashes_with(window, *console.menuBar());
        clashes.removeOne("P: Command7, menu &Preferences"); // two captions that must not change
        QCOMPARE(clashes, QStringList());
    }

    void each_key_of_a_menu_leads_to_one_entry()
    {
        map_wizard_site site;
        menuFrm console;
        QCOMPARE(clashes_in(console.menuBar()->actions()), QStringList());
        const auto menus = console.findChildren<QMenu *>();
        QVERIFY(menus.size() > 8);
        for (const QMenu *menu : menus)
            QCOMPARE(menu->objectName() + clashes_in(menu->actions()).join("; "), menu->objectName());
    }

    void a_window_whose_keys_clash_is_found()
    {
        QWidget window;
        QAbstractButton *first = new QPushButton("&Save", &window);
        QAbstractButton *second = new QPushButton("Clo&se", &window);
        first->setObjectName("first");
        second->setObjectName("second");
        QCOMPARE(clashes_in(window), QStringList{"S: first, second"});
        second->setText("&Close");
        QCOMPARE(clashes_in(window), QStringList());
    }
};

QTEST_MAIN(access_keys_test)
#include "access_keys_test.moc"
