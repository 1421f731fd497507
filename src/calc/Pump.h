// The cheap yield to the user interface.
//
// The engine yields once per die, per character scanned and per script line.
// A real event pump costs microseconds, so Yield() only counts: every so many
// calls it reads the clock, and it pumps the interface's events when about
// 20 ms have passed since the last pump. How many calls pass between clock
// reads adapts to how fast the calls come, so slow callers (a script line, a
// substitution pass) are served as promptly as a tight dice loop.
#pragma once

#include <cstdint>

#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"

namespace gandrel {

namespace pump_detail {
// Calls left until the next clock read; inline so that a dice loop pays
// one decrement and one test per die.
extern uint32_t countdown;
void CheckClock();
}  // namespace pump_detail

// Counts a call, and now and then pumps events.
inline void Yield() {
  if (--pump_detail::countdown == 0) pump_detail::CheckClock();
}

// True when a break is pending and breaking is on, or the user insists.
inline bool BreakPending() {
  return (runFlags.BreakRequested && runFlags.BreakEnabled) || runFlags.BreakForced;
}

// Yield(), then throws BreakSignal if the user has asked to break and
// breaking is on (outside a script it always is).
inline void YieldCheckBreak() {
  Yield();
  if (BreakPending()) [[unlikely]]
    throw BreakSignal{};
}

// Pumps events now, whatever the counter says.
void PumpNow();

// Tests: make every Yield() pump events, so that a recorder's pump hook runs
// at a known call.
void SetPumpEveryCall(bool on);

// Back to the state at program start: adaptive, first call checks the clock.
void ResetPump();

}  // namespace gandrel
