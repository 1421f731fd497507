// Fuzzes the dice calculator: the input is a die value, worked out exactly
// (with a small budget) and estimated from 500 real rolls of a
// fixed seed, with a few die types defined.
//
// Checks: nothing crashes or throws; the estimate leaves the interfaces, the
// default die and the die types as it found them; the outcomes' probabilities
// add up; and where both methods apply, the exact mean lies within 5
// standard errors of the estimate's mean. The standard error is the larger
// of the estimate's own and the exact deviation over the root of the rolls
// (an estimate that never met a rare result has none of its own). A mean
// outside is estimated again from ten times the rolls with another seed: a
// rare result met by chance in a small sample moves the mean far, a real
// disagreement stays.
//
// No input runs for long: after about a quarter of a second the event pump
// asks for a break (which ends a roll of any size) and the progress hooks
// stop the work.
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/Calculator.h"
#include "calc/EngineSettings.h"
#include "calc/RunFlags.h"
#include "calc/UserInterface.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "script/EngineState.h"
#include "script/ScriptWindows.h"

namespace {

using namespace gandrel;
using Clock = std::chrono::steady_clock;

constexpr auto kTimeLimit = std::chrono::milliseconds(250);
constexpr long kRolls = 500;

class DeadlineInterface : public UserInterface {
 public:
  MsgAnswer ShowMessage(const std::string&, MsgButtons buttons, MsgIcon,
                        const std::string&) override {
    return buttons == MsgButtons::Ok ? MsgAnswer::Ok : MsgAnswer::Cancel;
  }
  void ProcessEvents() override {
    if (Late()) runFlags.BreakRequested = runFlags.BreakForced = true;
  }
  bool Late() const { return Clock::now() - start > kTimeLimit; }
  Clock::time_point start;
};

DeadlineInterface ui;

void DefineTypes() {
  for (std::string statement : {"define dfate = -1 to 1", "define dfib = 1,1,2,3,5",
                                "define dhalf = 1.5,2,x", "define d1 = 1 to 1"})
    ParseDefine(statement);
}

CalculatorOptions Options(long rolls) {
  CalculatorOptions options;
  options.budget = 20000;
  options.rolls = rolls;
  options.progress = [](CalculatorStep, double) { return !ui.Late(); };
  return options;
}

Distribution Estimate(const std::string& dieValue, long rolls, uint64_t seed) {
  SeedRandom(seed);
  ui.start = Clock::now();
  std::string dieType = engineSettings.DieType;
  size_t ranges = dieTypes.Define.size(), lists = dieTypes.DefSeq.size();
  Distribution dist = EstimateDistribution(dieValue, Options(rolls));
  if (&UI() != &ui || engineSettings.DieType != dieType || dieTypes.Define.size() != ranges ||
      dieTypes.DefSeq.size() != lists || runFlags.ScriptRunning)
    std::abort();
  return dist;
}

void CheckMass(const Distribution& dist) {
  double total = dist.truncated;
  for (const DistOutcome& o : dist.outcomes)
    total += o.probability;
  if (!dist.outcomes.empty() && std::fabs(total - 1) > 1e-9) std::abort();
}

// The exact mean against an estimate's; true when within 5 standard errors.
bool MeansAgree(const Distribution& exact, const Distribution& estimate) {
  double numeric = std::round(estimate.summary.numeric * static_cast<double>(estimate.samples));
  double se = std::max(estimate.standardError, exact.summary.sd / std::sqrt(numeric));
  double scale = std::max(1.0, std::fabs(exact.summary.mean));
  return std::fabs(exact.summary.mean - estimate.summary.mean) <= 5 * se + 1e-9 * scale;
}

// Both methods apply: an exact answer with nothing left out, and an estimate
// of all its rolls, enough of them numeric.
bool Comparable(const Distribution& exact, const Distribution& estimate) {
  return exact.method == DistMethod::Exact && exact.truncated < 1e-9 &&
         exact.summary.numeric > 0.05 && estimate.method == DistMethod::MonteCarlo &&
         estimate.samples == kRolls && estimate.summary.numeric * kRolls >= 20 &&
         std::isfinite(exact.summary.sd) && std::fabs(exact.summary.mean) < 1e12;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 200) return 0;
  ResetEngineState();
  SetUI(&ui);
  SetScriptWindows(nullptr);
  DefineTypes();
  engineSettings.LongResults = false;
  std::string dieValue(reinterpret_cast<const char*>(data), size);

  ui.start = Clock::now();
  Distribution exact = ComputeDistribution(dieValue, [] {
    DistOptions options;
    options.budget = 20000;
    options.progress = [](double) { return !ui.Late(); };
    return options;
  }());
  CheckMass(exact);
  Distribution estimate = Estimate(dieValue, kRolls, 1234);
  CheckMass(estimate);
  if (Comparable(exact, estimate) && !MeansAgree(exact, estimate)) {
    Distribution again = Estimate(dieValue, 10 * kRolls, 98765);
    if (again.samples == 10 * kRolls && !MeansAgree(exact, again)) std::abort();
  }
  SetUI(nullptr);
  return 0;
}
