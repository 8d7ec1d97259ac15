// What was typed and not saved is not lost unasked: by closing the console, by a restored back-up, by Escape, by the
// window's cross, by another page.
#include "frame/session.h"
#include "screens/directmail/EditSign.h"
#include "screens/directmail/NewSign.h"
#include "screens/directmail/Signature.h"
#include "screens/frame/menuFrm.h"
#include "screens/preferences/Preference.h"
#include "screens/preferences/autoresponder.h"
#include "screens/preferences/mail_client_frm.h"
#include "screens/preferences/page_list.h"
#include "support/refusing_store.h"
#include "support/screens_auditor.h"
#include "support/screens_map_wizard.h"
#include "support/screens_program_end.h"
#include "support/scripted_dialogs.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QTest>
#include <QToolButton>

namespace {

const char *const back_up_question = "Would you like to backup your data?";
const char *const typed_question = "What was typed here is not saved. Go on without saving?";
const char *const changed_question = "What was changed here is not saved. Go on without saving?";

// The console over a store with a map, two mails and a signature.
struct unsaved_site : auditor_site {
    unsaved_site()
    {
        store.add_map("shop", store.cell("select id from email_tbl where query='orders'").toLongLong(), "Order",
                      {{.name = "person"}});
        store_mails(2);
        store.run("insert into sign values( 'Shop','Kind regards','No' )");
        store.run("update autofetch set minutes=-1");
        count_program_ends(ends);
        console.show();
    }
    ~unsaved_site() { set_program_end({}); }

    int ends = 0;
    menuFrm console;
};

void type_an_answer()
{
    the<autoresponder>().show();
    control<QComboBox>(the<autoresponder>(), "mapname_c").setCurrentText("shop");
    control<QPlainTextEdit>(the<autoresponder>(), "autocontent_t").setPlainText("Thank you.");
}

void type_minutes()
{
    open_page(preference_page::general);
    control<QCheckBox>(the<Preference>(), "autofetch_ch").click();
    type(the<Preference>(), "minutes_t", "1");
}

void type_an_address()
{
    open_page(preference_page::mail_client);
    QTest::keyClicks(&control<QLineEdit>(the<mail_client_frm>(), "address_t"), "ann@mail.example");
}

void type_a_new_signature()
{
    control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye");
}

void type_another_signature()
{
    control<QPlainTextEdit>(the<EditSign>(), "Text2").setPlainText("Bye");
}

void type_a_reply()
{
    control<QPlainTextEdit>(the<Showdetails>(), "body_t").insertPlainText("Dear Ann");
}

// Looks round as each box opens.
class watched_messages : public message_service {
public:
    watched_messages(message_service &told, std::function<void()> seen) : boxes(told), look(std::move(seen))
    {
        set_message_service(this);
    }
    ~watched_messages() override { set_message_service(&boxes); }
    watched_messages(const watched_messages &) = delete;
    watched_messages &operator=(const watched_messages &) = delete;
    std::optional<QString> show(const message_box &box) override
    {
        look();
        return boxes.show(box);
    }

private:
    message_service &boxes;
    std::function<void()> look;
};

// The screen that the user sees on top in the console's area.
QString front_screen(const menuFrm &console)
{
    const QMdiSubWindow *front = control<QMdiArea>(console, "area").activeSubWindow();
    return front && front->widget() ? front->widget()->objectName() : QString();
}

// Kept at first, given up then: the console asks each time, and the back-up question comes behind.
template <typename T>
void close_with(unsaved_site &site, const QString &question)
{
    site.boxes.will_say_no();
    site.console.close();
    QCOMPARE(site.boxes.shown, QStringList{question});
    QVERIFY(site.boxes.boxes[0].no_is_default);
    QVERIFY(is_visible<T>());
    QVERIFY(site.console.isVisible());
    QCOMPARE(site.ends, 0);
    site.boxes.will_say_yes();
    site.boxes.will_say_no();
    site.console.close();
    QCOMPARE(site.boxes.shown, (QStringList{question, question, back_up_question}));
    QCOMPARE(site.ends, 1);
}

}

class unsaved_work_test : public QObject {
    Q_OBJECT
private slots:
    void closing_with_an_unsaved_autoresponder_asks()
    {
        unsaved_site site;
        type_an_answer();
        close_with<autoresponder>(site, changed_question);
        QCOMPARE(control<QPlainTextEdit>(the<autoresponder>(), "autocontent_t").toPlainText(), "Thank you.");
    }

    void closing_with_minutes_that_were_not_set_asks()
    {
        unsaved_site site;
        type_minutes();
        close_with<Preference>(site, typed_question);
    }

    void closing_with_unsaved_settings_of_the_mail_client_asks()
    {
        unsaved_site site;
        type_an_address();
        close_with<mail_client_frm>(site, "What is typed on this page is not saved yet. Leave it without saving?");
    }

    void closing_over_a_new_signature_asks()
    {
        unsaved_site site;
        the<Signature>().show();
        in_modal<NewSign>([&site](NewSign &entry) {
            type_a_new_signature();
            close_with<NewSign>(site, typed_question);
            entry.unload();
        });
        press<Signature>("Command3");
        QCOMPARE(site.ends, 1);
    }

