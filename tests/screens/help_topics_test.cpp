// F1 in every screen opens the page that is about it.
#include "screens/frame/Exit_frm.h"
#include "screens/frame/Stage1.h"
#include "screens/frame/Stage3.h"
#include "screens/frame/backup_frm.h"
#include "screens/frame/frmAbout.h"
#include "screens/frame/frmSplash.h"
#include "screens/frame/outbox_frm.h"
#include "screens/frame/stage5b.h"
#include "screens/intake/PrintRpt.h"
#include "screens/intake/genrepwait_frm.h"
#include "screens/intake/mailfrm.h"
#include "screens/intake/mapinprogress_frm.h"
#include "screens/intake/mfetchinprogress_frm.h"
#include "screens/maps/Ignore.h"
#include "screens/maps/MapWRefcode_frm.h"
#include "screens/maps/MapWStep4_Add_frm.h"
#include "screens/maps/MapWizardFinalStep_frm.h"
#include "screens/maps/MapWizardPView_frm.h"
#include "screens/maps/MapWizardStep1_frm.h"
#include "screens/maps/MapWizardStep2_frm.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "screens/maps/fcodes_frm.h"
#include "screens/maps/mapWizardStep3_frm.h"
#include "screens/maps/mapmail_frm.h"
#include "screens/maps/mapwizardsave_frm.h"
#include "screens/maps/textarea_frm.h"
#include "screens/preferences/Accounts.h"
#include "screens/preferences/Format_mail_frm.h"
#include "screens/preferences/autoresponder.h"
#include "screens/preferences/mail_client_frm.h"
#include "support/screens_help.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

namespace {

struct walked_screen {
    QString name;
    std::function<QWidget *()> make;
};

template <typename... Screens>
std::vector<walked_screen> screens_of()
{
    return {{Screens::staticMetaObject.className(), []() -> QWidget * { return &the<Screens>(); }}...};
}

const std::vector<walked_screen> &all_screens()
{
    static const auto all =
        screens_of<Exit_frm, Stage1, Stage3, backup_frm, frmAbout, frmSplash, help_frm, outbox_frm, stage5b, mailfrm,
                   PrintRpt, genrepwait_frm, mapinprogress_frm, mfetchinprogress_frm, Ignore, MapWRefcode_frm,
                   MapWStep4_Add_frm, MapWizardFinalStep_frm, MapWizardPView_frm, MapWizardStep1_frm,
                   MapWizardStep2_frm, MapWizardStep4_frm, fcodes_frm, mapWizardStep3_frm, mapmail_frm,
                   mapwizardsave_frm, textarea_frm, Accounts, Format_mail_frm, autoresponder, mail_client_frm>();
    return all;
}

}

class help_topics_test : public QObject {
    Q_OBJECT
private slots:
    // A new screen is walked too: it stands in the list above, or this fails.
    void every_screen_is_walked()
    {
        static const QRegularExpression derived("class (\\w+)(?: final)? : public (?:\\w+_)?screen\\b");
        const QStringList bases{"wizard_screen", "setup_screen", "wait_screen", "report_screen"};
        QStringList walked;
        for (const walked_screen &one : all_screens())
            walked += one.name;
        QStringList left_out;
        for (QDirIterator header(SOURCE_ROOT "/src/screens", {"*.h"}, QDir::Files, QDirIterator::Subdirectories);
             header.hasNext();) {
            QFile file(header.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString name = derived.match(QString::fromUtf8(file.readAll())).captured(1);
            if (!name.isEmpty() && !bases.contains(name) && !walked.contains(name))
                left_out += name;
        }
        QCOMPARE(left_out, QStringList());
    }

    void f1_opens_the_screens_page_data()
    {
        QTest::addColumn<int>("number");
        for (size_t number = 0; number < all_screens().size(); ++number)
            QTest::newRow(qPrintable(all_screens()[number].name)) << int(number);
    }
    void f1_opens_the_screens_page()
    {
        QFETCH(int, number);
        const walked_screen &walked = all_screens()[size_t(number)];
        help_site site;
        QTest::keyClick(walked.make(), Qt::Key_F1);
        QVERIFY(is_visible<help_frm>());
        const QString own = walked.name == u"help_frm" ? QString("help.html") : walked.name.toLower() + ".html";
        QCOMPARE(page().shown_page(), own);
        QVERIFY(site.boxes.shown.isEmpty());
    }
};

QTEST_MAIN(help_topics_test)
#include "help_topics_test.moc"
