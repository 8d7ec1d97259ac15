// The Mail Auditor's toolbars and popup menus: their commands, the pictures under the pointer, the keys, the size.
#include "screens/icons.h"
#include "support/screens_auditor.h"
#include "support/screens_map_wizard.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QCursor>
#include <QEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>
#include <QToolButton>

namespace {

QImage image_of(const QIcon &icon)
{
    return icon.pixmap(QSize(16, 16), QIcon::Normal).toImage();
}

void point_at(QWidget &widget)
{
    const QPoint middle = widget.rect().center();
    QCursor::setPos(widget.mapToGlobal(middle));
    QEnterEvent enter(middle, widget.mapTo(widget.window(), middle), widget.mapToGlobal(middle));
    QCoreApplication::sendEvent(&widget, &enter);
}

QStringList popup_commands(list_view &list)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, list.viewport()->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(list.viewport(), &event);
    auto &menu = control<QMenu>(list, "popup_mnu");
    QStringList commands;
    for (const QAction *command : menu.actions())
        commands += command->isSeparator() ? "-" : command->objectName() + (command->isEnabled() ? "" : " off");
    menu.close();
    return commands;
}

}

class auditor_toolbar_test : public QObject {
    Q_OBJECT
private slots:
    void a_picture_lights_up_under_the_pointer_and_a_timer_finds_out_that_it_left_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("picture");
        QTest::addColumn<QString>("timer");
        QTest::addColumn<bool>("of_sent");
        QTest::newRow("inbox") << "Indelete_b"
                               << "delete"
                               << "Timer2" << false;
        QTest::newRow("sent items") << "SReply_b"
                                    << "reply"
                                    << "Timer3" << true;
    }

    void a_picture_lights_up_under_the_pointer_and_a_timer_finds_out_that_it_left()
    {
        QFETCH(QString, button);
        QFETCH(QString, picture);
        QFETCH(QString, timer);
        QFETCH(bool, of_sent);
        auditor_site site;
        site.store_mails(1);
        site.store_sent("cat@mail.example", "Thanks");
        mailfrm &screen = of_sent ? sent_mails_shown() : stored_mails_shown();
        click_row(control<list_view>(screen, of_sent ? "LV_sub_si" : "LV_sub"), 0);
        auto &pictured = control<QToolButton>(screen, qPrintable(button));
        const auto &looking = control<QTimer>(screen, qPrintable(timer));
        const QImage dark = image_of(drawn_icon(picture)), lit = image_of(lit_icon(picture));
        QVERIFY(dark != lit);
        QCOMPARE(looking.interval(), 100);
        QVERIFY(!looking.isActive());
        QCOMPARE(image_of(pictured.icon()), dark);
        point_at(pictured);
        QCOMPARE(image_of(pictured.icon()), lit);
        QVERIFY(looking.isActive());
        QTest::qWait(3 * looking.interval());
        QCOMPARE(image_of(pictured.icon()), lit); // the pointer is still there
        QCursor::setPos(screen.mapToGlobal(screen.rect().bottomRight()) + QPoint(50, 50));
        QTRY_COMPARE(image_of(pictured.icon()), dark);
        QTRY_VERIFY(!looking.isActive());
    }

    void a_command_that_does_not_work_stays_dark()
    {
        auditor_site site;
        mailfrm &screen = stored_mails_shown();
        auto &button = control<QToolButton>(screen, "Command1");
        point_at(button);
        QCOMPARE(image_of(button.icon()), image_of(drawn_icon("sendmail")));
    }

    void sending_waits_for_the_mail_sender_and_says_so()
    {
        auditor_site site;
        site.store_mails(1);
        site.store_sent("cat@mail.example", "Thanks");
        mailfrm &screen = sent_mails_shown();
        click_row(control<list_view>(screen, "LV_sub_si"), 0);
        for (const char *name : {"Command1", "Ssendmail_b"}) {
            QVERIFY(!control<QToolButton>(screen, name).isEnabled());
            QCOMPARE(control<QToolButton>(screen, name).toolTip(),
                     "Not there yet: mailings cannot be written in this version");
        }
        for (const char *name : {"sendm", "ssendm"}) {
            QVERIFY(!control<QAction>(screen, name).isEnabled());
            QCOMPARE(control<QAction>(screen, name).toolTip(),
                     "Not there yet: mailings cannot be written in this version");
        }
    }

    void each_list_has_its_popup_menu()
    {
        auditor_site site;
        site.store_mails(1);
        site.store_sent("cat@mail.example", "Thanks");
        mailfrm &screen = stored_mails_shown();
        auto &inbox = control<list_view>(screen, "LV_sub");
        QCOMPARE(popup_commands(inbox), (QStringList{"inb", "sitm", "-", "replym off", "deletem off", "sendm off"}));
        click_row(inbox, 0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(popup_commands(inbox), (QStringList{"inb", "sitm", "-", "replym", "deletem", "sendm off"}));
        control<QAction>(screen, "sitm").trigger();
        auto &sent = control<list_view>(screen, "LV_sub_si");
        click_row(sent, 0);
        QCOMPARE(popup_commands(sent), (QStringList{"inb", "sitm", "-", "sreplym", "sdeletem", "ssendm off"}));
    }

    void the_popup_commands_switch_the_views()
    {
        auditor_site site;
        mailfrm &screen = stored_mails_shown();
        QCOMPARE(control<QAction>(screen, "inb").text().remove('&'), "Inbox");
        QCOMPARE(control<QAction>(screen, "sitm").text().remove('&'), "Sent Item");
        control<QAction>(screen, "sitm").trigger();
        QVERIFY(control<QFrame>(screen, "sentitems_fr").isVisible());
        QVERIFY(control<QToolButton>(screen, "sentitems_b").isChecked());
        control<QAction>(screen, "inb").trigger();
        QVERIFY(control<QFrame>(screen, "inbox_fr").isVisible());
        QVERIFY(control<QToolButton>(screen, "inbox_b").isChecked());
    }

    void keys_answer_and_delete()
    {
        auditor_site site;
        site.store_mails(3);
        mailfrm &screen = stored_mails_shown();
        auto &list = control<list_view>(screen, "LV_sub");
        click_row(list, 0);
        int opened = 0;
        const auto close_it = [&opened](Showdetails &reply) {
            ++opened;
            control<QPushButton>(reply, "cancel_b").click();
        };
        in_modal<Showdetails>(close_it);
        QTest::keyClick(&list, Qt::Key_Return);
        in_modal<Showdetails>(close_it);
        QTest::keyClick(&control<QPlainTextEdit>(screen, "txt_body"), Qt::Key_R, Qt::ControlModifier);
        QCOMPARE(opened, 2);
        QTest::keyClick(&control<QLineEdit>(screen, "Insearch_t"), Qt::Key_Delete); // of a letter, not of a mail
        QCOMPARE(site.rows_of("orders"), 3);
        list.setFocus();
        QTest::keyClick(&list, Qt::Key_Delete);
        QCOMPARE(site.rows_of("orders"), 2);
    }

    void enter_without_a_selected_mail_does_nothing()
    {
        auditor_site site;
        mailfrm &screen = stored_mails_shown();
        QTest::keyClick(&control<list_view>(screen, "LV_sub"), Qt::Key_Return);
        QVERIFY(!is_loaded<Showdetails>());
        QVERIFY(is_visible<mailfrm>());
    }

    void the_frames_lists_and_the_text_fit_the_window()
    {
        auditor_site site;
        mailfrm &screen = stored_mails_shown();
        QCOMPARE(screen.property("tag").toString(), "form resize");
        const auto &inbox = control<QFrame>(screen, "inbox_fr");
        const auto &list = control<list_view>(screen, "LV_sub");
        const auto &text = control<QPlainTextEdit>(screen, "txt_body");
        for (const QSize size : {QSize(700, 420), QSize(1240, 760)}) {
            screen.resize(size);
            QCoreApplication::processEvents();
            QVERIFY(inbox.width() > size.width() - 40 && inbox.width() <= size.width());
            QCOMPARE(list.width(), inbox.width());
            QVERIFY(text.width() > size.width() - 40 && text.width() <= size.width());
            QVERIFY(text.mapTo(&screen, QPoint(0, text.height())).y() <= size.height());
            QVERIFY(list.height() > size.height() / 4);
        }
    }

    void all_buttons_fit_the_smallest_window()
    {
        auditor_site site;
        mailfrm &screen = sent_mails_shown();
        screen.resize(screen.minimumSize());
        QCoreApplication::processEvents();
        QVERIFY(screen.width() <= 560);
        for (const char *name : {"SReply_b", "Sdelete_b", "Ssendmail_b"}) {
            const auto &button = control<QToolButton>(screen, name);
            QVERIFY2(button.width() >= button.sizeHint().width(), name);
        }
        QVERIFY(control<QLineEdit>(screen, "Ssearch_t").width() >= 180);
    }
};

QTEST_MAIN(auditor_toolbar_test)
#include "auditor_toolbar_test.moc"
