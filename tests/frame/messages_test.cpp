// The boxes: what is asked of whoever shows them, and being busy.
#include "frame/messages.h"
#include "platform/outside_effects.h"
#include "support/scripted_messages.h"

#include <QtTest/QTest>

namespace {

// Tells whether the program was busy while its box stood open.
class watching_messages : public message_service {
public:
    watching_messages() { set_message_service(this); }
    ~watching_messages() override { set_message_service(nullptr); }
    bool busy_inside = false;
    std::optional<QString> show(const message_box &) override
    {
        busy_inside = busy();
        return QString();
    }
};

}

class messages_test : public QObject {
    Q_OBJECT
private slots:
    void a_message_carries_the_programs_name();
    void yes_and_no();
    void ok_and_cancel();
    void typed_text();
    void a_box_makes_the_program_busy();
    void busy_lasts_until_the_outermost_ends();
    void what_the_box_tells_is_committed_before_it_opens();
    void without_anybody_to_show_it_the_answer_is_no();
};

void messages_test::a_message_carries_the_programs_name()
{
    scripted_messages boxes;
    say("Hello");
    say("Careful", "Label Printing", message_icon::exclamation);
    QCOMPARE(boxes.shown, (QStringList{"Hello", "Careful"}));
    QCOMPARE(boxes.boxes[0].title, QString("Tessaly"));
    QCOMPARE(boxes.boxes[1].title, QString("Label Printing"));
    QVERIFY(boxes.boxes[0].kind == message_kind::say);
    QVERIFY(boxes.boxes[1].icon == message_icon::exclamation);
}

void messages_test::yes_and_no()
{
    scripted_messages boxes;
    boxes.will_say_yes();
    boxes.will_say_no();
    QVERIFY(yes_no("Go on?"));
    QVERIFY(!yes_no("Go on?"));
    QVERIFY(boxes.boxes[0].kind == message_kind::yes_no);
    QCOMPARE(boxes.boxes[0].title, QString("Tessaly"));
}

void messages_test::ok_and_cancel()
{
    scripted_messages boxes;
    boxes.will_say_yes();
    boxes.will_say_no();
    QVERIFY(ok_cancel("Go on?"));
    QVERIFY(!ok_cancel("Go on?"));
    QVERIFY(boxes.boxes[0].kind == message_kind::ok_cancel);
}

void messages_test::typed_text()
{
    scripted_messages boxes;
    boxes.will_type("");
    boxes.will_type("abc");
    boxes.will_say_no();
    QCOMPARE(input("Name", "Title", "proposed"), std::optional<QString>(""));
    QCOMPARE(boxes.boxes[0].proposal, QString("proposed"));
    QCOMPARE(input("Name"), std::optional<QString>("abc"));
    QVERIFY(!input("Name"));
}

void messages_test::a_box_makes_the_program_busy()
{
    watching_messages boxes;
    QVERIFY(!busy());
    say("Hello");
    QVERIFY(boxes.busy_inside);
    QVERIFY(!busy());
}

void messages_test::busy_lasts_until_the_outermost_ends()
{
    {
        const busy_scope outer;
        {
            const busy_scope inner;
        }
        QVERIFY(busy());
    }
    QVERIFY(!busy());
}

void messages_test::what_the_box_tells_is_committed_before_it_opens()
{
    scripted_messages boxes;
    qsizetype shown_at_commit = -1;
    const int registration = on_outside_effect([&] { shown_at_commit = boxes.shown.size(); });
    say("Saved");
    forget_outside_effect(registration);
    QCOMPARE(shown_at_commit, 0);
    QCOMPARE(boxes.shown.size(), 1);
}

void messages_test::without_anybody_to_show_it_the_answer_is_no()
{
    set_message_service(nullptr);
    QVERIFY(!yes_no("Go on?"));
    QVERIFY(!input("Name"));
}

QTEST_GUILESS_MAIN(messages_test)
#include "messages_test.moc"
