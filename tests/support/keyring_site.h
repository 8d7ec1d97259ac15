// Beginning each test of a real keyring alike.
#pragma once
#include "platform/passwords.h"
#include "support/open_keyring.h"
#include <QFile>
#include <QSettings>

constexpr int usual_wait_ms = 5000;
constexpr int short_wait_ms = 300; // where the keyring does not answer at all
const QString old_word = QStringLiteral("the old wording");
const QString new_word = QStringLiteral("a new wording");

// No settings, no password in the keyring, and the usual patience.
inline void begin_without_passwords()
{
    passwords::set_longest_wait(usual_wait_ms);
    passwords::forget_remembered();
    QFile::remove(QSettings("brenmoorbiz").fileName());
    passwords::save(passwords::of::mailbox, "");
    passwords::save(passwords::of::sending, "");
}
