// The preferences page "Online Form" and the console's two Open commands.
#include "frame/session.h"
#include "platform/winopen.h"
#include "screens/frame/menuFrm.h"
#include "screens/preferences/Accounts.h"
#include "screens/preferences/OnlinePref.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"
#include "support/scripted_dialogs.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace {

OnlinePref &page()
{
    return the<OnlinePref>();
}

// Files to open, a browser that writes down what it is given, and the console.
struct open_site : screens_site {
    open_site()
    {
        set_winopen([this](const QString &path) {
            opened += path;
            return has_browser;
        });
    }
    ~open_site() { set_winopen({}); }
    QString made(const QString &name, const QByteArray &page)
    {
        QFile written(file(name));
        if (!written.open(QIODevice::WriteOnly) || written.write(page) != page.size())
            qFatal("%s cannot be written", qPrintable(name));
        return file(name);
    }
    void choose(const char *command, const QString &path)
    {
        dialogs.choices.push_back(path);
        control<QAction>(console, command).trigger();
    }
    scripted_dialogs dialogs;
    menuFrm console;
    QStringList opened;
    bool has_browser = true;
};

}

class OnlinePref_test : public QObject {
    Q_OBJECT

    static void both_commands()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("Open Tessaly Form") << QByteArray("openex_mnu");
        QTest::newRow("Open My Own Form") << QByteArray("openmy_mnu");
    }

private slots:
    void it_tells_what_its_two_commands_are_for()
    {
        screens_site site;
        page().show();
        QCOMPARE(control<QLabel>(page(), "new_l").text(),
                 "If you do not have an existing online form, but have a web site with CGI-bin, ASP mail or other "
                 "formMail script installed, you may choose this option to build form using Tessaly's templates.");
        QCOMPARE(control<QLabel>(page(), "existing_l").text(),
                 "If you already have an online form and you need to configure it for use with Tessaly, you may choose "
                 "this option by opening your existing HTML.");
        QCOMPARE(control<QPushButton>(page(), "Command6").text().remove('&'), "Create New");
        QCOMPARE(control<QPushButton>(page(), "Command5").text().remove('&'), "Edit Existing");
    }

    void without_their_screens_the_two_commands_are_disabled_and_say_why()
    {
        screens_site site;
        page().show();
        for (const char *name : {"Command5", "Command6"}) {
            QVERIFY(!control<QPushButton>(page(), name).isEnabled());
            QCOMPARE(control<QPushButton>(page(), name).toolTip(), "The form builder is not there yet.");
        }
        QVERIFY(control<QLabel>(page(), "not_there_l").isVisible()); // no keyboard reaches a tool tip
        QCOMPARE(control<QLabel>(page(), "not_there_l").text(), "The form builder is not there yet.");
    }

    void its_button_leads_to_the_accounts()
    {
        screens_site site;
        page().show();
        control<QPushButton>(page(), "Command3").click();
        QVERIFY(is_visible<Accounts>());
        QVERIFY(!is_loaded<OnlinePref>());
        the<Accounts>().unload();
        page().show();
        QVERIFY(!control<QPushButton>(page(), "Command4").isEnabled());
    }

    void a_store_that_cannot_be_opened_is_logged_under_the_pages_name()
    {
        screens_site site;
        session.store_connection->Close();
        site.store.connection().Close();
        QFile store(site.store.path());
        QVERIFY(store.open(QIODevice::WriteOnly | QIODevice::Truncate));
        store.write(QByteArray(8192, 'x'));
        store.close();
        page().show();
        QCOMPARE(session.err_form, "Onlinepref.frm");
        QCOMPARE(session.err_routine, "Form_load");
        QCOMPARE(site.status_lines.filter("The store cannot be opened").size(), 1);
    }

    void escape_and_close_end_the_page()
    {
        screens_site site;
        page().show();
        QTest::keyClick(&page(), Qt::Key_Escape);
        QVERIFY(!is_loaded<OnlinePref>());
        page().show();
        control<QPushButton>(page(), "close_b").click();
        QVERIFY(!is_loaded<OnlinePref>());
    }

    void enter_alone_does_not_close_the_page()
    {
        screens_site site;
        page().show();
        QTest::keyClick(page().focusWidget(), Qt::Key_Return);
        QVERIFY(is_visible<OnlinePref>());
    }

    void the_open_commands_ask_for_a_page_data() { both_commands(); }
    void the_open_commands_ask_for_a_page()
    {
        QFETCH(QByteArray, command);
        open_site site;
        site.dialogs.choices.push_back(std::nullopt);
        control<QAction>(site.console, command).trigger();
        QCOMPARE(site.dialogs.asked, QStringList{"|htm(*.htm)|*.htm|html(*.html)|*.html|*.html , *.htm|*.html;*.htm"});
        QCOMPARE(site.boxes.shown, QStringList()); // Cancel is the end of it
        QCOMPARE(site.opened, QStringList());
    }

    void a_name_that_does_not_exist_is_told_data() { both_commands(); }
    void a_name_that_does_not_exist_is_told()
    {
        QFETCH(QByteArray, command);
        open_site site;
        site.choose(command, site.file("nothing.htm"));
        QCOMPARE(site.boxes.shown, QStringList{"Invalid file name"});
        QCOMPARE(site.opened, QStringList());
    }

    void a_page_without_the_mark_of_the_programs_own_forms_is_refused_data() { both_commands(); }
    void a_page_without_the_mark_of_the_programs_own_forms_is_refused()
    {
        QFETCH(QByteArray, command);
        open_site site;
        site.choose(command, site.made("page.htm", "<html><!--comment_start--><form></form></html>"));
        QCOMPARE(site.boxes.shown, QStringList{"Invalid file"});
        QCOMPARE(site.opened, QStringList());
    }

    void a_form_of_the_programs_own_is_shown_in_the_browser_data() { both_commands(); }
    void a_form_of_the_programs_own_is_shown_in_the_browser()
    {
        QFETCH(QByteArray, command);
        open_site site;
        const QString form = site.made("form.htm", "<html><!--#comment_start--><!--<a/>--><!--#comment_end--></html>");
        site.choose(command, form);
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(site.opened, QStringList{form});
    }

    void without_a_browser_it_says_so()
    {
        open_site site;
        site.has_browser = false;
        const QString form = site.made("form.htm", "<!--#comment_start-->");
        site.choose("openex_mnu", form);
        QCOMPARE(control<QLabel>(site.console, "status_l").toolTip(),
                 "<qt>No program on this desktop shows " + form + ".</qt>");
    }
};

QTEST_MAIN(OnlinePref_test)
#include "OnlinePref_test.moc"
