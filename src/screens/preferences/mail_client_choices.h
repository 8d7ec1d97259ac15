// What the lists of the page "Mail Client" stand for, line by line, and a field's text as it counts.
#pragma once
#include "platform/mail_settings.h"
#include <QLineEdit>
#include <algorithm>
#include <array>

// In the order of the list's lines.
inline constexpr std::array securities{mail::security::tls, mail::security::starttls, mail::security::none};
inline constexpr std::array roads{mail::send_by::smtp, mail::send_by::sendmail, mail::send_by::keep};

template <typename Values, typename Value>
int line_of(const Values &values, Value value)
{
    return int(std::find(values.begin(), values.end(), value) - values.begin());
}

inline QString text_in(const QLineEdit &field)
{
    return field.text().trimmed(); // names and addresses are pasted with tabs and line ends around them
}
