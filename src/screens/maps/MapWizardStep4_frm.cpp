#include "screens/maps/MapWizardStep4_frm.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/store.h"
#include "maps/field_entry.h"
#include "maps/mail_cutting.h"
#include "maps/map_wizard.h"
#include "maps/sample_mails.h"
#include "screens/maps/mapWizardStep3_frm.h"
#include "screens/maps/map_wizard_doors.h"
#include "screens/maps/textarea_frm.h"
#include "screens/wait_pointer.h"
#include "ui_MapWizardStep4_frm.h"

#include <QKeyEvent>
#include <QListView>
#include <QStringListModel>

MapWizardStep4_frm::MapWizardStep4_frm(QWidget *parent)
    : wizard_screen(parent), ui(std::make_unique<Ui::MapWizardStep4_frm>()), positions(new QStringListModel(this))
{
    ui->setupUi(this);
    ui->allval_c->addItem("Select separator");
    for (const maps::separator_choice &choice : maps::separator_choices())
        ui->allval_c->addItem(choice.caption);
    ui->seplines_op->setChecked(true);
    ui->Line_c->setModel(positions);
    if (auto *list = qobject_cast<QListView *>(ui->Line_c->view()))
        list->setUniformItemSizes(true); // a hostile mail has a million pieces

    connect(ui->seplines_op, &QRadioButton::toggled, this, &MapWizardStep4_frm::seplines_op_Click);
    connect(ui->textarea_b, &QPushButton::clicked, this, &MapWizardStep4_frm::textarea_b_Click);
    connect(ui->body_t, &QPlainTextEdit::selectionChanged, this, &MapWizardStep4_frm::body_t_SelChange);
    connect(ui->body_t, &exact_text::word_chosen, this, &MapWizardStep4_frm::word_chosen);
    connect(ui->copy_b, &QPushButton::clicked, this, &MapWizardStep4_frm::copy_b_Click);
    connect(ui->paste_b, &QPushButton::clicked, this, &MapWizardStep4_frm::paste_b_Click);
    connect(ui->Line_c, &QComboBox::currentIndexChanged, this, &MapWizardStep4_frm::Line_c_Click);
    connect(ui->hidden_t, &QLineEdit::textChanged, this, &MapWizardStep4_frm::hidden_t_Change);
    connect(ui->code_ch, &QCheckBox::toggled, this, &MapWizardStep4_frm::code_ch_Click);
    connect(ui->Values_b, &QPushButton::clicked, this, &MapWizardStep4_frm::Values_b_Click);
    connect(ui->pfields_b, &QPushButton::clicked, this, &MapWizardStep4_frm::pfields_b_Click);
    connect(ui->finish_b, &QPushButton::clicked, this, &MapWizardStep4_frm::finish_b_Click);
    connect(ui->help_b, &QPushButton::clicked, this, &MapWizardStep4_frm::show_own_help);
    connect(ui->back_b, &QPushButton::clicked, this, &MapWizardStep4_frm::back_b_Click);
    connect(ui->next_b, &QPushButton::clicked, this, &MapWizardStep4_frm::next_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &MapWizardStep4_frm::cancel_b_Click);
}

MapWizardStep4_frm::~MapWizardStep4_frm() = default;

void MapWizardStep4_frm::Load()
{
    maps::forget_pending_code();
    const bool read = guarded("mapwizardstep4.frm", "form load", [this] {
        open_store_if_closed();
        stored_body = maps::stored_body(maps::map_wizard.mail_table, maps::map_wizard.mail_id);
    });
    if (!read)
        status_line("The mail cannot be read: " + session.err_description);
    return_to_cutting();
}

void MapWizardStep4_frm::return_to_cutting()
{
    ui->body_t->set_text(stored_body);
    seplines_op_Click();
    show_step("step3a");
    (ui->seplines_op->isChecked() ? ui->seplines_op : ui->allval_op)->setFocus();
}

