// A few commands to a mailbox, each with its answer: what the check needs, and no more.
#pragma once
#include "platform/real/net/stream.h"
#include <QByteArrayList>

namespace mail {

class talk {
public:
    explicit talk(net::stream &to) : line(to) {}

    struct imap_answer {
        bool ok = false;
        QByteArrayList untagged; // lines without "* "; a literal stands in them as a quoted text
        QString words;           // the server's, where it said no
    };
    imap_answer ask_imap(const QByteArray &command);

    struct pop3_answer {
        bool ok = false;
        QByteArray words; // behind "+OK " or "-ERR "
    };
    pop3_answer ask_pop3(const QByteArray &command);

    void say_goodbye(const QByteArray &command); // without waiting for an answer

private:
    QByteArray next_line();
    QByteArray next_bytes(qsizetype count);
    void fill();

    net::stream &line;
    QByteArray come;
    int number = 0;
};

}
