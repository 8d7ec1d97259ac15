// How many stored mails the map under construction would take: the parser's own test, on the fields as they would be
// stored. Why one mail is not taken by a saved map: intake/fit_reasons.h.
#pragma once

namespace maps {

struct fit_count {
    int fits = 0;
    int mails = 0; // stored mails of the account
};
fit_count count_fitting_mails();

}
