// Answering a mail of the Mail Auditor when the store fails: the program lives, and nothing goes to the wrong person.
#include "frame/session.h"
#include "platform/outbox.h"
#include "support/refusing_store.h"
#include "support/screens_auditor.h"
#include "support/screens_map_wizard.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QToolButton>

namespace {

void press_in(Showdetails &reply, const char *button)
{
    QTest::mouseClick(&control<QPushButton>(reply, button), Qt::LeftButton);
}

QString text_of(Showdetails &reply, const char *line)
{
    return control<QLineEdit>(reply, line).text();
}

QString body_of(Showdetails &reply)
{
    return control<QPlainTextEdit>(reply, "body_t").toPlainText();
}

void answer(int mails)
{
    auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
    for (int row = 0; row < mails; ++row)
        click_row(list, row, row == 0 ? Qt::NoModifier : Qt::ControlModifier);
    QTest::mouseClick(&control<QToolButton>(the<mailfrm>(), "Inreply_b"), Qt::LeftButton);
}

}

class auditor_reply_failure_test : public QObject {
    Q_OBJECT
private slots:
    void a_question_that_cannot_be_asked_leaves_what_was_typed()
    {
        auditor_site site;
        site.store_mails(2);
        in_modal<Showdetails>([&site](Showdetails &reply) {
            control<QPlainTextEdit>(reply, "body_t").insertPlainText("Dear Ann");
            {
                const refusing_store full;
                press_in(reply, "skip_b");
                QCOMPARE(session.err_routine, "skip_b");
                QCOMPARE(control<QLabel>(reply, "count_l").text(), "Reply 1 of 2");
                press_in(reply, "cancel_b");
                QCOMPARE(session.err_form, "Showdetails.frm");
                QCOMPARE(session.err_routine, "cancel_b");
                reply.close();
            }
            QVERIFY(is_visible<Showdetails>());
            QVERIFY(body_of(reply).startsWith("Dear Ann"));
            QCOMPARE(site.boxes.shown, QStringList());
            QCOMPARE(site.status_lines.last(),
                     "What was typed is kept, as what was done before could not be: The disk is full");
            site.boxes.will_say_yes();
            press_in(reply, "cancel_b");
        });
        answer(2);
        QVERIFY(!is_loaded<Showdetails>());
    }

    void a_failed_reply_whose_box_fails_too_is_told_in_a_line()
    {
        auditor_site site;
        site.store_mails(1);
        QDir(site.file("outbox")).removeRecursively();
        QFile in_its_place(site.file("outbox"));
        QVERIFY(in_its_place.open(QIODevice::WriteOnly));
        in_its_place.close();
        in_modal<Showdetails>([&site](Showdetails &reply) {
            control<QComboBox>(reply, "account_c").setCurrentText("orders");
            {
                const refusing_store full;
                press_in(reply, "send_b");
            }
            QVERIFY(is_visible<Showdetails>());
            QVERIFY(site.status_lines.last().startsWith("The reply could not be sent. "));
            QCOMPARE(site.boxes.shown, QStringList());
            press_in(reply, "cancel_b");
        });
        answer(1);
    }

    void a_mail_that_cannot_be_read_is_not_answered_to_the_former_one()
    {
        auditor_site site;
        site.store_mails(1);
        site.store_mail("contact", "bob@mail.example", "Question");
        site.store.add_account("third", "third@shop.example");
        site.store_mail("third", "cat@mail.example", "Other");
        in_modal<Showdetails>([&site](Showdetails &reply) {
            control<QComboBox>(reply, "account_c").setCurrentText("orders");
            site.store.run("drop table contact");
            press_in(reply, "send_b");
            QCOMPARE(control<QLabel>(reply, "count_l").text(), "Reply 2 of 3");
            QCOMPARE(text_of(reply, "to_t"), "");
            QCOMPARE(text_of(reply, "subject_t"), "");
            QCOMPARE(body_of(reply), "");
            QVERIFY(!control<QPushButton>(reply, "send_b").isEnabled());
            QVERIFY(site.status_lines.last().startsWith("The mail to be answered could not be read: "));
            QCOMPARE(session.err_routine, "Form_load");
            QTest::keyClicks(&control<QLineEdit>(reply, "to_t"), "bob@mail.example");
            QTest::keyClick(&reply, Qt::Key_Return, Qt::ControlModifier);
            QCOMPARE(outbox::contents().size(), size_t(1));
            control<QLineEdit>(reply, "to_t").clear();
            press_in(reply, "skip_b"); // nothing was typed, so nothing is asked
            QCOMPARE(text_of(reply, "to_t"), "cat@mail.example");
            QVERIFY(control<QPushButton>(reply, "send_b").isEnabled());
            press_in(reply, "cancel_b");
        });
        answer(3);
        QCOMPARE(site.column("select tsl_to from sentitems_tbl"), QStringList{"visitor0@mail.example"});
    }
};

QTEST_MAIN(auditor_reply_failure_test)
#include "auditor_reply_failure_test.moc"
