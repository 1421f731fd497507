#include "calc/Pump.h"

#include <chrono>
#include <cstdint>

#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"

namespace gandrel {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPumpPeriod = std::chrono::milliseconds(20);
constexpr auto kCheckTarget = std::chrono::milliseconds(2);
constexpr uint32_t kMaxStride = 4096;

uint32_t stride = 1;
bool everyCall = false;
Clock::time_point lastCheck = Clock::now();
Clock::time_point lastPump = Clock::now();

}  // namespace

uint32_t pump_detail::countdown = 1;

void pump_detail::CheckClock() {
  if (everyCall) {
    countdown = 1;
    PumpNow();
    return;
  }
  Clock::time_point now = Clock::now();
  // Aim for a clock read about every 2 ms: calls that come fast get a longer
  // stride, calls that come slowly a shorter one.
  if (now - lastCheck < kCheckTarget / 2) {
    if (stride < kMaxStride) stride *= 2;
  } else if (now - lastCheck > kCheckTarget * 2 && stride > 1) {
    stride /= 2;
  }
  lastCheck = now;
  countdown = stride;
  if (now - lastPump >= kPumpPeriod) {
    lastPump = now;
    UI().ProcessEvents();
  }
}

void PumpNow() {
  lastPump = Clock::now();
  UI().ProcessEvents();
}

void ResetPump() {
  stride = 1;
  everyCall = false;
  lastCheck = lastPump = Clock::now();
  pump_detail::countdown = 1;
}

void SetPumpEveryCall(bool on) {
  everyCall = on;
  pump_detail::countdown = 1;
}

}  // namespace gandrel
