// The timed fetch: what one tick of the console's timer (every 10 seconds) decides.
#pragma once

// Reads autofetch.minutes into session.autofetch_minutes. The counter starts anew at each tick, so only the value 1
// ever fetches, and it does on every tick: kept so on purpose. While a pause lasts nothing is read or decided.
bool auto_fetch_due();

// A tick that could not reach its server makes the next ones pause: 10, 20, 40 ... seconds, 5 minutes at most, until
// a fetch went through or the user asked for one.
void pause_auto_fetch();
void end_auto_fetch_pause();
