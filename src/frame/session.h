// The process-wide state that every screen reads and writes. session = {} is a fresh start.
#pragma once
#include "platform/ado.h"
#include <QDateTime>
#include <array>
#include <memory>
#include <vector>

struct account {
    QString email;
    QString table_name;
    QString id;
};

enum class fetch_end; // frame/last_fetch.h

struct session_state {
    // The one connection to mailapp.mdb, and recordsets that outlive a routine. Shared ones are closed by
    // write_error_log, so that a failed routine leaves none open for the next.
    std::unique_ptr<ado::Connection> store_connection = std::make_unique<ado::Connection>();
    std::unique_ptr<ado::Recordset> shared_rs = std::make_unique<ado::Recordset>();
    std::unique_ptr<ado::Recordset> format_rs = std::make_unique<ado::Recordset>(); // fields of the current map
    std::unique_ptr<ado::Recordset> mail_rs = std::make_unique<ado::Recordset>();   // mails of the current account
    std::unique_ptr<ado::Recordset> map_rs = std::make_unique<ado::Recordset>();    // the map table being filled

    // One column an account, from 1; the last one is spare and empty, so loops run to below the last. See
    // frame/account_list.h. Empty: not loaded.
    std::vector<account> account_ids;

    bool no_fetch = false;          // opening the Mail Auditor only shows what is stored
    bool unsub_only_mail = false;   // the current mail is looked at only because of its subject
    bool fetch_then_wizard = false; // the fetch was started by the Mail Mapping Wizard
    qint16 autofetch_minutes = 0;   // as last read
    int auto_fetch_pause_s = 0;     // a tick's fetch failed: so long the next ones do nothing; 0: no pause
    QDateTime auto_fetch_missed;    // when that was
    QDateTime last_fetch;           // when mail was last fetched to the end; not valid: not since the start
    QDateTime broken_fetch;         // when a later fetch ended before that; not valid: none did
    fetch_end broken_fetch_end{};   // how that one did
    QString animation_file;         // the page that a progress screen shows

    // Who opened the picker of signatures, and is told what was picked.
    bool signature_for_composer = false;
    bool signature_for_preferences = false;

    quint32 err_number = 0;
    QString err_description;
    QString err_form;
    QString err_routine;
};

extern session_state session;
