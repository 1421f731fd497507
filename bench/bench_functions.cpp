// Script function speed: @best of a small roll, and of 10,000 dice whose
// per-die text (about 20,000 characters) is folded, split and comb-sorted.
// Other functions of the same per-die path for comparison.
#include <benchmark/benchmark.h>

#include <string>

#include "calc/EngineSettings.h"
#include "calc/VarStore.h"
#include "functions/modScriptFunctions.h"

namespace {

using gandrel::engineSettings;
using gandrel::ProcFunc;
using gandrel::VarStore;

void RunCall(benchmark::State& state, const char* call, bool longResults) {
  engineSettings.LongResults = longResults;
  const VarStore store;
  for (auto _ : state) {
    std::string line = call, details;
    ProcFunc(line, details, store);
    benchmark::DoNotOptimize(line);
    benchmark::DoNotOptimize(details);
  }
  engineSettings.LongResults = true;
}

void BM_BestThreeOfFour(benchmark::State& state) {
  RunCall(state, "@best(3, 4d6)", true);
}
void BM_BestThreeOfFourLongOff(benchmark::State& state) {
  RunCall(state, "@best(3, 4d6)", false);
}
// The count of dice as the argument: the time should grow in step with it.
void BM_BestThreeOfMany(benchmark::State& state) {
  std::string call = "@best(3, " + std::to_string(state.range(0)) + "d6)";
  RunCall(state, call.c_str(), true);
}
void BM_BestThreeOfTenThousandLongOff(benchmark::State& state) {
  RunCall(state, "@best(3, 10000d6)", false);
}
void BM_CapTenThousand(benchmark::State& state) {
  RunCall(state, "@cap(2, 5, 10000d6)", true);
}
void BM_LimitThreeD6(benchmark::State& state) {
  RunCall(state, "@limit(5, 15, 3d6)", true);
}
void BM_WildDiceTenThousand(benchmark::State& state) {
  RunCall(state, "@wilddice(10000d6)", true);
}

BENCHMARK(BM_BestThreeOfFour);
BENCHMARK(BM_BestThreeOfFourLongOff);
BENCHMARK(BM_BestThreeOfMany)
    ->Arg(2500)
    ->Arg(5000)
    ->Arg(10000)
    ->Arg(16000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BestThreeOfTenThousandLongOff)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CapTenThousand)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LimitThreeD6);
BENCHMARK(BM_WildDiceTenThousand)->Unit(benchmark::kMicrosecond);

}  // namespace
