// One page of a report on the screen: white paper, also on a dark desktop. What turns it: report_viewer.h.
#pragma once
#include <QWidget>

class paged_report;

class report_page : public QWidget {
    Q_OBJECT
public:
    explicit report_page(QWidget *parent = nullptr);
    void show_page(const paged_report *of, int number, const QSizeF &paper_inches); // nullptr: nothing
    int number() const { return shown_page; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const paged_report *report = nullptr; // not owned
    int shown_page = 0;                   // from 0
    QSizeF paper;
};
