#include "screens/maps/mapmail_frm.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "intake/map_fit.h"
#include "maps/map_wizard.h"
#include "maps/sample_mails.h"
#include "platform/app_folder.h"
#include "platform/text_file.h"
#include "platform/winopen.h"
#include "screens/maps/Ignore.h"
#include "screens/maps/fcodes_frm.h"
#include "screens/preferences/Format_mail_frm.h"
#include "screens/preferences/page_list.h"
#include "ui_mapmail_frm.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QListView>
#include <QStringListModel>

namespace {

const char *const screen_in_log = "Mapmail_frm.frm";

}

mapmail_frm::mapmail_frm(QWidget *parent)
    : screen(parent), ui(std::make_unique<Ui::mapmail_frm>()), positions(new QStringListModel(this))
{
    ui->setupUi(this);
    ui->separator_c->addItem("Separator");
    for (const maps::separator_choice &choice : maps::classic_separators())
        ui->separator_c->addItem(choice.caption, choice.stored);
    ui->Line_c->setModel(positions);
    if (auto *list = qobject_cast<QListView *>(ui->Line_c->view()))
        list->setUniformItemSizes(true); // a hostile mail has a million pieces
    ui->qt_splitter->setStretchFactor(0, 1);
    ui->qt_splitter->setStretchFactor(1, 1);
    ui->qt_splitter->remember_place("mapmail_frm.qt_splitter");

    connect(ui->open_b, &QPushButton::clicked, this, &mapmail_frm::open_b_Click);
    connect(ui->sformats_c, &QComboBox::activated, this, &mapmail_frm::sformats_c_Click);
    connect(ui->separator_c, &QComboBox::activated, this, &mapmail_frm::separator_c_Click);
    connect(ui->Line_c, &QComboBox::currentIndexChanged, this, &mapmail_frm::Line_c_Click);
    connect(ui->Text1, &QPlainTextEdit::selectionChanged, this, &mapmail_frm::Text1_SelChange);
    connect(ui->Command5, &QPushButton::clicked, this, &mapmail_frm::Command5_Click);
    connect(ui->Command7, &QPushButton::clicked, this, &mapmail_frm::Command7_Click);
    connect(ui->Command6, &QPushButton::clicked, this, &mapmail_frm::Command6_Click);
    connect(ui->code_ch, &QCheckBox::toggled, this, &mapmail_frm::code_ch_Click);
    connect(ui->values_b, &QPushButton::clicked, this, &mapmail_frm::values_b_Click);
    connect(ui->Prev_b, &QPushButton::clicked, this, &mapmail_frm::Prev_b_Click);
    connect(ui->next_b, &QPushButton::clicked, this, &mapmail_frm::next_b_Click);
    connect(ui->save_b, &QPushButton::clicked, this, &mapmail_frm::save_b_Click);
    connect(ui->Command2, &QPushButton::clicked, this, &mapmail_frm::Command2_Click);
    connect(ui->help_b, &QPushButton::clicked, this, &mapmail_frm::show_own_help);
}

mapmail_frm::~mapmail_frm() = default;

void mapmail_frm::Load()
{
    ui->Command5->setEnabled(false);
    ui->Command7->setEnabled(false);
    show_field();
    guarded(screen_in_log, "Form_load", [this] {
        open_store_if_closed();
        mail_table = maps::map_wizard.mail_table;
        body = maps::stored_body(mail_table, maps::map_wizard.mail_id);
        ui->Text1->set_text(body);
    });
    open_b_Click(); // what there is to look at is there at once
    ui->sformats_c->setFocus();
}

void mapmail_frm::open_b_Click()
{
    guarded("mapmailfrm", "openbclick", [this] {
        open_store_if_closed();
        const QStringList names = maps::maps_of_account(mail_table);
        ui->sformats_c->clear();
        ui->sformats_c->addItem(names.isEmpty() ? "This account has no map yet" : "Choose a map");
        ui->sformats_c->addItems(names);
    });
}

void mapmail_frm::sformats_c_Click()
{
    if (ui->sformats_c->currentIndex() < 1)
        return;
    guarded(screen_in_log, "sformats_c_Click", [this] {
        open_store_if_closed();
        const maps::stored_map map = maps::read_map(ui->sformats_c->currentText());
        fields = map.fields;
        place = 0;
        const int known = ui->separator_c->findData(map.seperator);
        ui->separator_c->setCurrentIndex(qMax(known, 0)); // the wizard knows more of them than this list
        cut(map.seperator);
        show_field();
    });
}

void mapmail_frm::separator_c_Click()
{
    const QString position = ui->Line_c->currentText();
    cut(ui->separator_c->currentData().toString());
    if (place < int(fields.size()))
        show_position(position); // another cut does not move the field
}

void mapmail_frm::cut(const QString &by)
{
    separator = by;
    body_pieces = separator.isEmpty() ? QStringList() : maps::cut_sample(body, separator);
    QStringList entries;
    for (int piece = 1; piece <= body_pieces.size(); ++piece)
        entries += maps::line_entry(piece);
    positions->setStringList(entries);
    ui->Line_c->setCurrentIndex(entries.isEmpty() ? -1 : 0);
}

