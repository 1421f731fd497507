#include <algorithm>
#include <vector>

#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "functions/FunctionRun.h"

namespace gandrel::testing {
namespace {

using BestWorstTest = EngineTest;

TEST_F(BestWorstTest, KeptTermsAndTheirOrder) {
  engineSettings.LongResults = false;
  ExpectLines(
      {
          {"@best(3, 4d6)", Dice({2, 6, 1, 5}), "+6+5+2", "Best(3,+2+6+1+5)=(+6+5+2)\r\n"},
          {"@worst(3, 4d6)", Dice({2, 6, 1, 5}), "+1+2+5", "Worst(3,+2+6+1+5)=(+1+2+5)\r\n"},
          // No more terms than asked for: all of them, in rolled order.
          {"@best(3, 3d6)", Dice({4, 1, 6}), "+4+1+6", "Best(3,+4+1+6)=(+4+1+6)\r\n"},
          {"@best(0, 3d6)", Dice({4, 1, 6}), "", "Best(0,+4+1+6)=()\r\n"},
          // Half to even, and the variables substituted.
          {"@best(2.5, 4d6)", Dice({2, 6, 1, 5}), "+6+5", "Best(2,+2+6+1+5)=(+6+5)\r\n"},
          {"@best(rolls(2), d6+d+d)", Dice({3, 4, 1}), "+4", "Best(1,+3+4+1)=(+4)\r\n"},
          // Constants and subtracted terms are terms too, with their signs.
          {"@best(2, 3d6+10)", Dice({3, 5, 2}), "+10+5", "Best(2,+3+5+2+10)=(+10+5)\r\n"},
          {"@worst(2, 3d6-2)", Dice({1, 1, 1}), "-2+1", "Worst(2,+1+1+1-2)=(-2+1)\r\n"},
          // Of equal values the comb sort decides which text is kept.
          {"@best(1, 5.0+5+1)", {}, "+5.0", "Best(1,+5.0+5+1)=(+5.0)\r\n"},
          // @bestlist joins the items of a list as they are.
          {"@bestlist(1, ROLLS )", Dice({2, 5}), "+41", "Best(1,+41+2+5)=(+41)\r\n"},
          {"@bestlist(2, other)", {}, "", "Best(2,+)=()\r\n"},
      },
      StoreWithList("rolls", {"+4", "1", "+2d6"}));
}

TEST_F(BestWorstTest, SortByValueIsTheCombSort) {
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
  EXPECT_GT(ui.pumps, 25);
  EXPECT_LT(ui.pumps, 60);
}

}  // namespace
}  // namespace gandrel::testing
