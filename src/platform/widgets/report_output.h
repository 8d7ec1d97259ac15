// Writes the pages of a report to a printer or a PDF file. Both throw run_time_error.
#pragma once
#include "platform/widgets/paged_report.h"

class QPagedPaintDevice;

// The paper and its margins, before anything is painted or a dialog asks for other paper.
void set_paper(const paged_report &report, QPagedPaintDevice &device);
// first and last count from 1; the whole report without them. Where the device's paper has no page first, nothing is
// painted and that is the error. Afterwards, also after a failure, the report is laid out for its own paper again.
void paint_report(paged_report &report, QPagedPaintDevice &device, int first = 0, int last = 0);

// Replaces the file, or leaves it as it was when something fails.
void save_as_pdf(paged_report &report, const QString &path);
