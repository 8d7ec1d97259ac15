// The Mail Auditor's list, beside a bare QTreeView over the same rows: opening, sorting by each head, searching as one
// types. The bare one reads the rows by plain SQLite, into a table model that does nothing else; what the same view
// takes when it reads them through the store is told, too.
//   auditor_bench [NUMBER]        30000 without one
// Mails of about 1 KiB. Each figure is the median of several runs, the two taken in turns.
#include "frame/session.h"
#include "support/screens_auditor.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTreeView>
#include <algorithm>
#include <array>
#include <cstdio>
#include <sqlite3.h>

namespace {

constexpr int runs = 7;
constexpr int columns = 3;
using bare_row = std::array<QString, columns>;

class bare_rows : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;
    std::vector<bare_row> rows;

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : int(rows.size()); }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : columns; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        return role == Qt::DisplayRole ? rows[size_t(index.row())][size_t(index.column())] : QVariant();
    }
    void sort(int column, Qt::SortOrder order) override
    {
        emit layoutAboutToBeChanged();
        std::stable_sort(rows.begin(), rows.end(), [column, order](const bare_row &a, const bare_row &b) {
            const int compared = a[size_t(column)].compare(b[size_t(column)], Qt::CaseInsensitive);
            return order == Qt::AscendingOrder ? compared < 0 : compared > 0;
        });
        emit layoutChanged();
    }
};

void fill(test_store &store, int count)
{
    ado::Recordset rows;
    rows.Open("select * from orders", store.connection(), ado::cursor_type::keyset, ado::lock_type::optimistic);
    quint32 mixed = 1;
    for (int number = 0; number < count; ++number) {
        mixed = mixed * 1664525 + 1013904223; // in no order
        rows.AddNew();
        rows.Fields("tsl_subject").set_value("Order " + QString::number(mixed % 100000) + " from the form");
        rows.Fields("tsl_recdate").set_value(QDateTime(QDate(2026, 8, 13), QTime(13, 0), Qt::UTC).addSecs(mixed >> 8));
        rows.Fields("tsl_Email").set_value("Visitor" + QString::number(mixed % 9973) + "@mail.example");
        rows.Fields("tsl_body")
            .set_value(QString("Remark: the quick brown fox jumps over the lazy dog\r\n").repeated(20));
        rows.Update();
    }
    rows.Close();
    store.connection().barrier();
}

std::vector<bare_row> read_plainly(const QString &path)
{
    sqlite3 *file = nullptr;
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_open_v2(qPrintable(path), &file, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK ||
        sqlite3_prepare_v2(file, "select * from orders order by rowid", -1, &statement, nullptr) != SQLITE_OK)
        qFatal("the store cannot be read");
    std::vector<bare_row> rows;
    const auto text = [statement](int column) {
        return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(statement, column)),
                                 sqlite3_column_bytes(statement, column));
    };
    while (sqlite3_step(statement) == SQLITE_ROW)
        rows.push_back({text(3), text(1), text(2)});
    sqlite3_finalize(statement);
    sqlite3_close(file);
    return rows;
}

std::vector<bare_row> read_through_store()
{
    std::vector<bare_row> rows;
    ado::Recordset mails;
    mails.Open("select * from orders", *session.store_connection);
    for (; !mails.EOF_(); mails.MoveNext())
        rows.push_back({mails["tsl_Email"].text_or_empty(), mails["tsl_subject"].text_or_empty(),
                        mails["tsl_recdate"].text_or_empty()});
    mails.Close();
    return rows;
}

