#include "frame/say_surely.h"
#include "frame/error_log.h"
#include "frame/session.h"
#include "frame/status.h"

void say_surely(const char *form, const char *routine, const QString &words, const QString &title, message_icon icon)
{
    if (!guarded(form, routine, [&] { say(words, title, icon); }))
        status_line(words + " What was done before could not be kept: " + session.err_description);
}
