// What a test's SMTP server took, on disk: one file to which each mail is added in one step.
#pragma once
#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <QString>

struct recorded_mail {
    QByteArray from;           // without angle brackets
    QByteArrayList parameters; // of MAIL: "SIZE=120", "BODY=8BITMIME", "SMTPUTF8"
    QByteArrayList recipients; // the accepted ones
    QByteArray bytes;          // as sent, CRLF line ends, stuffed dots taken out
};

QList<recorded_mail> recorded_mails(const QString &folder); // in the order in which they were taken

// What is in the folder already stays. A mail outlives a kill of the server as soon as record has returned.
class mail_recorder {
public:
    explicit mail_recorder(const QString &folder);
    ~mail_recorder();
    mail_recorder(const mail_recorder &) = delete;
    mail_recorder &operator=(const mail_recorder &) = delete;
    void record(const recorded_mail &mail);
    int taken() const { return count; }

private:
    int file, count = 0;
};
