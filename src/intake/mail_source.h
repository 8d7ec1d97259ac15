// Choosing where mail comes from: the client with folders, or the one that reads and leaves.
// The walk over it: intake/fetch.h.
#pragma once

namespace intake {

// Fills intake::fetching. Throws what the client throws.
void choose_mail_source();

// Lets go of the client. Moves that were asked for and not done yet are not done.
void close_mail_source();

}
