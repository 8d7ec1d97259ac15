// The Mail Auditor, "Tessaly - Inbox": the stored mails of all accounts and the sent ones, with their text. Loading it
// fetches and parses, unless session.no_fetch is set; intake/fetch.h and intake/map_parser.h do the work.
// The rows of its lists: mail_list.h.
#pragma once
#include "screens/screen.h"
#include <memory>

namespace Ui {
class mailfrm;
}
namespace intake {
struct mail_line;
struct mail_text;
}
class list_view;
class mail_list;

class mailfrm : public screen {
    Q_OBJECT
public:
    explicit mailfrm(QWidget *parent = nullptr);
    ~mailfrm() override;
    void Load() override;

    void fetch_mail();
    void store_lvindex(); // forgets which mail stands on which line; the lists are filled anew
    void showmails_from_database();
    void populate_sentitems_tbl();
    // Shows the session's last error in a box and ends the program: for what leaves nothing to go on with.
    void CriticalError();

    QSize sizeHint() const override;

protected:
    QString help_topic() const override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void fetch_and_parse();
    void tell_broken_fetch();
    void show_what_is_stored();
    void set_up_lists();
    void set_up_list(list_view &view, mail_list &rows, const QString &name);
    void show_no_mail();
    void show_mail(const intake::mail_text &mail, const QString &who_caption);
    void show_why_not(const intake::mail_line &line);
    void LV_sub_Click();
    void LV_sub_si_Click();
    void inb_Click();
    void sitm_Click();
    void search_t_Change(const QString &words);

    std::unique_ptr<Ui::mailfrm> ui;
    mail_list *inbox_rows; // children of this screen
    mail_list *sent_rows;
};
