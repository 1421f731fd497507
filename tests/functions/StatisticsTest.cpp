// Fits of many seeded rolls to exact distributions. The seeds are fixed, so
// each fit is the same on every run.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "functions/modScriptFunctions.h"
#include "support/EngineFixture.h"

namespace gandrel::testing {
namespace {

using Statistics = EngineTest;

// Chi-square of the counts against exact probabilities, compared with the
// 0.1% point (Wilson-Hilferty). Values expected fewer than 5 times share one
// cell with every value that the probabilities leave out (a truncated tail).
void ExpectFit(const std::map<double, double>& exact, const std::map<double, long>& counts,
               long n) {
  double chi = 0, df = 0, rareP = 1, rareSeen = n;
  for (auto [value, prob] : exact) {
    if (prob * n < 5) continue;
    double seen = counts.count(value) ? counts.at(value) : 0;
    chi += std::pow(seen - prob * n, 2) / (prob * n);
    rareP -= prob, rareSeen -= seen, ++df;
  }
  if (rareP * n > 1e-6)
    chi += std::pow(rareSeen - rareP * n, 2) / (rareP * n), ++df;
  else
    EXPECT_EQ(rareSeen, 0) << "values that cannot occur";
  double a = 2 / (9 * --df);
  EXPECT_GT(df, 7);
  EXPECT_LT(chi, df * std::pow(1 - a + 3.0902 * std::sqrt(a), 3));
}

// The distribution of a value over all rolls of n d6.
template <class Value>
std::map<double, double> OverAllRolls(int n, Value value) {
  std::map<double, double> dist;
  std::vector<int> d(n, 1);
  for (int i = 0; i < n;) {
    dist[value(d)] += std::pow(1.0 / 6, n);
    for (i = 0; i < n && d[i] == 6; ++i)
      d[i] = 1;
    if (i < n) ++d[i];
  }
  return dist;
}

// An exploding d6: 6k + r for k sixes and then r from 1 to 5, for k up to depth.
std::map<double, double> ExplodingD6(int depth) {
  std::map<double, double> dist;
  for (int k = 0; k <= depth; ++k)
    for (int r = 1; r <= 5; ++r)
      dist[6 * k + r] = std::pow(1.0 / 6, k + 1);
  return dist;
}

// 3d6 with a wild die: a 1 on it leaves the lower of the other two dice,
// anything else explodes as above and adds both. Exact for the totals that
// need no more than depth sixes.
std::map<double, double> WildThreeD6(int depth) {
  std::map<double, double> dist;
  for (int a = 1; a <= 6; ++a)
    for (int b = 1; b <= 6; ++b) {
      dist[std::min(a, b)] += 1.0 / 216;
      for (int k = 0; k <= depth; ++k)
        for (int r = k == 0 ? 2 : 1; r <= 5; ++r)
          if (6 * k + r + a + b < 6 * (depth + 1) + 3)
            dist[6 * k + r + a + b] += std::pow(1.0 / 6, k + 1) / 36;
    }
  return dist;
}

TEST_F(Statistics, RollsFollowTheirExactDistributions) {
  settings.LongResults = false;
  SeedRandom(20240611);
  using Roll = const std::vector<int>&;
  // clang-format off
  auto bestThree = [](Roll d) { return d[0] + d[1] + d[2] + d[3] - std::min({d[0], d[1], d[2], d[3]}); };
  auto limited = [](Roll d) { return std::clamp(d[0] + d[1] + d[2], 6, 14); };
  auto capped = [](Roll d) { return std::clamp(d[0], 2, 5) + std::clamp(d[1], 2, 5) + std::clamp(d[2], 2, 5); };
  // clang-format on
  struct Case {
    const char* line;
    std::map<double, double> dist;
  } cases[] = {
      {"@best(3, 4d6)", OverAllRolls(4, bestThree)},
      {"@limit(6, 14, 3d6)", OverAllRolls(3, limited)},
      {"@cap(2, 5, 3d6)", OverAllRolls(3, capped)},
      {"@wilddice(1d6)", ExplodingD6(3)},
      {"@swwild(3d6)", WildThreeD6(3)},
  };
  const long n = 20000;
  for (const Case& c : cases) {
    std::map<double, long> counts;
    for (long i = 0; i < n; ++i) {
      std::string line = c.line, details;
      ProcFunc(line, details, VarStore{});
      ++counts[Calc(line, details)];
    }
    SCOPED_TRACE(c.line);
    ExpectFit(c.dist, counts, n);
  }
}

}  // namespace
}  // namespace gandrel::testing
