// The Mail Auditor, "Tessaly - Inbox": the stored mails of all accounts and the sent ones, with their text. Loading it
// fetches and parses, unless session.no_fetch is set; intake/fetch.h and intake/map_parser.h do the work.
// Its two lists: listed_mails.h. Its lower part: reading_pane.h. The report on sent mails: sent_report_bar.h.
#pragma once
#include "screens/screen.h"
#include <memory>
#include <vector>

namespace Ui {
class mailfrm;
}
namespace intake {
struct mail_line;
}
class listed_mails;

class mailfrm : public screen {
    Q_OBJECT
public:
    explicit mailfrm(QWidget *parent = nullptr);
    ~mailfrm() override;
    void Load() override;

    void fetch_mail();
    void store_lvindex(); // forgets which mail stands on which line; the lists are filled anew
    void showmails_from_database();
    void populate_sentitems_tbl(); // fills the sent list with all that was sent
    void sentitems_show();         // or with the report that is being made, whose rows it writes
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
    void show_sent_mails(std::vector<intake::mail_line> lines);
    bool shows_sent_items() const;
    void LV_sub_Click();
    void LV_sub_si_Click();
    void inb_Click();
    void sitm_Click();

    std::unique_ptr<Ui::mailfrm> ui;
    listed_mails *inbox = nullptr; // children of this screen
    listed_mails *sent = nullptr;
};
