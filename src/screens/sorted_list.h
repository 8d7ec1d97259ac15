// The rows of a list that its heads sort in memory: the order in which the lines are shown, the mark of the sorted
// head, and a selection that follows its lines. What a line says is its list's: mail_list.h, outbox_list.h. How it is
// drawn: list_view.h.
#pragma once
#include <QAbstractTableModel>
#include <QStringList>
#include <functional>
#include <vector>

class sorted_list : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit sorted_list(const QStringList &heads, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    void sort(int head, Qt::SortOrder order = Qt::AscendingOrder) override;

protected:
    size_t line_at(int row) const { return size_t(shown[size_t(row)]); }
    // Between begin and endResetModel: the lines to show, as the list got them.
    void show_lines(std::vector<int> lines);
    // Without a reset, so that selection, keyboard's place and where Shift began stay. becomes: of each line that there
    // was, its number from now on, or -1: it goes. change makes the new lines, count of them, the list's own.
    void change_lines(const std::vector<int> &becomes, int count, const std::function<void()> &change);
    // Two lines by a head: below 0, 0, or above it.
    virtual int compare(size_t a, size_t b, int head) const = 0;
    // The tip of a text that may not fit its column: wrapped, never taken for HTML; none for no text.
    static QVariant whole_text_tip(const QString &text);

private:
    bool stands_before(int a, int b) const;
    void take_out(const std::vector<int> &becomes);
    void add_at_the_end(int count);
    void sort_shown();
    void put_in_order(); // the selection follows its lines
    QString sort_mark(int section) const;

    QStringList captions;
    std::vector<int> shown; // lines, in the order shown
    int sorted_by = -1;     // no column: as the list got them
    Qt::SortOrder sort_order = Qt::AscendingOrder;
};
