#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "functions/ChiSquare.h"
#include "functions/FunctionRun.h"
#include "functions/modScriptFunctions.h"
#include "support/EngineFixture.h"

namespace gandrel::testing {
namespace {

using CapsLimitsTest = EngineTest;

TEST_F(CapsLimitsTest, CapsBoundEveryTerm) {
  settings.LongResults = false;
  struct Case {
    const char* line;
    std::vector<double> random;
    const char* result;
    const char* trace;
  } cases[] = {
      {"@cap(2, 5, 3d6)", Faces({1, 6, 4}), "+2+5+4", "Cap(2,5,+1+6+4)=(+2+5+4)\r\n"},
      {"@cap(2, 5, 1d6+9)", Faces({3}), "+3+5", "Cap(2,5,+3+9)=(+3+5)\r\n"},
      {"@cap(1, 6, 3d6-2)", Faces({3, 3, 3}), "+3+3+3+1", "Cap(1,6,+3+3+3-2)=(+3+3+3+1)\r\n"},
      {"@cap(-1, 6, 2d6-2)", Faces({3, 3}), "+3+3-1", "Cap(-1,6,+3+3-2)=(+3+3-1)\r\n"},
      {"@cap(1.5, 4.5, 2d6)", Faces({1, 6}), "+1.5+4.5", "Cap(1.5,4.5,+1+6)=(+1.5+4.5)\r\n"},
      // Low above high: the high cap wins.
      {"@cap(5, 2, 2d6)", Faces({1, 6}), "+2+2", "Cap(5,2,+1+6)=(+2+2)\r\n"},
      {"@lcap(2, 3d6)", Faces({1, 1, 5}), "+2+2+5", "LCap(2,+1+1+5)=(+2+2+5)\r\n"},
      {"@ucap(4, 3d6)", Faces({5, 6, 3}), "+4+4+3", "UCap(4,+5+6+3)=(+4+4+3)\r\n"},
      {"@ucap(4, 4.5+1d6)", Faces({2}), "+4+2", "UCap(4,+4.5+2)=(+4+2)\r\n"},
      // The one-bound caps keep whole numbers, rounded half to even.
      {"@lcap(2.5, 2d6)", Faces({1, 3}), "+2+3", "LCap(2,+1+3)=(+2+3)\r\n"},
      {"@ucap(3.5, 2d6)", Faces({5, 3}), "+4+3", "UCap(4,+5+3)=(+4+3)\r\n"},
      // A bound that is not a number reads as 0.
      {"@lcap(x, 2d6-3)", Faces({2, 4}), "+2+4+0", "LCap(0,+2+4-3)=(+2+4+0)\r\n"},
      {"@cap(1, 6, 3)", {}, "+3", "Cap(1,6,+3)=(+3)\r\n"},
  };
  for (const Case& c : cases) {
    Outcome out = RunLine(c.line, c.random);
    EXPECT_EQ(out.line, c.result) << c.line;
    EXPECT_EQ(out.details, c.trace) << c.line;
  }
}

TEST_F(CapsLimitsTest, LimitsBoundTheTotal) {
  settings.LongResults = false;
  struct Case {
    const char* line;
    std::vector<double> random;
    const char* result;
    const char* trace;
  } cases[] = {
      {"@limit(3, 18, 1d2)", Faces({2}, 2), "3", "Limit(3, 18, 2)=3\r\n"},
      {"@limit(10, 5, 3d6)", Faces({1, 1, 1}), "5", "Limit(10, 5, 3)=5\r\n"},
      {"@limit(10, 5, 3d6)", Faces({6, 6, 6}), "5", "Limit(10, 5, 18)=5\r\n"},
      {"@limit(1, 20, 3d6)", Faces({2, 3, 4}), "9", "Limit(1, 20, 9)=9\r\n"},
      {"@limit(1.5, 2.5, 1d6)", Faces({1}), "1.5", "Limit(1.5, 2.5, 1)=1.5\r\n"},
      {"@llimit(10, 3d6)", Faces({1, 2, 3}), "10", "LLimit(10, 6)=10\r\n"},
      {"@llimit(10, 3d6)", Faces({4, 5, 6}), "15", "LLimit(10, 15)=15\r\n"},
      {"@ulimit(10, 3d6)", Faces({6, 6, 6}), "10", "ULimit(10, 18)=10\r\n"},
      {"@ulimit(10, 3d6)", Faces({1, 2, 3}), "6", "ULimit(10, 6)=6\r\n"},
      // The per-die text is calculated as it stands: only the first die of a
      // subtracted term is subtracted, and "*" meets the "+" of the dice.
      {"@ulimit(-1, 1d6-2d6)", Faces({2, 3, 4}), "-1", "ULimit(-1, 3)=-1\r\n"},
      {"@llimit(0, 2*1d6)", Faces({3}), "3", "LLimit(0, 3)=3\r\n"},
      {"2 + @limit(1, 6, 3d6) + 1", Faces({1, 1, 2}), "2 +4+ 1", "Limit(1, 6, 4)=4\r\n"},
  };
  for (const Case& c : cases) {
    Outcome out = RunLine(c.line, c.random);
    EXPECT_EQ(out.line, c.result) << c.line;
    EXPECT_EQ(out.details, c.trace) << c.line;
  }
}

TEST_F(CapsLimitsTest, OnlyTheLimitsBreakTheLineBeforeTheirTrace) {
  settings.LongResults = true;
  struct Case {
    const char* line;
    std::vector<double> random;
    const char* details;
  } cases[] = {
      {"@cap(2, 5, 2d6)", Faces({1, 6}), "2d6= +1+6= 7\r\nCap(2,5,+1+6)=(+2+5)\r\n"},
      {"@lcap(2, 2d6)", Faces({1, 6}), "2d6= +1+6= 7\r\nLCap(2,+1+6)=(+2+6)\r\n"},
      {"@ucap(2, 2d6)", Faces({1, 6}), "2d6= +1+6= 7\r\nUCap(2,+1+6)=(+1+2)\r\n"},
      {"@limit(1, 6, 2d6)", Faces({3, 4}), "2d6= +3+4= 7\r\nCalc: +3+4=7\r\nLimit(1, 6, 7)=6\r\n"},
      {"@llimit(9, 2d6)", Faces({3, 4}), "2d6= +3+4= 7\r\nCalc: +3+4=7\r\nLLimit(9, 7)=9\r\n"},
      {"@ulimit(9, 2d6)", Faces({3, 4}), "2d6= +3+4= 7\r\nCalc: +3+4=7\r\nULimit(9, 7)=7\r\n"},
  };
  for (const Case& c : cases) {
    Outcome out = RunLine(c.line, c.random);
    EXPECT_EQ(out.details, c.details) << c.line;
  }
}

TEST_F(CapsLimitsTest, ACapIsNotParenthesised) {
  settings.LongResults = false;
  Outcome out = RunLine("2*@cap(1, 6, 2d6)", Faces({3, 4}));
  EXPECT_EQ(out.line, "2*+3+4");
  // "*" meets an empty right operand, so the line calculates to 7.
  std::string details;
  EXPECT_EQ(Calc(out.line, details), 7);
}

// The exact distribution of a value computed from every roll of n dice.
template <class Value>
Distribution OverAllRolls(int n, Value value) {
  Distribution dist;
  std::vector<int> dice(n, 1);
  double each = 1;
  for (int i = 0; i < n; ++i)
    each /= 6;
  for (;;) {
    dist.exact[value(dice)] += each;
    int i = 0;
    while (i < n && dice[i] == 6)
      dice[i++] = 1;
    if (i == n) return dist;
    ++dice[i];
  }
}

std::map<double, long> Sample(const std::string& text, long samples) {
  std::map<double, long> counts;
  for (long i = 0; i < samples; ++i) {
    std::string line = text, details;
    ProcFunc(line, details, VarStore{});
    ++counts[Calc(line, details)];
  }
  return counts;
}

TEST_F(CapsLimitsTest, LimitAndCapFollowTheirDistributions) {
  settings.LongResults = false;
  SeedRandom(77);
  const long samples = 20000;
  struct Case {
    const char* line;
    Distribution dist;
  } cases[] = {
      {"@limit(6, 14, 3d6)",
       OverAllRolls(
           3, [](const std::vector<int>& d) { return std::clamp(d[0] + d[1] + d[2], 6, 14); })},
      {"@cap(2, 5, 3d6)", OverAllRolls(3,
                                       [](const std::vector<int>& d) {
                                         int sum = 0;
                                         for (int v : d)
                                           sum += std::clamp(v, 2, 5);
                                         return sum;
                                       })},
  };
  for (const Case& c : cases) {
    FitResult fit = ChiSquareFit(c.dist, Sample(c.line, samples), samples);
    EXPECT_GT(fit.cells, 5) << c.line;
    EXPECT_LT(fit.statistic, fit.critical) << c.line;
  }
}

}  // namespace
}  // namespace gandrel::testing
