// Recommending the program: the desktop's mail program opens with a mail begun. What is sent, and to whom, is there the
// user's own affair.
#pragma once
#include <QString>

QString friend_mail(); // a mailto: address
bool tell_a_friend();  // false: this desktop has no mail program that takes it
