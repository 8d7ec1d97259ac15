// The list of a test's steps: a picture and words for each, the last word of a step in the place of its first.
#pragma once
#include "platform/mail_client_check.h"

class QListWidget;

void clear_steps(QListWidget &list);
void show_step(QListWidget &list, const mail::check_line &line);

// What came of the whole test, in a sentence.
QString outcome_text(const mail::check_outcome &outcome);
