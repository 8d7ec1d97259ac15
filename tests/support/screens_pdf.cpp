#include "support/screens_pdf.h"

#include <QProcess>

namespace {

QString output_of(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        qFatal("%s failed: %s", qPrintable(program), process.readAllStandardError().constData());
    return QString::fromUtf8(process.readAllStandardOutput());
}

}

QStringList pdf_pages(const QString &path)
{
    QStringList pages = output_of("pdftotext", {"-layout", "-enc", "UTF-8", path, "-"}).split(u'\f');
    pages.removeLast(); // each page ends in a form feed
    return pages;
}

QString pdf_facts(const QString &path)
{
    return output_of("pdfinfo", {path});
}
