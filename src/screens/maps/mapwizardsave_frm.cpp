#include "screens/maps/mapwizardsave_frm.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/store.h"
#include "intake/progress_page.h"
#include "maps/field_entry.h"
#include "maps/map_wizard.h"
#include "maps/map_writing.h"
#include "screens/background_colour.h"
#include "screens/icons.h"
#include "screens/intake/mapinprogress_frm.h"
#include "ui_mapwizardsave_frm.h"

#include <QStyle>

mapwizardsave_frm::mapwizardsave_frm(QWidget *parent)
    : wizard_screen(parent), ui(std::make_unique<Ui::mapwizardsave_frm>())
{
    ui->setupUi(this);
    ui->warning_mark_l->setPixmap(drawn_icon("warning").pixmap(style()->pixelMetric(QStyle::PM_SmallIconSize)));

    connect(ui->help_b, &QPushButton::clicked, this, &mapwizardsave_frm::show_own_help);
    connect(ui->save_b, &QPushButton::clicked, this, &mapwizardsave_frm::save_b_Click);
    connect(ui->cancel_b, &QPushButton::clicked, this, &mapwizardsave_frm::cancel_b_Click);
}

mapwizardsave_frm::~mapwizardsave_frm() = default;

void mapwizardsave_frm::Load()
{
    const bool read = guarded("mapwizardsave.frm", "form load", [this] {
        open_store_if_closed();
        ado::Recordset maps_there;
        maps_there.Open("select  table_name from table_list_tbl", *session.store_connection);
        for (; !maps_there.EOF_(); maps_there.MoveNext())
            ui->mapnames_c->addItem(maps_there[0].text_or_empty());
        maps_there.Close();
        ui->warning_l->setText(maps::why_save_would_fail());
    });
    if (!read)
        status_line("The existing maps cannot be shown: " + session.err_description);
    for (QWidget *part : {static_cast<QWidget *>(ui->warning_mark_l), static_cast<QWidget *>(ui->warning_l)})
        part->setVisible(!ui->warning_l->text().isEmpty());
    ui->mapname_t->setFocus();
}

void mapwizardsave_frm::save_b_Click()
{
    QString name = ui->mapname_t->text();
    bool name_is_good = false;
    const wait_pointer waiting(*this);
    if (!guarded("mapwizardsave.frm", "saveb click", [&] { name_is_good = may_save(name); }))
        status_line("The map was not saved: " + session.err_description);
    if (name_is_good)
        save_map(name);
}

bool mapwizardsave_frm::may_save(QString &name)
{
    open_store_if_closed();
    const auto fault = maps::why_no_map_name(name);
    ui->mapname_t->setText(name);
    if (!fault)
        return true;
    say(fault->message, "Tessaly", fault->icon);
    ui->mapname_t->setFocus();
    ui->mapname_t->selectAll();
    return false;
}

// Half a map may be left behind; the fields are still in memory then, for another name.
void mapwizardsave_frm::save_map(const QString &name)
{
    window()->hide();
    guarded("mapwizardsave.frm", "saveb click", [this] { intake::write_mapping_animation(GetBkColor(*this)); });
    auto &progress = the<mapinprogress_frm>();
    progress.set_work([this, name] {
        if (guarded("mapwizardsave.frm", "saveb click", [&name] { maps::write_map(name); }))
            bring_mails_over(name);
        else
            tell_failed_save(name);
    });
    progress.show_modal();
    unload();
}

// A pass that fails has ended, no more: the map is there, and the wizard goes on. Without the account it ends here.
void mapwizardsave_frm::bring_mails_over(const QString &name)
{
    bool all_over = false;
    was_saved = guarded("mapwizardsave.frm", "saveb click", [&] { all_over = maps::bring_mails_over(name); });
    maps::map_wizard.mails_left_behind = all_over ? QString() : session.err_description;
    if (all_over)
        return;
    if (was_saved)
        status_line("Not all mails could be brought over: " + session.err_description);
    else
        status_line("The map " + name + " is saved, but no mail could be brought over: " + session.err_description);
}

void mapwizardsave_frm::tell_failed_save(const QString &name)
{
    QString words = "The map " + name + " was not saved whole: " + session.err_description;
    guarded("mapwizardsave.frm", "saveb click", [&] {
        QString again = name;
        if (maps::why_no_map_name(again))
            words += " Its name is taken now: finish again with another one.";
    });
    status_line(words);
}

void mapwizardsave_frm::cancel_b_Click()
{
    unload();
}

QSize mapwizardsave_frm::sizeHint() const
{
    return {520, 300};
}
