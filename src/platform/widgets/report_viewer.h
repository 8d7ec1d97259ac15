// Shows a report page by page: turning, zooming, and buttons to print, to save as PDF and to close, which whoever
// places the viewer answers (screens/report_screen.h). The page is painted by the routine that paints it on paper.
// Turning by keys and wheel: report_viewer_turning.cpp.
#pragma once
#include "platform/widgets/paged_report.h"

#include <QWidget>
#include <memory>

class QComboBox;
class QLabel;
class QPushButton;
class QScrollArea;
class QSpinBox;
class QStackedWidget;
class QToolButton;
class report_page;

class report_viewer : public QWidget {
    Q_OBJECT
public:
    explicit report_viewer(QWidget *parent = nullptr);
    ~report_viewer() override;

    void set_empty_text(const QString &text); // what stands there instead of pages
    void ViewReport(std::shared_ptr<paged_report> report);
    paged_report *report() const { return shown.get(); }

    int GetCurrentPageNumber() const; // from 1; 0 without pages
    void ShowNthPage(int page);
    void ShowFirstPage();
    void ShowPreviousPage();
    void ShowNextPage();
    void ShowLastPage();
    void Zoom(int percent); // also whole_page and page_width
    static constexpr int whole_page = -1, page_width = -2;

    void take_focus();

signals:
    void print_wanted();
    void save_wanted();
    void close_wanted();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void make_controls();
    void lay_out_controls();
    void connect_controls();
    void show_state();
    void fit_page();
    void zoom_step(int steps);
    bool turn_by_key(int key);
    bool turn_by_wheel(int delta);
    void scroll_or_turn(int direction);

    std::shared_ptr<paged_report> shown;
    QSizeF paper;         // in inches
    int wheel_turned = 0; // at the end of a page, since the last whole notch
    QPushButton *print_b, *save_b, *close_b;
    QToolButton *first_b, *previous_b, *next_b, *last_b;
    QSpinBox *page_t;
    QLabel *pages_l;
    QComboBox *zoom_c;
    QStackedWidget *views;
    QLabel *empty_l;
    QScrollArea *area;
    report_page *page;
};
