// The parts of a distribution on their own: sums of dice, keeping dice by
// counting, exploding dice, and how failures and losses combine.
#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "calc/modEvaluate.h"
#include "dice/DiceText.h"
#include "dist/DistFixture.h"
#include "dist/Exploding.h"
#include "dist/KeepDice.h"
#include "dist/ValueDist.h"
#include "dist/Work.h"

namespace gandrel::testing {
namespace {

class Parts : public DistTest {
 protected:
  DistOptions options;
  Work work{options};
};

// Every roll of the groups' dice, one die after the other.
void EveryRoll(const std::vector<DieGroup>& groups,
               const std::function<void(const std::vector<int64_t>&, double)>& visit) {
  std::vector<const ValueDist*> dice;
  for (const DieGroup& g : groups)
    for (int64_t i = 0; i < g.count; ++i)
      dice.push_back(&g.face);
  std::vector<int64_t> roll;
  std::function<void(size_t, double)> walk = [&](size_t d, double p) {
    if (d == dice.size()) return visit(roll, p);
    for (size_t i = 0; i < dice[d]->Size(); ++i) {
      roll.push_back(dice[d]->values[i]);
      walk(d + 1, p * dice[d]->probs[i]);
      roll.pop_back();
    }
  };
  walk(0, 1);
}

// Two kinds of dice, one of them uneven and partly negative, and a constant.
const std::vector<DieGroup> kMixed = {{{.values = {1, 2, 3}, .probs = {1. / 3, 1. / 3, 1. / 3}}, 3},
                                      {{.values = {-1, 0, 2}, .probs = {.5, .25, .25}}, 2},
                                      {ValueDist::Constant(2), 1}};
const ValueDist kD6{.values = {1, 2, 3, 4, 5, 6}, .probs = std::vector<double>(6, 1.0 / 6)};

TEST_F(Parts, KeptDiceCountedAsEveryRollKeepsThem) {
  for (bool highest : {true, false}) {
    for (int64_t k = 0; k <= 7; ++k) {
      SCOPED_TRACE(std::to_string(k) + (highest ? " highest" : " lowest"));
      std::map<int64_t, double> sums;
      std::map<std::string, double> texts;
      EveryRoll(kMixed, [&](const std::vector<int64_t>& roll, double p) {
        std::vector<int64_t> sorted = roll;
        std::sort(sorted.begin(), sorted.end());
        if (highest) std::reverse(sorted.begin(), sorted.end());
        const std::vector<int64_t>& kept = static_cast<int64_t>(roll.size()) <= k ? roll : sorted;
        int64_t sum = 0;
        std::string text;
        for (int64_t i = 0; i < std::min<int64_t>(k, static_cast<int64_t>(kept.size())); ++i) {
          sum += kept[i];
          text += "+" + NumberText(static_cast<double>(kept[i]));
        }
        FoldSigns(text);
        sums[sum] += p;
        texts[text] += p;
      });
      ValueDist sum = KeptSum(kMixed, k, highest, work);
      ASSERT_EQ(sum.Size(), sums.size());
      for (size_t i = 0; i < sum.Size(); ++i)
        EXPECT_NEAR(sum.probs[i], sums[sum.values[i]], 1e-13) << sum.values[i];
      TextDist kept = KeptTexts(kMixed, k, highest, work);
      ExpectShown(Shown(kept.texts.begin(), kept.texts.end()), Shown(texts.begin(), texts.end()),
                  1e-13);
    }
  }
}

// The window over the sums of fair dice against plain convolution, deep in
// both tails too.
TEST_F(Parts, SumsOfFairDiceKeepTheirPrecision) {
  ValueDist byWindow = SumOfCopies(kD6, 60, work), oneByOne = kD6;
  for (int i = 1; i < 60; ++i)
    oneByOne = Convolve(oneByOne, kD6, work);
  ASSERT_EQ(byWindow.values, oneByOne.values);
  for (size_t i = 0; i < byWindow.Size(); ++i)
    EXPECT_NEAR(byWindow.probs[i] / oneByOne.probs[i], 1, 1e-12) << byWindow.values[i];
  EXPECT_NEAR(byWindow.probs.front(), std::pow(6.0, -60), 1e-60);
}

TEST_F(Parts, AnExplodingDieAndItsClosedForm) {
  ValueDist die = ExplodingDie(kD6, 6, 1, 1e-9);
  // Depth 12: 6^-12 is the first power below 1e-9.
  EXPECT_NEAR(die.truncated, std::pow(6.0, -12), 1e-24);
  for (size_t i = 0; i < die.Size(); ++i) {
    int64_t sixes = die.values[i] / 6;
    EXPECT_NE(die.values[i] % 6, 0);
    EXPECT_NEAR(die.probs[i] * std::pow(6.0, sixes + 1), 1, 1e-13) << die.values[i];
  }
  // A die whose highest face is not above its lowest never explodes.
  EXPECT_EQ(ExplodingDie(ValueDist::Constant(1), 0, 1, 1e-9).values, std::vector<int64_t>{1});
}

// Failures fail the whole; what one part leaves out and the other does not
// fail, the whole leaves out; tiny losses keep their digits.
TEST_F(Parts, FailuresAndLossesCombine) {
  double error = .5, truncated = 0;
  CombineLosses(error, truncated, .5, 1e-13);
  EXPECT_DOUBLE_EQ(error, .75);
  EXPECT_DOUBLE_EQ(truncated, .5e-13);
  double none = 0, lost = 3e-17;
  CombineLosses(none, lost, 0, 4e-17);
  EXPECT_DOUBLE_EQ(lost, 7e-17);
}

}  // namespace
}  // namespace gandrel::testing
