#include "screens/frame/frmSplash.h"
#include "frame/error_log.h"
#include "frame/start_up.h"
#include "frame/store.h"
#include "platform/app_folder.h"
#include "platform/clock.h"
#include "screens/icons.h"
#include "screens/maps/map_wizard_doors.h"
#include "ui_frmSplash.h"

#include <QKeyEvent>

frmSplash::frmSplash(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::frmSplash>())
{
    ui->setupUi(this);
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    ui->imgLogo->setPixmap(drawn_picture("tessaly", 80));
    QFont title = font();
    title.setPointSizeF(title.pointSizeF() * 2.4);
    ui->lblProductName->setFont(title);
    setFocusPolicy(Qt::StrongFocus);

    connect(ui->nexttip_b, &QPushButton::clicked, this, &frmSplash::nexttip_b_Click);
    connect(ui->prevtip_b, &QPushButton::clicked, this, &frmSplash::prevtip_b_Click);
    connect(ui->showtips_ch, &QCheckBox::toggled, this, &frmSplash::showtips_ch_Click);
}

frmSplash::~frmSplash() = default;

void frmSplash::Load()
{
    ui->tips_f->hide(); // until there is one to show
    guarded("frmsplash.frm", "Form_Load", [this] {
        open_store_if_closed();
        tips.read(app_path(u"\\tips.tip"));
        const bool at_start = tip_list::shown_at_start();
        const QSignalBlocker no_saving(ui->showtips_ch);
        ui->showtips_ch->setChecked(at_start);
        ui->tips_f->setVisible(at_start && !tips.isEmpty());
        tips.start_with(today().dayOfYear()); // another one every day
        show_current_tip();
    });
    setFocus();
}

void frmSplash::show_tips()
{
    load();
    ui->tips_f->setVisible(!tips.isEmpty());
    show();
}

void frmSplash::show_current_tip()
{
    ui->tip_lb->setText(tips.current());
}

void frmSplash::nexttip_b_Click()
{
    tips.next();
    show_current_tip();
}

void frmSplash::prevtip_b_Click()
{
    tips.previous();
    show_current_tip();
}

void frmSplash::showtips_ch_Click(bool checked)
{
    guarded("frmsplash.frm", "showtips_ch", [checked] { tip_list::set_shown_at_start(checked); });
}

// The frame, the picture and the labels let their clicks and keys through to here; the buttons keep theirs.
void frmSplash::mousePressEvent(QMouseEvent *)
{
    dismiss();
}

void frmSplash::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F1)
        return screen::keyPressEvent(event);
    const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (is_enter && press_button_for_enter())
        return;
    const bool only_a_modifier = event->key() == Qt::Key_Shift || event->key() == Qt::Key_Control ||
                                 event->key() == Qt::Key_Alt || event->key() == Qt::Key_Meta;
    if (!only_a_modifier)
        dismiss();
}

void frmSplash::dismiss()
{
    unload();
    Load_Wizard();
}

void frmSplash::Load_Wizard()
{
    if (::Load_Wizard())
        open_map_wizard_welcome();
}
