// How many stored mails no map has taken yet, of all accounts: the console's status bar shows it.
// Why one is not taken: fit_reasons.h.
#pragma once
#include <QtGlobal>

namespace intake {

qint64 count_unprocessed_mails(); // one statement an account; throws where an account's table cannot be read

}