    void closing_over_another_text_of_a_signature_asks()
    {
        unsaved_site site;
        the<Signature>().show();
        control<QListWidget>(the<Signature>(), "List1").setCurrentRow(0);
        in_modal<EditSign>([&site](EditSign &entry) {
            type_another_signature();
            close_with<EditSign>(site, typed_question);
            entry.unload();
        });
        press<Signature>("Command1");
        QCOMPARE(site.ends, 1);
    }

    void closing_over_a_reply_asks()
    {
        unsaved_site site;
        click_row(control<list_view>(stored_mails_shown(), "LV_sub"), 0);
        in_modal<Showdetails>([&site](Showdetails &reply) {
            type_a_reply();
            close_with<Showdetails>(site, "This reply was not sent. Do you want to throw it away?");
            reply.unload();
        });
        QTest::mouseClick(&control<QToolButton>(the<mailfrm>(), "Inreply_b"), Qt::LeftButton);
        QCOMPARE(site.ends, 1);
    }

    void where_nothing_was_typed_only_the_back_up_is_asked_about()
    {
        unsaved_site site;
        the<autoresponder>().show();
        control<QComboBox>(the<autoresponder>(), "mapname_c").setCurrentText("shop");
        the<Signature>().show();
        open_page(preference_page::general);
        site.boxes.will_say_no();
        site.console.close();
        QCOMPARE(site.boxes.shown, QStringList{back_up_question});
        QCOMPARE(site.ends, 1);
    }

    void each_screen_that_is_asked_about_stands_in_front_and_the_first_no_ends_the_closing()
    {
        unsaved_site site;
        type_an_answer();
        type_minutes();
        stored_mails_shown(); // covers both
        QCOMPARE(front_screen(site.console), "mailfrm");
        QStringList in_front;
        watched_messages boxes(site.boxes, [&] { in_front += front_screen(site.console); });
        site.boxes.will_say_yes();
        site.boxes.will_say_no();
        site.console.close();
        QCOMPARE(site.ends, 0);
        in_front.sort();
        QCOMPARE(in_front, (QStringList{"Preference", "autoresponder"}));
    }

    void what_cannot_be_asked_is_kept()
    {
        unsaved_site site;
        type_an_answer();
        {
            const refusing_store full;
            site.console.close();
        }
        QVERIFY(site.boxes.shown.isEmpty());
        QCOMPARE(site.ends, 0);
        QVERIFY(is_visible<autoresponder>());
        QCOMPARE(session.err_form, "autoresponder_frm.frm");
        QCOMPARE(session.err_routine, "Form_QueryUnload");
        QCOMPARE(control<QLabel>(site.console, "status_l").accessibleName(), // whole, however little room it has
                 "What was typed is kept, as what was done before could not be: The disk is full");
    }

    void a_restored_back_up_asks_first_as_it_ends_the_program()
    {
        unsaved_site site;
        scripted_dialogs dialogs;
        type_an_answer();
        site.boxes.will_say_no();
        control<QAction>(site.console, "rst_bkp").trigger();
        QCOMPARE(site.boxes.shown, QStringList{changed_question});
        QVERIFY(is_visible<autoresponder>());
        QCOMPARE(site.ends, 0);
        dialogs.choices = {std::nullopt};
        site.boxes.will_say_yes();
        control<QAction>(site.console, "rst_bkp").trigger();
        QVERIFY(dialogs.choices.empty());
    }

    void minutes_that_were_not_set_are_not_lost_by_leaving_the_page_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("the cross") << 0;
        QTest::newRow("Close") << 1;
        QTest::newRow("another page") << 2;
        QTest::newRow("a command of the console") << 3;
    }

    void minutes_that_were_not_set_are_not_lost_by_leaving_the_page()
    {
        QFETCH(int, way);
        unsaved_site site;
        type_minutes();
        const auto leave = [&] {
            switch (way) {
            case 0:
                return void(the<Preference>().parentWidget()->close());
            case 1:
                return press<Preference>("close_b");
            case 2:
                return press<Preference>("Command4");
            default:
                return control<QAction>(site.console, "account").trigger();
            }
        };
        site.boxes.will_say_no();
        leave();
        QVERIFY(is_visible<Preference>());
        QCOMPARE(control<QLineEdit>(the<Preference>(), "minutes_t").text(), "1");
        site.boxes.will_say_yes();
        leave();
        QVERIFY(!is_loaded<Preference>());
        QCOMPARE(site.boxes.shown, QStringList(2, typed_question));
        QCOMPARE(site.store.cell("select minutes from autofetch"), "-1");
    }

    void minutes_that_were_set_or_taken_back_are_left_unasked()
    {
        unsaved_site site;
        type_minutes();
        press<Preference>("Command1");
        press<Preference>("close_b");
        QVERIFY(!is_loaded<Preference>());
        open_page(preference_page::general);
        type(the<Preference>(), "minutes_t", "5");
        type(the<Preference>(), "minutes_t", "1");
        press<Preference>("close_b");
        QVERIFY(!is_loaded<Preference>());
        QCOMPARE(site.boxes.shown, QStringList());
    }
};

QTEST_MAIN(unsaved_work_test)
#include "unsaved_work_test.moc"
