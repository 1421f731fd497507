#include <gtest/gtest.h>

#include <string>

#include "app/Settings.h"
#include "dice/modDiceCalc.h"
#include "functions/FunctionRun.h"
#include "support/EngineFixture.h"

namespace gandrel::testing {
namespace {

using CapsLimitsTest = EngineTest;

TEST_F(CapsLimitsTest, CapsBoundEveryTerm) {
  settings.LongResults = false;
  // clang-format off
  ExpectLines({
      {"@cap(2, 5, 3d6)", Dice({1, 6, 4}), "+2+5+4", "Cap(2,5,+1+6+4)=(+2+5+4)\r\n"},
      {"@cap(2, 5, 1d6+9)", Dice({3}), "+3+5", "Cap(2,5,+3+9)=(+3+5)\r\n"},
      {"@cap(1, 6, 3d6-2)", Dice({3, 3, 3}), "+3+3+3+1", "Cap(1,6,+3+3+3-2)=(+3+3+3+1)\r\n"},
      {"@cap(-1, 6, 2d6-2)", Dice({3, 3}), "+3+3-1", "Cap(-1,6,+3+3-2)=(+3+3-1)\r\n"},
      {"@cap(1.5, 4.5, 2d6)", Dice({1, 6}), "+1.5+4.5", "Cap(1.5,4.5,+1+6)=(+1.5+4.5)\r\n"},
      // Low above high: the high cap wins.
      {"@cap(5, 2, 2d6)", Dice({1, 6}), "+2+2", "Cap(5,2,+1+6)=(+2+2)\r\n"},
      {"@lcap(2, 3d6)", Dice({1, 1, 5}), "+2+2+5", "LCap(2,+1+1+5)=(+2+2+5)\r\n"},
      {"@ucap(4, 4.5+2d6)", Dice({5, 3}), "+4+4+3", "UCap(4,+4.5+5+3)=(+4+4+3)\r\n"},
      // The one-bound caps keep whole numbers, rounded half to even; a bound
      // that is not a number reads 0.
      {"@lcap(2.5, 2d6)", Dice({1, 3}), "+2+3", "LCap(2,+1+3)=(+2+3)\r\n"},
      {"@ucap(3.5, 2d6)", Dice({5, 3}), "+4+3", "UCap(4,+5+3)=(+4+3)\r\n"},
      {"@lcap(x, 2d6-3)", Dice({2, 4}), "+2+4+0", "LCap(0,+2+4-3)=(+2+4+0)\r\n"},
      // Not parenthesised: "*" meets the "+" of the first term.
      {"2*@cap(1, 6, 2d6)", Dice({3, 4}), "2*+3+4", "Cap(1,6,+3+4)=(+3+4)\r\n"},
  });
  // clang-format on
  std::string line = "2*+3+4", details;
  EXPECT_EQ(Calc(line, details), 7);
}

TEST_F(CapsLimitsTest, LimitsBoundTheTotal) {
  settings.LongResults = false;
  // clang-format off
  ExpectLines({
      {"@limit(3, 18, 1d2)", Dice({2}, 2), "3", "Limit(3, 18, 2)=3\r\n"},
      {"@limit(10, 5, 3d6)", Dice({1, 1, 1}), "5", "Limit(10, 5, 3)=5\r\n"},
      {"@limit(10, 5, 3d6)", Dice({6, 6, 6}), "5", "Limit(10, 5, 18)=5\r\n"},
      {"@limit(1.5, 20, 3d6)", Dice({2, 3, 4}), "9", "Limit(1.5, 20, 9)=9\r\n"},
      {"@llimit(10, 3d6)", Dice({1, 2, 3}), "10", "LLimit(10, 6)=10\r\n"},
      {"@llimit(10, 3d6)", Dice({4, 5, 6}), "15", "LLimit(10, 15)=15\r\n"},
      {"@ulimit(10, 3d6)", Dice({6, 6, 6}), "10", "ULimit(10, 18)=10\r\n"},
      // The per-die text is calculated as it stands: only the first die of a
      // subtracted term is subtracted, and "*" meets the "+" of the dice.
      {"@ulimit(-1, 1d6-2d6)", Dice({2, 3, 4}), "-1", "ULimit(-1, 3)=-1\r\n"},
      {"@llimit(0, 2*1d6)", Dice({3}), "3", "LLimit(0, 3)=3\r\n"},
  });
  // clang-format on
}

TEST_F(CapsLimitsTest, OnlyTheLimitsBreakTheLineBeforeTheirTrace) {
  // clang-format off
  ExpectLines({
      {"@cap(2, 5, 2d6)", Dice({1, 6}), "+2+5", "2d6= +1+6= 7\r\nCap(2,5,+1+6)=(+2+5)\r\n"},
      {"@lcap(2, 2d6)", Dice({1, 6}), "+2+6", "2d6= +1+6= 7\r\nLCap(2,+1+6)=(+2+6)\r\n"},
      {"@ucap(2, 2d6)", Dice({1, 6}), "+1+2", "2d6= +1+6= 7\r\nUCap(2,+1+6)=(+1+2)\r\n"},
      {"@limit(1, 6, 2d6)", Dice({3, 4}), "6", "2d6= +3+4= 7\r\nCalc: +3+4=7\r\nLimit(1, 6, 7)=6\r\n"},
      {"@llimit(9, 2d6)", Dice({3, 4}), "9", "2d6= +3+4= 7\r\nCalc: +3+4=7\r\nLLimit(9, 7)=9\r\n"},
      {"@ulimit(9, 2d6)", Dice({3, 4}), "7", "2d6= +3+4= 7\r\nCalc: +3+4=7\r\nULimit(9, 7)=7\r\n"},
  });
  // clang-format on
}

}  // namespace
}  // namespace gandrel::testing