void mapmail_frm::Line_c_Click()
{
    const int piece = intake::piece_number(ui->Line_c->currentText());
    const bool in_this_mail = piece >= 1 && piece <= body_pieces.size();
    ui->Text2->setText(in_this_mail ? maps::shown_piece(body_pieces[piece - 1], separator) : QString());
    ui->Text2->setPlaceholderText(ui->Line_c->count() > 0 && !in_this_mail ? "This mail has no such piece." : "");
    ui->Text2->setCursorPosition(0);
}

void mapmail_frm::show_field()
{
    const bool is_new = place >= int(fields.size());
    const maps::stored_field field = is_new ? maps::stored_field{} : fields[size_t(place)];
    ui->field_t->setText(field.fname);
    while (ui->Line_c->count() > body_pieces.size()) // a foreign one of the field before
        ui->Line_c->removeItem(ui->Line_c->count() - 1);
    if (is_new)
        ui->Line_c->setCurrentIndex(qMin(0, ui->Line_c->count() - 1));
    else
        show_position(field.fposition);
    ui->dont_ch->setChecked(!is_new && field.finclude);
    set_ignored_texts(intake::supporting_texts(field.fignore));
    shown_code = maps::code_of(field);
    ui->code_ch->setChecked(!shown_code.type.isEmpty());
    code_ch_Click();
    ui->Prev_b->setEnabled(place > 0);
    ui->place_l->setText(is_new ? QString::number(fields.size()) + " field(s), a new one"
                                : "Field " + QString::number(place + 1) + " of " + QString::number(fields.size()));
}

void mapmail_frm::show_position(const QString &position)
{
    const int piece = intake::piece_number(position);
    if (piece >= 1 && piece <= body_pieces.size() && position == maps::line_entry(piece))
        return ui->Line_c->setCurrentIndex(piece - 1);
    if (ui->Line_c->findText(position) < 0)
        ui->Line_c->addItem(position); // the mail beside it is shorter than what the map was made from
    ui->Line_c->setCurrentIndex(ui->Line_c->findText(position));
}

maps::stored_field mapmail_frm::field_on_screen() const
{
    maps::stored_field field;
    field.fname = ui->field_t->text();
    field.fposition = ui->Line_c->currentText();
    field.fignore = fignore;
    field.finclude = ui->dont_ch->isChecked();
    if (ui->code_ch->isChecked())
        maps::set_code(field, shown_code);
    return field;
}

QStringList mapmail_frm::ignored_texts() const
{
    return intake::supporting_texts(fignore);
}

void mapmail_frm::set_ignored_texts(const QStringList &texts)
{
    fignore = intake::joined_texts(texts);
    ui->ignored_l->setText(texts.isEmpty() ? "none" : texts.join(u'\n'));
}

void mapmail_frm::Text1_SelChange()
{
    ui->Command5->setEnabled(!ui->Text1->selected_text().isEmpty());
}

void mapmail_frm::Command5_Click()
{
    QGuiApplication::clipboard()->setText(ui->Text1->selected_text());
    ui->Command7->setEnabled(true);
    ui->Command7->setFocus();
    ui->Command5->setEnabled(false);
}

void mapmail_frm::Command7_Click()
{
    ui->field_t->setText(QGuiApplication::clipboard()->text());
    ui->field_t->setFocus();
    ui->Command7->setEnabled(false);
}

void mapmail_frm::Command6_Click()
{
    the<Ignore>().show_modal();
}

void mapmail_frm::code_ch_Click()
{
    ui->values_b->setEnabled(ui->code_ch->isChecked());
}

void mapmail_frm::give_up_code()
{
    ui->code_ch->setChecked(false);
}

void mapmail_frm::values_b_Click()
{
    the<fcodes_frm>().show_modal();
}

void mapmail_frm::Prev_b_Click()
{
    guarded(screen_in_log, "prev_b", [this] {
        if (place > 0)
            --place;
        show_field();
    });
}

void mapmail_frm::next_b_Click()
{
    guarded(screen_in_log, "next_b", [this] {
        maps::stored_field field = field_on_screen();
        const QString why =
            maps::why_not_next(field.fname, field.fposition, ui->code_ch->isChecked(), shown_code, fields, place);
        ui->field_t->setText(field.fname); // the test of the name trims it
        if (!why.isEmpty()) {
            say(why);
            return ui->field_t->setFocus();
        }
        if (place < int(fields.size()))
            fields[size_t(place)] = field;
        else
            fields.push_back(field);
        ++place;
        show_field();
    });
}

void mapmail_frm::save_b_Click()
{
    guarded(screen_in_log, "save_b", [this] {
        if (fields.empty())
            return say("Please select format");
        const QString path = app_path(u"/map.txt");
        Write(path, maps::map_summary(mail_table, fields, maps::code_field_of(fields)));
        if (!winopen(path))
            status_line("The summary is in " + path + ".");
        if (yes_no("Save this format")) {
            status_line("No map was changed: the Mail Mapping Wizard alone saves maps. The summary is in " + path +
                        ".");
        }
    });
}

void mapmail_frm::Command2_Click()
{
    const QString table = mail_table;
    unload();
    open_page(preference_page::map_mails);
    if (is_loaded<Format_mail_frm>())
        the<Format_mail_frm>().choose_account(table);
}

void mapmail_frm::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        return Command2_Click();
    screen::keyPressEvent(event);
}

QSize mapmail_frm::sizeHint() const
{
    return {940, 520};
}
