// The Mail Mapping Wizard by keyboard alone, from the welcome to Congratulations; and its access keys.
#include "screens/frame/menuFrm.h"
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
#include "support/screens_access_keys.h"
#include "support/screens_map_wizard.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QTest>

namespace {

QWidget &window_in_front()
{
    if (QWidget *modal = QApplication::activeModalWidget())
        return *modal;
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->objectName() == "menuFrm")
            return *window;
    qFatal("There is no console");
}

// Nothing here activates the window behind a dialog that has gone, as every desktop does.
QWidget *focused()
{
    const QWidget *focus = QApplication::focusWidget();
    if (!focus || focus->window() != &window_in_front())
        window_in_front().activateWindow();
    if (!QTest::qWaitFor([] {
            const QWidget *now = QApplication::focusWidget();
            return now && now->window() == &window_in_front();
        }))
        qFatal("Nothing has the focus");
    return QApplication::focusWidget();
}

void hit(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QTest::keyClick(focused(), key, modifiers);
}

void write(const QString &text)
{
    QTest::keyClicks(focused(), text);
}

void tab_to(const QString &button)
{
    for (int step = 0; focused()->objectName() != button; ++step) {
        if (step == 20)
            qFatal("Tab does not lead to %s", qPrintable(button));
        hit(Qt::Key_Tab);
    }
}

// In the screen that opens next: marks so many letters from the start, ignores them, and saves.
void save_without_first_letters(int count)
{
    in_modal<MapWStep4_Add_frm>([count](MapWStep4_Add_frm &) {
        hit(Qt::Key_Home);
        for (int letter = 0; letter < count; ++letter)
            hit(Qt::Key_Right, Qt::ShiftModifier);
        tab_to("ignore_b");
        hit(Qt::Key_Space);
        hit(Qt::Key_Return);
    });
}

}

class map_wizard_keyboard_test : public QObject {
    Q_OBJECT
private slots:
    void from_the_welcome_to_the_end()
    {
        map_wizard_site site;
        menuFrm console;
        console.show();
        QVERIFY(QTest::qWaitForWindowActive(&console));
        control<QAction>(console, "mmw").trigger();
        QVERIFY(is_visible<MapWizardStep1_frm>());
        hit(Qt::Key_Return);
        QVERIFY(is_visible<MapWizardStep2_frm>());
        hit(Qt::Key_Return); // fetches
        QVERIFY(is_visible<mapWizardStep3_frm>());
        hit(Qt::Key_Down);
        hit(Qt::Key_Home);
        hit(Qt::Key_Return);
        QVERIFY(is_visible<MapWizardStep4_frm>());
        hit(Qt::Key_Return); // by lines
        write("person");
        save_without_first_letters(6);
        hit(Qt::Key_Return);
        write("city");
        save_without_first_letters(6);
        hit(Qt::Key_Return);
        QCOMPARE(added_fields(), (QStringList{"person|Line1|Name: |0|Ann Moss", "city|Line2|City: |0|Bath"}));
        tab_to("finish_b");
        in_modal<MapWizardPView_frm>([](MapWizardPView_frm &) {
            focused(); // before what waits for the next screen
            in_modal<mapwizardsave_frm>([](mapwizardsave_frm &) {
                write("shop");
                hit(Qt::Key_Return);
            });
            hit(Qt::Key_Return);
        });
        hit(Qt::Key_Space);
        QVERIFY(is_visible<MapWizardFinalStep_frm>());
        QCOMPARE(site.store.column("select city from shop"), (QVariantList{"Bath", "Cork", "Ulm"}));
        hit(Qt::Key_Return);
        QVERIFY(!is_visible<MapWizardFinalStep_frm>());
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void every_step_begins_with_a_focus_and_a_default_button()
    {
        map_wizard_site site;
        const auto check = [](screen &opened) {
            opened.show();
            QVERIFY2(opened.focusWidget(), qPrintable(opened.objectName()));
            int defaults = 0;
            for (const auto *button : opened.findChildren<QPushButton *>())
                defaults += button->isDefault() && button->isVisible() ? 1 : 0;
            QVERIFY2(defaults == 1, qPrintable(opened.objectName()));
        };
        check(the<MapWizardStep1_frm>());
        check(the<MapWizardStep2_frm>());
        check(the<mapWizardStep3_frm>());
        open_cutting(site, "orders", 1);
        check(the<MapWizardStep4_frm>());
        cut_by_lines();
        check(the<MapWizardStep4_frm>());
        check(the<MapWStep4_Add_frm>());
        check(the<MapWRefcode_frm>());
        check(the<MapWizardPView_frm>());
        check(the<mapwizardsave_frm>());
        check(the<textarea_frm>());
        check(the<MapWizardFinalStep_frm>());
    }

    void access_keys_are_there_once()
    {
        map_wizard_site site;
        menuFrm console;
        console.show();
        const QString menus = menu_keys(console);
        QVERIFY(menus.contains('F'));
        const auto check = [&menus](screen &opened, bool beside_the_menu) {
            const QString keys = access_keys(opened);
            QVERIFY(keys.size() >= 1);
            QCOMPARE(opened.objectName() + repeated_letter(keys + (beside_the_menu ? menus : QString())),
                     opened.objectName());
        };
        the<MapWizardStep1_frm>().show();
        check(the<MapWizardStep1_frm>(), true);
        the<MapWizardStep2_frm>().show();
        control<QWidget>(the<MapWizardStep2_frm>(), "edit_fr").show();
        check(the<MapWizardStep2_frm>(), true);
        the<mapWizardStep3_frm>().show();
        control<QWidget>(the<mapWizardStep3_frm>(), "empty_fr").show();
        check(the<mapWizardStep3_frm>(), true);
        open_cutting(site, "orders", 1);
        check(the<MapWizardStep4_frm>(), true);
        cut_by_lines();
        check(the<MapWizardStep4_frm>(), true);
        the<MapWizardFinalStep_frm>().show();
        check(the<MapWizardFinalStep_frm>(), true);
        the<MapWStep4_Add_frm>().show();
        check(the<MapWStep4_Add_frm>(), false);
        the<MapWizardPView_frm>().show();
        check(the<MapWizardPView_frm>(), false);
        the<mapwizardsave_frm>().show();
        check(the<mapwizardsave_frm>(), false);
        the<MapWRefcode_frm>().show();
        control<QAbstractButton>(the<MapWRefcode_frm>(), "fixed_op").click();
        check(the<MapWRefcode_frm>(), false);
    }
};

QTEST_MAIN(map_wizard_keyboard_test)
#include "map_wizard_keyboard_test.moc"
