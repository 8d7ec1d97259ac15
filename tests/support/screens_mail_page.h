// The page "Mail Client" as hands and eyes have it: typing, pressing, and what stands there. Each opens the page where
// it is not open.
#pragma once
#include <QString>

class QLineEdit;

namespace page {

QLineEdit &field(const char *name);
void type(const char *name, const QString &text); // what stood there is replaced
void press(const char *button);
void choose(const char *radio);
void tick(const char *box);
void pick(const char *list, int line); // as it stands in the list, from 0
void set_port(const char *field, int port);

QString label(const char *name);
QString list_choice(const char *name);
QString steps(); // of the test, a line each, as they are spoken
bool test_has_ended();

}
