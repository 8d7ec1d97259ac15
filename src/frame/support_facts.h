// What somebody who helps wants to know of this installation: versions, places, and what is in force. No passwords and
// nothing of what the user has stored.
#pragma once
#include <QString>

QString support_facts(); // a line a fact
QString error_log_path();
