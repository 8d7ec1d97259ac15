#include "support/killed_work.h"
#include "support/kill_points.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <cstring>

namespace {

const QString do_it = QStringLiteral("--do");

int calls_in(const QString &path)
{
    QFile file(path);
    long count = 0;
    if (file.open(QIODevice::ReadOnly) && file.read(reinterpret_cast<char *>(&count), sizeof count) != sizeof count)
        count = 0;
    return int(count);
}

QString what_is_wrong_at(const kill_trial &trial, int point)
{
    const QTemporaryDir folder;
    trial.make(folder.path());
    const killed_run run = run_killed_work(trial.work, folder.path(), trial.calls, point, trial.every_statement);
    const QString where = QString("killed before call %1 of the %2: ").arg(point).arg(trial.calls);
    if (!run.was_killed)
        return where + "it was not: " + run.errors;
    const QString wrong = trial.look(folder.path());
    return wrong.isEmpty() ? QString() : where + wrong;
}

}

void do_killed_work(int &argc, char **argv, const QList<killed_work> &works)
{
    if (argc != 4 || argv[1] != do_it)
        return;
    const QCoreApplication application(argc, argv);
    const QString name = QString::fromLocal8Bit(argv[2]);
    for (const killed_work &each : works)
        if (each.name == name) {
            each.work(QString::fromLocal8Bit(argv[3]));
            std::exit(0);
        }
    qFatal("There is no work %s", argv[2]);
}

killed_run run_killed_work(const QString &name, const QString &folder, const QString &calls, int kill_at,
                           bool every_statement)
{
    const QTemporaryDir beside;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_PRELOAD", environment.value("DISK_SHIM"));
    environment.insert("ASAN_OPTIONS", "verify_asan_link_order=0");
    environment.insert("DISK_SHIM_CALLS", calls);
    environment.insert("DISK_SHIM_COUNT", beside.filePath("count"));
    if (every_statement)
        environment.insert("DISK_SHIM_HASTE", "3600");
    environment.insert("DISK_SHIM_KILL", QString::number(kill_at));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {do_it, name, folder});
    if (!process.waitForStarted() || !process.waitForFinished(120000))
        qFatal("the work cannot run: %s", qPrintable(name));
    killed_run run;
    run.was_killed = process.exitStatus() == QProcess::CrashExit && process.exitCode() == 9;
    run.status = process.exitCode();
    run.calls = calls_in(beside.filePath("count"));
    run.errors = QString::fromUtf8(process.readAllStandardError());
    return run;
}

QString what_a_kill_does(const kill_trial &trial)
{
    const QTemporaryDir whole;
    trial.make(whole.path());
    const killed_run run = run_killed_work(trial.work, whole.path(), trial.calls, 0, trial.every_statement);
    if (run.was_killed || run.status != 0)
        return "the work fails undisturbed: " + run.errors;
    if (run.calls < trial.least)
        return "the calls are not seen: " + QString::number(run.calls);
    const int most = qEnvironmentVariableIsSet("TESSALY_LONG") ? run.calls : qMin(trial.most, run.calls);
    for (const int point : points_in(run.calls, most))
        if (const QString wrong = what_is_wrong_at(trial, point); !wrong.isEmpty())
            return wrong;
    return {};
}
