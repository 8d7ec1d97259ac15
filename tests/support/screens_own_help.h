// A help file of the test's own, by the tool that makes the program's.
#pragma once
#include "support/screens_site.h"

#include <QDir>
#include <QFile>
#include <QProcess>

inline void write_help(const QString &folder, const QString &body)
{
    QDir().mkpath(folder);
    const auto write = [&folder](const QString &name, const QString &text) {
        QFile file(folder + "/" + name);
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
            qFatal("a page of the test cannot be written");
    };
    write("tslhlp.hhp", "[OPTIONS]\nCompiled file=tslhlp.chm\nContents file=tslhlp.hhc\nDefault topic=start.html\n");
    write("tslhlp.hhc", "<ul><li><object><param name=\"Name\" value=\"Start\"><param name=\"Local\" "
                        "value=\"start.html\"></object></ul>");
    write("start.html", "<html><head><title>Start</title></head><body>" + body + "</body></html>");
}

inline void make_help(const screens_site &site, const QString &body)
{
    write_help(site.file("pages"), body);
    QProcess tool;
    tool.start(QStringLiteral(SOURCE_ROOT "/tools/make_help"), {site.file("pages"), site.file("tslhlp.chm")});
    if (!tool.waitForFinished() || tool.exitCode() != 0)
        qFatal("the test's help file was not made");
}
