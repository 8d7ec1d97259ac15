// The one failure of the whole program. Store, platform and frame/text throw it; guarded (frame/error_log.h) catches
// it.
#pragma once
#include <QString>

struct run_time_error {
    quint32 number =
        0; // of the store layer (0x80040E14 ...) or of the language (6 "Overflow"); logged as signed decimal
    QString description;
};
