// Rolling speed: many dice with and without long results, a small everyday
// roll, and one roll of 10^8 dice. "per_die" is the time of one die.
#include <benchmark/benchmark.h>

#include <string>

#include "calc/EngineSettings.h"
#include "dice/modDiceCalc.h"

namespace {

using gandrel::Calc;
using gandrel::engineSettings;

void RollMany(benchmark::State& state, const char* expression, double dice, bool longResults) {
  engineSettings.LongResults = longResults;
  for (auto _ : state) {
    std::string expr = expression, details;
    benchmark::DoNotOptimize(Calc(expr, details));
  }
  state.counters["per_die"] = benchmark::Counter(
      dice, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  engineSettings.LongResults = true;
}

void BM_MillionDiceLongOff(benchmark::State& state) {
  RollMany(state, "1000000d6", 1e6, false);
}
void BM_MillionDiceLongOn(benchmark::State& state) {
  RollMany(state, "1000000d6", 1e6, true);
}
void BM_HundredMillionDiceLongOff(benchmark::State& state) {
  RollMany(state, "100000000d6", 1e8, false);
}

void BM_ThreeD6PlusTwo(benchmark::State& state) {
  for (auto _ : state) {
    std::string expr = "3d6+2", details;
    benchmark::DoNotOptimize(Calc(expr, details));
  }
}

BENCHMARK(BM_MillionDiceLongOff)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MillionDiceLongOn)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ThreeD6PlusTwo);
BENCHMARK(BM_HundredMillionDiceLongOff)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
