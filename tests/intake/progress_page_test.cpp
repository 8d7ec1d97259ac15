// The page of the progress screens, to the character.
#include "frame/session.h"
#include "intake/progress_page.h"
#include "platform/app_folder.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class progress_page_test : public QObject {
    Q_OBJECT
private slots:
    void the_colour_is_turned_round_data()
    {
        QTest::addColumn<quint32>("platform_colour");
        QTest::addColumn<QString>("digits");
        QTest::newRow("blue, green, red become red, green, blue") << 0x563412u << "123456";
        QTest::newRow("leading zeros stay") << 0x030201u << "010203";
        QTest::newRow("black") << 0u << "000000";
        QTest::newRow("what stands above the three bytes is nothing") << 0x01ffffffu << "FFFFFF";
    }

    void the_colour_is_turned_round()
    {
        QFETCH(quint32, platform_colour);
        QFETCH(QString, digits);
        QCOMPARE(intake::progress_page(platform_colour, "otl-to-tsl.gif"),
                 "<html> <body bgcolor=" + digits +
                     " leftmargin=0 topmargin=0 marginwidth=0 marginheight=0> <img src=otl-to-tsl.gif></body></html>");
    }

    void each_page_has_its_file_and_picture()
    {
        const QTemporaryDir folder;
        set_app_folder(folder.path());
        intake::write_mapping_animation(0);
        QCOMPARE(session.animation_file, folder.filePath("mappinganimation.html"));
        QFile page(session.animation_file);
        QVERIFY(page.open(QIODevice::ReadOnly));
        QVERIFY(page.readAll().contains("<img src=tsl-to-dtb.gif>"));
        intake::write_fetch_animation(0);
        QCOMPARE(session.animation_file, folder.filePath("fetchmailanimation.html"));
    }
};

QTEST_GUILESS_MAIN(progress_page_test)
#include "progress_page_test.moc"
