// The boxes of a test: a queue of answers and a transcript. In force as long as it lives. A question without a
// prepared answer ends the test program with the question.
#pragma once
#include "frame/messages.h"

#include <QStringList>
#include <deque>
#include <vector>

class scripted_messages : public message_service {
public:
    scripted_messages() { set_message_service(this); }
    ~scripted_messages() override { set_message_service(nullptr); }
    scripted_messages(const scripted_messages &) = delete;
    scripted_messages &operator=(const scripted_messages &) = delete;

    void will_say_yes() { answers.emplace_back(QString()); }   // also OK
    void will_say_no() { answers.emplace_back(std::nullopt); } // also Cancel, Escape
    void will_type(const QString &text) { answers.emplace_back(text); }

    std::deque<std::optional<QString>> answers;
    QStringList shown;              // the exact texts
    std::vector<message_box> boxes; // kind, title and icon too

    std::optional<QString> show(const message_box &box) override
    {
        shown += box.text;
        boxes.push_back(box);
        if (box.kind == message_kind::say)
            return QString();
        if (answers.empty())
            qFatal("A question without a prepared answer: %s", qPrintable(box.text));
        const auto answer = answers.front();
        answers.pop_front();
        return answer;
    }
};
