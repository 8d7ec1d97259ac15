// The desktop's message boxes: what they show, and what each key means.
#include "screens/message_boxes.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

class message_boxes_test : public QObject {
    Q_OBJECT

    // Shows the box and presses the key in it; looks at it before, when asked to.
    static std::optional<QString> answer(const message_box &box, Qt::Key key,
                                         const std::function<void(QWidget &)> &look = {})
    {
        message_boxes boxes;
        set_message_service(&boxes);
        QTimer::singleShot(0, [&] {
            QWidget *shown = QApplication::activeModalWidget();
            if (!shown)
                qFatal("No box is open");
            if (look)
                look(*shown);
            QTest::keyClick(shown, key);
        });
        const auto given = boxes.show(box);
        set_message_service(nullptr);
        return given;
    }

    const message_box question{message_kind::yes_no, "Is <b>it</b> so?", "Label Printing", message_icon::question, {}};

private slots:
    void return_is_yes_and_escape_no()
    {
        QVERIFY(answer(question, Qt::Key_Return).has_value());
        QVERIFY(!answer(question, Qt::Key_Escape).has_value());
    }

    void return_is_no_where_something_would_be_lost()
    {
        message_box box = question;
        box.no_is_default = true;
        const auto look = [](QWidget &shown) {
            auto *asked = qobject_cast<QMessageBox *>(&shown);
            QVERIFY(asked);
            QCOMPARE(asked->defaultButton(), asked->button(QMessageBox::No));
        };
        QVERIFY(!answer(box, Qt::Key_Return, look).has_value());
        QVERIFY(answer(box, Qt::Key_Y).has_value());
    }

    void return_is_ok_and_escape_cancel()
    {
        const message_box box{message_kind::ok_cancel, "Go on?", "Tessaly", message_icon::question, {}};
        QVERIFY(answer(box, Qt::Key_Return).has_value());
        QVERIFY(!answer(box, Qt::Key_Escape).has_value());
    }

    void text_title_icon_and_buttons_are_the_ones_asked_for()
    {
        answer(question, Qt::Key_Escape, [](QWidget &shown) {
            auto *box = qobject_cast<QMessageBox *>(&shown);
            QVERIFY(box);
            QCOMPARE(box->windowTitle(), "Label Printing");
            QCOMPARE(box->text(), "Is <b>it</b> so?");
            QCOMPARE(box->textFormat(), Qt::PlainText);
            QCOMPARE(box->icon(), QMessageBox::Question);
            QCOMPARE(box->standardButtons(), QMessageBox::Yes | QMessageBox::No);
            QCOMPARE(box->defaultButton(), box->button(QMessageBox::Yes));
        });
    }

    void a_yes_that_leads_nowhere_yet_is_greyed_and_return_is_no()
    {
        message_box box = question;
        box.no_is_default = true;
        box.beside = "It is not there yet.";
        box.yes_works = false;
        const auto look = [](QWidget &shown) {
            auto *asked = qobject_cast<QMessageBox *>(&shown);
            QVERIFY(asked);
            QVERIFY(!asked->button(QMessageBox::Yes)->isEnabled());
            QVERIFY(asked->button(QMessageBox::No)->isEnabled());
            QCOMPARE(asked->informativeText(), "It is not there yet.");
        };
        QVERIFY(!answer(box, Qt::Key_Return, look).has_value());
        QVERIFY(!answer(box, Qt::Key_Escape, look).has_value());
    }

    void more_words_stand_below_the_text()
    {
        message_box box{message_kind::say, "Done.", "Tessaly", message_icon::information, {}};
        box.beside = "It is in <b>here</b>.";
        answer(box, Qt::Key_Return, [](QWidget &shown) {
            auto *said = qobject_cast<QMessageBox *>(&shown);
            QVERIFY(said);
            QCOMPARE(said->text(), "Done.");
            QCOMPARE(said->informativeText(), "It is in <b>here</b>.");
            QCOMPARE(said->textFormat(), Qt::PlainText);
        });
    }

    void a_typed_text_comes_back_and_escape_gives_none()
    {
        const message_box box{message_kind::input, "<i>Name</i>:", "Tessaly", message_icon::none, "proposal"};
        const auto type_more = [](QWidget &shown) {
            auto *line = shown.findChild<QLineEdit *>();
            QVERIFY(line);
            QCOMPARE(line->text(), "proposal");
            line->setText("my name");
            QCOMPARE(shown.findChild<QLabel *>()->text(), "<i>Name</i>:");
            QCOMPARE(shown.findChild<QLabel *>()->textFormat(), Qt::PlainText);
        };
        QCOMPARE(answer(box, Qt::Key_Return, type_more), std::optional<QString>("my name"));
        QVERIFY(!answer(box, Qt::Key_Escape).has_value());
    }

    void the_program_is_busy_while_a_box_is_open()
    {
        message_boxes boxes;
        set_message_service(&boxes);
        bool was_busy = false;
        QTimer::singleShot(0, [&was_busy] {
            was_busy = busy();
            QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
        });
        say("Done");
        QVERIFY(was_busy);
        QVERIFY(!busy());
        set_message_service(nullptr);
    }
};

QTEST_MAIN(message_boxes_test)
#include "message_boxes_test.moc"
