// The end of the first-run setup: the account tables, and the mark in the store that it is done.
// What its screens test and keep before that: setup_pages.h. What follows it: Main (screens/frame/opening.h).
#pragma once

bool is_installed(); // install_tbl.install; false while the setup is still to be done

// Makes the table of every account, then "update install_tbl set install=yes". A table that is there already with the
// columns of model_for_first stays as it is, so that a setup that broke off here can be finished. Anything else in the
// way throws, and the store stays not installed. To be called guarded; show the user session.err_description when it
// failed, call Main() when it did not, and unload after that.
void finish_setup();
