#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "calc/NumberText.h"
#include "calc/RuntimeError.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "functions/ChiSquare.h"
#include "functions/FunctionRun.h"
#include "functions/modScriptFunctions.h"
#include "script/RunFlags.h"
#include "support/EngineFixture.h"

namespace gandrel::testing {
namespace {

using WildTest = EngineTest;

struct Case {
  const char* line;
  std::vector<double> random;
  const char* result;
  const char* trace;
};

void ExpectAll(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    Outcome out = RunLine(c.line, c.random);
    EXPECT_EQ(out.line, c.result) << c.line;
    EXPECT_EQ(out.details, c.trace) << c.line;
  }
}

// The random value that makes a range die from lo to hi show value.
double RangeFace(double value, double lo, double hi) {
  return FaceToRnd(value - lo + 1, hi - lo + 1);
}

TEST_F(WildTest, WildRollsTheWholeTextAgainOnItsHighestTotal) {
  settings.LongResults = false;
  ExpectAll({
      {"@wild(2d6)", Faces({6, 6, 3, 4}), "+12+7", "Wild(2d6)=(+12+7)\r\n"},
      {"@wild(2d6)", Faces({3, 4}), "+7", "Wild(2d6)=(+7)\r\n"},
      {"@wild(2d6)", Faces({6, 6, 6, 6, 1, 1}), "+12+12+2", "Wild(2d6)=(+12+12+2)\r\n"},
      // A subtracted term counts at its minimum: the highest total is 6 - 1.
      {"@wild(1d6-1d4)",
       {FaceToRnd(6, 6), FaceToRnd(1, 4), FaceToRnd(2, 6), FaceToRnd(3, 4)},
       "+5-1",
       "Wild(1d6-1d4)=(+5-1)\r\n"},
      {"@wild(1d6-1d4)", {FaceToRnd(6, 6), FaceToRnd(2, 4)}, "+4", "Wild(1d6-1d4)=(+4)\r\n"},
      // The trace shows the dice text after the default die went in.
      {"@wild(d)", Faces({2}), "+2", "Wild(d6)=(+2)\r\n"},
      {"3*@wild(1d4)+1", Faces({4, 4, 2}, 4), "3*+4+4+2+1", "Wild(1d4)=(+4+4+2)\r\n"},
      {"@wild(1d6+2)", Faces({6, 1}), "+8+3", "Wild(1d6+2)=(+8+3)\r\n"},
  });
}

TEST_F(WildTest, WildNeverBreaksTheLineBeforeItsTrace) {
  Outcome out = RunLine("@wild(2d6)", Faces({6, 6, 3, 4}));
  EXPECT_EQ(out.details,
            "Calc: +12=12"
            "2d6= +6+6= 12\r\nCalc: 12=12"
            "2d6= +3+4= 7\r\nCalc: 7=7"
            "Wild(2d6)=(+12+7)\r\n");
}

TEST_F(WildTest, WildDiceExplodesEveryDie) {
  settings.LongResults = false;
  DefineRange("-1 to 1", "dfate");
  ExpectAll({
      {"@wilddice(3d6)", Faces({6, 6, 2, 3, 1}), "18", "WildDice(3d6)=(+[6+6+2]+3+1)=18\r\n"},
      {"@wilddice(2d6)", Faces({6, 5, 6, 6, 6, 1}), "30",
       "WildDice(2d6)=(+[6+5]+[6+6+6+1])=30\r\n"},
      // A subtracted term subtracts its exploded total; constants stay.
      {"@wilddice(1d6-1d4+2)",
       {FaceToRnd(5, 6), FaceToRnd(4, 4), FaceToRnd(4, 4), FaceToRnd(1, 4)},
       "-2",
       "WildDice(1d6-1d4+2)=(+5-[4+4+1]+2)=-2\r\n"},
      {"@wilddice(2-d6)", Faces({6, 3}), "-7", "WildDice(2-d6)=(2-[6+3])=-7\r\n"},
      {"@wilddice(2--1d6)", Faces({4}), "6", "WildDice(2--1d6)=(2+4)=6\r\n"},
      {"@wilddice(2*1d6)", Faces({6, 2}), "16", "WildDice(2*1d6)=(2*+[6+2])=16\r\n"},
      {"@wilddice(0d6+2)", {}, "2", "WildDice(0d6+2)=(+2)=2\r\n"},
      // One-faced dice never explode.
      {"@wilddice(2d1)", {}, "2", "WildDice(2d1)=(+1+1)=2\r\n"},
      {"@wilddice(2d0)", {}, "2", "WildDice(2d0)=(+1+1)=2\r\n"},
      // Negative faces keep their signs.
      {"@wilddice(2dfate)",
       {RangeFace(1, -1, 1), RangeFace(1, -1, 1), RangeFace(-1, -1, 1), RangeFace(0, -1, 1)},
       "1",
       "WildDice(2dfate)=(+[1+1-1]+0)=1\r\n"},
      {"@wilddice(5-1dfate)", {RangeFace(-1, -1, 1)}, "6", "WildDice(5-1dfate)=(5+1)=6\r\n"},
  });
}

TEST_F(WildTest, SWWildHasOneWildDie) {
  settings.LongResults = false;
  ExpectAll({
      {"@swwild(3d6)", Faces({6, 6, 3, 4, 2}), "21", "SWWild(3d6)=(+[6+6+3]+4+2)=21\r\n"},
      {"@swwild(3d6)", Faces({4, 6, 6}), "16", "SWWild(3d6)=(+[4]+6+6)=16\r\n"},
      // A 1 on the wild die takes it and the highest other die (the first of
      // equals) out.
      {"@swwild(3d6)", Faces({1, 5, 3}), "3", "SWWild(3d6)=(+{1}+{5}+3)=3\r\n"},
      {"@swwild(3d6)", Faces({1, 5, 5}), "5", "SWWild(3d6)=(+{1}+{5}+5)=5\r\n"},
      {"@swwild(1d6)", Faces({1}), "0", "SWWild(1d6)=(+{1})=0\r\n"},
      {"@swwild(2d6+1d6)", Faces({1, 2, 6}), "6", "SWWild(2d6+1d6)=(+{1}+{2}+6)=6\r\n"},
      // The wild die is the first die of the first term that is added.
      {"@swwild(10-2d6+3d6)", Faces({6, 6, 2, 3, 4}), "7",
       "SWWild(10-2d6+3d6)=(10-6-6+[2]+3+4)=7\r\n"},
      {"@swwild(0d6+2d6)", Faces({3, 4}), "7", "SWWild(0d6+2d6)=(+[3]+4)=7\r\n"},
      {"@swwild(5-1d6)", Faces({6}), "-1", "SWWild(5-1d6)=(5-6)=-1\r\n"},
      // A one-faced wild die always shows its lowest face.
      {"@swwild(3d1)", {}, "1", "SWWild(3d1)=(+{1}+{1}+1)=1\r\n"},
  });
}

TEST_F(WildTest, WildDiceFamiliesBreakTheLineBeforeTheirTraceWithLongResults) {
  runFlags.LogPrefix = "  ";
  struct LongCase {
    const char* line;
    std::vector<double> random;
    const char* details;
  } cases[] = {
      {"@wilddice(3d6)", Faces({6, 6, 2, 3, 1}),
       "Calc: 18=18\r\n  WildDice(3d6)=(+[6+6+2]+3+1)=18\r\n"},
      {"@swwild(2d6+1)", Faces({1, 4}), "Calc: 0+1=1\r\n  SWWild(2d6+1)=(+{1}+{4}+1)=1\r\n"},
  };
  for (const LongCase& c : cases) {
    Outcome out = RunLine(c.line, c.random);
    EXPECT_EQ(out.details, c.details) << c.line;
  }
}

TEST_F(WildTest, AFailedRollCountsZeroAfterItsMessage) {
  settings.LongResults = false;
  DefineRange("-2000000000 to 2000000000", "dhuge");
  ExpectAll({
      {"@wilddice(1dhuge)", {}, "0", "WildDice(1dhuge)=(<error>)=0\r\n"},
      {"@swwild(2+1dhuge)", {}, "0", "SWWild(2+1dhuge)=(<error>)=0\r\n"},
  });
  EXPECT_EQ(ui.messages.size(), 2u);
}

TEST_F(WildTest, AWildDiceTextPastTheSixteenBitRangeIsAnOverflow) {
  settings.LongResults = false;
  Outcome out = RunLine("@wilddice(20000d6)");
  EXPECT_EQ(out.line, "<script error>");
  EXPECT_EQ(out.details, "Error: " + ErrorDescription(ErrNo::Overflow) + "\r\n@WILDDICE(dieroll)");
}

std::map<double, long> SampleValues(const std::string& text, long samples) {
  std::map<double, long> counts;
  for (long i = 0; i < samples; ++i) {
    std::string line = text, details;
    ProcFunc(line, details, VarStore{});
    ++counts[ReadNumber(line)];
  }
  return counts;
}

// One exploding d6: 6k + r for k sixes and then r from 1 to 5, exact below
// 6 * (depth + 1).
Distribution ExplodingD6(int depth) {
  Distribution dist;
  for (int k = 0; k <= depth; ++k)
    for (int r = 1; r <= 5; ++r)
      dist.exact[6 * k + r] = std::pow(1.0 / 6, k + 1);
  dist.cutoff = 6 * (depth + 1);
  return dist;
}

// 3d6 with a wild die: exact below the first total that needs more than
// depth explosions.
Distribution WildThreeD6(int depth) {
  Distribution dist;
  dist.cutoff = 6 * (depth + 1) + 3;
  for (int a = 1; a <= 6; ++a)
    for (int b = 1; b <= 6; ++b) {
      const double others = 1.0 / 36;
      // The wild die shows 1: it and the higher other die count 0.
      dist.exact[std::min(a, b)] += others / 6;
      for (int w = 2; w <= 5; ++w)
        dist.exact[w + a + b] += others / 6;
      for (int k = 1; k <= depth; ++k)
        for (int r = 1; r <= 5; ++r) {
          int total = 6 * k + r + a + b;
          if (total < dist.cutoff) dist.exact[total] += others * std::pow(1.0 / 6, k + 1);
        }
    }
  return dist;
}

TEST_F(WildTest, ExplodingRollsFollowTheirDistributions) {
  settings.LongResults = false;
  SeedRandom(4242);
  const long samples = 30000;
  struct StatCase {
    const char* line;
    Distribution dist;
  } cases[] = {
      {"@wilddice(1d6)", ExplodingD6(2)},
      {"@swwild(3d6)", WildThreeD6(3)},
  };
  for (const StatCase& c : cases) {
    FitResult fit = ChiSquareFit(c.dist, SampleValues(c.line, samples), samples);
    EXPECT_GT(fit.cells, 12) << c.line;
    EXPECT_LT(fit.statistic, fit.critical) << c.line;
  }
}

}  // namespace
}  // namespace gandrel::testing
