// What a screen reader says of a window's controls.
#pragma once

class QWidget;

// Every named control gets a spoken name (its buddy's text or its caption), where it has none.
void give_spoken_names(QWidget &window);
