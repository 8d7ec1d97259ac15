// One page of the help: a text browser that gets everything out of the help file and nothing from anywhere else, in
// the colours of the desktop.
#pragma once
#include "platform/help_file.h"
#include <QTextBrowser>

class help_page : public QTextBrowser {
    Q_OBJECT
public:
    explicit help_page(QWidget *parent = nullptr);

    void set_file(const help::help_file *help_file); // looked at as long as this lives, or until the next
    void open(const QString &page);                  // into the history
    QString shown_page() const;
    void say(const QString &text); // in place of a page
    void mark(const QStringList &words);
    void show_first_mark();
    bool find_next(const QString &text, bool backwards); // goes on at the other end

    QVariant loadResource(int type, const QUrl &name) override;

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void link_clicked(const QUrl &link);
    void set_colours();
    void close_lines_at_pictures();
    void fit_pictures();
    QImage fitting_picture(const QByteArray &bytes) const;

    const help::help_file *from = nullptr;
    QString shown;
    QStringList marked;
};