double milliseconds_of(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    QCoreApplication::processEvents(); // until it is painted
    return double(timer.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> figures)
{
    std::sort(figures.begin(), figures.end());
    return figures[figures.size() / 2];
}

bool tell(const char *what, double bare, double ours)
{
    const bool good = ours <= 2 * bare;
    std::printf("%-34s bare %8.1f ms, ours %8.1f ms, %.2f times%s\n", what, bare, ours, ours / bare,
                good ? "" : "  TOO SLOW");
    return good;
}

struct bare_window {
    bare_rows model;
    QTreeView view;

    void open(std::vector<bare_row> rows)
    {
        model.rows = std::move(rows);
        view.setUniformRowHeights(true);
        view.setModel(&model);
        view.resize(920, 400);
        view.show();
    }
};

bool bench_opening(const test_store &store)
{
    std::vector<double> plain, through_store, ours;
    for (int run = 0; run < runs; ++run) {
        bare_window plain_window, store_window;
        plain.push_back(milliseconds_of([&] { plain_window.open(read_plainly(store.path())); }));
        through_store.push_back(milliseconds_of([&] { store_window.open(read_through_store()); }));
        ours.push_back(milliseconds_of([] { stored_mails_shown(); }));
        the<mailfrm>().unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    std::printf("%-34s bare %8.1f ms\n", "opening, read through the store", median(through_store));
    return tell("opening, read by plain SQLite", median(plain), median(ours));
}

bool bench_sorting(bool all_selected)
{
    bare_window window;
    window.open(read_through_store());
    auto &list = control<list_view>(stored_mails_shown(), "LV_sub");
    QCoreApplication::processEvents();
    if (all_selected) {
        list.selectAll();
        window.view.setSelectionMode(QAbstractItemView::ExtendedSelection);
        window.view.selectAll();
    }
    bool good = true;
    for (int column = 0; column < columns; ++column) {
        std::vector<double> bare, ours;
        for (int run = 0; run < runs; ++run) {
            const auto order = run % 2 == 0 ? Qt::AscendingOrder : Qt::DescendingOrder;
            bare.push_back(milliseconds_of([&] { window.view.model()->sort(column, order); }));
            ours.push_back(milliseconds_of([&] { click_head(list, column); }));
            std::swap(window.model.rows.front(), window.model.rows.back());
        }
        const QString head = list.model()->headerData(column, Qt::Horizontal).toString();
        good &=
            tell(qPrintable("sorting by " + head + (all_selected ? ", all selected" : "")), median(bare), median(ours));
    }
    the<mailfrm>().unload();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return good;
}

// Each letter typed, and each taken back.
bool bench_searching(const char *what, const std::function<void(list_view &)> &select)
{
    mailfrm &screen = stored_mails_shown();
    auto &list = control<list_view>(screen, "LV_sub");
    auto &search = control<QLineEdit>(screen, "Insearch_t");
    QCoreApplication::processEvents();
    double longest = 0;
    for (const char *words : {"visitor99@mail", "order 777", "no such words"}) {
        select(list);
        const QString typed = words;
        for (qsizetype letters = 1; letters <= typed.size(); ++letters)
            longest = std::max(longest, milliseconds_of([&] { search.setText(typed.left(letters)); }));
        for (qsizetype letters = typed.size() - 1; letters >= 0; --letters)
            longest = std::max(longest, milliseconds_of([&] { search.setText(typed.left(letters)); }));
    }
    std::printf("%-34s the longest pause is %.1f ms%s\n", what, longest, longest <= 100 ? "" : "  TOO LONG");
    the<mailfrm>().unload();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return longest <= 100;
}

}

int main(int arguments, char **argument)
{
    const QApplication application(arguments, argument);
    const int count = arguments > 1 ? QByteArray(argument[1]).toInt() : 30000;
    auditor_site site;
    fill(site.store, count);
    std::printf("%d mails\n", count);
    bool good = bench_opening(site.store);
    good &= bench_sorting(false);
    good &= bench_sorting(true);
    good &= bench_searching("searching", [](list_view &) {});
    good &= bench_searching("searching, all selected", [](list_view &list) { list.selectAll(); });
    good &= bench_searching("searching, every seventh selected", [](list_view &list) {
        QItemSelection some;
        for (int row = 0; row < list.model()->rowCount(); row += 7)
            some.append({list.model()->index(row, 0), list.model()->index(row, 2)});
        list.selectionModel()->select(some, QItemSelectionModel::ClearAndSelect);
    });
    return good ? 0 : 1;
}
