// The lines of the Mail Auditor's lists, and the text of the mail behind a line. What fills the account tables:
// write_data.h.
#pragma once
#include <QDateTime>
#include <QString>
#include <optional>
#include <vector>

namespace ado {
class Recordset;
}

namespace intake {

struct mail_line { // no body: fifty thousand lines stay small
    QString table; // the account's, shared by its lines; "" in the list of sent mails
    qint64 id = 0; // message_id, or sentid
    QString who;   // who it is from, or to
    QString subject;
    QDateTime date;         // not valid: none
    QString date_text = {}; // as stored, where that is no date with a time
};
QString date_shown(const mail_line &line);

struct mail_text {
    QString who, subject, date, body;
    bool unprocessed = false; // no map has taken it yet; a sent mail never is
};

// All accounts' mails, in the order of the accounts and of their tables. An account whose table cannot be read is
// logged ("Mailfrm.frm", "showmails_from_database") and left out, the others are listed; left_out counts them.
std::vector<mail_line> stored_mail_lines(int &left_out);
std::optional<mail_text> stored_mail_text(const mail_line &line); // nothing: the row is gone

std::vector<mail_line> sent_mail_lines();             // of sentitems_tbl
mail_line sent_mail_line(ado::Recordset &sent_mails); // of its current row
std::optional<mail_text> sent_mail_text(const mail_line &line);

// What a box shows of a mail's text: frame/shown_text.h.
QString text_to_show(const QString &body);

}
