#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "functions/FunctionRun.h"
#include "script/RunFlags.h"
#include "support/EngineFixture.h"

namespace gandrel::testing {
namespace {

using BestWorstTest = EngineTest;

TEST_F(BestWorstTest, KeptTermsAndTheirOrder) {
  settings.LongResults = false;
  VarStore store;
  store.varNames.push_back("keep");
  store.varValues.push_back(2);
  // clang-format off
  ExpectLines({
      {"@best(3, 4d6)", Dice({2, 6, 1, 5}), "+6+5+2", "Best(3,+2+6+1+5)=(+6+5+2)\r\n"},
      {"@worst(3, 4d6)", Dice({2, 6, 1, 5}), "+1+2+5", "Worst(3,+2+6+1+5)=(+1+2+5)\r\n"},
      // No more terms than asked for: all of them, in rolled order.
      {"@best(5, 3d6)", Dice({4, 1, 6}), "+4+1+6", "Best(5,+4+1+6)=(+4+1+6)\r\n"},
      {"@best(3.5, 4d6)", Dice({2, 6, 1, 5}), "+2+6+1+5", "Best(4,+2+6+1+5)=(+2+6+1+5)\r\n"},
      {"@best(0, 3d6)", Dice({4, 1, 6}), "", "Best(0,+4+1+6)=()\r\n"},
      {"@worst(-1, 3d6)", Dice({4, 1, 6}), "", "Worst(-1,+4+1+6)=()\r\n"},
      {"@best(2.5, 4d6)", Dice({2, 6, 1, 5}), "+6+5", "Best(2,+2+6+1+5)=(+6+5)\r\n"},
      {"@best(keep, d6+d+d)", Dice({3, 4, 1}), "+4+3", "Best(2,+3+4+1)=(+4+3)\r\n"},
      // Constants and subtracted terms are terms too, with their signs.
      {"@best(2, 3d6+10)", Dice({3, 5, 2}), "+10+5", "Best(2,+3+5+2+10)=(+10+5)\r\n"},
      {"@best(2, 3d6-2)", Dice({1, 1, 1}), "+1+1", "Best(2,+1+1+1-2)=(+1+1)\r\n"},
      {"@worst(2, 3d6-2)", Dice({1, 1, 1}), "-2+1", "Worst(2,+1+1+1-2)=(-2+1)\r\n"},
      // Of equal values the comb sort decides which text is kept.
      {"@best(1, 5.0+5+1)", {}, "+5.0", "Best(1,+5.0+5+1)=(+5.0)\r\n"},
      {"@worst(1, 3+1.0+1)", {}, "+1", "Worst(1,+3+1.0+1)=(+1)\r\n"},
      {"@best(keep 3d6)", {}, "<script error>", "Error: missing comma\r\n@BEST(num, dieroll)"},
  }, store);
  // clang-format on
}

TEST_F(BestWorstTest, LongResultsPutTheRollsBeforeTheTraceWithoutALineBreak) {
  runFlags.LogPrefix = "  ";
  ExpectLines({{"1+@best(3, 4d6)", Dice({2, 6, 1, 5}), "1++6+5+2",
                "4d6= +2+6+1+5= 14\r\n  Best(3,+2+6+1+5)=(+6+5+2)\r\n"}});
}

TEST_F(BestWorstTest, BestListJoinsTheItemsOfAList) {
  settings.LongResults = false;
  // clang-format off
  ExpectLines({
      {"@bestlist(2, rolls)", {}, "+6+4", "Best(2,+4+1+6-2)=(+6+4)\r\n"},
      {"@bestlist(1, ROLLS )", {}, "+6", "Best(1,+4+1+6-2)=(+6)\r\n"},
      {"@bestlist(2, other)", {}, "", "Best(2,+)=()\r\n"},
  }, StoreWithList("rolls", {"+4", "+1", "+6", "-2"}));
  // Nothing is put between the items, and dice among them are rolled.
  ExpectLines({{"@bestlist(1, rolls)", {}, "+35", "Best(1,+35)=(+35)\r\n"}},
              StoreWithList("rolls", {"3", "5"}));
  ExpectLines({{"@bestlist(1, rolls)", Dice({2, 5, 3}), "+5", "Best(1,+2+5+3)=(+5)\r\n"}},
              StoreWithList("rolls", {"1d6", "+2d6"}));
  // clang-format on
}

TEST_F(BestWorstTest, SortByValueIsTheCombSort) {
  using Items = std::vector<std::string>;
  struct Case {
    Items items, sorted;
  } cases[] = {
      {{""}, {""}},
      {{"", "3", "-1", "2"}, {"", "-1", "2", "3"}},
      // Equal values are never swapped, but a wide gap can pass one over the
      // other: a stable sort would put 5 before 05.
      {{"", "5", "05", "1"}, {"", "1", "05", "5"}},
      {{"", "2", "2.0", "x", "-1"}, {"", "-1", "x", "2.0", "2"}},
  };
  for (Case& c : cases) {
    SortByValue(c.items);
    EXPECT_EQ(c.items, c.sorted);
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
  EXPECT_GT(ui.pumps, 25);
  EXPECT_LT(ui.pumps, 60);
}

}  // namespace
}  // namespace gandrel::testing
