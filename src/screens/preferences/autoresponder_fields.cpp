// The boxes of the screen: filling them, reading them, which of them apply, and what will come of them.
#include "frame/error_log.h"
#include "frame/text.h"
#include "screens/exact_text.h"
#include "screens/preferences/autoresponder.h"
#include "ui_autoresponder.h"

namespace {

void stand_on_field(QComboBox &list, const QString &field)
{
    list.setCurrentIndex(qMax(0, list.findData(field, Qt::UserRole, Qt::MatchFixedString)));
}

}

void autoresponder::show_reply(const intake::auto_reply &reply)
{
    ui->subject_t->setText(reply.Subject);
    ui->prefix_t->setText(reply.SubjectPrefix);
    stand_on_field(*ui->dynamic_c, reply.SubjectDynamic);
    ui->suffix_t->setText(reply.SubjectSuffix);
    ui->token_t->setText(reply.LastToken);
    ui->greet_t->setText(reply.GreetText);
    stand_on_field(*ui->greetfield_c, reply.GreetField);
    ui->autocontent_t->setPlainText(reply.autocontent);
    const bool is_dynamic = reply.SubjectType == intake::dynamic_subject;
    const bool is_token = reply.SubjectType == intake::support_token;
    (is_dynamic ? ui->dynamic_o : is_token ? ui->token_o : ui->standard_o)->setChecked(true);
    enabled = reply.enable;
    show_what_applies();
    show_greeting();
    as_shown = typed();
    show_enabled();
}

intake::auto_reply autoresponder::typed() const
{
    intake::auto_reply reply;
    reply.SubjectType = ui->dynamic_o->isChecked() ? intake::dynamic_subject
                        : ui->token_o->isChecked() ? intake::support_token
                                                   : intake::standard_subject;
    reply.Subject = ui->subject_t->text();
    reply.SubjectPrefix = ui->prefix_t->text();
    reply.SubjectDynamic = ui->dynamic_c->currentData().toString();
    reply.SubjectSuffix = ui->suffix_t->text();
    reply.GreetText = ui->greet_t->text();
    reply.GreetField = ui->greetfield_c->currentData().toString();
    reply.LastToken = ui->token_t->text();
    reply.autocontent = crlf_line_ends(typed_text(*ui->autocontent_t));
    reply.enable = enabled;
    return reply;
}

QWidget &autoresponder::box_of(intake::reply_part part) const
{
    switch (part) {
    case intake::reply_part::map:
        return *ui->mapname_c;
    case intake::reply_part::text:
        return *ui->autocontent_t;
    case intake::reply_part::subject:
        return *ui->subject_t;
    case intake::reply_part::prefix:
        return *ui->prefix_t;
    case intake::reply_part::token:
        break;
    }
    return *ui->token_t;
}

void autoresponder::show_what_applies()
{
    const bool standard = ui->standard_o->isChecked();
    const bool token = ui->token_o->isChecked();
    for (QWidget *part : {static_cast<QWidget *>(ui->subject_lb), static_cast<QWidget *>(ui->subject_t)})
        part->setVisible(standard);
    for (QWidget *part : {static_cast<QWidget *>(ui->prefix_lb), static_cast<QWidget *>(ui->prefix_t),
                          static_cast<QWidget *>(ui->suffix_lb), static_cast<QWidget *>(ui->suffix_t)})
        part->setVisible(!standard);
    for (QWidget *part : {static_cast<QWidget *>(ui->dynamic_lb), static_cast<QWidget *>(ui->dynamic_c)})
        part->setVisible(!standard && !token);
    for (QWidget *part : {static_cast<QWidget *>(ui->token_lb), static_cast<QWidget *>(ui->token_t)})
        part->setVisible(token);
    show_preview();
}

// A field shows the value of the newest mail, or its own name before there is one.
QString autoresponder::newest_of(const QString &field)
{
    if (field.isEmpty())
        return {};
    if (!newest.contains(field)) {
        newest[field] = u'<' + field + u'>';
        guarded("autoresponder_frm.frm", "show_preview", [&] {
            if (const auto value = intake::newest_value(chosen_map(), field)) // an empty one, too
                newest[field] = *value;
        });
    }
    return newest[field];
}

// In quotation marks: a blank at its end goes out too.
void autoresponder::show_preview()
{
    const intake::auto_reply reply = intake::as_stored(typed());
    QString value;
    if (reply.SubjectType == intake::dynamic_subject)
        value = newest_of(reply.SubjectDynamic);
    ui->preview_l->setText(map_is_shown() ? "It will go out as: \u201c" + intake::subject_of(reply, value) + u'\u201d'
                                          : QString());
}

// Without a field a greeting names nobody, which is easily overlooked.
void autoresponder::show_greeting()
{
    const QString field = ui->greetfield_c->currentData().toString();
    const char *const whose = field.isEmpty() ? "Without a field every reply begins with: " : "It will begin with: ";
    const QString greeting = intake::as_stored(typed()).GreetText;
    ui->greeting_l->setVisible(map_is_shown() && !greeting.isEmpty());
    if (!ui->greeting_l->isHidden())
        ui->greeting_l->setText(whose + (u'\u201c' + greeting + u' ' + newest_of(field) + u'\u201d'));
}
