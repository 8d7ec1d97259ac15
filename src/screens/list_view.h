// A list of a screen: rows as a whole, remembered column widths, and a line that says what to do while it is empty. A
// click on a column head sorts it, and so do Ctrl+1 for the first head, Ctrl+2 and so on, and the menu that the menu
// key opens where the screen has none of its own. Its model marks the sorted head: icons.h (key1, key2, keynone).
#pragma once
#include "screens/kept_arrangement.h"
#include <QPersistentModelIndex>
#include <QTreeView>

class QMenu;

class list_view : public QTreeView, public kept_arrangement {
    Q_OBJECT
public:
    explicit list_view(QWidget *parent = nullptr);

    void set_empty_text(const QString &text);
    // The widths go to and come from the settings under this name; the ones given are the first ones,
    // which shrink together where there is less room.
    void remember_columns(const QString &name, const QList<int> &first_widths);
    void keep_arrangement() override;
    // Behind rows that came or went, which end the range that Shift has begun: it goes on from where it began.
    void take_up_shift();

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void head_Click(int column);
    QList<int> shown_heads() const;
    void add_sort_command(QMenu &menu, int column, int number);
    void say_how_it_is_sorted();
    void fit_first_widths();

    QString empty_text;
    QString memory_name;
    QString remembered;      // the widths that need no saving
    QList<int> first_widths; // until the user changes one
    QString spoken_name;     // without how it is sorted
    QPersistentModelIndex shift_began;
    int sorted_column = -1;
    Qt::SortOrder order = Qt::AscendingOrder;
};
