// A report that lists rows in columns: a title, lines that say what it is about, then the rows under their heads. The
// heads stand on every page, no row is cut by a page's end, a long text takes up to three lines. All of it may come
// from strangers' mails.
#pragma once
#include "platform/widgets/paged_report.h"

#include <QStringList>
#include <vector>

class table_report : public paged_report {
public:
    struct head_line {
        QString caption, value;
    };
    struct column {
        QString caption;
        double share = 1; // of the width
    };
    struct content {
        QString title;
        std::vector<head_line> head;
        std::vector<column> columns;
        std::vector<QStringList> rows; // a text a column
        QString foot;                  // at the left end of every page's last line
    };
    explicit table_report(content what);

    QString title() const override { return text.title; }
    void lay_out(const QSizeF &page) override;
    int page_count() const override { return int(first_rows.size()); }
    void paint_page(QPainter &painter, int page) const override;

private:
    struct placed_line { // of the head, at its height on the first page
        double top;
        QString caption;
        QStringList lines;
    };

    double place_head();
    double row_height(size_t row) const;
    double column_width(size_t column) const;
    void paint_head(QPainter &painter) const;
    double paint_column_heads(QPainter &painter, double top) const;
    void paint_row(QPainter &painter, size_t row, double top, double height) const;
    void paint_foot(QPainter &painter, int page) const;

    content text;
    QSizeF paper;
    double shares = 0;              // of all columns
    double caption_width = 0;       // of the head's captions
    std::vector<placed_line> head;  // as placed
    double head_end = 0;            // where the column heads of the first page begin
    std::vector<size_t> first_rows; // of each page
};
