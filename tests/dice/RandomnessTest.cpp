#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <set>
#include <string>

#include "calc/EngineSettings.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "support/EngineFixture.h"

namespace gandrel {
namespace {

using Distribution = std::map<double, double>;  // total -> probability

Distribution Uniform(int from, int to) {
  Distribution probs;
  for (int total = from; total <= to; ++total)
    probs[total] = 1.0 / (to - from + 1);
  return probs;
}

// Pearson's statistic of the counts of n rolls against their distribution;
// limit is its value at p = 0.001 for (number of totals - 1) degrees of freedom.
void ExpectFit(const std::string& name, std::map<double, double> counts, const Distribution& probs,
               double n, double limit) {
  double chi = 0;
  for (const auto& [total, p] : probs) {
    chi += (counts[total] - n * p) * (counts[total] - n * p) / (n * p);
    counts.erase(total);
  }
  EXPECT_TRUE(counts.empty()) << name << " rolled " << counts.begin()->first;
  std::printf("chi-square %-5s %8.3f (limit %.3f)\n", name.c_str(), chi, limit);
  EXPECT_LT(chi, limit) << name;
}

double Roll(std::string expr) {
  std::string details;
  return Calc(expr, details);
}

using Randomness = testing::EngineTest;

TEST_F(Randomness, TotalsFitTheirDistribution) {
  Distribution d65 = Uniform(1, 7);
  for (auto& [total, p] : d65)
    p = total == 7 ? 1 / 13. : 2 / 13.;  // the 7 comes half as often
  const struct {
    std::string define, term;
    Distribution probs;
    double limit;
  } cases[] = {{"", "d20", Uniform(1, 20), 43.820},
               {"define dfib = 1,1,2,3,5", "dfib", {{1, .4}, {2, .2}, {3, .2}, {5, .2}}, 16.266},
               {"", "d6.5", d65, 22.458}};
  const double n = 40000;
  engineSettings.LongResults = false;  // the path that keeps no list of dice
  for (const auto& c : cases) {
    std::string define = c.define;
    ParseDefine(define);
    std::map<double, double> counts;
    for (int i = 0; i < n; ++i) {
      std::string die = c.term, details;
      counts[GetDieResult(die, details)] += 1;
    }
    ExpectFit(c.term, counts, c.probs, n, c.limit);
  }
}

TEST_F(Randomness, ClockReseedingNeverRestartsAndAFixedSeedRepeats) {
  UnseedRandom();
  std::set<double> seen;
  for (int i = 0; i < 1000; ++i)
    seen.insert(Roll("1d1000000"));
  EXPECT_GE(seen.size(), 990u);  // about 0.5 repeats expected by chance
  SeedRandom(99);
  double first = Roll("1d1000000000");
  SeedRandom(99);
  EXPECT_EQ(Roll("1d1000000000"), first);
}

}  // namespace
}  // namespace gandrel
