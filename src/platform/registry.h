// The two registry reads that the program makes, under the classes root. They are answered from the mail settings:
// "mailto\shell\open\command" names "\OUTLOOK.EXE" when a client with folders is configured, another program otherwise.
#pragma once
#include <QString>

bool registry_key_exists(const QString &key);
QString registry_value(const QString &key); // the default value, cut at the first zero character; "" without one
