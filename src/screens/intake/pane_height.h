// How the Mail Auditor's lists share its height with the text of a mail, in each of its two views. At first so that a
// mail can be read and the list be used; what the user drags holds for that view, at the next opening too.
#pragma once
#include <QMap>
#include <QObject>

class QSplitter;

class pane_height : public QObject {
    Q_OBJECT
public:
    explicit pane_height(QSplitter &splitter); // the list's view above, the text below

    // bar: what stands above the view's list and takes its own height from the text; nullptr: nothing does.
    void show_view(const QString &memory_name, const QWidget *bar);
    void fit(); // after the bar has changed

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    double first_share() const;
    void splitter_Moved();
    void keep_share();

    QSplitter &splitter;
    QString view_name;
    const QWidget *view_bar = nullptr;
    QMap<QString, double> users_shares; // of the upper part, by the views' names
    bool was_dragged = false;
};
