// The headless driver as a process of its own.
#pragma once
#include <QString>
#include <QStringList>

struct driver_run {
    int status = -1; // 137 when it was killed
    QString output, errors;
};

enum class driver_rights { usual, bound_by_modes }; // the latter: file modes hold for root too

// tessaly_jobs fetch --folder FOLDER; further variables as "NAME=value".
driver_run run_driver(const QString &folder, const QStringList &variables = {},
                      driver_rights rights = driver_rights::usual);

// tessaly_jobs JOB --folder FOLDER and further options.
driver_run run_driver_job(const QString &job, const QString &folder, const QStringList &options = {},
                          const QStringList &variables = {}, driver_rights rights = driver_rights::usual);
