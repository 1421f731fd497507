// Each function's lines with scripted dice: what the line becomes and the
// trace it leaves, long results off.
#include <algorithm>
#include <vector>

#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "functions/FunctionRun.h"

namespace gandrel::testing {
namespace {

class FunctionLines : public EngineTest {
 protected:
  void SetUp() override {
    EngineTest::SetUp();
    engineSettings.LongResults = false;
  }
};

TEST_F(FunctionLines, KeptTermsAndTheirOrder) {
  ExpectLines(
      {
          {"@best(3, 4d6)", Dice({2, 6, 1, 5}), "+6+5+2", "Best(3,+2+6+1+5)=(+6+5+2)\r\n"},
          {"@worst(3, 4d6)", Dice({2, 6, 1, 5}), "+1+2+5", "Worst(3,+2+6+1+5)=(+1+2+5)\r\n"},
          // No more terms than asked for: all of them, in rolled order.
          {"@best(3, 3d6)", Dice({4, 1, 6}), "+4+1+6", "Best(3,+4+1+6)=(+4+1+6)\r\n"},
          {"@best(0, 3d6)", Dice({4, 1, 6}), "", "Best(0,+4+1+6)=()\r\n"},
          // The variables substituted.
          {"@best(rolls(2), d6+d+d)", Dice({3, 4, 1}), "+4", "Best(1,+3+4+1)=(+4)\r\n"},
          // Constants and subtracted terms are terms too, with their signs.
          {"@worst(2, 3d6-2)", Dice({1, 1, 1}), "-2+1", "Worst(2,+1+1+1-2)=(-2+1)\r\n"},
          // @bestlist joins the items of a list as they are.
          {"@bestlist(1, ROLLS )", Dice({2, 5}), "+41", "Best(1,+41+2+5)=(+41)\r\n"},
          {"@bestlist(2, other)", {}, "", "Best(2,+)=()\r\n"},
      },
      StoreWithList("rolls", {"+4", "1", "+2d6"}));
}

TEST_F(FunctionLines, SortByValueIsTheCombSort) {
  using Items = std::vector<std::string>;
  // Equal values are never swapped, but a wide gap can pass one over the
  // other: a stable sort would put 5 before 05. Text that is no number is 0.
  Items cases[][2] = {{{""}, {""}},
                      {{"", "5", "05", "1"}, {"", "1", "05", "5"}},
                      {{"", "2", "2.0", "x", "-1"}, {"", "-1", "x", "2.0", "2"}}};
  for (auto& [items, sorted] : cases) {
    SortByValue(items);
    EXPECT_EQ(items, sorted);
  }
  Items many{""};
  for (int i = 0; i < 3000; ++i)
    many.push_back(FormatNumber(Rnd() * 200 - 100));
  Items expected = many;
  std::sort(expected.begin() + 1, expected.end(),
            [](const std::string& a, const std::string& b) { return std::stod(a) < std::stod(b); });
  SetPumpEveryCall(true);
  SortByValue(many);
  EXPECT_EQ(many, expected);
  // Events run after each pass: some 30 passes to reach gap 1, then a few.
  EXPECT_TRUE(ui.pumps > 25 && ui.pumps < 60) << ui.pumps;
}

TEST_F(FunctionLines, CapsBoundEveryTermAndLimitsTheTotal) {
  ExpectLines({
      // Constants and subtracted terms are capped like dice.
      {"@cap(2, 5, 3d6+9-2)", Dice({1, 6, 4}), "+2+5+4+5+2",
       "Cap(2,5,+1+6+4+9-2)=(+2+5+4+5+2)\r\n"},
      {"@cap(1.5, 4.5, 2d6)", Dice({1, 6}), "+1.5+4.5", "Cap(1.5,4.5,+1+6)=(+1.5+4.5)\r\n"},
      // Low above high: the high bound wins, for caps and limits alike.
      {"@cap(5, 2, 2d6)", Dice({1, 6}), "+2+2", "Cap(5,2,+1+6)=(+2+2)\r\n"},
      {"@limit(10, 5, 3d6)", Dice({1, 1, 1}), "5", "Limit(10, 5, 3)=5\r\n"},
      {"@ucap(4, 4.5+2d6)", Dice({5, 3}), "+4+4+3", "UCap(4,+4.5+5+3)=(+4+4+3)\r\n"},
      // The one-bound caps keep whole numbers, rounded half to even; a bound
      // that is not a number reads 0.
      {"@lcap(2.5, 2d6)", Dice({1, 3}), "+2+3", "LCap(2,+1+3)=(+2+3)\r\n"},
      {"@lcap(x, 2d6-3)", Dice({2, 4}), "+2+4+0", "LCap(0,+2+4-3)=(+2+4+0)\r\n"},
      // Not parenthesised: "*" meets the "+" of the first term.
      {"2*@cap(1, 6, 2d6)", Dice({3, 4}), "2*+3+4", "Cap(1,6,+3+4)=(+3+4)\r\n"},
      {"@llimit(10, 3d6)", Dice({1, 2, 3}), "10", "LLimit(10, 6)=10\r\n"},
      // The per-die text is calculated as it stands: only the first die of a
      // subtracted term is subtracted, and the total 3 is lowered to -1.
      {"@ulimit(-1, 1d6-2d6)", Dice({2, 3, 4}), "-1", "ULimit(-1, 3)=-1\r\n"},
  });
}

TEST_F(FunctionLines, WildDiceGoOnWhileTheyShowTheHighest) {
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
