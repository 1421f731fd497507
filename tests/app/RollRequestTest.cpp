// The Roll request: the history it keeps, what it shows, and its script
// branches.
#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "ShellFixture.h"
#include "app/Settings.h"
#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"

namespace gandrel::testing {
namespace {

using HistoryTest = ShellTest;

TEST_F(HistoryTest, Rules) {
  // Lists are written as blank-separated entries.
  struct Case {
    int keepNum;
    bool newFirst, keepAlways;
    const char *always, *history, *value, *expected;
    bool rebuilt;
  } cases[] = {
      // clang-format off
      {3, false, false, "b",   "a b c",   "B",   "a c B",   true},   // moves (KeepAlways off)
      {3, true,  false, "",    "a b c",   "C",   "C a b",   true},
      {5, false, false, "",    "a",       "b",   "a b",     true},
      {2, false, false, "",    "a b c d", "e",   "b e c d", true},   // past a lowered KeepNum
      {3, false, true,  "3d6", "3d6 x",   "3D6", "3d6 x",   false},  // always-add item
      {0, false, false, "",    "a",       "b",   "a",       false},  // no history kept
      {2, true,  true,  "x",   "a b x",   "c",   "c a x",   true},   // always-add stays at the bottom
      {3, true,  true,  "x",   "x",       "a",   "a x",     true},
      {1, false, true,  "x y", "",        "a",   "x",       true},   // more items than places
      // clang-format on
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.history) + " + " + c.value);
    StartLists(c.keepNum, c.newFirst, c.always, c.history);
    settings.KeepAlways = c.keepAlways;
    std::string value = c.value;
    AddToHistory(value);
    Items expected = OneBased(c.expected);
    EXPECT_EQ(std::make_tuple(DieHistory, view.list, view.dieValue),
              std::make_tuple(expected, Listed(c.rebuilt, expected), c.rebuilt ? c.value : ""));
  }
}

using RollRequestTest = ShellTest;

TEST_F(RollRequestTest, Outcomes) {
  // The editor is empty: a script file's name and "<current script>" run it.
  // What one-line scripts show with dice is the calculator tests' (the
  // exact outcomes through the request).
  const std::string best = "4d6= +6+1+3+2= 12\r\nBest(2,+6+1+3+2)=(+6+3)\r\n",
                    foo = "Error: function not found in line:\r\nresult=@foo(1)";
  // Typed, the die value shown, the result, its details, the history.
  const std::string cases[][5] = {
      // clang-format off
      {"  2+3 ",           "2+3",              "5",              "Calc: 2+3=5",   "2+3"},
      {"",                 "",                 "0",              "",              ""},
      {"d",                "d6",               "4",              "d6= +4= 4\r\nCalc: 4=4", "d6"},
      {"2+",               "2+",               "<calc error>",   "<calc error>",  "2+"},
      {"@best(2,4d6)",     "=@best(2,4d6)",    "9",              best,            "=@best(2,4d6)"},
      {"FOO.DIE",          "FOO.DIE",          "",               "",              "FOO.DIE"},
      {"<current script>", "<current script>", "",               "",              ""},
      {"=@foo(1)",         "=@foo(1)",         "<script error>", foo,             "=@foo(1)"},
      // clang-format on
  };
  runFlags.BreakRequested = true;  // a break of an earlier roll is forgotten
  ScriptRandom({FaceToRnd(4, 6), FaceToRnd(6, 6), FaceToRnd(1, 6), FaceToRnd(3, 6),
                FaceToRnd(2, 6)});  // the bare die, then @best's four
  for (const auto& [typed, dieValue, result, eachResult, history] : cases) {
    SCOPED_TRACE(typed);
    DieHistory.assign(1, "");
    Roll(typed);
    EXPECT_EQ(
        std::make_tuple(view.dieValue, view.result, view.eachResult, DieHistory, view.clipboard),
        std::make_tuple(dieValue, result, eachResult, OneBased(history),
                        " rolls " + result + " on " + dieValue));
  }
  // A one-line script runs as a script of its own, not the editor's.
  EXPECT_EQ(ScriptLines, (Items{"", std::string(1, '\0') + "result=@foo(1)"}));
  EXPECT_TRUE(ui.messages.empty());
  EXPECT_EQ(view.rolls, 8);  // each outcome shown once
  settings.AddDice = false;
  DieHistory.assign(1, "");
  Roll("3d6");
  Roll("=1");
  Roll("x.die");
  EXPECT_EQ(DieHistory, Items{""});  // none of the three kinds added
}

std::string Repeated(const std::string& text, int times) {
  std::string out;
  for (int i = 0; i < times; ++i)
    out += text;
  return out;
}

