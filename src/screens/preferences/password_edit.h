// A field for a password. Screen readers and whoever else listens to them hear its length only, also while the user has
// the letters shown.
#pragma once
#include <QLineEdit>

class password_edit : public QLineEdit {
    Q_OBJECT
public:
    explicit password_edit(QWidget *parent = nullptr);
};
