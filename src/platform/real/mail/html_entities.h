// The character entities of HTML that occur in mails.
#pragma once
#include <QString>

namespace mime {

// "amp", "#233" or "#xE9" (without & and ;) to its text; "" when it is none.
QString entity_text(QStringView name);

}
