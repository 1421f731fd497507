#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "support/EngineFixture.h"

namespace gandrel {
namespace {

// Pearson's statistic of observed counts against expected probabilities.
double ChiSquare(const std::vector<double>& observed, const std::vector<double>& probs, double n) {
  double chi = 0;
  for (size_t i = 0; i < probs.size(); ++i) {
    double expected = n * probs[i];
    chi += (observed[i] - expected) * (observed[i] - expected) / expected;
  }
  return chi;
}

std::vector<double> Uniform(size_t faces) {
  return std::vector<double>(faces, 1.0 / faces);
}

// The distribution of the sum of three d6, 3..18.
std::vector<double> ThreeD6() {
  std::vector<double> probs(16, 0);
  for (int a = 1; a <= 6; ++a)
    for (int b = 1; b <= 6; ++b)
      for (int c = 1; c <= 6; ++c)
        probs[a + b + c - 3] += 1.0 / 216;
  return probs;
}

class Randomness : public testing::EngineTest {};

// Each case: the term, its possible totals in order, their probabilities, and
// the statistic's limit at p = 0.001 for (number of totals - 1) degrees of freedom.
TEST_F(Randomness, TotalsFitTheirDistribution) {
  struct Case {
    std::string define, term;
    std::vector<double> totals, probs;
    double limit;
  } cases[] = {
      {"", "d6", {1, 2, 3, 4, 5, 6}, Uniform(6), 20.515},
      {"", "d20", {}, Uniform(20), 43.820},
      {"", "3d6", {}, ThreeD6(), 37.697},
      {"define dfib = 1,1,2,3,5", "dfib", {1, 2, 3, 5}, {.4, .2, .2, .2}, 16.266},
      {"define dneg = 2 to -3", "dneg", {-3, -2, -1, 0, 1, 2}, Uniform(6), 20.515},
      {"",
       "d6.5",
       {1, 2, 3, 4, 5, 6, 7},
       {2 / 13., 2 / 13., 2 / 13., 2 / 13., 2 / 13., 2 / 13., 1 / 13.},
       22.458},
  };
  cases[1].totals = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20};
  for (int t = 3; t <= 18; ++t)
    cases[2].totals.push_back(t);
  settings.LongResults = false;
  const double n = 40000;
  for (auto& c : cases) {
    if (!c.define.empty()) ParseDefine(c.define);
    std::map<double, size_t> bin;
    for (size_t i = 0; i < c.totals.size(); ++i)
      bin[c.totals[i]] = i;
    std::vector<double> observed(c.totals.size(), 0);
    for (int i = 0; i < n; ++i) {
      std::string die = c.term, details;
      double total = GetDieResult(die, details);
      ASSERT_TRUE(bin.count(total)) << c.term << " rolled " << total;
      observed[bin[total]] += 1;
    }
    double chi = ChiSquare(observed, c.probs, n);
    std::printf("chi-square %-5s %8.3f (limit %.3f)\n", c.term.c_str(), chi, c.limit);
    EXPECT_LT(chi, c.limit) << c.term;
  }
}

TEST_F(Randomness, SuccessiveCalcRollsAreIndependent) {
  // Disjoint pairs of back-to-back rolls: 36 equally likely cells, 35 degrees of freedom.
  settings.LongResults = false;
  const double pairs = 18000;
  std::vector<double> observed(36, 0);
  auto roll = [] {
    std::string expr = "1d6", details;
    return static_cast<int>(Calc(expr, details));
  };
  for (int i = 0; i < pairs; ++i) {
    int first = roll();
    observed[(first - 1) * 6 + roll() - 1] += 1;
  }
  double chi = ChiSquare(observed, Uniform(36), pairs);
  std::printf("chi-square pairs %8.3f (limit 66.619)\n", chi);
  EXPECT_LT(chi, 66.619);
}

TEST_F(Randomness, AFixedSeedRepeatsTheRolls) {
  auto rolls = [] {
    SeedRandom(99);
    std::string expr = "10d1000", details;
    Calc(expr, details);
    return details;
  };
  EXPECT_EQ(rolls(), rolls());
}

}  // namespace
}  // namespace gandrel
