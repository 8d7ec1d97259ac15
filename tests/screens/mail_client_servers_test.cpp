// The page "Mail Client" with real servers behind it: typed, tested, saved, and a mail that goes out afterwards.
#include "platform/mail_delivery.h"
#include "platform/outbox.h"
#include "platform/passwords.h"
#include "platform/settings.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_frm.h"
#include "screens/list_view.h"
#include "screens/preferences/mail_client_frm.h"
#include "screens/screen.h"
#include "support/dovecot.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"
#include "support/smtp_sink.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>

namespace {

constexpr int patience_ms = 30000;

void type(const char *name, const QString &text)
{
    auto &field = control<QLineEdit>(the<mail_client_frm>(), name);
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, text);
}

void press(const char *name)
{
    control<QPushButton>(the<mail_client_frm>(), name).click();
}

// Steps as they stand, for the words of a failure.
QString steps()
{
    QStringList lines;
    auto &list = control<QListWidget>(the<mail_client_frm>(), "steps_li");
    for (int row = 0; row < list.count(); ++row)
        lines += list.item(row)->data(Qt::AccessibleTextRole).toString();
    return lines.join(u'\n');
}

QString result()
{
    return control<QLabel>(the<mail_client_frm>(), "result_l").text();
}

bool test_has_ended()
{
    return result() != "Testing ...";
}

constexpr int starttls_line = 1;

struct servers_site : screens_site {
    servers_site() : mailbox(secured(made)), sink(with_login(made))
    {
        SaveSetting("mail_client", "kind", {});
        passwords::forget_remembered();
    }
    ~servers_site() { delivery::stop(); }

    static dovecot_options secured(const certificates &made)
    {
        dovecot_options options;
        options.certificate = made.good();
        return options;
    }
    static smtp_options with_login(const certificates &made)
    {
        smtp_options options;
        options.certificate = made.good();
        options.user = "ann";
        options.password = "apple tree";
        return options;
    }

    void type_settings(const QString &password) const
    {
        the<mail_client_frm>().show();
        type("address_t", "ann@localhost");
        type("password_t", password);
        type("host_t", "localhost");
        type("user_t", "ann");
        control<QComboBox>(the<mail_client_frm>(), "security_c").setCurrentIndex(starttls_line);
        control<QSpinBox>(the<mail_client_frm>(), "port_s").setValue(mailbox.imap_port);
        control<QComboBox>(the<mail_client_frm>(), "send_c").setCurrentIndex(0);
        type("smtp_host_t", "localhost");
        control<QComboBox>(the<mail_client_frm>(), "smtp_security_c").setCurrentIndex(starttls_line);
        control<QSpinBox>(the<mail_client_frm>(), "smtp_port_s").setValue(sink.port());
        type("from_t", "ann@localhost");
        type("authority_t", made.authority());
    }

    certificates made;
    dovecot_server mailbox;
    smtp_sink sink;
};

}

class mail_client_servers_test : public QObject {
    Q_OBJECT
private slots:
    void typed_tested_and_saved_the_program_sends()
    {
        servers_site site;
        menuFrm console;
        console.show();
        console.start_delivery();
        site.type_settings("apple tree");
        press("test_b");
        QTRY_VERIFY_WITH_TIMEOUT(test_has_ended(), patience_ms);
        QVERIFY2(result() == "It works: mail can be fetched and sent. Press OK to keep these settings.",
                 qPrintable(result() + "\n" + steps()));
        press("ok_b");
        QVERIFY(!is_loaded<mail_client_frm>());

        outbox::outgoing_mail mail;
        mail.To = QStringList{"bob@localhost"};
        mail.Subject = "Your order";
        mail.body = "Thank you.";
        outbox::hand_over(mail);
        QTRY_COMPARE_WITH_TIMEOUT(site.sink.taken(), 1, patience_ms);
        QTRY_COMPARE_WITH_TIMEOUT(outbox::contents().size(), size_t(0), patience_ms);
        control<QAction>(console, "outbox_mnu").trigger();
        QTRY_COMPARE(control<list_view>(the<outbox_frm>(), "LV_outbox").model()->rowCount(), 0);
    }

    void a_wrong_password_is_told_in_plain_words()
    {
        servers_site site;
        site.type_settings("pear tree");
        press("test_b");
        QTRY_VERIFY_WITH_TIMEOUT(test_has_ended(), patience_ms);
        QCOMPARE(result(), "It does not work yet. The line that failed says why.");
        QVERIFY2(steps().contains("failed, Signing in: "), qPrintable(steps()));
        QVERIFY(!steps().contains("pear tree"));
    }

    void what_waits_while_the_server_is_away_is_counted_and_goes_on()
    {
        servers_site site;
        site.type_settings("apple tree");
        press("ok_b");
        site.sink.stop();
        outbox::outgoing_mail mail;
        mail.To = QStringList{"bob@localhost"};
        mail.Subject = "Your order";
        outbox::hand_over(mail);
        menuFrm console;
        console.show();
        console.start_delivery();
        auto &told = control<QToolButton>(console, "outbox_b");
        QTRY_VERIFY_WITH_TIMEOUT(told.isVisible(), patience_ms);
        site.sink.start();
        control<QAction>(console, "outbox_mnu").trigger();
        control<QPushButton>(the<outbox_frm>(), "now_b").click();
        QTRY_COMPARE_WITH_TIMEOUT(site.sink.taken(), 1, patience_ms);
        QTRY_VERIFY_WITH_TIMEOUT(!told.isVisible(), patience_ms);
    }
};

QTEST_MAIN(mail_client_servers_test)
#include "mail_client_servers_test.moc"
