#include "screens/frame/frmAbout.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/tell_a_friend.h"
#include "screens/frame/TechSupport.h"
#include "screens/frame/rolling_list.h"
#include "screens/frame/system_information_button.h"
#include "screens/icons.h"
#include "ui_frmAbout.h"

frmAbout::frmAbout(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::frmAbout>())
{
    ui->setupUi(this);
    ui->picIcon->setPixmap(drawn_picture("tessaly", 64));
    QFont title = font();
    title.setPointSizeF(title.pointSizeF() * 1.6);
    ui->lblTitle->setFont(title);

    connect(ui->cmdSysInfo, &QPushButton::clicked, this, [] { show_system_information("frmAbout.frm"); });
    connect(ui->techsupport_b, &QPushButton::clicked, this, &frmAbout::techsupport_b_Click);
    connect(ui->tellfriend_b, &QPushButton::clicked, this, &frmAbout::tellfriend_b_Click);
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmAbout::cmdOK_Click);
}

frmAbout::~frmAbout() = default;

void frmAbout::Load()
{
    ui->lblVersion->setText("Version " TESSALY_VERSION);
    ui->credits_li->addItems({
        "Tessaly is built on the work of many people. Thank you to",
        "the Qt project: windows, texts, settings (LGPL 3)",
        "the SQLite project: the store (public domain)",
        "the GNOME project: GMime, reading and writing mail (LGPL 2.1)",
        "the curl project: the lines to mail servers (curl license)",
        "the makers of QtKeychain: the way to the desktop's keyring (BSD)",
        "the DejaVu project: letters that are easy to read",
        "the Debian project: the ground it all stands on",
        "and everybody who writes free software.",
    });
    (new rolling_list(*ui->credits_li))->begin();
    ui->cmdOK->setFocus();
}

void frmAbout::techsupport_b_Click()
{
    the<TechSupport>().show_modal();
}

void frmAbout::tellfriend_b_Click()
{
    guarded("frmAbout.frm", "tellfriend_b", [] {
        if (!tell_a_friend())
            say("This desktop has no mail program that could write the mail.", "Tessaly", message_icon::exclamation);
    });
}

void frmAbout::cmdOK_Click()
{
    unload();
}
