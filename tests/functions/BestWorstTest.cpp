#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "functions/ChiSquare.h"
#include "functions/FunctionRun.h"
#include "functions/modScriptFunctions.h"
#include "script/RunFlags.h"
#include "support/EngineFixture.h"

namespace gandrel::testing {
namespace {

using BestWorstTest = EngineTest;

TEST_F(BestWorstTest, KeptTermsAndTheirOrder) {
  settings.LongResults = false;
  struct Case {
    const char* line;
    std::vector<double> random;
    const char* result;
    const char* trace;
  } cases[] = {
      {"@best(3, 4d6)", Faces({2, 6, 1, 5}), "+6+5+2", "Best(3,+2+6+1+5)=(+6+5+2)\r\n"},
      {"@worst(3, 4d6)", Faces({2, 6, 1, 5}), "+1+2+5", "Worst(3,+2+6+1+5)=(+1+2+5)\r\n"},
      // No more terms than asked for: all of them, in rolled order.
      {"@best(5, 3d6)", Faces({4, 1, 6}), "+4+1+6", "Best(5,+4+1+6)=(+4+1+6)\r\n"},
      {"@worst(3, 3d6)", Faces({4, 1, 6}), "+4+1+6", "Worst(3,+4+1+6)=(+4+1+6)\r\n"},
      {"@best(0, 3d6)", Faces({4, 1, 6}), "", "Best(0,+4+1+6)=()\r\n"},
      {"@best(-1, 3d6)", Faces({4, 1, 6}), "", "Best(-1,+4+1+6)=()\r\n"},
      // Constants are terms too.
      {"@best(2, 3d6+10)", Faces({3, 5, 2}), "+10+5", "Best(2,+3+5+2+10)=(+10+5)\r\n"},
      {"@best(2.5, 4d6)", Faces({2, 6, 1, 5}), "+6+5", "Best(2,+2+6+1+5)=(+6+5)\r\n"},
      {"@best(3.5, 4d6)", Faces({2, 6, 1, 5}), "+2+6+1+5", "Best(4,+2+6+1+5)=(+2+6+1+5)\r\n"},
      // A subtracted term keeps its sign.
      {"@best(2, 3d6-2)", Faces({1, 1, 1}), "+1+1", "Best(2,+1+1+1-2)=(+1+1)\r\n"},
      {"@worst(2, 3d6-2)", Faces({1, 1, 1}), "-2+1", "Worst(2,+1+1+1-2)=(-2+1)\r\n"},
      {"@worst(1, 2d6-1d4)",
       {FaceToRnd(3, 6), FaceToRnd(4, 6), FaceToRnd(2, 4)},
       "-2",
       "Worst(1,+3+4-2)=(-2)\r\n"},
      // Of equal values the comb sort decides which text is kept.
      {"@best(1, 5.0+5+1)", {}, "+5.0", "Best(1,+5.0+5+1)=(+5.0)\r\n"},
      {"@worst(1, 3+1.0+1)", {}, "+1", "Worst(1,+3+1.0+1)=(+1)\r\n"},
      {"@best(1, d6+d)", Faces({3, 4}), "+4", "Best(1,+3+4)=(+4)\r\n"},
  };
  for (const Case& c : cases) {
    Outcome out = RunLine(c.line, c.random);
    EXPECT_EQ(out.line, c.result) << c.line;
    EXPECT_EQ(out.details, c.trace) << c.line;
  }
}

TEST_F(BestWorstTest, TraceWithLongResultsHasTheRollsFirstAndNoLineBreakBefore) {
  runFlags.LogPrefix = "  ";
  Outcome out = RunLine("1+@best(3, 4d6)", Faces({2, 6, 1, 5}));
  EXPECT_EQ(out.line, "1++6+5+2");
  EXPECT_EQ(out.details, "4d6= +2+6+1+5= 14\r\n  Best(3,+2+6+1+5)=(+6+5+2)\r\n");
  std::string calcDetails;
  EXPECT_EQ(Calc(out.line, calcDetails), 14);
}

TEST_F(BestWorstTest, VariablesAreSubstitutedAfterTheCommaCheck) {
  settings.LongResults = false;
  VarStore store;
  store.varNames.push_back("keep");
  store.varValues.push_back(2);
  Outcome out = RunLine("@best(keep, 3d6)", Faces({1, 4, 6}), store);
  EXPECT_EQ(out.line, "+6+4");
  // A variable cannot supply the missing comma.
  out = RunLine("@best(keep 3d6)", Faces({1, 4, 6}), store);
  EXPECT_EQ(out.line, "<script error>");
}

TEST_F(BestWorstTest, BestListRollsTheItemsOfAList) {
  settings.LongResults = false;
  struct Case {
    const char* line;
    std::vector<std::string> items;
    std::vector<double> random;
    const char* result;
    const char* trace;
  } cases[] = {
      {"@bestlist(2, rolls)", {"+4", "+1", "+6", "-2"}, {}, "+6+4", "Best(2,+4+1+6-2)=(+6+4)\r\n"},
      {"@bestlist(1, ROLLS )", {"+4", "+1"}, {}, "+4", "Best(1,+4+1)=(+4)\r\n"},
      // Items are joined with nothing between them.
      {"@bestlist(1, rolls)", {"3", "5"}, {}, "+35", "Best(1,+35)=(+35)\r\n"},
      {"@bestlist(1, rolls)", {"1d6", "+2d6"}, Faces({2, 5, 3}), "+5", "Best(1,+2+5+3)=(+5)\r\n"},
      {"@bestlist(2, other)", {"+4", "+1"}, {}, "", "Best(2,+)=()\r\n"},
  };
  for (const Case& c : cases) {
    Outcome out = RunLine(c.line, c.random, StoreWithList("rolls", c.items));
    EXPECT_EQ(out.line, c.result) << c.line;
    EXPECT_EQ(out.details, c.trace) << c.line;
  }
}

TEST_F(BestWorstTest, SortByValueIsTheCombSort) {
  struct Case {
    std::vector<std::string> items, sorted;
  } cases[] = {
      {{""}, {""}},
      {{"", "7"}, {"", "7"}},
      {{"", "3", "-1", "2"}, {"", "-1", "2", "3"}},
      // Equal values are never swapped, but a wide gap can pass one over the
      // other: a stable sort would give 5 before 05.
      {{"", "5", "05", "1"}, {"", "1", "05", "5"}},
      {{"", "3", "2", "3.0", "1"}, {"", "1", "2", "3.0", "3"}},
      {{"", "2", "2.0", "x", "-1"}, {"", "-1", "x", "2.0", "2"}},
  };
  for (Case& c : cases) {
    SortByValue(c.items);
    EXPECT_EQ(c.items, c.sorted);
  }
}

TEST_F(BestWorstTest, SortByValueSortsLongListsAndLetsEventsRunBetweenPasses) {
  std::vector<std::string> items{""};
  for (int i = 0; i < 3000; ++i)
    items.push_back(FormatNumber(Rnd() * 200 - 100));
  std::vector<std::string> expected = items;
  SetPumpEveryCall(true);
  SortByValue(items);
  std::sort(expected.begin() + 1, expected.end(),
            [](const std::string& a, const std::string& b) { return std::stod(a) < std::stod(b); });
  EXPECT_EQ(items, expected);
  // About log(3000)/log(1.3) passes to reach gap 1, then a few more.
  EXPECT_GT(ui.pumps, 25);
  EXPECT_LT(ui.pumps, 60);
}

// The sum of the best 3 of 4d6, by enumeration of all 1296 rolls.
Distribution BestThreeOfFour() {
  Distribution dist;
  for (int a = 1; a <= 6; ++a)
    for (int b = 1; b <= 6; ++b)
      for (int c = 1; c <= 6; ++c)
        for (int d = 1; d <= 6; ++d)
          dist.exact[a + b + c + d - std::min({a, b, c, d})] += 1.0 / 1296;
  return dist;
}

TEST_F(BestWorstTest, BestThreeOfFourFollowsItsDistribution) {
  settings.LongResults = false;
  SeedRandom(20240611);
  const long samples = 20000;
  std::map<double, long> counts;
  for (long i = 0; i < samples; ++i) {
    std::string line = "@best(3, 4d6)", details;
    ProcFunc(line, details, VarStore{});
    ++counts[Calc(line, details)];
  }
  FitResult fit = ChiSquareFit(BestThreeOfFour(), counts, samples);
  EXPECT_EQ(fit.cells, 16);
  EXPECT_LT(fit.statistic, fit.critical);
}

}  // namespace
}  // namespace gandrel::testing
