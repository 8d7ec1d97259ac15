// A list of a screen: rows as a whole, sorted by a click on a column head, remembered column widths, and a line that
// says what to do while it is empty. Its model marks the sorted head: icons.h (key1, key2, keynone).
#pragma once
#include <QTreeView>

class list_view : public QTreeView {
    Q_OBJECT
public:
    explicit list_view(QWidget *parent = nullptr);

    void set_empty_text(const QString &text);
    // The widths go to and come from the settings under this name; the ones given are the first ones,
    // which shrink together where there is less room.
    void remember_columns(const QString &name, const QList<int> &first_widths);

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void head_Click(int column);
    void fit_first_widths();

    QString empty_text;
    QString memory_name;
    QString remembered;      // the widths that need no saving
    QList<int> first_widths; // until the user changes one
    int sorted_column = -1;
    Qt::SortOrder order = Qt::AscendingOrder;
};
