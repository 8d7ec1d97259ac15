// The part of the Mail Auditor's sent view in which a report on the sent mails is asked for. It folds away and stays
// so; in a window much too low for it it begins folded. What makes the report: intake/sent_report.h; what
// shows it on pages: PrintRpt.h.
#pragma once
#include "intake/sent_report.h"
#include <QWidget>
#include <memory>

namespace Ui {
class sent_report_bar;
}
class QComboBox;
class QLineEdit;

class sent_report_bar : public QWidget {
    Q_OBJECT
public:
    explicit sent_report_bar(QWidget *parent = nullptr);
    ~sent_report_bar() override;

    void open_view(); // the accounts as they are now, and the dates, unless the user has set them. Throws

    // For whoever owns the list: writes the rows of the report that was asked for and gives its mails. Nothing where
    // none was asked for, or the user cancelled. Throws.
    std::optional<std::vector<intake::mail_line>> write_rows();
    void show_no_report(); // the list shows other mails again

signals:
    void rows_wanted();  // the list is to call write_rows now
    void fold_changed(); // it is higher or lower now

protected:
    void showEvent(QShowEvent *event) override;

private:
    struct run {
        intake::report_request request;
        std::optional<QString> select; // nothing: no mailing fits
        std::function<bool()> give_up;
        qsizetype mails = -1; // -1: not written
        bool cancelled = false;
    };

    QComboBox &field_c(int filter) const; // 1 to 4
    QLineEdit &value_t(int filter) const;
    void fill_accounts();
    void set_dates();
    enum class keep_choice { no, yes };
    void read_fields(keep_choice keep);
    void account_c_Click();
    void field_c_Click();
    void report_b_Click();
    void genrep_b_Click();
    void prnrep_t_Click();
    void show_as_kept();
    void fold_if_cut();
    void show_folded(bool folded);
    intake::report_request chosen() const;
    void tell_gap(const intake::report_gap &gap);
    void make_report(const intake::report_request &request, const std::function<bool()> &give_up);
    void show_outcome(const run &made, bool day_is_kept);
    void show_former_report(); // its rows stay in the list, but not in the store

    std::unique_ptr<Ui::sent_report_bar> ui;
    bool dates_are_the_users = false;
    bool fold_is_the_users = false; // chosen on this screen
    QString listed_report;          // "": the list shows none
    std::optional<run> under_way;
};
