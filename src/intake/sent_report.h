// The report on the mails that were sent: from the user's choices to the rows of printreport_tbl, one a mail. A run is
// empty_report, why_no_report, report_select, write_report, in that order: an empty table is what a stopped run leaves.
// How the rows are read for the page: printed_report.h. The screen's part: screens/intake/sent_report_bar.h.
//
// What a row holds. Alike in all rows: sentaccount, the account's name; between1, "11/1/2026 and 11/30/2026";
// filtersused, ",Filter1:city=Par,Filter3:age=3"; dynsubjectfield, the field that made the subjects; subjectcontains,
// the words; mailgen, how many mails; matching, how many of which kind ("mailings 12, single mails 3, replies 1").
// The mail's own: sentto, sentsubject, sentdate. Then gendate, the day. What is not in use is "None".
#pragma once
#include "intake/mail_lines.h"
#include <QDate>
#include <QStringList>
#include <array>
#include <functional>
#include <optional>

namespace intake {

struct report_filter {
    QString field; // "": not in use
    QString value;
};

struct report_request {
    QString account; // "": none is chosen
    QDate from, to;
    QString subject_words; // "": any
    QString subject_field; // "Subject copy refers to field", kept by a sent mail as its format; "": any
    std::array<report_filter, 4> filters;
};

struct report_gap {
    QString message;
    int filter = 0; // 1 to 4: its value is missing; 0: the account
};

void empty_report();
std::optional<report_gap> why_no_report(const report_request &request); // nothing: it can be made

// The mails that it is about. Filters name a combination that mailings were made with: they are looked up in the
// store, and nothing comes back where no mailing fits, as no mail can.
std::optional<QString> report_select(const report_request &request);
QString mailings_select(const report_request &request); // that look-up
QString filters_text(const report_request &request);    // as it stands in filtersused; "" without filters
QString report_insert(const QStringList &values);       // one row, in the order of the columns above

// One sent mail whose date is none ends each report of its account. What the user is told of the first such mail, which
// can be deleted; "" without one.
QString undated_mail_words(const QString &account);

// Writes a row for each mail of the select and gives the mails back for the list. Asks give_up at every mail; then the
// table is empty again and nothing comes back.
std::optional<std::vector<mail_line>> write_report(const report_request &request, const QString &select,
                                                   const std::function<bool()> &give_up);

// When a report was made last: an invalid date for never.
void record_report_date(const QDate &date);
QDate last_report_date();

struct report_account {
    QString id, name;
};
std::vector<report_account> report_accounts();
// What the filters can name: the columns of the account's current map. None without a map.
QStringList report_fields(const QString &account_id);

}
