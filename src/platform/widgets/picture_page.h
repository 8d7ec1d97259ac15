// Shows one of the program's own progress pages: a background colour and one picture, animated. A browser engine would
// need a second to start, longer than many a fetch takes, so this reads the two things by itself.
#pragma once
#include <QLabel>

class QMovie;

class picture_page : public QLabel {
    Q_OBJECT
public:
    explicit picture_page(QWidget *parent = nullptr);
    void Navigate(const QString &path); // a missing page or picture leaves it empty

    QColor background() const { return colour; }
    QString picture() const { return picture_path; }

private:
    QMovie *movie;
    QColor colour;
    QString picture_path;
};
