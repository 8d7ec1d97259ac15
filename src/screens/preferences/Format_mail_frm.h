// The preferences page "Map mails": the raw mails of one account, to read, to delete, and to look at the fields of the
// account's maps beside one (maps/mapmail_frm.h). The only place where raw mail is removed by hand.
#pragma once
#include "screens/screen.h"
#include <QStringList>
#include <memory>

namespace Ui {
class Format_mail_frm;
}
class sample_mail_list;

class Format_mail_frm : public screen {
    Q_OBJECT
public:
    explicit Format_mail_frm(QWidget *parent = nullptr);
    ~Format_mail_frm() override;
    void Load() override;

    QSize sizeHint() const override;

private:
    void query_c_Click();
    void inbox_lv_ItemClick();
    void delete_l_Click();
    void open_b_Click();
    void show_mails();
    void enable_buttons();
    QString chosen_table() const; // "" with "Select the query"

    std::unique_ptr<Ui::Format_mail_frm> ui;
    QStringList query_ch;   // the table of each entry of query_c; the first entry has none
    sample_mail_list *rows; // each knows its message_id; a child of this screen
};
