// The evaluator on a short expression and on a long sum.
#include <benchmark/benchmark.h>

#include <string>

#include "calc/modEvaluate.h"

namespace {

void BM_EvaluateShort(benchmark::State& state) {
  const std::string expression = "3+4*2-1";
  for (auto _ : state) {
    std::string text = expression;
    benchmark::DoNotOptimize(gandrel::Evaluate(text));
  }
}
BENCHMARK(BM_EvaluateShort);

void BM_EvaluateLongSum(benchmark::State& state) {
  std::string expression = "1";
  for (int i = 1; i < 10000; ++i)
    expression += "+1";
  for (auto _ : state) {
    std::string text = expression;
    benchmark::DoNotOptimize(gandrel::Evaluate(text));
  }
}
BENCHMARK(BM_EvaluateLongSum)->Unit(benchmark::kMillisecond);

}  // namespace
