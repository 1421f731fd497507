#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/Settings.h"
#include "calc/Pump.h"
#include "calc/RuntimeError.h"
#include "functions/FunctionRun.h"
#include "functions/modScriptFunctions.h"
#include "script/RunFlags.h"
#include "support/EngineFixture.h"

namespace gandrel::testing {
namespace {

using ProcFuncTest = EngineTest;

const std::string kInvalidCall = ErrorDescription(ErrNo::InvalidProcedureCall);
const std::string kOverflow = ErrorDescription(ErrNo::Overflow);

TEST_F(ProcFuncTest, LinesThatFailAndTheirMessages) {
  struct Case {
    const char* line;
    std::string details;
  } cases[] = {
      {"@best 3, 4d6", "Error: @ found without ( in line:\r\n@best 3, 4d6"},
      {"mail me@home", "Error: @ found without ( in line:\r\nmail me@home"},
      {"@foo(1)", "Error: function not found in line:\r\n@foo(1)"},
      {"@bestx(1, 2d6)", "Error: function not found in line:\r\n@bestx(1, 2d6)"},
      {"me@home (1)", "Error: function not found in line:\r\nme@home (1)"},
      {"1+@limit(1, 3d6)", "Error: missing comma\r\n@LIMIT(lower limit, upper limit, dieroll)"},
      {"@limit(1, 2, 3, 3d6)", "Error: missing comma\r\n@LIMIT(lower limit, upper limit, dieroll)"},
      {"@cap(1, 3d6)", "Error: missing comma\r\n@CAP(low capval, high capval, dieroll)"},
      {"@lcap(3d6)", "Error: missing comma\r\n@LCAP(lower capval, dieroll)"},
      {"@ucap(3d6)", "Error: missing comma\r\n@UCAP(capval, dieroll)"},
      {"@llimit(3d6)", "Error: missing comma\r\n@LLIMIT(lower limit, dieroll)"},
      {"@ulimit(3d6)", "Error: missing comma\r\n@ULIMIT(upper limit, dieroll)"},
      {"@best(3 4d6)", "Error: missing comma\r\n@BEST(num, dieroll)"},
      {"@worst(3d6)", "Error: missing comma\r\n@WORST(num, dieroll)"},
      {"@bestlist(3 rolls)", "Error: missing comma\r\n@BESTLIST(num, listname)"},
      {"@wild(5)", "Error: you must roll dice to do wild dice\r\n@WILD(dieroll)"},
      {"@swwild(2+3)", "Error: you must roll dice to do wild dice\r\n@SWWILD(dieroll)"},
      {"@wilddice()", "Error: you must roll dice to do wild dice\r\n@WILDDICE(dieroll)"},
      // Run-time errors inside a handler carry the function's usage.
      {"@best(3, 4d6", "Error: " + kInvalidCall + "\r\n@BEST(num, dieroll)"},
      {"@bestlist(2, x", "Error: " + kInvalidCall + "\r\n@BESTLIST(num, listname)"},
      {"@wild((1d6)", "Error: " + kInvalidCall + "\r\n@WILD(dieroll)"},
      {"@best(40000, 3d6)", "Error: " + kOverflow + "\r\n@BEST(num, dieroll)"},
      {"@lcap(-32769, 3d6)", "Error: " + kOverflow + "\r\n@LCAP(lower capval, dieroll)"},
      {"@best(3, 20000d6)", "Error: " + kOverflow + "\r\n@BEST(num, dieroll)"},
      {"@ucap(3, 20000d6)", "Error: " + kOverflow + "\r\n@UCAP(capval, dieroll)"},
      // A failed nested call keeps its own message.
      {"@best(@foo(1))", "Error: function not found in line:\r\n@foo(1)"},
      {"@limit(1, 6, @wild(5))", "Error: you must roll dice to do wild dice\r\n@WILD(dieroll)"},
      {"@cap(1, @best(9, 2d6",
       "Error: " + kInvalidCall + "\r\n@CAP(low capval, high capval, dieroll)"},
  };
  for (const Case& c : cases) {
    ScriptRandom({});
    std::string line = c.line, details = "earlier details\r\n";
    ProcFunc(line, details, VarStore{});
    EXPECT_EQ(line, "<script error>") << c.line;
    EXPECT_EQ(details, c.details) << c.line;
  }
}

TEST_F(ProcFuncTest, SubstitutionThatTakesAPieceAwayIsARunTimeError) {
  // The list reference x(1,2) reads its index as 1 and swallows a comma.
  VarStore store = StoreWithList("x", {"2"});
  Outcome out = RunLine("@cap(x(1,2),6d6)", {}, store);
  EXPECT_EQ(out.line, "<script error>");
  EXPECT_EQ(out.details, "Error: " + ErrorDescription(ErrNo::SubscriptOutOfRange) +
                             "\r\n@CAP(low capval, high capval, dieroll)");
}

TEST_F(ProcFuncTest, LinesWithoutCallsStayAsTheyAre) {
  for (const char* text : {"", "3d6+2", "no calls here", "(1+2)*3"}) {
    std::string line = text, details = "kept";
    ProcFunc(line, details, VarStore{});
    EXPECT_EQ(line, text);
    EXPECT_EQ(details, "kept");
  }
}

TEST_F(ProcFuncTest, NamesAreFoundByExactEqualityWhateverTheCase) {
  settings.LongResults = false;
  struct Case {
    const char* line;
    std::vector<double> random;
    const char* result;
    const char* trace;
  } cases[] = {
      {"@wild(1d6)", Faces({3}), "+3", "Wild(1d6)=(+3)\r\n"},
      {"@wilddice(1d6)", Faces({3}), "3", "WildDice(1d6)=(+3)=3\r\n"},
      {"@swwild(1d6)", Faces({3}), "3", "SWWild(1d6)=(+[3])=3\r\n"},
      {"@LIMIT(1,6,3d6)", Faces({1, 1, 1}), "3", "Limit(1, 6, 3)=3\r\n"},
      {"@limit (1,6,3d6)", Faces({6, 6, 6}), "6", "Limit(1, 6, 18)=6\r\n"},
      {"@Best ( 1, 2d6 )", Faces({2, 5}), "+5", "Best(1,+2+5)=(+5)\r\n"},
  };
  for (const Case& c : cases) {
    Outcome out = RunLine(c.line, c.random);
    EXPECT_EQ(out.line, c.result) << c.line;
    EXPECT_EQ(out.details, c.trace) << c.line;
  }
}

TEST_F(ProcFuncTest, EveryCallOfALineIsReplacedFromTheLeft) {
  settings.LongResults = false;
  Outcome out = RunLine("2 + @limit(1, 6, 3d6) + 1 - @worst(1, 2d6)", Faces({1, 1, 2, 4, 3}));
  EXPECT_EQ(out.line, "2 +4+ 1 -+3");
  EXPECT_EQ(out.details, "Limit(1, 6, 4)=4\r\nWorst(1,+4+3)=(+3)\r\n");
}

TEST_F(ProcFuncTest, NestedCallsGoFirstAndTraceFirst) {
  struct Case {
    bool longResults;
    const char* details;
  } cases[] = {
      {false, "Limit(2, 5, 7)=5\r\nLimit(1, 6, 5)=5\r\n"},
      {true,
       "1d10= +7= 7\r\nCalc: +7=7\r\nLimit(2, 5, 7)=5\r\n"
       "Calc: +5=5\r\nLimit(1, 6, 5)=5\r\n"},
  };
  for (const Case& c : cases) {
    settings.LongResults = c.longResults;
    Outcome out = RunLine("@limit(1, 6, @limit(2, 5, 1d10))", Faces({7}, 10));
    EXPECT_EQ(out.line, "5");
    EXPECT_EQ(out.details, c.details);
  }
}

TEST_F(ProcFuncTest, TraceLinesStartWithTheDetailsIndent) {
  settings.LongResults = false;
  runFlags.LogPrefix = "    ";
  Outcome out = RunLine("@best(1, @ulimit(3, 1d6)+1d6)", Faces({6, 2}));
  EXPECT_EQ(out.line, "+3");
  EXPECT_EQ(out.details, "    ULimit(3, 6)=3\r\n    Best(1,+3+2)=(+3)\r\n");
}

TEST_F(ProcFuncTest, SplitFunctionCall) {
  struct Case {
    const char* line;
    const char* name;
    const char* left;
    const char* args;
    const char* right;
  } cases[] = {
      {"x+@best(3, 4d6)*2", "@best", "x+", "3, 4d6", "*2"},
      {"  2 + @limit(1, 6, @limit(2, 5, 1d10)) + 1", "@limit", "2 +", "1, 6, @limit(2, 5, 1d10)",
       "+ 1"},
      {"A @Best ( 3,4d6 ) B", "@best", "A", "3,4d6", "B"},
      {"@wild()", "@wild", "", "", ""},
      {"@cap(1, (2), 3d6)(x)", "@cap", "", "1, (2), 3d6", "(x)"},
  };
  for (const Case& c : cases) {
    std::string left, args, right;
    SplitFunctionCall(c.line, c.name, left, args, right);
    EXPECT_EQ(left, c.left) << c.line;
    EXPECT_EQ(args, c.args) << c.line;
    EXPECT_EQ(right, c.right) << c.line;
  }
}

TEST_F(ProcFuncTest, SplitFunctionCallRaisesWhenItCannotCut) {
  std::string left, args, right;
  for (const char* line : {"@best(3, 4d6", "@best(", "no call here"})
    EXPECT_THROW(SplitFunctionCall(line, "@best", left, args, right), RuntimeError) << line;
}

TEST_F(ProcFuncTest, DropEmptyItems) {
  struct Case {
    std::vector<std::string> items, kept;
  } cases[] = {
      {{"", "a", "", "b", ""}, {"", "a", "b"}},     {{"", "", ""}, {""}}, {{""}, {""}}, {{}, {""}},
      {{"", "-2", " ", "3"}, {"", "-2", " ", "3"}},
  };
  for (Case& c : cases) {
    DropEmptyItems(c.items);
    EXPECT_EQ(c.items, c.kept);
  }
}

TEST_F(ProcFuncTest, AnEndlessWildRollEndsWithTheUsersBreak) {
  SetPumpEveryCall(true);
  ui.onPump = [](long pump) {
    if (pump == 200) runFlags.BreakRequested = true;
  };
  // 0d6 rolls no die at all: the re-roll loop itself has to look for the break.
  for (const char* text :
       {"@wild(1d1)", "@wild(0d6)", "@wild(2d1-1d1)", "1+@wilddice(0d6+@wild(1d1))"}) {
    ui.pumps = 0;
    runFlags.BreakRequested = false;
    std::string line = text, details;
    EXPECT_THROW(ProcFunc(line, details, VarStore{}), BreakSignal) << text;
    EXPECT_GE(ui.pumps, 200) << text;
  }
}

TEST_F(ProcFuncTest, ACallThatComesBackEndsWithTheUsersBreak) {
  // The list item is the very call that asks for it.
  VarStore store = StoreWithList("loop", {"@bestlist(1, loop)"});
  SetPumpEveryCall(true);
  ui.onPump = [](long pump) {
    if (pump == 50) runFlags.BreakRequested = true;
  };
  std::string line = "@bestlist(1, loop)", details;
  EXPECT_THROW(ProcFunc(line, details, store), BreakSignal);
}

TEST_F(ProcFuncTest, ACallPastTheSixteenBitRangeIsAnOverflowForTheCaller) {
  std::string line = std::string(40000, ' ') + "1+@best(1, 2d6)", details;
  EXPECT_THROW(ProcFunc(line, details, VarStore{}), RuntimeError);
}

}  // namespace
}  // namespace gandrel::testing
