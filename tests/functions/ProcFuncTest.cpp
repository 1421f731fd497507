#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"
#include "functions/FunctionRun.h"

namespace gandrel::testing {
namespace {

using ProcFuncTest = EngineTest;

std::string Error(ErrNo number) {
  return "Error: " + ErrorDescription(number) + "\r\n";
}

TEST_F(ProcFuncTest, FailuresReplaceTheLineAndTheDetails) {
  const std::string bad = "<script error>", comma = "Error: missing comma\r\n",
                    noDice = "Error: you must roll dice to do wild dice\r\n",
                    cap = "@CAP(low capval, high capval, dieroll)";
  ExpectLines(
      {
          {"@best 3, 4d6", {}, bad, "Error: @ found without ( in line:\r\n@best 3, 4d6"},
          {"@foo(1)", {}, bad, "Error: function not found in line:\r\n@foo(1)"},
          {"1+@limit(1, 3d6)", {}, bad, comma + "@LIMIT(lower limit, upper limit, dieroll)"},
          {"@best(3 4d6)", {}, bad, comma + "@BEST(num, dieroll)"},
          {"@wild(5)", {}, bad, noDice + "@WILD(dieroll)"},
          {"@best(3, 4d6", {}, bad, Error(ErrNo::InvalidProcedureCall) + "@BEST(num, dieroll)"},
          {"@best(40000, 3d6)", {}, bad, Error(ErrNo::Overflow) + "@BEST(num, dieroll)"},
          {"@ucap(3, 20000d6)", {}, bad, Error(ErrNo::Overflow) + "@UCAP(capval, dieroll)"},
          {"@wilddice(20000d6)", {}, bad, Error(ErrNo::Overflow) + "@WILDDICE(dieroll)"},
          // A failed nested call keeps its own message; the outer checks would hide it.
          {"@limit(1, 6, @wild(5))", {}, bad, noDice + "@WILD(dieroll)"},
          // The list reference x(1,2) reads its index as 1 and takes a comma away.
          {"@cap(x(1,2),6d6)", {}, bad, Error(ErrNo::SubscriptOutOfRange) + cap},
      },
      StoreWithList("x", {"2"}), "earlier details\r\n");
}

// Calls are found by their exact names in any case and replaced from the left,
// nested ones first. With long results on, only the limits and the exploding
// dice break the line before their trace; every trace starts with the indent.
TEST_F(ProcFuncTest, CallsAreReplacedAndTracedInOrder) {
  runFlags.LogPrefix = "  ";
  ExpectLines({
      {"3d6+2", {}, "3d6+2", ""},
      {"2 + @LIMIT(1,6,3d6) + 1 - @worst (1, 2d6)", Dice({1, 1, 2, 4, 3}), "2 +4+ 1 -+3",
       "3d6= +1+1+2= 4\r\nCalc: +1+1+2=4\r\n  Limit(1, 6, 4)=4\r\n"
       "2d6= +4+3= 7\r\n  Worst(1,+4+3)=(+3)\r\n"},
      {"@limit(1, 6, @limit(2, 5, 1d10))", Dice({7}, 10), "5",
       "1d10= +7= 7\r\nCalc: +7=7\r\n  Limit(2, 5, 7)=5\r\n"
       "Calc: +5=5\r\n  Limit(1, 6, 5)=5\r\n"},
      {"@wild(2d6)", Dice({6, 6, 3, 4}), "+12+7",
       "Calc: +12=122d6= +6+6= 12\r\nCalc: 12=122d6= +3+4= 7\r\nCalc: 7=7  Wild(2d6)=(+12+7)\r\n"},
      {"@wilddice(3d6)", Dice({6, 6, 2, 3, 1}), "18",
       "Calc: 18=18\r\n  WildDice(3d6)=(+[6+6+2]+3+1)=18\r\n"},
  });
}

TEST_F(ProcFuncTest, EndlessRollsEndWithTheUsersBreak) {
  SetPumpEveryCall(true);
  ui.onPump = [](long pump) {
    if (pump == 200) runFlags.BreakRequested = true;
  };
  // 0d6 rolls no die: the re-roll loop itself looks for the break. The list
  // item is the very call that asks for it, so the line never runs out of calls.
  VarStore store = StoreWithList("loop", {"@bestlist(1, loop)"});
  for (const char* text : {"@wild(0d6)", "1+@wilddice(0d6+@wild(1d1))", "@bestlist(1, loop)"}) {
    ui.pumps = 0;
    runFlags.BreakRequested = false;
    std::string line = text, details;
    EXPECT_THROW(ProcFunc(line, details, store), BreakSignal) << text;
    EXPECT_GE(ui.pumps, 200) << text;
  }
}

TEST_F(ProcFuncTest, ACallPastTheSixteenBitRangeIsAnOverflowForTheCaller) {
  std::string line = std::string(40000, ' ') + "1+@best(1, 2d6)", details;
  EXPECT_THROW(ProcFunc(line, details, VarStore{}), RuntimeError);
}

}  // namespace
}  // namespace gandrel::testing
