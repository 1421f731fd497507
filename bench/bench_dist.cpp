// Exact distributions of die values, against the times they are meant to
// take: 3d6+2 under 100 us; 100d6 under 1 ms; 1000d6 under 50 ms;
// @best(3,8d6) under 1 ms; @best(5,10d10) and @best(2,20d10) under 5 ms;
// @wilddice(5d10) to 1e-12 under 10 ms; 4d6+2d8-1d4 under 1 ms. And an
// estimate from a million real rolls of a short script under 3 s.
//
// Other calculators are not run here. The label of a case gives the figure
// quoted for the nearest case of another tool, to set ours against:
//   dicelab, the highest 3 of 8d6: about 4 s
//   dicelab, the highest 5 of 10d10: over 5 minutes
//   a Python library, 12d6: 3 ms
//   a Python library, "roll 10 keep 5" with explosions: 37 ms (Gandrel has
//     no exact form of kept exploding dice; keeping 5 of 10d10 and ten
//     exploding d10 are timed on their own)
//   a web calculator, the highest 2 of 20d10: timed out
#include <benchmark/benchmark.h>

#include <string>

#include "app/Calculator.h"
#include "app/modGandrel.h"
#include "calc/EngineSettings.h"
#include "calc/Markers.h"
#include "dist/Distribution.h"

namespace {

void Exact(benchmark::State& state, const char* dieValue, const char* anchor = nullptr) {
  if (anchor) state.SetLabel(anchor);
  gandrel::engineSettings.LongResults = false;
  for (auto _ : state) {
    gandrel::Distribution dist = gandrel::ComputeDistribution(dieValue);
    if (dist.method != gandrel::DistMethod::Exact) state.SkipWithError(dist.reason.c_str());
    benchmark::DoNotOptimize(dist);
  }
  gandrel::engineSettings.LongResults = true;
}

void BM_DistThreeD6PlusTwo(benchmark::State& state) {
  Exact(state, "3d6+2");
}
void BM_DistHundredD6(benchmark::State& state) {
  Exact(state, "100d6");
}
void BM_DistThousandD6(benchmark::State& state) {
  Exact(state, "1000d6");
}
void BM_DistBestThreeOfEightD6(benchmark::State& state) {
  Exact(state, "@best(3,8d6)", "dicelab: about 4 s");
}
void BM_DistBestFiveOfTenD10(benchmark::State& state) {
  Exact(state, "@best(5,10d10)", "dicelab: over 5 min; Python library, with explosions: 37 ms");
}
void BM_DistBestTwoOfTwentyD10(benchmark::State& state) {
  Exact(state, "@best(2,20d10)", "web calculator: timed out");
}
void BM_DistTwelveD6(benchmark::State& state) {
  Exact(state, "12d6", "Python library: 3 ms");
}
void BM_DistWildDiceTenD10(benchmark::State& state) {
  Exact(state, "@wilddice(10d10)", "Python library, kept 5 of them: 37 ms");
}
void BM_DistWildDiceFiveD10(benchmark::State& state) {
  Exact(state, "@wilddice(5d10)");
}
void BM_DistMixedSum(benchmark::State& state) {
  Exact(state, "4d6+2d8-1d4");
}
// Not targets: the evaluator's path for a product, and keep-highest where the
// kept dice matter one by one.
void BM_DistProductEnumerated(benchmark::State& state) {
  Exact(state, "(3d6+2)*1d4");
}
void BM_DistBestTextsMatter(benchmark::State& state) {
  Exact(state, "=2*@best(5,10d10)");
}

// A million rolls of a short script through the real engine, as the
// calculator estimates what it cannot work out exactly.
void BM_EstimateShortScript(benchmark::State& state) {
  gandrel::View().SetScriptText(
      "var hp\r\nhp = 2d8 + 3\r\nif hp < 6\r\nhp = 6\r\nendif\r\nresult = hp");
  for (auto _ : state) {
    gandrel::Distribution dist =
        gandrel::EstimateDistribution(std::string(gandrel::kCurrentScript));
    if (dist.samples != gandrel::kEstimateRolls) state.SkipWithError("stopped early");
    benchmark::DoNotOptimize(dist);
  }
  state.counters["rolls_per_second"] = benchmark::Counter(
      static_cast<double>(gandrel::kEstimateRolls), benchmark::Counter::kIsIterationInvariantRate);
}
// A one-line script that is not worked out exactly (a call inside a call).
void BM_EstimateNestedCall(benchmark::State& state) {
  for (auto _ : state) {
    gandrel::Distribution dist = gandrel::CalculateDistribution("@best(2,@wilddice(3d6))");
    if (dist.method != gandrel::DistMethod::MonteCarlo) state.SkipWithError("not estimated");
    benchmark::DoNotOptimize(dist);
  }
}

BENCHMARK(BM_DistThreeD6PlusTwo)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistHundredD6)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistThousandD6)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DistBestThreeOfEightD6)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistBestFiveOfTenD10)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistBestTwoOfTwentyD10)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistTwelveD6)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistWildDiceTenD10)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistWildDiceFiveD10)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistMixedSum)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistProductEnumerated)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistBestTextsMatter)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_EstimateShortScript)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_EstimateNestedCall)->Unit(benchmark::kMillisecond)->Iterations(2);

}  // namespace
