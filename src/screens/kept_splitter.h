// A splitter whose place the user chooses once: it is kept in the settings. One that he never moved keeps following the
// window.
#pragma once
#include "screens/kept_arrangement.h"
#include <QSplitter>

class kept_splitter : public QSplitter, public kept_arrangement {
    Q_OBJECT
public:
    explicit kept_splitter(QWidget *parent = nullptr);

    void remember_place(const QString &name); // when its parts are in it
    void keep_arrangement() override;

protected:
    void hideEvent(QHideEvent *event) override;

private:
    QString memory_name;
    bool was_moved = false;
};
