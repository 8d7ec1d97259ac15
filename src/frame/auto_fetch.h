// The timed fetch: what one tick of the console's timer (every 10 seconds) decides.
#pragma once
#include <QString>
#include <optional>

// Reads autofetch.minutes into session.autofetch_minutes. The counter starts anew at each tick, so only the value 1
// ever fetches, and it does on every tick: kept so on purpose. While a pause lasts nothing is read or decided.
bool auto_fetch_due();

// A tick whose fetch failed makes the next ones pause: 10, 20, 40 ... seconds, 5 minutes at most, until a fetch went
// through, or the user asked for one or changed the settings.
void pause_auto_fetch();
void end_auto_fetch_pause();

// What the user typed as minutes: the whole number to keep, or why it is none.
struct typed_minutes {
    int minutes = 0;
    QString refusal; // "": it can be kept
};
typed_minutes read_typed_minutes(const QString &typed);

constexpr int auto_fetch_off = -1;
std::optional<int> kept_minutes();                    // nothing: off
bool keep_minutes(int minutes);                       // false: the store has no row for it
QString auto_fetch_words(std::optional<int> minutes); // what that number does at each tick, for the user
