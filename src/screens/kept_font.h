// The font that the user chose on the preferences page "General": the texts of mails are shown in it.
#pragma once
#include "platform/dialogs.h"

class QFont;
class QWidget;

chosen_font kept_font(); // the program's own until one is chosen
void keep_font(const chosen_font &font);
QString font_words(const chosen_font &font); // "DejaVu Sans 10 pt."

// The widget takes the kept font, now and whenever another one is chosen.
void show_in_kept_font(QWidget &text);

QFont as_font(const chosen_font &font);
chosen_font as_chosen(const QFont &font);
