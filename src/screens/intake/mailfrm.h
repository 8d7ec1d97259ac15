// The Mail Auditor, "Tessaly - Inbox": the stored mails of all accounts and the sent ones, with their text. Loading it
// fetches and parses, unless session.no_fetch is set; intake/fetch.h and intake/map_parser.h do the work.
// Its two lists: listed_mails.h. Its lower part: reading_pane.h. Fetching: mailfrm_fetching.cpp. Deleting and
// answering: mailfrm_commands.cpp. The report on sent mails: sent_report_bar.h.
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
struct run_time_error;
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
    void populate_sentitems_tbl();                              // fills the sent list with all that was sent
    void show_sent_mails(std::vector<intake::mail_line> lines); // or with other ones
    void sentitems_show(); // or with the report that is being made, whose rows it writes
    // Shows the session's last error in a box and ends the program: for what leaves nothing to go on with.
    void CriticalError();

    QSize sizeHint() const override;

protected:
    QString help_topic() const override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void fetch_and_parse();
    static void note_kept_fetch(bool was_stopped);
    static void note_unfilled_tables();
    void tell_broken_fetch(const run_time_error &failure);
    void show_what_is_stored();
    bool shows_sent_items() const;
    void set_up_commands();
    void set_up_popups();
    void LV_sub_Click();
    void LV_sub_si_Click();
    void give_room_to_the_shown_view();
    void inb_Click();
    void sitm_Click();
    void Indelete_b_Click();
    void Sdelete_b_Click();
    void Inreply_b_Click();
    void SReply_b_Click();
    bool delete_lines(listed_mails &mails, const char *routine, void (*deed)(const intake::mail_line &line));
    void reply_to_selected(const listed_mails &mails);
    void note_reply();

    std::unique_ptr<Ui::mailfrm> ui;
    listed_mails *inbox = nullptr; // children of this screen
    listed_mails *sent = nullptr;
    bool lists_all_sent = true; // not what a report found
};
