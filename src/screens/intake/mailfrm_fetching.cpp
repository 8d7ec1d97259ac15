// The Mail Auditor's Load: it fetches and parses, tells what became of it, and shows what is stored.
#include "frame/account_list.h"
#include "frame/auto_fetch.h"
#include "frame/error_log.h"
#include "frame/last_fetch.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "intake/fetch.h"
#include "intake/mail_source.h"
#include "intake/map_parser.h"
#include "platform/network.h"
#include "platform/outside_effects.h"
#include "screens/frame/closing.h"
#include "screens/intake/listed_mails.h"
#include "screens/intake/mailfrm.h"
#include "ui_mailfrm.h"

namespace {

const char *const cancelled_line = "Fetching was cancelled. The mails stored so far are shown.";

}

void mailfrm::Load()
{
    ui->LV_sub->setFocus();
    if (!guarded("Mailfrm.frm", "Form_load", open_store_if_closed))
        return CriticalError(); // without the store nothing can be fetched, shown or done
    std::optional<fetch_lines_scope> lines_are_the_fetchs;
    if (!session.no_fetch)
        lines_are_the_fetchs.emplace();
    bool is_fetching = !session.no_fetch, tables_were_tried = false;
    const bool all_went = guarded("Mailfrm.frm", "Form_load", [&] {
        if (is_fetching)
            fetch_and_parse(tables_were_tried);
        else
            load_accounts();
        is_fetching = false;
        showmails_from_database();
    });
    if (all_went)
        return;
    const run_time_error failure{session.err_number, session.err_description};
    const bool was_cut_off = net::is_network_failure(failure);
    const bool was_stopped = net::is(failure, net::trouble::cancelled);
    if (is_fetching)
        note_fetch_end(was_stopped ? fetch_end::stopped : fetch_end::failed);
    const bool wants_a_pause = was_cut_off || tables_were_tried; // each further try may answer the same mails once more
    if (is_fetching && !was_stopped && wants_a_pause && net::present_patience().is_tick)
        pause_auto_fetch();
    tell_broken_fetch(failure);
    guarded("Mailfrm.frm", "Form_load", [] { intake::close_mail_source(); });
    if (was_cut_off && !tables_were_tried) // what came before still wants its rows; a second try would answer twice
        guarded("Mailfrm.frm", "Form_load", intake::parse_unprocessed_mails);
    show_what_is_stored();
}

// Of a server that cannot be reached the user who waits is told in a box. A tick, for which nobody waits, leaves a
// line.
void mailfrm::tell_broken_fetch(const run_time_error &failure)
{
    if (net::is(failure, net::trouble::cancelled))
        return status_line(cancelled_line);
    if (!net::is_network_failure(failure))
        return status_line("Not everything went well: " + failure.description);
    if (!net::present_patience().is_tick && guarded("Mailfrm.frm", "Form_load", [&] {
            say("Mail could not be fetched.\n\n" + failure.description + "\n\nThe mails stored so far are shown.",
                "Tessaly", message_icon::exclamation);
        }))
        return;
    status_line("Mail could not be fetched: " + failure.description);
}

// What is stored can still be read, whatever became of the fetch.
void mailfrm::show_what_is_stored()
{
    guarded("Mailfrm.frm", "Form_load", [this] {
        if (session.account_ids.empty())
            load_accounts();
        showmails_from_database();
    });
}

void mailfrm::CriticalError()
{
    guarded("Mailfrm.frm", "CriticalError", [] {
        say("Critical Error: " + QString::number(qint32(session.err_number)) + " " + session.err_description, "Tessaly",
            message_icon::critical);
    });
    end_program();
}

void mailfrm::fetch_and_parse(bool &tables_were_tried)
{
    take_away_fetch_line();                 // what an earlier fetch had to tell is past
    if (!net::present_patience().is_tick) { // the user asks: what the ticks know of the server is old
        end_auto_fetch_pause();
        status_line({});
    }
    intake::choose_mail_source();
    fetch_mail();
    store_lvindex();
    tables_were_tried = true;
    const bool tables_are_filled = intake::parse_unprocessed_mails();
    intake::finish_fetch();
    intake::raise_cut();
    before_outside_effect(); // a pass that cannot be kept is a failure that is told, not a loss that nobody hears of
    const bool was_stopped = intake::fetch_was_cancelled(); // closing forgets it
    intake::close_mail_source();
    if (tables_are_filled)
        note_kept_fetch(was_stopped);
    else
        note_unfilled_tables();
}

void mailfrm::note_kept_fetch(bool was_stopped)
{
    end_auto_fetch_pause();
    if (was_stopped)
        status_line(cancelled_line);
    note_fetch_end(was_stopped ? fetch_end::stopped : fetch_end::whole);
}

// The pass has told it. Each further one stores its rows and sends its replies once more: not every ten seconds, all
// night.
void mailfrm::note_unfilled_tables()
{
    if (net::present_patience().is_tick)
        pause_auto_fetch();
    note_fetch_end(fetch_end::unfilled);
}

void mailfrm::fetch_mail()
{
    inbox->set_lines({});
    intake::fetch_mail();
    ui->Label3->setText(intake::fetch_summary());
    show_fetch_summary();
}
