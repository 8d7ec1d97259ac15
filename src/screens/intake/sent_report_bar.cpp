#include "screens/intake/sent_report_bar.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "platform/clock.h"
#include "platform/settings.h"
#include "screens/intake/PrintRpt.h"
#include "screens/intake/genrepwait_frm.h"
#include "ui_sent_report_bar.h"

#include <QPointer>
#include <QSignalBlocker>

namespace {

const auto first_entry = QStringLiteral("Select");
const auto fold_section = QStringLiteral("screens");
constexpr double least_share = 0.75; // of the bar: what is cut deeper can hardly be worked with
constexpr int least_rows = 6;        // of text, for the list below: its head and three lines or so
const auto fold_key = QStringLiteral("mailfrm.report");

QString chosen_in(const QComboBox &list)
{
    return list.currentIndex() > 0 ? list.currentText() : QString();
}

void fill_with_fields(QComboBox &list, const QStringList &fields, const QString &chosen)
{
    const QSignalBlocker quiet(list);
    list.clear();
    list.addItem(first_entry);
    list.addItems(fields);
    list.setCurrentIndex(qMax(0, chosen.isEmpty() ? 0 : list.findText(chosen)));
}

QString report_words(const intake::report_request &request, qsizetype mails)
{
    const QString days = us_date(request.from) + " and " + us_date(request.to);
    const QString count = mails == 0 ? "no mail" : mails == 1 ? "1 mail" : QString::number(mails) + " mails";
    return count + " of " + request.account + " between " + days + ".";
}

QString why_no_rows(const intake::report_request &request)
{
    const QString failure = session.err_description;
    QString mail;
    if (session.err_number == ado::type_mismatch)
        guarded("Mailfrm.frm", "genrep_b", [&] { mail = intake::undated_mail_words(request.account); });
    return mail.isEmpty() ? failure : mail;
}

}

sent_report_bar::sent_report_bar(QWidget *parent) : QWidget(parent), ui(std::make_unique<Ui::sent_report_bar>())
{
    ui->setupUi(this);
    ui->account_c->addItem(first_entry);
    account_c_Click();
    show_as_kept();
    show_no_report();

    connect(ui->account_c, &QComboBox::currentIndexChanged, this, &sent_report_bar::account_c_Click);
    for (int filter = 1; filter <= 4; ++filter) {
        connect(&field_c(filter), &QComboBox::currentIndexChanged, this, &sent_report_bar::field_c_Click);
        connect(&value_t(filter), &QLineEdit::returnPressed, ui->genrep_b, &QPushButton::click);
    }
    connect(ui->subject_words_t, &QLineEdit::returnPressed, ui->genrep_b, &QPushButton::click);
    for (const QDateEdit *date : {ui->DTP1, ui->DTP2})
        connect(date, &QDateEdit::dateChanged, this, [this] { dates_are_the_users = true; });
    connect(ui->report_b, &QToolButton::clicked, this, &sent_report_bar::report_b_Click);
    connect(ui->genrep_b, &QPushButton::clicked, this, &sent_report_bar::genrep_b_Click);
    connect(ui->prnrep_t, &QPushButton::clicked, this, &sent_report_bar::prnrep_t_Click);
}

sent_report_bar::~sent_report_bar() = default;

QComboBox &sent_report_bar::field_c(int filter) const
{
    return *std::array{ui->field1_c, ui->field2_c, ui->field3_c, ui->field4_c}[size_t(filter - 1)];
}

QLineEdit &sent_report_bar::value_t(int filter) const
{
    return *std::array{ui->val1_t, ui->val2_t, ui->val3_t, ui->val4_t}[size_t(filter - 1)];
}

void sent_report_bar::open_view()
{
    if (!isVisible() && !fold_is_the_users)
        show_as_kept(); // the window may have grown since it was too low
    fill_accounts();
    set_dates();
}

// What was chosen stays chosen, with its filters, as long as the account is there.
void sent_report_bar::fill_accounts()
{
    const auto accounts = intake::report_accounts();
    const QVariant former = ui->account_c->currentData();
    {
        const QSignalBlocker quiet(ui->account_c);
        ui->account_c->clear();
        ui->account_c->addItem(first_entry);
        for (const intake::report_account &account : accounts)
            ui->account_c->addItem(account.name, account.id);
        ui->account_c->setCurrentIndex(qMax(0, former.isValid() ? ui->account_c->findData(former) : 0));
    }
    if (ui->account_c->currentData() != former)
        account_c_Click();
    else
        read_fields(keep_choice::yes); // the map may have been changed meanwhile
}

// What was sent since the last report; the first one is about today.
void sent_report_bar::set_dates()
{
    const QDate last = intake::last_report_date();
    if (dates_are_the_users)
        return;
    const QSignalBlocker quiet1(ui->DTP1), quiet2(ui->DTP2);
    ui->DTP1->setDate(last.isValid() && last < today() ? last : today());
    ui->DTP2->setDate(today());
}

void sent_report_bar::account_c_Click()
{
    read_fields(keep_choice::no);
}

