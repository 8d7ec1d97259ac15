// Reads what a PDF file says, by poppler's own programs.
#pragma once
#include <QString>
#include <QStringList>

QStringList pdf_pages(const QString &path); // the text of each page, laid out as on paper
QString pdf_facts(const QString &path);     // what pdfinfo tells: "Title:", "Page size:"
