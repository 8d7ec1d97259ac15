#include "jobs/job_messages.h"
#include "platform/process.h"

#include <cstdio>

std::optional<QString> job_messages::show(const message_box &box)
{
    const bool question = box.kind != message_kind::say;
    std::fprintf(stderr, "%s%s\n", question ? "question: " : "", qPrintable(box.text));
    if (question)
        end_process(2);
    return QString();
}
