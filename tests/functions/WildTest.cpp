#include "functions/FunctionRun.h"

namespace gandrel::testing {
namespace {

using WildTest = EngineTest;

TEST_F(WildTest, RollsGoOnWhileTheyShowTheHighest) {
  engineSettings.LongResults = false;
  DefineRange("-1 to 1", "dfate");
  DefineRange("-2000000000 to 2000000000", "dhuge");
  ExpectLines({
      // @wild rolls the whole text again; a subtracted term counts at its
      // minimum, so the highest total of 1d6-1d6 is 6 - 1.
      {"@wild(2d6)", Dice({6, 6, 3, 4}), "+12+7", "Wild(2d6)=(+12+7)\r\n"},
      {"@wild(1d6-1d6)", Dice({6, 1, 2, 3}), "+5-1", "Wild(1d6-1d6)=(+5-1)\r\n"},
      // The trace shows the dice text after the default die went in.
      {"3*@wild(d)+1", Dice({6, 2}), "3*+6+2+1", "Wild(d6)=(+6+2)\r\n"},
      // @wilddice explodes every die. A subtracted term subtracts its exploded
      // total; constants stay; an even run of "-" adds.
      {"@wilddice(3d6)", Dice({6, 6, 2, 3, 1}), "18", "WildDice(3d6)=(+[6+6+2]+3+1)=18\r\n"},
      {"@wilddice(1d6-1d6+2)", Dice({5, 6, 6, 1}), "-6",
       "WildDice(1d6-1d6+2)=(+5-[6+6+1]+2)=-6\r\n"},
      {"@wilddice(2--1d6)", Dice({4}), "6", "WildDice(2--1d6)=(2+4)=6\r\n"},
      // One-faced dice never explode; negative faces keep their signs.
      {"@wilddice(2d1+2d0)", {}, "4", "WildDice(2d1+2d0)=(+1+1+1+1)=4\r\n"},
      {"@wilddice(2dfate)", Dice({3, 3, 1, 2}, 3), "1", "WildDice(2dfate)=(+[1+1-1]+0)=1\r\n"},
      // A failed roll counts 0 after its message.
      {"@wilddice(1dhuge)", {}, "0", "WildDice(1dhuge)=(<error>)=0\r\n"},
      // @swwild has one wild die, bracketed even when it does not explode.
      {"@swwild(3d6)", Dice({6, 6, 3, 4, 2}), "21", "SWWild(3d6)=(+[6+6+3]+4+2)=21\r\n"},
      {"@swwild(3d6)", Dice({4, 6, 6}), "16", "SWWild(3d6)=(+[4]+6+6)=16\r\n"},
      // A 1 on the wild die takes it and the highest other die (the first of
      // equals) of its term out.
      {"@swwild(4d6)", Dice({1, 3, 5, 5}), "8", "SWWild(4d6)=(+{1}+3+{5}+5)=8\r\n"},
      {"@swwild(1d6+1d6)", Dice({1, 6}), "6", "SWWild(1d6+1d6)=(+{1}+6)=6\r\n"},
      // The wild die is the first die of the first added term that has dice.
      {"@swwild(10-2d6+0d6+3d6)", Dice({6, 6, 2, 3, 4}), "7",
       "SWWild(10-2d6+0d6+3d6)=(10-6-6+[2]+3+4)=7\r\n"},
  });
  EXPECT_EQ(ui.messages.size(), 1u);
}

}  // namespace
}  // namespace gandrel::testing
