#include "functions/FunctionRun.h"

namespace gandrel::testing {
namespace {

using CapsLimitsTest = EngineTest;

TEST_F(CapsLimitsTest, CapsBoundEveryTermAndLimitsTheTotal) {
  engineSettings.LongResults = false;
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
      {"@llimit(10, 3d6)", Dice({4, 5, 6}), "15", "LLimit(10, 15)=15\r\n"},
      // The per-die text is calculated as it stands: only the first die of a
      // subtracted term is subtracted, and the total 3 is lowered to -1.
      {"@ulimit(-1, 1d6-2d6)", Dice({2, 3, 4}), "-1", "ULimit(-1, 3)=-1\r\n"},
  });
  std::string line = "2*+3+4", details;
  EXPECT_EQ(Calc(line, details), 7);
}

}  // namespace
}  // namespace gandrel::testing
