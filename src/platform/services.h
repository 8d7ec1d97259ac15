// Which service stands behind which header: set once by app/wiring (or by a test), owned by whoever set it.
#pragma once

namespace outlook {
class mail_client_service;
}
namespace mapi {
class mail_session_service;
}
class dialog_service;
class printing_service;

struct service_pointers {
    outlook::mail_client_service *mail_client = nullptr;
    mapi::mail_session_service *mail_session = nullptr;
    dialog_service *dialogs = nullptr;
    printing_service *printing = nullptr;
};

extern service_pointers services;
