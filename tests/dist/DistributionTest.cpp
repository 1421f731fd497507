// Exact distributions of expressions against hand-checked ones and against
// the engine itself rolled through every sequence of faces.
#include <cmath>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "calc/NumberText.h"
#include "dist/DistFixture.h"

namespace gandrel::testing {
namespace {

using Distributions = DistTest;

Shown Counts(int first, std::vector<double> counts, double of) {
  Shown shown;
  for (size_t i = 0; i < counts.size(); ++i)
    shown[FormatNumber(first + static_cast<double>(i))] = counts[i] / of;
  return shown;
}

// Hand-checked tables.
TEST_F(Distributions, HandChecked) {
  const struct {
    const char* dieValue;
    Shown shown;
  } cases[] = {
      {"3d6", Counts(3, {1, 3, 6, 10, 15, 21, 25, 27, 27, 25, 21, 15, 10, 6, 3, 1}, 216)},
      {"4dfate", Counts(-4, {1, 4, 10, 16, 19, 16, 10, 4, 1}, 81)},
      // The item 1 is written twice: it comes up twice as often. Items that
      // are no number show 0; fractional items add up exactly.
      // clang-format off
      {"2dfib", {{"2", .16}, {"3", .16}, {"4", .2}, {"5", .08}, {"6", .2}, {"7", .08}, {"8", .08},
                 {"10", .04}}},
      {"2dhalf", {{"0", 1. / 9}, {"1.5", 2. / 9}, {"2", 2. / 9}, {"3", 1. / 9}, {"3.5", 2. / 9},
                  {"4", 1. / 9}}},
      // clang-format on
      // The default die, and d0 that always shows 1.
      {"d+3d0", Counts(4, {1, 1, 1, 1, 1, 1}, 6)},
      {"", {{"0", 1}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.dieValue);
    Distribution dist = ComputeDistribution(c.dieValue);
    ASSERT_EQ(dist.method, DistMethod::Exact);
    ExpectShown(ShownOf(dist), c.shown);
    EXPECT_EQ(dist.truncated, 0);
  }
  EXPECT_TRUE(ui.messages.empty()) << ui.messages.front().text;
}

// Every case but the d20 rolls dice of 2, 3 or 6 faces, which six cells of the
// random number serve alike. The dice layer's tests pin what the engine makes
// of each.
TEST_F(Distributions, SameAsTheEngineOverEverySequenceOfFaces) {
  const std::string cases[] = {
      // Expressions: the evaluator's levels, signs, concatenation, chained dice.
      "2d3+1d3", "3dfate-1", "1d3 1d3", "d3d3", "(1d3+1)*1d3", "1d3-2d3", "2.1d3", "1d3^-1d3",
      "1d3>=2|1d3", "1d3MOD2+1d3\\2", "-1d3+-1d3", "1d3--1dfate", "2dhalf+1d3/4",
      // The evaluator's quirks: operators, the shortcut, 15 digits, failures.
      "1d2*-1", "2(1d2)", "1d2=1", "1E4+1d2", "1d3/3", "1d2*99999999999999999", "1d2/(1d2-1)",
      // A range too wide to roll, and a list item too large to read: the
      // failed roll reaches the evaluator as "<error>", which it refuses.
      "1dwide+1", "2dbad",
      // Quoted text is neither expanded nor rolled; the pieces around it are
      // calculated on their own first.
      "1d2\"d6\"", "\"x\"+1d2",
      // The @ functions; the kept terms are a text that the rest of the line
      // calculates.
      "@best(3,4d6)", "@worst(1,2d20)", "=2*@best(2,3d6)", "=@best(5,3d3)*2", "=5-@best(2,3d3)",
      "@worst(2,3d3-2)", "@best(2, 2d3 + 10 - 1d3)", "@best(3,2d3+1dfate)", "@cap(2,3,4d3-1)",
      "=2*@cap(1,2,2d3)", "@lcap(2,2d3+1dfate)", "@ucap(2,3d3)", "@limit(3,5,2d3)",
      "=@ulimit(4,2d3-1d3)*2", "@llimit(5,1d3+1d3)", "=@best(1,1d3)d3", "=\"hi\"+@best(1,2d3)",
      // Calc works out the pieces around the quotes; the result shows its text.
      "=1d3 \"and\" @best(1,2d3) \"!\"", "=@best(1,1d3)+@worst(1,2d3)"};
  for (const std::string& dieValue : cases) {
    SCOPED_TRACE(dieValue);
    Distribution dist = ComputeDistribution(dieValue);
    ASSERT_EQ(dist.method, DistMethod::Exact) << dist.reason;
    EXPECT_TRUE(ui.messages.empty()) << "computing shows no message";
    const double faces = dieValue.find("d20") == std::string::npos ? 6 : 60;
    ExpectShown(ShownOf(dist), RolledThrough(dieValue, faces));
    ui.messages.clear();
  }
}

// The summary's plain figures, the cumulative columns and a marker's place
// after the numbers are pinned through gandrel-cli's tables.
TEST_F(Distributions, SummaryAndCumulativeProbabilities) {
  Distribution dist = ComputeDistribution("3d6");
  EXPECT_NEAR(dist.summary.sd, std::sqrt(35.0 / 4), 1e-12);
  // The smallest value that half of the mass reaches, however the sum rounds.
  const std::pair<const char*, double> medians[] = {
      {"3d6", 10}, {"1d20+2", 12}, {"1d2", 1}, {"1d4", 2}, {"1d10/10", .5}};
  for (const auto& [dieValue, median] : medians)
    EXPECT_EQ(ComputeDistribution(dieValue).summary.median, median) << dieValue;
  // Counted in 216ths, to nine places.
  auto in216 = [](double p) { return std::round(p * 216 * 1e9) / 1e9; };
  EXPECT_EQ(std::tuple(in216(ProbabilityAtLeast(dist, 15)), in216(ProbabilityAtLeast(dist, 14.5)),
                       in216(ProbabilityAtMost(dist, 4)), ProbabilityAtLeast(dist, 19),
                       ProbabilityAtMost(dist, 2)),
            std::tuple(20, 20, 4, 0, 0));

  // Markers count as failures, not in the mean.
  Distribution bad = ComputeDistribution("2dbad");
  EXPECT_EQ(std::tuple(bad.summary.failure, bad.summary.numeric, bad.summary.mean),
            std::tuple(.75, .25, 2));

  // Rolled results, as an estimate would count them, take the same form.
  Distribution counted = DistributionOf({{"<calc error>", .1}, {"10", .2}, {"x", .1}, {"2", .6}});
  std::string order;
  for (const DistOutcome& o : counted.outcomes)
    order += o.text + " ";
  EXPECT_EQ(order, "2 10 x <calc error> ");
  EXPECT_EQ(std::tuple(std::round(counted.summary.mean * 1e9) / 1e9,
                       std::round(counted.summary.failure * 1e9) / 1e9, counted.method),
            std::tuple(4, .1, DistMethod::NotExact));

  // Counted in 36ths, to nine places.
  DistComparison same = CompareDistributions(ComputeDistribution("1d6"), ComputeDistribution("d6"));
  auto in36 = [](double p) { return std::round(p * 36 * 1e9) / 1e9; };
  EXPECT_EQ(std::tuple(in36(same.equal), in36(same.firstHigher), in36(same.secondHigher)),
            std::tuple(6, 15, 15));
}

// A thousand dice: every total from 1000 to 6000 is an outcome, the
// extremes with a probability too small for a double.
TEST_F(Distributions, ManyDice) {
  Distribution dist = ComputeDistribution("1000d6");
  ASSERT_EQ(std::tuple(dist.outcomes.size(), dist.outcomes.front().text, dist.outcomes.back().text),
            std::tuple(5001u, "1000", "6000"));
  EXPECT_NEAR(dist.summary.mean, 3500, 1e-6);
  EXPECT_NEAR(dist.summary.sd, std::sqrt(1000 * 35.0 / 12), 1e-6);
  EXPECT_NEAR(dist.atMost.back(), 1, 1e-9);
}

TEST_F(Distributions, WhatIsNotExactSaysWhy) {
  const struct {
    const char* dieValue;
    double budget;
    NotExactReason why;
  } cases[] = {
      {"FIGHT.DIE", 1e7, NotExactReason::Script},
      {"<current script>", 1e7, NotExactReason::Script},
      {"10d6*10d6", 100, NotExactReason::Budget},
      {"d10d10d10", 1000, NotExactReason::Dependent},
      {"100000000d6", 1e7, NotExactReason::Budget},
      // Characters the computation marks its own texts with.
      {"\0011d6", 1e7, NotExactReason::Unsupported},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.dieValue);
    DistOptions options;
    options.budget = c.budget;
    Distribution dist = ComputeDistribution(c.dieValue, options);
    EXPECT_EQ(std::tuple(dist.method, dist.why, dist.reason.empty(), dist.outcomes.size()),
              std::tuple(DistMethod::NotExact, c.why, false, 0u));
  }
  // The progress hook is asked now and then, and can stop the work.
  int asked = 0;
  DistOptions options;
  options.progress = [&](double done) {
    EXPECT_TRUE(done >= 0 && done <= 1) << done;
    return ++asked < 3;
  };
  Distribution dist = ComputeDistribution("30d6*30d6", options);
  EXPECT_EQ(std::pair(dist.why, asked), std::pair(NotExactReason::Cancelled, 3));
}

}  // namespace
}  // namespace gandrel::testing
