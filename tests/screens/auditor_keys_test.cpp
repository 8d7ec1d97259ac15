// The Mail Auditor without a mouse: its two views, and sorting in each.
#include "frame/session.h"
#include "support/screens_auditor.h"

#include <QLabel>
#include <QStackedWidget>
#include <QTest>
#include <QToolButton>

namespace {

QString shown_view()
{
    return control<QStackedWidget>(the<mailfrm>(), "qt_views").currentWidget()->objectName();
}

}

class auditor_keys_test : public QObject {
    Q_OBJECT
private slots:
    void a_key_for_each_view()
    {
        auditor_site site;
        mailfrm &screen = stored_mails_shown();
        QVERIFY(QTest::qWaitForWindowActive(&screen));
        QTest::keyClick(&control<list_view>(screen, "LV_sub"), Qt::Key_I, Qt::AltModifier);
        QTRY_COMPARE(shown_view(), "sentitems_fr");
        QCOMPARE(screen.focusWidget()->objectName(), "LV_sub_si"); // the arrows go on in the list
        QTest::keyClick(&control<list_view>(screen, "LV_sub_si"), Qt::Key_X, Qt::AltModifier);
        QTRY_COMPARE(shown_view(), "inbox_fr");
        QCOMPARE(screen.focusWidget()->objectName(), "LV_sub");
    }

    void what_the_fetch_brought_is_told_in_the_inbox_alone()
    {
        auditor_site site;
        site.deliver_mail("orders@shop.example", "Order", "Text");
        session.no_fetch = false;
        the<mailfrm>().show();
        const auto &summary = control<QLabel>(the<mailfrm>(), "Label3");
        QVERIFY(summary.isVisible());
        control<QToolButton>(the<mailfrm>(), "sentitems_b").click();
        QVERIFY(!summary.isVisible());
        control<QToolButton>(the<mailfrm>(), "inbox_b").click();
        QVERIFY(summary.isVisible());
    }

    void control_3_sorts_both_lists_by_their_dates()
    {
        auditor_site site;
        site.store_mail("orders", "b@mail.example", "Second", "8/6/2026 9:00:00 AM");
        site.store_mail("orders", "a@mail.example", "First", "8/6/2025 9:00:00 AM");
        site.store_sent("ann@mail.example", "Thanks");
        auto &inbox = control<list_view>(stored_mails_shown(), "LV_sub");
        QTest::keyClick(&inbox, Qt::Key_3, Qt::ControlModifier);
        QCOMPARE(column_texts(inbox, 1), (QStringList{"First", "Second"}));
        QTest::keyClick(&inbox, Qt::Key_3, Qt::ControlModifier);
        QCOMPARE(column_texts(inbox, 1), (QStringList{"Second", "First"}));
        QCOMPARE(inbox.accessibleName(), "Received mails, sorted by Received, descending");
        auto &sent = control<list_view>(sent_mails_shown(), "LV_sub_si");
        QTest::keyClick(&sent, Qt::Key_3, Qt::ControlModifier);
        QCOMPARE(head_marks(sent), (QStringList{"keynone", "keynone", "key1"}));
    }
};

QTEST_MAIN(auditor_keys_test)
#include "auditor_keys_test.moc"
