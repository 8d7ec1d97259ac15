#include "screens/frame/TechSupport.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/support_facts.h"
#include "platform/text_file.h"
#include "platform/winopen.h"
#include "screens/frame/system_information_button.h"
#include "ui_TechSupport.h"

#include <QClipboard>

TechSupport::TechSupport(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::TechSupport>())
{
    ui->setupUi(this);

    connect(ui->copy_b, &QPushButton::clicked, this, &TechSupport::copy_b_Click);
    connect(ui->log_b, &QPushButton::clicked, this, &TechSupport::log_b_Click);
    connect(ui->cmdSysInfo, &QPushButton::clicked, this, [] { show_system_information("TechSupport.frm"); });
    connect(ui->cmdOK, &QPushButton::clicked, this, &TechSupport::unload);
}

TechSupport::~TechSupport() = default;

void TechSupport::Load()
{
    guarded("TechSupport.frm", "Form_load", [this] {
        ui->facts_t->setPlainText(support_facts());
        const bool has_log = FileExists(error_log_path());
        ui->log_b->setEnabled(has_log);
        ui->log_b->setToolTip(has_log ? QString() : QStringLiteral("There is none: nothing has failed so far."));
    });
    ui->cmdOK->setFocus();
}

void TechSupport::copy_b_Click()
{
    QGuiApplication::clipboard()->setText(ui->facts_t->toPlainText());
    ui->copied_l->setText("Copied. Paste it into your mail to whoever helps you.");
    ui->copied_l->show();
}

void TechSupport::log_b_Click()
{
    guarded("TechSupport.frm", "log_b", [] {
        if (!winopen(error_log_path()))
            say("No program on this desktop shows the file " + error_log_path() + ".");
    });
}
