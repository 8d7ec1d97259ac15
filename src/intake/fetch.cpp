#include "intake/fetch.h"
#include "frame/account_list.h"
#include "frame/error_log.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/text.h"
#include "intake/fetch_session.h"
#include "intake/mail_source.h"
#include "intake/map_parser.h"
#include "intake/write_data.h"
#include "platform/network.h"
#include "platform/outside_effects.h"

namespace intake {

namespace {

const QString every_item = QStringLiteral("[unread]=true or [unread]=false");

bool is_to_account(const QString &to)
{
    for (int column = 1; column < account_upper_bound(); ++column) {
        if (same_text(trim(session.account_ids[size_t(column)].email), to))
            return true;
    }
    return false;
}

// The key names all that the answer depends on.
outlook::wanted_mails mails_of_ours()
{
    QString key = fetching.rules.keyword;
    for (const account &each : session.account_ids)
        key += u'\n' + each.email;
    return {key, [](const QString &to, const QString &subject) {
                return contains_text(subject, fetching.rules.keyword) || is_to_account(to);
            }};
}

void begin_fetch()
{
    fetching.mail_count = 0;
    fetching.cancelled = false;
    fetching.cut.reset();
    load_accounts();
    fetching.rules = read_unsubscribe_rules();
}

// A server that refuses one thing goes on to answer; any other failure of the network has ended the walk.
void note_cut(const run_time_error &failure)
{
    if (net::is(failure, net::trouble::cancelled))
        fetching.cancelled = true;
    else if (net::is_network_failure(failure) && !net::is(failure, net::trouble::refused))
        fetching.cut = failure;
}

// A move is done some mails after it was asked for, and what cannot be read is passed over: what failed then is told
// here, an entry a mail.
void log_failures()
{
    for (bool more = true; more;)
        if (!guarded("Mailfrm.frm", "write_data", [&] { more = fetching.inbox_items->raise_next_failure(); }))
            note_cut({session.err_number, session.err_description});
}

// Between two mails is the best moment to stop: what was stored can still be moved.
bool user_gives_up()
{
    const auto &give_up = net::present_patience().give_up;
    fetching.cancelled = fetching.cancelled || (give_up && give_up());
    return fetching.cancelled;
}

// The user has cancelled and waits for the window: the last moves get little time, and a second Cancel has no meaning.
net::patience patience_for_moves()
{
    net::patience usual = net::present_patience();
    if (!fetching.cancelled)
        return usual;
    constexpr int short_wait_ms = 5000;
    return {.connect_ms = short_wait_ms, .answer_ms = short_wait_ms, .is_tick = usual.is_tick, .give_up = {}};
}

void finish_moves()
{
    user_gives_up();
    const net::patience_scope waiting(patience_for_moves());
    guarded_step("Mailfrm.frm", "write_data", [] { fetching.inbox_items->finish_moves(); });
    log_failures();
}

void walk_folder()
{
    auto &items = *fetching.inbox_items;
    items.let_moves_run(); // while the parser works
    fetching.total = items.Count();
    report_progress("Looking through the Inbox", 0, 0);
    qint64 done = 0;
    for (auto *item = items.Find(every_item, mails_of_ours()); item; item = items.FindNext()) {
        fetching.current_item = item;
        session.unsub_only_mail = !is_to_account(item->To());
        write_data();
        report_progress("Fetching mail", ++done, fetching.total);
        if (user_gives_up())
            break;
    }
    fetching.current_item = nullptr;
    log_failures(); // those of reading; a server that is gone later must not hide them
    if (fetching.cancelled)
        finish_moves();
}

void walk_messages()
{
    auto &messages = *fetching.MAPIMessages1;
    fetching.total = messages.MsgCount();
    for (int index = 0; index < fetching.total; ++index) {
        messages.MsgIndex = index;
        const bool to_account =
            account_among_recipients(remove_all(messages.RecipAddress(), u"smtp:")) < account_upper_bound();
        // The keyword as it is, against the subject in capitals, on purpose.
        const bool has_keyword =
            !fetching.rules.keyword.isEmpty() && upper_case(messages.MsgSubject()).contains(fetching.rules.keyword);
        session.unsub_only_mail = !to_account && has_keyword;
        if (to_account || has_keyword)
            write_data();
        report_progress("Fetching mail", index + 1, fetching.total);
        if (user_gives_up())
            break;
    }
}

}

void fetch_mail()
{
    begin_fetch();
    if (fetching.use_mapi)
        walk_messages();
    else
        walk_folder();
}

void finish_fetch()
{
    if (fetching.inbox_items)
        finish_moves();
}

QString fetch_summary()
{
    return QString::number(fetching.mail_count) + " of " + QString::number(fetching.total) + " mails processed";
}

bool fetch_was_cancelled()
{
    return fetching.cancelled;
}

void raise_cut()
{
    if (fetching.cut)
        throw run_time_error(*fetching.cut);
}

bool fetch_and_parse()
{
    return guarded("Mailfrm.frm", "Form_load", [] {
        choose_mail_source();
        fetch_mail();
        parse_unprocessed_mails();
        finish_fetch();
        raise_cut();
        before_outside_effect(); // a pass that cannot be kept is a failure of this fetch, not a loss that nobody hears
                                 // of
    });
}

}
