// Making a signature and changing one, over the picker. The picker itself: Signature_test.cpp.
#include "frame/session.h"
#include "screens/directmail/EditSign.h"
#include "screens/directmail/NewSign.h"
#include "support/screens_signatures.h"

#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

class signature_entry_test : public QObject {
    Q_OBJECT
private slots:
    void a_new_one_is_preset_untitled()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            QCOMPARE(QApplication::activeModalWidget()->windowTitle(), "Create New Signature.");
            QCOMPARE(control<QLineEdit>(the<NewSign>(), "Text1").text(), "Untitled");
            QCOMPARE(control<QPlainTextEdit>(the<NewSign>(), "Text2").toPlainText(), "");
        }));
    }

    void finish_speaks_about_the_title_first_then_about_the_text()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QLineEdit>(the<NewSign>(), "Text1").clear();
            press_on<NewSign>("Command2");
            control<QLineEdit>(the<NewSign>(), "Text1").setText("Shop");
            press_on<NewSign>("Command2");
        }));
        QCOMPARE(site.boxes.shown,
                 (QStringList{"Title of the Signature must be specified.", "Please enter signature"}));
        QCOMPARE(site.box(0).title, "Title.");
        QCOMPARE(site.box(1).title, "Title.");
        QCOMPARE(site.rows_of("sign"), 2);
    }

    void a_title_that_exists_is_refused_whatever_its_case_and_blanks()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QLineEdit>(the<NewSign>(), "Text1").setText("  SHOP ");
            control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye");
            press_on<NewSign>("Command2");
            QVERIFY(is_visible<NewSign>());
        }));
        QCOMPARE(site.boxes.shown, QStringList{"The Signature with the Title SHOP already exists."});
        QCOMPARE(site.box().title, "Error.");
        QCOMPARE(site.rows_of("sign"), 2);
        QCOMPARE(site.row("Shop"), "Kind regards|No");
    }

    void a_new_one_is_in_the_list_and_never_selected_by_being_made()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QLineEdit>(the<NewSign>(), "Text1").setText(" Zoe's ");
            control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye\u00a0all\nZoe");
            press_on<NewSign>("Command2");
            QVERIFY(!is_loaded<NewSign>());
        }));
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(titles(), (QStringList{"Shop", "Private", "Zoe's"}));
        QCOMPARE(site.row("Zoe''s"), "Bye\u00a0all\r\nZoe|No");
        QCOMPARE(site.selected(), "Private");
    }

    void a_title_of_blanks_passes_and_is_stored_trimmed_to_nothing()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QLineEdit>(the<NewSign>(), "Text1").setText("   ");
            control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye");
            press_on<NewSign>("Command2");
        }));
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(site.row(""), "Bye|No");
        QCOMPARE(titles(), (QStringList{"Shop", "Private", ""}));
        List1().setCurrentRow(2);
        QCOMPARE(preview(), "Bye");
        press("Command4"); // an empty title can be chosen, too
        QCOMPARE(site.row(""), "Bye|Yes");
    }

    void clear_empties_the_text_only()
    {
        signature_site site;
        picker().show();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye");
            press_on<NewSign>("Command1");
            QCOMPARE(control<QPlainTextEdit>(the<NewSign>(), "Text2").toPlainText(), "");
            QCOMPARE(control<QLineEdit>(the<NewSign>(), "Text1").text(), "Untitled");
        }));
        List1().setCurrentRow(0);
        QVERIFY(in_modal<EditSign>("Command1", [] {
            press_on<EditSign>("Command1");
            QCOMPARE(control<QPlainTextEdit>(the<EditSign>(), "Text2").toPlainText(), "");
            QCOMPARE(control<QLineEdit>(the<EditSign>(), "Text1").text(), "Shop");
        }));
    }

    void clear_can_be_undone()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(0);
        QVERIFY(in_modal<EditSign>("Command1", [] {
            auto &text = control<QPlainTextEdit>(the<EditSign>(), "Text2");
            press_on<EditSign>("Command1");
            QCOMPARE(text.toPlainText(), "");
            QTest::keyClick(&text, Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(text.toPlainText(), "Kind regards");
        }));
        QVERIFY(in_modal<NewSign>("Command3", [] {
            auto &text = control<QPlainTextEdit>(the<NewSign>(), "Text2");
            text.insertPlainText("Bye");
            press_on<NewSign>("Command1");
            QCOMPARE(text.toPlainText(), "");
            QTest::keyClick(&text, Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(text.toPlainText(), "Bye");
        }));
    }

    void the_title_that_cannot_be_changed_does_not_look_as_if_it_could()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(0);
        QVERIFY(in_modal<EditSign>("Command1", [] {
            auto &title = control<QLineEdit>(the<EditSign>(), "Text1");
            QVERIFY(!title.hasFrame());
            QCOMPARE(title.palette().brush(QPalette::Base).color().alpha(), 0);
        }));
    }

    void the_buttons_are_called_as_they_always_were()
    {
        signature_site site;
        picker().show();
        const auto captions = [](const QWidget &window, const QStringList &names) {
            QStringList texts;
            for (const QString &name : names)
                texts += control<QPushButton>(window, name.toLatin1()).text().remove('&');
            return texts;
        };
        QCOMPARE(captions(picker(), {"Command1", "Command2", "Command3", "Command4", "Command5"}),
                 (QStringList{"Edit...", "Remove", "New...", "OK", "Cancel"}));
        QVERIFY(in_modal<NewSign>("Command3", [&] {
            QCOMPARE(captions(the<NewSign>(), {"Command1", "Command2", "Command3"}),
                     (QStringList{"Clear", "Finish", "Cancel"}));
        }));
        List1().setCurrentRow(0);
        QVERIFY(in_modal<EditSign>("Command1", [&] {
            QCOMPARE(captions(the<EditSign>(), {"Command1", "Command2", "Command3"}),
                     (QStringList{"Clear", "Update", "Cancel"}));
        }));
    }

    void cancel_of_a_new_one_keeps_nothing()
    {
        signature_site site;
        picker().show();
        site.boxes.will_say_yes();
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye");
            press_on<NewSign>("Command3");
            QVERIFY(!is_loaded<NewSign>());
        }));
        QCOMPARE(site.rows_of("sign"), 2);
    }

    void a_failure_of_finish_is_logged()
    {
        signature_site site;
        picker().show();
        site.store.run("drop table sign");
        QVERIFY(in_modal<NewSign>("Command3", [] {
            control<QPlainTextEdit>(the<NewSign>(), "Text2").setPlainText("Bye");
            press_on<NewSign>("Command2");
        }));
        QCOMPARE(session.err_form, "NewSign.frm");
        QCOMPARE(session.err_routine, "Command2");
    }

    void edit_shows_title_and_text_and_the_title_stays()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        QVERIFY(in_modal<EditSign>("Command1", [] {
            QCOMPARE(QApplication::activeModalWidget()->windowTitle(), "Signature");
            QCOMPARE(control<QLineEdit>(the<EditSign>(), "Text1").text(), "Private");
            QVERIFY(control<QLineEdit>(the<EditSign>(), "Text1").isReadOnly());
            QCOMPARE(control<QPlainTextEdit>(the<EditSign>(), "Text2").toPlainText(), "Yours");
        }));
    }

    void update_stores_the_trimmed_text_and_shows_it()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        QVERIFY(in_modal<EditSign>("Command1", [] {
            control<QPlainTextEdit>(the<EditSign>(), "Text2").setPlainText("  Yours, Zoe's shop ");
            press_on<EditSign>("Command2");
            QVERIFY(!is_loaded<EditSign>());
        }));
        QCOMPARE(site.row("Private"), "Yours, Zoe's shop|Yes");
        QCOMPARE(site.row("Shop"), "Kind regards|No");
        QCOMPARE(preview(), "Yours, Zoe's shop");
    }

    void update_refuses_a_text_of_blanks_and_goes_there()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        QVERIFY(in_modal<EditSign>("Command1", [] {
            control<QPlainTextEdit>(the<EditSign>(), "Text2").setPlainText("   ");
            control<QPushButton>(the<EditSign>(), "Command2").setFocus();
            press_on<EditSign>("Command2");
            QVERIFY(is_visible<EditSign>());
            QVERIFY(the<EditSign>().focusWidget() == &control<QPlainTextEdit>(the<EditSign>(), "Text2"));
        }));
        QCOMPARE(site.boxes.shown, QStringList{"Please enter signature"});
        QCOMPARE(site.row("Private"), "Yours|Yes");
    }

    void lines_are_stored_with_both_letters_of_their_end_and_shown_as_lines()
    {
        signature_site site;
        site.store.run("update sign set signtext='Yours\u00a0all\r\nZoe' where signtitle='Private'");
        site.store.run("update sign set signtext='Yours\u00a0all\nZoe' where signtitle='Shop'");
        picker().show();
        auto &label = control<QLabel>(picker(), "Label2");
        List1().setCurrentRow(0);
        const int two_lines_high = label.heightForWidth(400);
        List1().setCurrentRow(1);
        QCOMPARE(label.heightForWidth(400), two_lines_high);
        QVERIFY(in_modal<EditSign>("Command1", [] {
            auto &text = control<QPlainTextEdit>(the<EditSign>(), "Text2");
            QCOMPARE(text.blockCount(), 2);
            text.appendPlainText("Bath");
            press_on<EditSign>("Command2");
        }));
        QCOMPARE(site.row("Private"), "Yours\u00a0all\r\nZoe\r\nBath|Yes");
        QCOMPARE(preview(), "Yours\u00a0all\r\nZoe\r\nBath");
    }

    void leaving_asks_once_when_something_was_typed_data()
    {
        QTest::addColumn<bool>("is_new");
        QTest::addColumn<QString>("way");
        QTest::newRow("a new one, Escape") << true << "Escape";
        QTest::newRow("a new one, the cross") << true << "cross";
        QTest::newRow("a new one, Cancel") << true << "Cancel";
        QTest::newRow("another text, Escape") << false << "Escape";
        QTest::newRow("another text, the cross") << false << "cross";
        QTest::newRow("another text, Cancel") << false << "Cancel";
    }

    void leaving_asks_once_when_something_was_typed()
    {
        QFETCH(bool, is_new);
        QFETCH(QString, way);
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        const auto is_open = [is_new] { return is_new ? is_visible<NewSign>() : is_visible<EditSign>(); };
        const auto deeds = [&] {
            QWidget *frame = QApplication::activeModalWidget();
            const auto leave = [&] {
                if (way == "Cancel")
                    return control<QPushButton>(*frame, "Command3").click();
                way == "Escape" ? QTest::keyClick(frame, Qt::Key_Escape) : void(frame->close());
            };
            control<QPlainTextEdit>(*frame, "Text2").setPlainText("Bye");
            site.boxes.will_say_no();
            leave();
            QVERIFY(is_open());
            QCOMPARE(control<QPlainTextEdit>(*frame, "Text2").toPlainText(), "Bye");
            site.boxes.will_say_yes();
            leave();
            QVERIFY(!is_open());
        };
        QVERIFY(is_new ? in_modal<NewSign>("Command3", deeds) : in_modal<EditSign>("Command1", deeds));
        QCOMPARE(site.boxes.shown, QStringList(2, "What was typed here is not saved. Go on without saving?"));
        QCOMPARE(site.row("Private"), "Yours|Yes");
        QCOMPARE(site.rows_of("sign"), 2);
    }

    void leaving_asks_nothing_where_nothing_was_typed()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        const auto escape = [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); };
        QVERIFY(in_modal<NewSign>("Command3", [&] {
            escape();
            QVERIFY(!is_loaded<NewSign>());
        }));
        QVERIFY(in_modal<EditSign>("Command1", [&] {
            escape();
            QVERIFY(!is_loaded<EditSign>());
        }));
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void failures_of_edit_are_logged()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        QVERIFY(in_modal<EditSign>("Command1", [&site] {
            site.store.run("drop table sign");
            control<QPlainTextEdit>(the<EditSign>(), "Text2").setPlainText("Bye");
            press_on<EditSign>("Command2");
        }));
        QCOMPARE(session.err_form, "Editsign.frm");
        QCOMPARE(session.err_routine, "Command2");
    }

    void a_signature_that_cannot_be_read_cannot_be_overwritten()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(1);
        site.store.run("drop table sign");
        QString load_failure;
        bool may_update = true;
        QVERIFY(in_modal<EditSign>("Command1", [&] {
            load_failure = session.err_form + "|" + session.err_routine;
            may_update = control<QPushButton>(the<EditSign>(), "Command2").isEnabled();
        }));
        QCOMPARE(load_failure, "Editsign.frm|Form_load");
        QVERIFY(!may_update);
    }

    void the_selection_survives_editing_and_enter_is_ok()
    {
        signature_site site;
        picker().show();
        List1().setCurrentRow(0);
        QVERIFY(in_modal<EditSign>("Command1", [] { press_on<EditSign>("Command3"); }));
        QTest::keyClick(&List1(), Qt::Key_Return);
        QCOMPARE(site.selected(), "Shop");
        QVERIFY(!is_loaded<Signature>());
    }
};

QTEST_MAIN(signature_entry_test)
#include "signature_entry_test.moc"
