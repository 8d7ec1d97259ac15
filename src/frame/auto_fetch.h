// The timed fetch: what one tick of the console's timer (every 10 seconds) decides.
#pragma once

// Reads autofetch.minutes into session.autofetch_minutes. The counter starts anew at each tick, so only the value 1
// ever fetches, and it does on every tick: kept so on purpose.
bool auto_fetch_due();
