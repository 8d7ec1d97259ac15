#include "screens/frame/frmAbout.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "screens/icons.h"
#include "ui_frmAbout.h"

#include <QProcess>
#include <QStandardPaths>

namespace {

// The desktops' own tools, with what makes them show the machine.
const std::vector<QStringList> &system_information_tools()
{
    static const std::vector<QStringList> tools{
        {"gnome-control-center", "info-overview"},
        {"kinfocenter"},
        {"mate-system-monitor", "--show-system-tab"},
        {"hardinfo2"},
        {"hardinfo"},
        {"gnome-system-monitor"},
        {"xfce4-about"},
    };
    return tools;
}

bool start_system_information()
{
    for (const QStringList &tool : system_information_tools()) {
        const QString program = QStandardPaths::findExecutable(tool.first());
        if (!program.isEmpty() && QProcess::startDetached(program, tool.mid(1)))
            return true;
    }
    return false;
}

}

frmAbout::frmAbout(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::frmAbout>())
{
    ui->setupUi(this);
    ui->picIcon->setPixmap(drawn_picture("tessaly", 64));
    QFont title = font();
    title.setPointSizeF(title.pointSizeF() * 1.6);
    ui->lblTitle->setFont(title);

    connect(ui->cmdSysInfo, &QPushButton::clicked, this, &frmAbout::cmdSysInfo_Click);
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
        "the GNOME project: GMime, reading mail (LGPL 2.1)",
        "the Debian project: the ground it all stands on",
    });
    ui->cmdOK->setFocus();
}

void frmAbout::cmdSysInfo_Click()
{
    guarded("frmAbout.frm", "cmdSysInfo", [] {
        if (!start_system_information())
            say("System Information Is Unavailable At This Time", "Tessaly", message_icon::exclamation);
    });
}

void frmAbout::cmdOK_Click()
{
    unload();
}