void sent_report_bar::read_fields(keep_choice keep)
{
    QStringList fields;
    const QString id = ui->account_c->currentData().toString();
    if (!id.isEmpty() && !guarded("Mailfrm.frm", "account_c_click", [&] { fields = intake::report_fields(id); }))
        status_line("The fields of the account's map could not be read: " + session.err_description);
    const auto fill = [&](QComboBox &list) {
        fill_with_fields(list, fields, keep == keep_choice::yes ? chosen_in(list) : QString());
    };
    fill(*ui->subject_field_c);
    for (int filter = 1; filter <= 4; ++filter)
        fill(field_c(filter));
    field_c_Click();
}

void sent_report_bar::field_c_Click()
{
    for (int filter = 1; filter <= 4; ++filter)
        value_t(filter).setEnabled(field_c(filter).currentIndex() > 0);
}

void sent_report_bar::show_as_kept()
{
    show_folded(GetSetting(fold_section, fold_key) == u"folded");
}

// What stands around it is still being laid out while it is shown; what is posted comes before the painting.
void sent_report_bar::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    QMetaObject::invokeMethod(this, &sent_report_bar::fold_if_cut, Qt::QueuedConnection);
}

void sent_report_bar::fold_if_cut()
{
    const double shown = double(ui->report_fr->height()) / ui->report_fr->sizeHint().height();
    const int list = parentWidget()->height() - geometry().bottom(); // what is left below
    if (isVisible() && !fold_is_the_users && (shown < least_share || list < least_rows * fontMetrics().height()))
        show_folded(true);
}

void sent_report_bar::show_folded(bool folded)
{
    ui->report_b->setChecked(!folded);
    ui->report_b->setArrowType(folded ? Qt::RightArrow : Qt::DownArrow);
    ui->report_fr->setVisible(!folded);
    emit fold_changed();
}

void sent_report_bar::report_b_Click()
{
    const bool folded = !ui->report_b->isChecked();
    fold_is_the_users = true;
    show_folded(folded);
    guarded("Mailfrm.frm", "report_b", [&] { SaveSetting(fold_section, fold_key, folded ? "folded" : ""); });
}

intake::report_request sent_report_bar::chosen() const
{
    intake::report_request request;
    request.account = chosen_in(*ui->account_c);
    request.from = ui->DTP1->date();
    request.to = ui->DTP2->date();
    request.subject_words = ui->subject_words_t->text();
    request.subject_field = chosen_in(*ui->subject_field_c);
    for (int filter = 1; filter <= 4; ++filter)
        request.filters[size_t(filter - 1)] = {chosen_in(field_c(filter)), value_t(filter).text()};
    return request;
}

void sent_report_bar::tell_gap(const intake::report_gap &gap)
{
    say(gap.message);
    if (gap.filter == 0)
        ui->account_c->setFocus();
    else
        value_t(gap.filter).setFocus();
}

void sent_report_bar::genrep_b_Click()
{
    const bool all_went = guarded("Mailfrm.frm", "genrep_b", [this] {
        open_store_if_closed();
        intake::empty_report(); // before the checks: a stopped report leaves nothing to print
        show_former_report();
        const intake::report_request request = chosen();
        if (const auto gap = intake::why_no_report(request))
            return tell_gap(*gap);
        auto &wait = the<genrepwait_frm>();
        wait.set_work([self = QPointer(this), request](const std::function<bool()> &give_up) {
            if (self)
                self->make_report(request, give_up);
        });
        wait.show_modal();
    });
    if (!all_went)
        status_line("The report could not be made: " + session.err_description);
}

void sent_report_bar::make_report(const intake::report_request &request, const std::function<bool()> &give_up)
{
    const bool all_went = guarded("Mailfrm.frm", "genrep_b", [&] {
        under_way = run{request, intake::report_select(request), give_up};
        emit rows_wanted();
        if (under_way->mails >= 0)
            intake::record_report_date(today());
    });
    if (!under_way)
        status_line("The report could not be made: " + session.err_description);
    else
        show_outcome(*under_way, all_went);
    under_way.reset();
}

std::optional<std::vector<intake::mail_line>> sent_report_bar::write_rows()
{
    if (!under_way)
        return std::nullopt;
    if (!under_way->select) {
        under_way->mails = 0;
        return std::vector<intake::mail_line>();
    }
    auto lines = intake::write_report(under_way->request, *under_way->select, under_way->give_up);
    under_way->cancelled = !lines;
    if (lines)
        under_way->mails = qsizetype(lines->size());
    return lines;
}

void sent_report_bar::show_outcome(const run &made, bool day_is_kept)
{
    if (made.mails >= 0) {
        listed_report = report_words(made.request, made.mails);
        ui->report_l->setText("The list shows the report: " + listed_report);
        status_line(day_is_kept ? QString()
                                : "The report was made, but its day could not be kept: " + session.err_description);
    } else if (made.cancelled) {
        status_line("The report was cancelled.");
    } else { // the list has told the log
        status_line("The report could not be made: " + why_no_rows(made.request));
    }
}

void sent_report_bar::show_no_report()
{
    listed_report.clear();
    ui->report_l->clear();
}

void sent_report_bar::show_former_report()
{
    if (!listed_report.isEmpty())
        ui->report_l->setText("The list shows the previous report, which can no longer be printed: " + listed_report);
}

void sent_report_bar::prnrep_t_Click()
{
    if (is_loaded<PrintRpt>()) // it may show a former report
        the<PrintRpt>().unload();
    the<PrintRpt>().show();
}
