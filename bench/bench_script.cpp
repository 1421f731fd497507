// Script speed: a loop of a million passes over "x = x + 1d6" (two lines a
// pass, the per-line yield included), and tokenizing a 30,000-line script.
// "lines_per_second" counts the lines run.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "calc/EngineSettings.h"
#include "script/modScript.h"

namespace {

using gandrel::engineSettings;

std::vector<std::string> Tokenized(std::vector<std::string> lines) {
  std::string error;
  gandrel::TokenizeScript(lines, error);
  return lines;
}

void RunLoop(benchmark::State& state, bool longResults) {
  engineSettings.LongResults = longResults;
  const std::vector<std::string> lines = Tokenized(
      {"", "var x", "var i", "for i = 1 to 1000000", "x = x + 1d6", "next", "result = x", ""});
  for (auto _ : state) {
    std::string result, log;
    gandrel::RunScript(lines, result, log);
    benchmark::DoNotOptimize(result);
  }
  state.counters["lines_per_second"] =
      benchmark::Counter(2e6, benchmark::Counter::kIsIterationInvariantRate);
  engineSettings.LongResults = true;
}

void BM_MillionPassLoop(benchmark::State& state) {
  RunLoop(state, true);
}
void BM_MillionPassLoopLongOff(benchmark::State& state) {
  RunLoop(state, false);
}

// 30,000 lines of the usual kinds: assignments, IF blocks, labels, GOTOs,
// PRINT lines and comments.
std::vector<std::string> LongScript() {
  const char* const block[] = {
      "var x",         ":top",           "x = x + 3d6 ; roll", "if x > 100",
      "  goto top",    "endif",          "print w, x",         "",
      "select case x", "case 1 to 3, 6", "end select",         "; a comment line",
  };
  std::vector<std::string> lines{""};
  while (lines.size() <= 30000)
    for (const char* line : block)
      lines.emplace_back(line);
  lines.resize(30001);
  lines.emplace_back();
  return lines;
}

void BM_TokenizeThirtyThousandLines(benchmark::State& state) {
  const std::vector<std::string> raw = LongScript();
  for (auto _ : state) {
    std::vector<std::string> lines = raw;
    std::string error;
    gandrel::TokenizeScript(lines, error);
    benchmark::DoNotOptimize(lines);
  }
}

BENCHMARK(BM_MillionPassLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MillionPassLoopLongOff)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TokenizeThirtyThousandLines)->Unit(benchmark::kMillisecond);

}  // namespace
