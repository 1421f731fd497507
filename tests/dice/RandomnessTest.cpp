#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <set>
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
  for (size_t i = 0; i < probs.size(); ++i)
    chi += (observed[i] - n * probs[i]) * (observed[i] - n * probs[i]) / (n * probs[i]);
  return chi;
}

std::vector<double> Uniform(size_t faces) {
  return std::vector<double>(faces, 1.0 / faces);
}

std::vector<double> Totals(double from, double to) {
  std::vector<double> totals;
  for (double t = from; t <= to; ++t)
    totals.push_back(t);
  return totals;
}

std::vector<double> ThreeD6() {  // 3..18
  std::vector<double> probs(16, 0);
  for (int roll = 0; roll < 216; ++roll)
    probs[roll % 6 + roll / 6 % 6 + roll / 36] += 1.0 / 216;
  return probs;
}

std::string Roll(std::string expr) {
  std::string details;
  return std::to_string(Calc(expr, details));
}

class Randomness : public testing::EngineTest {
 protected:
  void SetUp() override {
    EngineTest::SetUp();
    settings.LongResults = false;
  }
};

// limit: the statistic at p = 0.001 for (number of totals - 1) degrees of freedom.
TEST_F(Randomness, TotalsFitTheirDistribution) {
  struct Case {
    std::string define, term;
    std::vector<double> totals, probs;
    double limit;
  } cases[] = {{"", "d6", Totals(1, 6), Uniform(6), 20.515},
               {"", "d20", Totals(1, 20), Uniform(20), 43.820},
               {"", "3d6", Totals(3, 18), ThreeD6(), 37.697},
               {"define dfib = 1,1,2,3,5", "dfib", {1, 2, 3, 5}, {.4, .2, .2, .2}, 16.266},
               {"define dneg = 2 to -3", "dneg", Totals(-3, 2), Uniform(6), 20.515},
               {"",
                "d6.5",
                Totals(1, 7),
                {2 / 13., 2 / 13., 2 / 13., 2 / 13., 2 / 13., 2 / 13., 1 / 13.},
                22.458}};
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
  const double pairs = 18000;
  std::vector<double> observed(36, 0);
  for (int i = 0; i < pairs; ++i) {
    int first = std::stoi(Roll("1d6"));
    observed[(first - 1) * 6 + std::stoi(Roll("1d6")) - 1] += 1;
  }
  double chi = ChiSquare(observed, Uniform(36), pairs);
  std::printf("chi-square pairs %8.3f (limit 66.619)\n", chi);
  EXPECT_LT(chi, 66.619);
}

TEST_F(Randomness, ClockReseedingNeverRestartsAndAFixedSeedRepeats) {
  UnseedRandom();
  std::set<std::string> seen;
  for (int i = 0; i < 1000; ++i)
    seen.insert(Roll("1d1000000"));
  EXPECT_GE(seen.size(), 990u);  // about 0.5 repeats expected by chance
  SeedRandom(99);
  std::string first = Roll("1d1000000000");
  SeedRandom(99);
  EXPECT_EQ(Roll("1d1000000000"), first);
}

}  // namespace
}  // namespace gandrel
