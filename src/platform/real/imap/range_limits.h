// How much is asked for at a time.
#pragma once
#include <QtGlobal>

namespace imap {

constexpr size_t mails_a_range = 500;
constexpr qint64 bytes_a_range = 8 * 1024 * 1024;
constexpr qint64 big_mail = 16 * 1024; // of a new mail, more is asked for only when it is wanted

}
