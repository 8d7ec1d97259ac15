// A hundred mails that nobody should have to read: broken, huge, lying, or written to do harm. All of our own making.
#pragma once
#include <QByteArray>
#include <vector>

struct hostile_mail {
    QByteArray name; // in plain words, unique
    QByteArray bytes;
};

// About half of them are addressed to the account, so that they are really stored, cut and answered.
std::vector<hostile_mail> hostile_mails(const QByteArray &account_address);
