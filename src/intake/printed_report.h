// What the sent report says on paper, read from printreport_tbl. What fills that table: sent_report.h. How it is laid
// out: platform/widgets/table_report.h.
#pragma once
#include <QString>
#include <optional>
#include <vector>

namespace intake {

struct printed_report {
    struct head_line {
        QString caption; // "Between: "
        QString value;
    };
    struct row {
        QString to, subject, date;
    };
    std::vector<head_line> head;
    QString day; // when it was made
    std::vector<row> rows;
};

// Nothing: the table is empty. The newest mail first: the table's own order is that of the dates' letters.
std::optional<printed_report> report_to_print();

}
