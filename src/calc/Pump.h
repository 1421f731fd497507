// The cheap yield to the user interface.
//
// The engine yields once per die, per character scanned and per script line.
// A real event pump costs microseconds, so Yield() only counts: every so many
// calls it reads the clock, and it pumps the interface's events when about
// 20 ms have passed since the last pump. How many calls pass between clock
// reads adapts to how fast the calls come, so slow callers (a script line, a
// substitution pass) are served as promptly as a tight dice loop.
#pragma once

namespace gandrel {

// Counts a call, and now and then pumps events.
void Yield();

// Yield(), then throws BreakSignal if the user has asked to break and
// breaking is on (outside a script it always is).
void YieldCheckBreak();

// Pumps events now, whatever the counter says.
void PumpNow();

// True when a break is pending and breaking is on.
bool BreakPending();

// Tests: make every Yield() pump events, so that a recorder's pump hook runs
// at a known call.
void SetPumpEveryCall(bool on);

}  // namespace gandrel