// A die value too long to work on fails before any die is rolled: no die
// result was too big, and the message names the error. One that a rolled
// total makes too long fails after the dice, as a roll too big.
TEST_F(RollRequestTest, ErrorsBeforeAndAfterTheDice) {
  std::string define = "define dx = 100000000 to 100000000";
  ParseDefine(define);
  const std::string tooLong =
      "I'm sorry, but the following error has occurred:\rOverflow\r\r"
      "If entering a very long die value, please shorten it or roll it in parts.";
  const std::pair<std::string, std::string> cases[] = {
      {std::string(40000, '1'), tooLong},
      // Each bare "d" grows to "d6" before anything is rolled.
      {Repeated("d+", 10923) + "1", tooLong},
      {"dx+" + std::string(32764, '1'),  // 32,767 characters before the roll
       "I'm sorry, but the die result generated is too big for me to handle."},
  };
  for (const auto& [typed, message] : cases) {
    SCOPED_TRACE(typed.substr(0, 8));
    ui.messages.clear();
    ui.busyChanges.clear();
    Roll(typed);
    // The busy pointer goes.
    EXPECT_EQ(
        std::make_tuple(view.result, view.eachResult, ui.Texts(), ui.busyChanges),
        std::make_tuple("<error>", "<error>", Items{message}, std::vector<bool>{true, false}));
  }
}

// The script branches: the editor's script (by a script file's name or
// "<current script>") and one-line scripts.
using ScriptRequestTest = ShellTest;

// A script file's name runs the editor's script too, whatever its name; a
// GOTO without its label runs nothing; winresult shows in a message box too.
TEST_F(ScriptRequestTest, TheEditorsScriptRuns) {
  // The script, the die value, the result, its details and the message shown.
  const std::string cases[][5] = {
      {"var x\r\nx = 3d6\r\nlogon\r\nresult = x + 1\r\n", "<current script>", "16",
       "Calc: 15 + 1=16\r\n", ""},
      {"var x\r\nx = 3d6\r\nresult = x + 1\r\n", "Combat.DIE", "4", "", ""},
      {"result = 1\r\ngoto nowhere", "<current script>", "<error>", "<error>",
       "Label for GOTO not found at line 2"},
      {"winresult = 6 * 7", "<current script>", "42", "", "42"},
  };
  ScriptRandom({FaceToRnd(6, 6), FaceToRnd(5, 6), FaceToRnd(4, 6), FaceToRnd(1, 6), FaceToRnd(1, 6),
                FaceToRnd(1, 6)});
  for (const auto& [script, typed, result, eachResult, message] : cases) {
    SCOPED_TRACE(script);
    ui.messages.clear();
    view.script = script;
    Roll(typed);
    EXPECT_EQ(std::make_tuple(view.result, view.eachResult, view.clipboard, ui.Texts()),
              std::make_tuple(result, eachResult, " rolls " + result + " on " + typed,
                              message.empty() ? Items{} : Items{message}));
  }
  EXPECT_EQ(DieHistory, OneBased("Combat.DIE"));
}

// The editor is told the line where its script went wrong.
TEST_F(ScriptRequestTest, TheLineWhereTheEditorsScriptStopped) {
  // The script, the die value and the line the editor is told (0: none).
  const std::tuple<std::string, std::string, int32_t> cases[] = {
      {"x = 1\r\n\r\ngoto nowhere\r\n:there", "<current script>", 3},  // not run
      {"result = 1\r\nx = @foo(1)", "fight.die", 2},                   // <script error>
      {"result = 1\r\nend\r\nnext", "<current script>", 0},
      {"next", "=@foo(1)", 0},  // a one-line script is not the editor's
  };
  for (const auto& [script, typed, line] : cases) {
    view.script = script;
    Roll(typed);
    EXPECT_EQ(view.errorLine, line) << script;
  }
}

// Escape breaks a script as it breaks a roll: "<break>" and no message.
TEST_F(ScriptRequestTest, EscapeBreaksTheScriptOrTheRoll) {
  view.script = "var i\r\nfor i = 1 to 10000\r\nnext\r\nresult = i";
  SetPumpEveryCall(true);
  ui.onPump = [](long pump) {
    if (pump == 5000) runFlags.BreakRequested = true;
  };
  Roll("<current script>");
  EXPECT_EQ(std::make_tuple(view.result, view.eachResult),
            std::make_tuple("<break>", "BREAK: ESC key pressed or Pause 'Cancel' pressed."));
  ui.onPump = [](long) { runFlags.BreakRequested = true; };
  Roll("100d6");
  EXPECT_EQ(std::make_tuple(view.result, view.eachResult, view.clipboard),
            std::make_tuple("<break>", "<break>", " rolls <break> on 100d6"));
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(ScriptRequestTest, WhileAScriptRunsTheShellRefusesWhatItsEventsAsk) {
  StartUp();
  view.script = "var i\r\nfor i = 1 to 100\r\nnext\r\nresult = i";
  scriptEditor.Modified = false;
  int calls = 0;
  SetPumpEveryCall(true);
  ui.onPump = [&](long) {
    if (!runFlags.ScriptRunning) return;
    ++calls;
    view.dieValue = "2+2";
    RollDieValue();
    EXPECT_EQ(WorkOutRoll("2+2").result, "");
    NewScript();
    LoadScriptFile();
    EXPECT_FALSE(SaveScriptAs());
    PickDieValue("3d6");
  };
  Roll("<current script>");
  EXPECT_GT(calls, 100);  // at every line of the run
  EXPECT_EQ(view.rolls, 1);
  EXPECT_EQ(view.result, "101");
  EXPECT_EQ(view.script, "var i\r\nfor i = 1 to 100\r\nnext\r\nresult = i");
  EXPECT_TRUE(view.fileQuestions.empty());
}

}  // namespace
}  // namespace gandrel::testing
