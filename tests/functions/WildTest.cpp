#include <gtest/gtest.h>

#include <string>

#include "app/Settings.h"
#include "dice/modDiceCalc.h"
#include "functions/FunctionRun.h"
#include "script/RunFlags.h"
#include "support/EngineFixture.h"

namespace gandrel::testing {
namespace {

using WildTest = EngineTest;

// The random value that makes a die of that many sides show face.
double D(double face, double sides = 6) {
  return FaceToRnd(face, sides);
}

TEST_F(WildTest, WildRollsTheWholeTextAgainOnItsHighestTotal) {
  settings.LongResults = false;
  // clang-format off
  ExpectLines({
      {"@wild(2d6)", Dice({6, 6, 3, 4}), "+12+7", "Wild(2d6)=(+12+7)\r\n"},
      {"@wild(2d6)", Dice({6, 6, 6, 6, 1, 1}), "+12+12+2", "Wild(2d6)=(+12+12+2)\r\n"},
      // A subtracted term counts at its minimum: the highest total is 6 - 1.
      {"@wild(1d6-1d4)", {D(6), D(1, 4), D(2), D(3, 4)}, "+5-1", "Wild(1d6-1d4)=(+5-1)\r\n"},
      {"@wild(1d6-1d4)", {D(6), D(2, 4)}, "+4", "Wild(1d6-1d4)=(+4)\r\n"},
      // The trace shows the dice text after the default die went in.
      {"3*@wild(d)+1", Dice({6, 2}), "3*+6+2+1", "Wild(d6)=(+6+2)\r\n"},
  });
  // clang-format on
  // It never breaks the line before its trace, whatever follows a calculation.
  settings.LongResults = true;
  ExpectLines({{"@wild(2d6)", Dice({6, 6, 3, 4}), "+12+7",
                "Calc: +12=122d6= +6+6= 12\r\nCalc: 12=122d6= +3+4= 7\r\nCalc: 7=7"
                "Wild(2d6)=(+12+7)\r\n"}});
}

TEST_F(WildTest, WildDiceExplodesEveryDie) {
  settings.LongResults = false;
  DefineRange("-1 to 1", "dfate");
  const double up = D(3, 3), zero = D(2, 3), down = D(1, 3);
  // clang-format off
  ExpectLines({
      {"@wilddice(3d6)", Dice({6, 6, 2, 3, 1}), "18", "WildDice(3d6)=(+[6+6+2]+3+1)=18\r\n"},
      {"@wilddice(2d6)", Dice({6, 5, 6, 6, 6, 1}), "30", "WildDice(2d6)=(+[6+5]+[6+6+6+1])=30\r\n"},
      // A subtracted term subtracts its exploded total; constants stay.
      {"@wilddice(1d6-1d4+2)", {D(5), D(4, 4), D(4, 4), D(1, 4)}, "-2", "WildDice(1d6-1d4+2)=(+5-[4+4+1]+2)=-2\r\n"},
      {"@wilddice(2-d6)", Dice({6, 3}), "-7", "WildDice(2-d6)=(2-[6+3])=-7\r\n"},
      {"@wilddice(2--1d6)", Dice({4}), "6", "WildDice(2--1d6)=(2+4)=6\r\n"},
      {"@wilddice(2*1d6)", Dice({6, 2}), "16", "WildDice(2*1d6)=(2*+[6+2])=16\r\n"},
      {"@wilddice(0d6+2)", {}, "2", "WildDice(0d6+2)=(+2)=2\r\n"},
      // One-faced dice never explode; negative faces keep their signs.
      {"@wilddice(2d1+2d0)", {}, "4", "WildDice(2d1+2d0)=(+1+1+1+1)=4\r\n"},
      {"@wilddice(2dfate)", {up, up, down, zero}, "1", "WildDice(2dfate)=(+[1+1-1]+0)=1\r\n"},
      {"@wilddice(5-1dfate)", {down}, "6", "WildDice(5-1dfate)=(5+1)=6\r\n"},
  });
  // clang-format on
}

TEST_F(WildTest, SWWildHasOneWildDie) {
  settings.LongResults = false;
  // clang-format off
  ExpectLines({
      {"@swwild(3d6)", Dice({6, 6, 3, 4, 2}), "21", "SWWild(3d6)=(+[6+6+3]+4+2)=21\r\n"},
      {"@swwild(3d6)", Dice({4, 6, 6}), "16", "SWWild(3d6)=(+[4]+6+6)=16\r\n"},
      // A 1 on the wild die takes it and the highest other die (the first of
      // equals) of its term out.
      {"@swwild(3d6)", Dice({1, 5, 3}), "3", "SWWild(3d6)=(+{1}+{5}+3)=3\r\n"},
      {"@swwild(3d6)", Dice({1, 5, 5}), "5", "SWWild(3d6)=(+{1}+{5}+5)=5\r\n"},
      {"@swwild(1d6+1d6)", Dice({1, 6}), "6", "SWWild(1d6+1d6)=(+{1}+6)=6\r\n"},
      // The wild die is the first die of the first added term that has dice.
      {"@swwild(10-2d6+0d6+3d6)", Dice({6, 6, 2, 3, 4}), "7", "SWWild(10-2d6+0d6+3d6)=(10-6-6+[2]+3+4)=7\r\n"},
      {"@swwild(5-1d6)", Dice({6}), "-1", "SWWild(5-1d6)=(5-6)=-1\r\n"},
      // A one-faced wild die always shows its lowest face.
      {"@swwild(3d1)", {}, "1", "SWWild(3d1)=(+{1}+{1}+1)=1\r\n"},
  });
  // clang-format on
}

TEST_F(WildTest, LongResultsBreakTheLineAfterTheCalculation) {
  runFlags.LogPrefix = "  ";
  // clang-format off
  ExpectLines({
      {"@wilddice(3d6)", Dice({6, 6, 2, 3, 1}), "18", "Calc: 18=18\r\n  WildDice(3d6)=(+[6+6+2]+3+1)=18\r\n"},
      {"@swwild(2d6+1)", Dice({1, 4}), "1", "Calc: 0+1=1\r\n  SWWild(2d6+1)=(+{1}+{4}+1)=1\r\n"},
  });
  // clang-format on
}

TEST_F(WildTest, AFailedRollCountsZeroAfterItsMessage) {
  settings.LongResults = false;
  DefineRange("-2000000000 to 2000000000", "dhuge");
  ExpectLines({{"@wilddice(1dhuge)", {}, "0", "WildDice(1dhuge)=(<error>)=0\r\n"},
               {"@swwild(2+1dhuge)", {}, "0", "SWWild(2+1dhuge)=(<error>)=0\r\n"}});
  EXPECT_EQ(ui.messages.size(), 2u);
}

}  // namespace
}  // namespace gandrel::testing
