#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/Settings.h"
#include "calc/Pump.h"
#include "calc/RuntimeError.h"
#include "functions/FunctionRun.h"
#include "script/RunFlags.h"
#include "support/EngineFixture.h"

namespace gandrel::testing {
namespace {

using ProcFuncTest = EngineTest;

const std::string kBadCall = "Error: " + ErrorDescription(ErrNo::InvalidProcedureCall) + "\r\n";
const std::string kOverflow = "Error: " + ErrorDescription(ErrNo::Overflow) + "\r\n";
const std::string kComma = "Error: missing comma\r\n";
const std::string kNoDice = "Error: you must roll dice to do wild dice\r\n";

TEST_F(ProcFuncTest, FailuresReplaceTheLineAndTheDetails) {
  const std::string bad = "<script error>";
  // clang-format off
  ExpectLines({
      {"@best 3, 4d6", {}, bad, "Error: @ found without ( in line:\r\n@best 3, 4d6"},
      {"@foo(1)", {}, bad, "Error: function not found in line:\r\n@foo(1)"},
      {"1+@limit(1, 3d6)", {}, bad, kComma + "@LIMIT(lower limit, upper limit, dieroll)"},
      {"@cap(1, 2, 3, 3d6)", {}, bad, kComma + "@CAP(low capval, high capval, dieroll)"},
      {"@lcap(3d6)", {}, bad, kComma + "@LCAP(lower capval, dieroll)"},
      {"@ucap(3d6)", {}, bad, kComma + "@UCAP(capval, dieroll)"},
      {"@llimit(3d6)", {}, bad, kComma + "@LLIMIT(lower limit, dieroll)"},
      {"@ulimit(3d6)", {}, bad, kComma + "@ULIMIT(upper limit, dieroll)"},
      {"@best(3 4d6)", {}, bad, kComma + "@BEST(num, dieroll)"},
      {"@worst(3d6)", {}, bad, kComma + "@WORST(num, dieroll)"},
      {"@bestlist(3 rolls)", {}, bad, kComma + "@BESTLIST(num, listname)"},
      {"@wild(5)", {}, bad, kNoDice + "@WILD(dieroll)"},
      {"@swwild(2+3)", {}, bad, kNoDice + "@SWWILD(dieroll)"},
      {"@wilddice()", {}, bad, kNoDice + "@WILDDICE(dieroll)"},
      {"@best(3, 4d6", {}, bad, kBadCall + "@BEST(num, dieroll)"},
      {"@wild((1d6)", {}, bad, kBadCall + "@WILD(dieroll)"},
      {"@best(40000, 3d6)", {}, bad, kOverflow + "@BEST(num, dieroll)"},
      {"@ucap(3, 20000d6)", {}, bad, kOverflow + "@UCAP(capval, dieroll)"},
      {"@wilddice(20000d6)", {}, bad, kOverflow + "@WILDDICE(dieroll)"},
      // A failed nested call keeps its own message; the outer checks would hide it.
      {"@best(@foo(1))", {}, bad, "Error: function not found in line:\r\n@foo(1)"},
      {"@limit(1, 6, @wild(5))", {}, bad, kNoDice + "@WILD(dieroll)"},
      {"@cap(1, @best(9, 2d6", {}, bad, kBadCall + "@CAP(low capval, high capval, dieroll)"},
  }, VarStore{}, "earlier details\r\n");
  // The list reference x(1,2) reads its index as 1 and takes a comma away.
  ExpectLines({{"@cap(x(1,2),6d6)", {}, bad, "Error: " + ErrorDescription(ErrNo::SubscriptOutOfRange) +
                                                 "\r\n@CAP(low capval, high capval, dieroll)"}},
              StoreWithList("x", {"2"}));
  // clang-format on
}

TEST_F(ProcFuncTest, CallsAreFoundByExactNameInAnyCaseAndReplacedFromTheLeft) {
  settings.LongResults = false;
  // clang-format off
  ExpectLines({
      {"", {}, "", ""},
      {"3d6+2", {}, "3d6+2", ""},
      {"@wild(1d6)", Dice({3}), "+3", "Wild(1d6)=(+3)\r\n"},
      {"@wilddice(1d6)", Dice({3}), "3", "WildDice(1d6)=(+3)=3\r\n"},
      {"@LIMIT(1,6,3d6)", Dice({1, 1, 1}), "3", "Limit(1, 6, 3)=3\r\n"},
      {"@Best ( 1, 2d6 )", Dice({2, 5}), "+5", "Best(1,+2+5)=(+5)\r\n"},
      {"2 + @limit(1, 6, 3d6) + 1 - @worst(1, 2d6)", Dice({1, 1, 2, 4, 3}), "2 +4+ 1 -+3",
       "Limit(1, 6, 4)=4\r\nWorst(1,+4+3)=(+3)\r\n"},
  });
  // clang-format on
}

TEST_F(ProcFuncTest, NestedCallsGoAndTraceFirstBehindTheIndent) {
  runFlags.LogPrefix = "  ";
  const char* line = "@limit(1, 6, @limit(2, 5, 1d10))";
  ExpectLines({{line, Dice({7}, 10), "5",
                "1d10= +7= 7\r\nCalc: +7=7\r\n  Limit(2, 5, 7)=5\r\n"
                "Calc: +5=5\r\n  Limit(1, 6, 5)=5\r\n"}});
  settings.LongResults = false;
  ExpectLines({{line, Dice({7}, 10), "5", "  Limit(2, 5, 7)=5\r\n  Limit(1, 6, 5)=5\r\n"}});
}

TEST_F(ProcFuncTest, SplitFunctionCall) {
  struct Case {
    const char *line, *name, *left, *args, *right;
  } cases[] = {
      {"x+@best(3, 4d6)*2", "@best", "x+", "3, 4d6", "*2"},
      {" 2 + @limit(1, 6, @limit(2, 5, 1d10)) + 1", "@limit", "2 +", "1, 6, @limit(2, 5, 1d10)",
       "+ 1"},
      {"A @Best ( 3,4d6 ) B", "@best", "A", "3,4d6", "B"},
      {"@cap(1, (2), 3d6)(x)", "@cap", "", "1, (2), 3d6", "(x)"},
  };
  std::string left, args, right;
  for (const Case& c : cases) {
    SplitFunctionCall(c.line, c.name, left, args, right);
    EXPECT_EQ(left + "|" + args + "|" + right, std::string(c.left) + "|" + c.args + "|" + c.right);
  }
  for (const char* line : {"@best(3, 4d6", "@best(", "no call here"})
    EXPECT_THROW(SplitFunctionCall(line, "@best", left, args, right), RuntimeError) << line;
}

TEST_F(ProcFuncTest, DropEmptyItems) {
  std::vector<std::vector<std::string>> lists{{"", "a", "", " ", "-2", ""}, {"", "", ""}, {}};
  for (auto& items : lists)
    DropEmptyItems(items);
  EXPECT_EQ(lists, (decltype(lists){{"", "a", " ", "-2"}, {""}, {""}}));
}

TEST_F(ProcFuncTest, EndlessRollsEndWithTheUsersBreak) {
  SetPumpEveryCall(true);
  ui.onPump = [](long pump) {
    if (pump == 200) runFlags.BreakRequested = true;
  };
  // 0d6 rolls no die: the re-roll loop itself looks for the break. The list
  // item is the very call that asks for it, so the line never runs out of calls.
  VarStore store = StoreWithList("loop", {"@bestlist(1, loop)"});
  for (const char* text :
       {"@wild(1d1)", "@wild(0d6)", "1+@wilddice(0d6+@wild(1d1))", "@bestlist(1, loop)"}) {
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
