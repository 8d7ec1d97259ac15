#include "screens/preferences/autoresponder.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "platform/outside_effects.h"
#include "screens/icons.h"
#include "ui_autoresponder.h"

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
    connect(ui->greet_t, &QLineEdit::textChanged, this, &autoresponder::show_greeting);
    connect(ui->greetfield_c, &QComboBox::currentIndexChanged, this, &autoresponder::show_greeting);
    connect(ui->autosubmit_s, &QPushButton::clicked, this, &autoresponder::autosubmit_s_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &autoresponder::close);
    connect(ui->help_b, &QPushButton::clicked, this, &autoresponder::show_own_help);
}

autoresponder::~autoresponder() = default;

void autoresponder::Load()
{
    if (!guarded(responder_in_log, "Form_load", [this] { list_maps(); }))
        status_line("The maps cannot be shown: " + session.err_description);
    loadmap();
    ui->mapname_c->setFocus();
}

// The Mail Mapping Wizard makes maps meanwhile. What is typed stays, unless its map is gone.
void autoresponder::Activate()
{
    const QString before = chosen_map();
    if (!guarded(responder_in_log, "Activate", [this] { list_maps(); }))
        status_line("The maps cannot be shown: " + session.err_description);
    if (!same_text(chosen_map(), before) || !is_read)
        return loadmap();
    newest.clear(); // mail may have come in
    show_preview();
    show_greeting();
}

// The chosen one stays chosen.
void autoresponder::list_maps()
{
    open_store_if_closed();
    QStringList maps{"Select Map"};
    ado::Recordset rows;
    rows.Open("SELECT Table_name FROM Table_List_tbl", *session.store_connection);
    for (; !rows.EOF_(); rows.MoveNext())
        maps += rows[0].text_or_empty();
    const QSignalBlocker quiet(ui->mapname_c);
    const QString chosen = ui->mapname_c->currentText();
    ui->mapname_c->clear();
    ui->mapname_c->addItems(maps);
    ui->mapname_c->setCurrentIndex(qMax(0, ui->mapname_c->findText(chosen, Qt::MatchFixedString)));
    shown_map = ui->mapname_c->currentIndex();
    ui->empty_l->setVisible(maps.size() == 1);
    show_enabled();
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
    ui->mapname_c->setCurrentIndex(qMax(0, ui->mapname_c->findText(map, Qt::MatchFixedString)));
}

void autoresponder::mapname_c_Click()
{
    if (may_be_left("mapname_c"))
        return loadmap();
    const QSignalBlocker quiet(ui->mapname_c);
    ui->mapname_c->setCurrentIndex(shown_map);
}

void autoresponder::loadmap()
{
    shown_map = ui->mapname_c->currentIndex();
    newest.clear();
    is_read = true;
    if (!chosen_map().isEmpty())
        is_read = guarded(responder_in_log, "loadmap", [this] { read_chosen_map(); });
    if (!is_read)
        status_line("The autoresponder of this map cannot be shown: " + session.err_description);
    if (!map_is_shown()) {
        fill_field_list(*ui->dynamic_c, {});
        fill_field_list(*ui->greetfield_c, {});
        show_reply(reply_offered());
    }
    for (QWidget *part : {static_cast<QWidget *>(ui->enable_b), static_cast<QWidget *>(ui->subject_fr),
                          static_cast<QWidget *>(ui->text_fr)})
        part->setEnabled(map_is_shown());
    ui->autosubmit_s->setEnabled(is_read); // it would put what is offered in the place of what nobody has seen
}

bool autoresponder::map_is_shown() const
{
    return is_read && !chosen_map().isEmpty();
}

void autoresponder::read_chosen_map()
{
    open_store_if_closed();
    const QString map = chosen_map();
    const QStringList fields = intake::answer_fields(map);
    const intake::auto_reply reply = intake::stored_auto_reply(map).value_or(reply_offered());
    fill_field_list(*ui->dynamic_c, fields);
    fill_field_list(*ui->greetfield_c, fields);
    show_reply(reply);
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
    const bool is_choice_missing = chosen_map().isEmpty() && ui->mapname_c->count() > 1;
    ui->state_l->setText(map_is_shown() ? state : is_choice_missing ? "Choose a map first." : "");
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
        box_of(fault->part).setFocus();
        return;
    }
    open_store_if_closed();
    intake::save_auto_reply(map, reply);
    before_outside_effect(); // what cannot be kept is not told to be saved
    as_shown = reply;
    show_enabled();
    status_line("The autoresponder of " + map +
                (reply.enable ? " is saved: the mails of this map are answered from now on."
                              : " is saved, but not enabled: no replies go out."));
}

std::optional<unsaved_work> autoresponder::unsaved() const
{
    if (typed() == as_shown)
        return std::nullopt;
    return unsaved_work{responder_in_log, "What was changed here is not saved. Go on without saving?"};
}

QSize autoresponder::sizeHint() const
{
    return {640, 560};
}
