// One-line scripts and their @ functions against the engine rolled through
// every sequence of faces, and the exploding dice against closed forms.
#include <cmath>
#include <random>
#include <string>
#include <utility>

#include "dist/DistFixture.h"

namespace gandrel::testing {
namespace {

using Functions = DistTest;

Distribution Exact(const char* dieValue, double truncation = 1e-12) {
  DistOptions options;
  options.truncation = truncation;
  Distribution dist = ComputeDistribution(dieValue, options);
  EXPECT_EQ(dist.method, DistMethod::Exact) << dieValue << ": " << dist.reason;
  return dist;
}

// Lines of calls, terms and numbers joined by signs and other operators: the
// calls' sums are added up where the line is a plain sum and written out
// where it is not.
TEST_F(Functions, GeneratedLinesAsTheEngineRollsThem) {
  static const char* const kItems[] = {
      "@best(1,2d3)", "@worst(2,1d3+1)", "@cap(2,3,2d3)", "@limit(2,4,2d3-1)",
      "@wild(1d3)",   "@swwild(2d3)",    "1d3",           "2",
      "@ucap(1,1d3)"};
  static const char* const kJoins[] = {"+", "-", "+", " + ", "*", "-+", "<", "="};
  std::mt19937 random(7);
  auto pick = [&](auto& table) {
    return table[std::uniform_int_distribution<size_t>(0, std::size(table) - 1)(random)];
  };
  for (int i = 0; i < 60; ++i) {
    std::string line = "=";
    for (int k = 0; k < 2; ++k)
      line += std::string(k ? pick(kJoins) : "") + pick(kItems);
    SCOPED_TRACE(line);
    Distribution dist = ComputeDistribution(line);
    ASSERT_EQ(dist.method, DistMethod::Exact) << dist.reason;
    double cut = 0;
    Shown rolled = RolledThrough(line, 3, 9, &cut);
    ExpectShown(ShownOf(dist), rolled, cut + 1e-12);
  }
}

// Sequences past the draws followed are cut; the distribution and the engine
// agree on everything else, within what was cut.
TEST_F(Functions, ExplodingDiceAsTheEngineRollsThem) {
  for (const char* dieValue :
       {"@wild(2d3)", "@wild(1d3-1d3)", "=2*@wild(1d3)", "@wilddice(2d3)", "@wilddice(1d3-1d3)",
        "@swwild(2d3)", "@swwild(3d3)", "@swwild(1d3-2d3+2d3)", "@swwild(0d3+2dfate)",
        "@wilddice(1dfate+1)", "@swwild(d0+1d3)", "=@wilddice(1d3)*@wilddice(1d3)"}) {
    SCOPED_TRACE(dieValue);
    double cut = 0;
    Shown rolled = RolledThrough(dieValue, 3, 9, &cut);
    Distribution dist = Exact(dieValue);
    ExpectShown(ShownOf(dist), rolled, cut + 1e-12);
    EXPECT_LE(dist.truncated, 1e-12);
  }
}

// One exploding d6 leaves out 6^-k beyond its k-th roll; the depth is the
// first whose share is below the truncation asked for.
TEST_F(Functions, TruncatedMassOfAnExplodingDie) {
  EXPECT_NEAR(Exact("@wilddice(1d6)").truncated, std::pow(6.0, -16), 1e-25);
  EXPECT_NEAR(Exact("@wilddice(1d6)", 1e-6).truncated, std::pow(6.0, -8), 1e-19);
  // Five dice share the truncation between them.
  Distribution five = Exact("@wilddice(5d10)");
  EXPECT_TRUE(five.truncated > 1e-14 && five.truncated <= 1e-12) << five.truncated;
  EXPECT_NEAR(five.summary.mean, 5 * 5.5 / 0.9, 1e-9);
}

// Calls that come to one text, a number or the failure marker; the engine's
// own reports for them are pinned by the ProcFunc tests.
TEST_F(Functions, FixedResultsAndFailures) {
  for (const char* dieValue :
       {"@cap(1,5,7)", "@best(0,3d6)", "@bestlist(2,rolls)", "=1/0", "@foo(1)", "@best 3, 4d6",
        "@best(3 4d6)", "@limit(1,3d6)", "@wild(5)", "@best(1,(2d6)"}) {
    SCOPED_TRACE(dieValue);
    Shown shown = ShownOf(Exact(dieValue));
    EXPECT_EQ(shown.size(), 1u);
    ExpectShown(shown, RolledThrough(dieValue, 6));
  }
}

TEST_F(Functions, WhatIsNotFollowedSaysWhy) {
  const struct {
    const char* dieValue;
    NotExactReason why;
  } cases[] = {
      {"@best(1,@best(1,2d6))", NotExactReason::Unsupported},
      {"@best(1,2d6*2)", NotExactReason::Unsupported},
      {"=2*@best(2,3d6 + 1)", NotExactReason::Unsupported},
      {"@cap(1,3,2dbad)", NotExactReason::Unsupported},
      {"@wild(1d1)", NotExactReason::NeverEnds},
      // A total almost always the highest: far too many rounds to follow.
      {"=2*@wild(9d6\f\f\f\fw\\rs.\f\f\f\f)", NotExactReason::Budget},
      {"@cap(1,9,20d10)*2", NotExactReason::Budget},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.dieValue);
    Distribution dist = ComputeDistribution(c.dieValue);
    EXPECT_EQ(std::pair(dist.method, dist.why), std::pair(DistMethod::NotExact, c.why))
        << dist.reason;
  }
}

}  // namespace
}  // namespace gandrel::testing
