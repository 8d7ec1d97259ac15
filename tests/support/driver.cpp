#include "support/driver.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <linux/capability.h>
#include <sys/prctl.h>

driver_run run_driver(const QString &folder, const QStringList &variables, driver_rights rights)
{
    return run_driver_job(QStringLiteral("fetch"), folder, {}, variables, rights);
}

driver_run run_driver_job(const QString &job, const QString &folder, const QStringList &options,
                          const QStringList &variables, driver_rights rights)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString program = environment.value("TESSALY_JOBS");
    for (const QString &variable : variables)
        environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    QProcess process;
    process.setProcessEnvironment(environment);
    if (rights == driver_rights::bound_by_modes)
        process.setChildProcessModifier([] { ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE); });
    process.start(program, QStringList{job, "--folder", folder} + options);
    if (!process.waitForStarted() || !process.waitForFinished(120000))
        qFatal("the driver cannot run: %s (is TESSALY_JOBS set?)", qPrintable(program));
    driver_run run;
    run.status = process.exitStatus() == QProcess::CrashExit ? 128 + process.exitCode() : process.exitCode();
    run.output = QString::fromUtf8(process.readAllStandardOutput());
    run.errors = QString::fromUtf8(process.readAllStandardError());
    return run;
}
