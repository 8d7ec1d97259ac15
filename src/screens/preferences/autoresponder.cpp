#include "screens/preferences/autoresponder.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "screens/icons.h"
#include "ui_autoresponder.h"

#include <QCloseEvent>
#include <QKeyEvent>

namespace {

const char *const responder_in_log = "autoresponder_frm.frm";

// As it stands while a map has none.
intake::auto_reply reply_offered()
{
    intake::auto_reply reply;
    reply.GreetText = "Dear";
    return reply;
}

void fill_field_list(QComboBox &list, const QStringList &fields)
{
    list.clear();
    list.addItem("(no field)", QString());
    for (const QString &field : fields)
        list.addItem(field, field);
}

void stand_on_field(QComboBox &list, const QString &field)
{
    list.setCurrentIndex(qMax(0, list.findData(field, Qt::UserRole, Qt::MatchFixedString)));
}

}

autoresponder::autoresponder(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::autoresponder>())
{
    ui->setupUi(this);
    setWindowIcon(drawn_icon("mail_client"));

    connect(ui->mapname_c, &QComboBox::currentIndexChanged, this, &autoresponder::mapname_c_Click);
    connect(ui->enable_b, &QPushButton::clicked, this, &autoresponder::enable_b_Click);
    for (QRadioButton *kind : {ui->standard_o, ui->dynamic_o, ui->token_o})
        connect(kind, &QRadioButton::toggled, this, &autoresponder::show_what_applies);
    for (QLineEdit *part : {ui->subject_t, ui->prefix_t, ui->token_t, ui->suffix_t})
        connect(part, &QLineEdit::textChanged, this, &autoresponder::show_preview);
    connect(ui->dynamic_c, &QComboBox::currentIndexChanged, this, &autoresponder::show_preview);
    connect(ui->autosubmit_s, &QPushButton::clicked, this, &autoresponder::autosubmit_s_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &autoresponder::cancel_b_Click);
    connect(ui->help_b, &QPushButton::clicked, this, &autoresponder::show_own_help);
}

autoresponder::~autoresponder() = default;

void autoresponder::Load()
{
    if (!guarded(responder_in_log, "Form_load", [this] { list_maps(); }))
        status_line("The maps cannot be shown: " + session.err_description);
    ui->empty_l->setVisible(ui->mapname_c->count() == 1);
    loadmap();
    ui->mapname_c->setFocus();
}

void autoresponder::list_maps()
{
    const QSignalBlocker quiet(ui->mapname_c);
    ui->mapname_c->clear();
    ui->mapname_c->addItem("Select Map");
    open_store_if_closed();
    ado::Recordset maps;
    maps.Open("SELECT Table_name FROM Table_List_tbl", *session.store_connection);
    for (; !maps.EOF_(); maps.MoveNext())
        ui->mapname_c->addItem(maps[0].text_or_empty());
}

QString autoresponder::chosen_map() const
{
    const QString choice = ui->mapname_c->currentText();
    return upper_case(choice) == u"SELECT MAP" ? QString() : choice;
}

void autoresponder::choose_map(const QString &map)
{
    load();
    if (ui->mapname_c->findText(map, Qt::MatchFixedString) < 0)
        guarded(responder_in_log, "choose_map", [this] { list_maps(); });
    ui->empty_l->setVisible(ui->mapname_c->count() == 1);
    ui->mapname_c->setCurrentIndex(qMax(0, ui->mapname_c->findText(map, Qt::MatchFixedString)));
}

void autoresponder::mapname_c_Click()
{
    if (may_lose_what_is_typed())
        return loadmap();
    const QSignalBlocker quiet(ui->mapname_c);
    ui->mapname_c->setCurrentIndex(shown_map);
}

