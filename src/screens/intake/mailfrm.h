// The Mail Auditor, "Tessaly - Inbox": the stored mails of all accounts and the sent ones, with their text. Loading it
// fetches and parses, unless session.no_fetch is set; intake/fetch.h and intake/map_parser.h do the work.
// Its two lists: listed_mails.h. Its lower part: reading_pane.h, pane_height.h, mailfrm_reading.cpp. Fetching:
// mailfrm_fetching.cpp. Deleting and answering: mailfrm_commands.cpp. The report on sent mails: sent_report_bar.h.
#pragma once
#include "screens/screen.h"
#include <memory>
#include <optional>
#include <vector>

namespace Ui {
class mailfrm;
}
namespace intake {
struct mail_line;
struct mail_text;
}
struct run_time_error;
class listed_mails;
class pane_height;

class mailfrm : public screen {
    Q_OBJECT
public:
    explicit mailfrm(QWidget *parent = nullptr);
    ~mailfrm() override;
    void Load() override;
    void Activate() override; // lists the mails anew when they changed meanwhile

    void fetch_mail();
    // Between fetching and parsing no line leads to a mail. Each line knows its own mail, so there is no more to forget
    // than the lines themselves.
    void store_lvindex();
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

private:
    void show_fetch_summary();
    void fetch_and_parse(bool &tables_were_tried);
    static void note_kept_fetch(bool was_stopped);
    static void note_unfilled_tables();
    void tell_broken_fetch(const run_time_error &failure);
    void show_what_is_stored();
    bool shows_sent_items() const;
    void set_up_commands();
    void set_up_popups();
    void LV_sub_Click();
    void LV_sub_si_Click();
    void read_selected(const listed_mails &mails, const char *routine, const QString &who_caption,
                       std::optional<intake::mail_text> (*text_of)(const intake::mail_line &line));
    void show_view(QWidget &view);
    void inb_Click();
    void sitm_Click();
    void Indelete_b_Click();
    void Sdelete_b_Click();
    void Inreply_b_Click();
    void SReply_b_Click();
    bool delete_lines(listed_mails &mails, const char *routine, void (*deed)(const intake::mail_line &line));
    void reply_to_selected(const listed_mails &mails);
    void note_reply();
    void list_sent_mails_anew(const char *routine);

    std::unique_ptr<Ui::mailfrm> ui;
    listed_mails *inbox = nullptr; // children of this screen
    listed_mails *sent = nullptr;
    pane_height *heights = nullptr;
    bool lists_all_sent = true;                          // not what a report found
    quint64 changes_listed = 0;                          // mail_changes() when the inbox list was filled
    std::optional<std::pair<QString, qint64>> mail_read; // the one in the reading pane: its table, its number
};
