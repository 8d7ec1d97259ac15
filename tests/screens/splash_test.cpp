// The splash: what makes it go, what follows, and its tips.
#include "frame/session.h"
#include "platform/settings.h"
#include "screens/frame/frmSplash.h"
#include "screens/maps/MapWizardStep1_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QCheckBox>
#include <QFile>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <sys/resource.h>

class splash_test : public QObject {
    Q_OBJECT

    static void write_tips(const screens_site &site, const QByteArray &text)
    {
        QFile file(site.file("tips.tip"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

private slots:
    void a_click_anywhere_or_a_key_makes_it_go_data()
    {
        QTest::addColumn<QString>("where");
        QTest::newRow("on the splash") << "";
        QTest::newRow("on its frame") << "Frame1";
        QTest::newRow("on its picture") << "imgLogo";
        QTest::newRow("on its label") << "lblProductName";
        QTest::newRow("a key") << "key";
    }

    void a_click_anywhere_or_a_key_makes_it_go()
    {
        QFETCH(QString, where);
        screens_site site;
        the<frmSplash>().show();
        if (where == "key")
            QTest::keyClick(&the<frmSplash>(), Qt::Key_A);
        else if (where.isEmpty())
            QTest::mouseClick(&the<frmSplash>(), Qt::LeftButton);
        else
            QTest::mouseClick(&control<QWidget>(the<frmSplash>(), qPrintable(where)), Qt::LeftButton);
        QVERIFY(!is_loaded<frmSplash>());
        QVERIFY(is_visible<MapWizardStep1_frm>()); // no map exists yet
    }

    void with_a_map_nothing_opens_afterwards()
    {
        screens_site site;
        const qint64 account = site.store.add_account("orders", "orders@shop.example");
        site.store.add_map("shop", account, "Order", {{.name = "city"}});
        the<frmSplash>().show();
        QTest::keyClick(&the<frmSplash>(), Qt::Key_Return);
        QVERIFY(!is_loaded<frmSplash>());
        QVERIFY(!is_loaded<MapWizardStep1_frm>());
    }

    void enter_on_a_button_presses_it()
    {
        screens_site site;
        write_tips(site, "One\nTwo\n");
        the<frmSplash>().show();
        const QString first = control<QLabel>(the<frmSplash>(), "tip_lb").text();
        control<QPushButton>(the<frmSplash>(), "nexttip_b").setFocus();
        QTest::keyClick(&control<QPushButton>(the<frmSplash>(), "nexttip_b"), Qt::Key_Return);
        QVERIFY(is_loaded<frmSplash>());
        QVERIFY(control<QLabel>(the<frmSplash>(), "tip_lb").text() != first);
        the<frmSplash>().unload();
    }

    void next_and_previous_walk_round_the_tips()
    {
        screens_site site;
        write_tips(site, "One\r\n\r\nTwo\nThree\n");
        the<frmSplash>().show();
        auto &tip = control<QLabel>(the<frmSplash>(), "tip_lb");
        auto &next = control<QPushButton>(the<frmSplash>(), "nexttip_b");
        auto &previous = control<QPushButton>(the<frmSplash>(), "prevtip_b");
        const QStringList tips{"One", "Two", "Three"};
        const qsizetype first = tips.indexOf(tip.text());
        QVERIFY(first >= 0);
        for (int step = 1; step <= 3; ++step) {
            QTest::mouseClick(&next, Qt::LeftButton);
            QCOMPARE(tip.text(), tips[(first + step) % 3]);
        }
        QTest::mouseClick(&previous, Qt::LeftButton);
        QCOMPARE(tip.text(), tips[(first + 2) % 3]);
        QVERIFY(is_visible<frmSplash>());
    }

    void whether_tips_are_shown_at_the_start_is_remembered()
    {
        screens_site site;
        write_tips(site, "One\n");
        the<frmSplash>().show();
        auto &choice = control<QCheckBox>(the<frmSplash>(), "showtips_ch");
        QVERIFY(choice.isChecked());
        QVERIFY(control<QGroupBox>(the<frmSplash>(), "tips_f").isVisible());
        choice.click();
        the<frmSplash>().unload();
        the<frmSplash>().show();
        QVERIFY(!control<QGroupBox>(the<frmSplash>(), "tips_f").isVisible());
        the<frmSplash>().show_tips(); // the menu's command shows them all the same
        QVERIFY(control<QGroupBox>(the<frmSplash>(), "tips_f").isVisible());
        QVERIFY(!control<QCheckBox>(the<frmSplash>(), "showtips_ch").isChecked());
    }

    void without_a_tips_file_it_shows_no_empty_box()
    {
        screens_site site;
        the<frmSplash>().show();
        QVERIFY(!control<QGroupBox>(the<frmSplash>(), "tips_f").isVisible());
    }

    void tips_that_cannot_be_read_are_a_failure_that_ends_nothing()
    {
        screens_site site;
        write_tips(site, "A tip\n");
        the<frmSplash>();
        rlimit before{};
        QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
        const rlimit no_further_file{0, before.rlim_max}; // modes do not keep the superuser out, this does
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &no_further_file), 0);
        the<frmSplash>().load();
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &before), 0);
        QCOMPARE(session.err_form, "frmsplash.frm");
        QVERIFY(session.err_description.startsWith("Permission denied: "));
        the<frmSplash>().show();
        QVERIFY(!control<QGroupBox>(the<frmSplash>(), "tips_f").isVisible());
    }
};

QTEST_MAIN(splash_test)
#include "splash_test.moc"
