// How each of the program's small pictures is drawn, on a field of 24 by 24 units. Which name shows which: icons.cpp.
#pragma once
#include <QColor>

class QPainter;

namespace drawings {

inline const QColor envelope_blue(0x2f, 0x6f, 0xb5);
inline const QColor arrow_green(0x2e, 0x9b, 0x5f);
inline const QColor paper_white(0xfb, 0xfc, 0xfe);
inline const QColor lamp_yellow(0xf2, 0xb1, 0x34);
inline const QColor alarm_red(0xc9, 0x3a, 0x3a);

// mail_drawings.cpp
void fetchmail(QPainter &painter);
void inbox(QPainter &painter);
void sent(QPainter &painter);
void reply(QPainter &painter);
void deletion(QPainter &painter);
void sheet_with_magnifier(QPainter &painter);
void tessaly(QPainter &painter);
void mail_client(QPainter &painter);
void accounts(QPainter &painter);

// mark_drawings.cpp
void help(QPainter &painter);
void tips(QPainter &painter);
void running(QPainter &painter);
void good(QPainter &painter);
void warning(QPainter &painter);
void failed(QPainter &painter);
void skipped(QPainter &painter);
void sort_mark(QPainter &painter, bool up, bool down);

}
