// Why a stored mail is not taken: for each map of its account the first condition that fails, by the parser's own test.
#pragma once
#include "intake/map_fit.h"
#include <vector>

namespace intake {

struct fit_reason {
    QString map;    // its name
    QString reason; // a sentence; "" when the mail fits and the next pass will take it
};

// A sentence for the first condition that fails.
QString reason_words(const misfit &failed, qsizetype piece_count);

// In the order in which the parser tries the maps. Empty: the account has none. Throws run_time_error.
std::vector<fit_reason> fit_reasons(const QString &account_table, qint64 message_id);

}
