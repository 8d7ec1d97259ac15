#include "platform/real/mail/gmime_headers.h"

namespace mime {

void start_gmime()
{
    static const bool started = [] {
        g_mime_init();
        return true;
    }();
    static_cast<void>(started);
}

}
