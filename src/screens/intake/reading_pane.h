// The lower part of the Mail Auditor: the lines above a mail, its text, and why no map has taken it.
// What it is given: intake/mail_lines.h, intake/fit_reasons.h. The lists above it: listed_mails.h.
#pragma once
#include <QFrame>
#include <memory>
#include <vector>

namespace Ui {
class reading_pane;
}
namespace intake {
struct fit_reason;
struct mail_text;
}

class reading_pane : public QFrame {
    Q_OBJECT
public:
    explicit reading_pane(QWidget *parent = nullptr);
    ~reading_pane() override;

    void show_no_mail();
    void show_words(const QString &words); // in the place of a mail
    void show_mail(const intake::mail_text &mail, const QString &who_caption);
    void show_why_not(const std::vector<intake::fit_reason> &reasons);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    std::unique_ptr<Ui::reading_pane> ui;
};
