// The pages of the preferences stand for one dialog: at most one is open, and each has a list that leads to the others.
// A new page gets its line in page_list.cpp.
#pragma once

class QComboBox;
class QPushButton;

enum class preference_page { general, accounts, labels, online_form, map_mails, mail_client };

// Fills a page's list. Choosing an entry closes that page and opens the chosen one; entries of pages that do not exist
// yet are there, but cannot be chosen and say so.
void fill_page_list(QComboBox &list, preference_page here);

// Closes whichever page is open, and opens this one. An open page may stay because the user wants it to.
void open_page(preference_page wanted);
bool page_exists(preference_page page);

// A page's own button to another one, greyed while that one does not exist.
void lead_to_page(QPushButton &button, preference_page wanted);
