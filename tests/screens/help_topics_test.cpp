// F1 in every screen opens the page that is about it.
#include "support/screens_help.h"
#include "walked_screens.h" // made at configuring: WALKED_SCREENS, and their headers

#include <QTest>
#include <functional>

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
    static const auto all = screens_of<WALKED_SCREENS>();
    return all;
}

}

class help_topics_test : public QObject {
    Q_OBJECT
private slots:
    void screens_are_walked() { QVERIFY(all_screens().size() > 25); }

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
