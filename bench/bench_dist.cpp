// Exact distributions of die values, against the times they are meant to
// take: 3d6+2 under 100 us; 100d6 under 1 ms; 1000d6 under 50 ms;
// @best(3,8d6) under 1 ms; @best(5,10d10) and @best(2,20d10) under 5 ms;
// @wilddice(5d10) to 1e-12 under 10 ms; 4d6+2d8-1d4 under 1 ms.
#include <benchmark/benchmark.h>

#include "calc/EngineSettings.h"
#include "dist/Distribution.h"

namespace {

void Exact(benchmark::State& state, const char* dieValue) {
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
  Exact(state, "@best(3,8d6)");
}
void BM_DistBestFiveOfTenD10(benchmark::State& state) {
  Exact(state, "@best(5,10d10)");
}
void BM_DistBestTwoOfTwentyD10(benchmark::State& state) {
  Exact(state, "@best(2,20d10)");
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

BENCHMARK(BM_DistThreeD6PlusTwo)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistHundredD6)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistThousandD6)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DistBestThreeOfEightD6)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistBestFiveOfTenD10)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistBestTwoOfTwentyD10)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistWildDiceFiveD10)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistMixedSum)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistProductEnumerated)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DistBestTextsMatter)->Unit(benchmark::kMicrosecond);

}  // namespace