void MapWizardStep4_frm::show_step(const QString &new_step)
{
    step = new_step;
    const bool marks_fields = step == u"step3b";
    ui->Frame1->setVisible(!marks_fields);
    ui->Frame2->setVisible(marks_fields);
    ui->pfields_b->setVisible(marks_fields);
    ui->finish_b->setVisible(marks_fields);
    ui->next_b->setText(marks_fields ? "A&dd this field»" : "&Next»");
    ui->next_b->setAccessibleName(marks_fields ? "Add this field»" : "Next»"); // it has got the first caption for good
    setWindowTitle(marks_fields ? "Map mails Wizard-Step3(B)" : "Map mails Wizard-Step3(A)");
    ui->qt_band->set_step(marks_fields ? "Step 3 of 4 (B)" : "Step 3 of 4 (A)");
    ui->qt_band->set_title(marks_fields ? "Which piece is which field?" : "How is this mail cut?");
    ui->qt_band->set_hint(
        marks_fields ? "Name a field and choose the piece it comes from, then add it. Finish when all are added."
                     : "Is each value on a line of its own, or does a sign stand between them?");
}

void MapWizardStep4_frm::seplines_op_Click()
{
    ui->allval_c->setVisible(ui->allval_op->isChecked());
}

void MapWizardStep4_frm::textarea_b_Click()
{
    the<textarea_frm>().show_modal();
}

void MapWizardStep4_frm::next_b_Click()
{
    bool field_is_ready = false;
    guarded("mapwizardstep4.frm", "nextb click", [&] {
        if (step == u"step3a")
            cut_mail();
        else
            field_is_ready = take_pending_field();
    });
    if (field_is_ready)
        add_pending_field();
}

// False: the list of separators stands on none.
bool MapWizardStep4_frm::choose_separator()
{
    if (ui->seplines_op->isChecked()) {
        maps::map_wizard.map_separator = "Line";
        return true;
    }
    const int chosen = ui->allval_c->currentIndex();
    if (chosen < 1) {
        say("Please select a separator");
        return false;
    }
    maps::map_wizard.map_separator = maps::separator_choices()[size_t(chosen - 1)].stored;
    return true;
}

void MapWizardStep4_frm::cut_mail()
{
    if (!choose_separator())
        return;
    const wait_pointer waiting(*this);
    pieces = maps::cut_sample(stored_body, maps::map_wizard.map_separator);
    maps::forget_fields();
    show_numbered_pieces();
    QStringList entries;
    for (int piece = 1; piece <= pieces.size(); ++piece)
        entries += maps::separator_entry(piece);
    positions->setStringList(entries);
    ui->Line_c->setCurrentIndex(entries.isEmpty() ? -1 : 0);
    ui->paste_b->setEnabled(false);
    show_step("step3b");
    make_ready_for_next_field();
}

// The number behind each piece is dimmer than the mail.
void MapWizardStep4_frm::show_numbered_pieces()
{
    const QString &separator = maps::map_wizard.map_separator;
    const QString numbered = maps::numbered_body(pieces, separator);
    std::vector<text_stretch> numbers;
    piece_places.clear();
    qsizetype at = 0;
    for (const QString &piece : pieces) {
        const qsizetype length = maps::shown_piece(piece, separator).size();
        const qsizetype line_end = numbered.indexOf(u">\r\n", at + length) + 1;
        piece_places.push_back({at, length});
        numbers.push_back({at + length, line_end - at - length});
        at = line_end + 2;
    }
    ui->body_t->set_text(numbered);
    ui->body_t->show_quietly(numbers);
}

void MapWizardStep4_frm::back_b_Click()
{
    if (step == u"step3b") {
        if (ok_cancel("You have not saved the mapped format. You will be loosing all data , if you go back from here"))
            return_to_cutting(); // what was added is forgotten at the next cut only
        return;
    }
    maps::map_wizard.mail_table.clear();
    maps::map_wizard.mail_id.clear();
    unload();
    the<mapWizardStep3_frm>().show();
}

void MapWizardStep4_frm::cancel_b_Click()
{
    if (quits_map_wizard("mapwizardstep4.frm"))
        unload();
}

// Escape is the key of a slip: over the fields it asks as Back does, where Quit would drop them without a word.
void MapWizardStep4_frm::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && step == u"step3b")
        back_b_Click();
    else
        wizard_screen::keyPressEvent(event);
}

QSize MapWizardStep4_frm::sizeHint() const
{
    return {900, 580};
}