void autoresponder::loadmap()
{
    shown_map = ui->mapname_c->currentIndex();
    fill_field_list(*ui->dynamic_c, {});
    fill_field_list(*ui->greetfield_c, {});
    show_reply(reply_offered());
    for (QWidget *part : {static_cast<QWidget *>(ui->enable_b), static_cast<QWidget *>(ui->subject_fr),
                          static_cast<QWidget *>(ui->text_fr)})
        part->setEnabled(!chosen_map().isEmpty());
    if (chosen_map().isEmpty())
        return;
    if (!guarded(responder_in_log, "loadmap", [this] { read_chosen_map(); }))
        status_line("The autoresponder of this map cannot be shown: " + session.err_description);
}

void autoresponder::read_chosen_map()
{
    open_store_if_closed();
    const QString map = chosen_map();
    const QStringList fields = intake::answer_fields(map);
    fill_field_list(*ui->dynamic_c, fields);
    fill_field_list(*ui->greetfield_c, fields);
    show_reply(intake::stored_auto_reply(map).value_or(reply_offered()));
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
    reply.autocontent = crlf_line_ends(ui->autocontent_t->toPlainText());
    reply.enable = enabled;
    return reply;
}

void autoresponder::enable_b_Click()
{
    enabled = !enabled;
    show_enabled();
}

void autoresponder::show_enabled()
{
    ui->enable_b->setText(enabled ? "Disa&ble" : "Ena&ble");
    ui->enable_b->setAccessibleName(enabled ? "Disable" : "Enable");
    const bool stored = enabled == as_shown.enable;
    const char *const state = enabled ? (stored ? "Replies go out." : "Replies go out after Update.")
                                      : (stored ? "No replies go out." : "No replies go out after Update.");
    ui->state_l->setText(chosen_map().isEmpty() ? "" : state);
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

// In quotation marks: a blank at its end goes out too. A field shows the value of the newest mail.
void autoresponder::show_preview()
{
    const intake::auto_reply reply = typed();
    QString value;
    if (reply.SubjectType == intake::dynamic_subject)
        guarded(responder_in_log, "show_preview",
                [&] { value = intake::newest_value(chosen_map(), reply.SubjectDynamic); });
    if (value.isEmpty() && !reply.SubjectDynamic.isEmpty())
        value = u'<' + reply.SubjectDynamic + u'>';
    const bool told = !chosen_map().isEmpty();
    ui->preview_l->setText(told ? "It will go out as: \u201c" + intake::subject_of(reply, value) + u'\u201d'
                                : QString());
}

void autoresponder::autosubmit_s_Click()
{
    if (!guarded(responder_in_log, "autosubmit_s", [this] { save(); }))
        status_line("The autoresponder was not saved: " + session.err_description);
}

void autoresponder::save()
{
    const QString map = chosen_map();
    const intake::auto_reply reply = typed();
    if (const auto fault = intake::why_not_saveable(map, reply)) {
        say(fault->words);
        findChild<QWidget *>(fault->control)->setFocus();
        return;
    }
    open_store_if_closed();
    intake::save_auto_reply(map, reply);
    as_shown = reply;
    show_enabled();
    status_line("The autoresponder of " + map +
                (reply.enable ? " is saved: the mails of this map are answered from now on."
                              : " is saved, but not enabled: no replies go out."));
}

bool autoresponder::may_lose_what_is_typed()
{
    const auto answer = [] {
        return yes_no_before_loss("What was changed here is not saved. Go on without saving?",
                                  "Autoresponder configuration");
    };
    return typed() == as_shown || answer();
}

bool autoresponder::leave()
{
    if (!may_lose_what_is_typed())
        return false;
    unload();
    return true;
}

void autoresponder::cancel_b_Click()
{
    leave();
}

void autoresponder::closeEvent(QCloseEvent *event)
{
    if (may_lose_what_is_typed())
        screen::closeEvent(event);
    else
        event->ignore();
}

void autoresponder::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        cancel_b_Click();
    else
        screen::keyPressEvent(event);
}

QSize autoresponder::sizeHint() const
{
    return {640, 560};
}
