// The Roll request's script branches: the editor's script (by a script
// file's name or "<current script>") and one-line scripts.
#include <gtest/gtest.h>

#include "ShellFixture.h"
#include "app/Settings.h"
#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "dice/Random.h"

namespace gandrel::testing {
namespace {

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
    EXPECT_EQ(view.result, result);
    EXPECT_EQ(view.eachResult, eachResult);
    EXPECT_EQ(view.clipboard, " rolls " + result + " on " + typed);
    EXPECT_EQ(ui.Texts(), message.empty() ? Items{} : Items{message});
  }
  EXPECT_EQ(DieHistory, OneBased("Combat.DIE"));
}

TEST_F(ScriptRequestTest, OneLineScripts) {
  const std::pair<const char*, const char*> cases[] = {
      {"=3d6+2", "13"}, {"= \"You rolled \" 1d6", "You rolled 5"}, {"=@foo(1)", "<script error>"}};
  ScriptRandom({FaceToRnd(4, 6), FaceToRnd(1, 6), FaceToRnd(6, 6), FaceToRnd(5, 6)});
  for (const auto& [typed, result] : cases) {
    Roll(typed);
    EXPECT_EQ(view.result, result) << typed;
  }
  EXPECT_EQ(view.eachResult, "Error: function not found in line:\r\nresult=@foo(1)");
  EXPECT_EQ(ScriptLines, (Items{"", std::string(1, '\0') + "result=@foo(1)"}));
}

// The editor is told the line where its script went wrong.
TEST_F(ScriptRequestTest, TheLineWhereTheEditorsScriptStopped) {
  const struct {
    std::string script, typed;
    int32_t line;
  } cases[] = {
      {"x = 1\r\n\r\ngoto nowhere\r\n:there", "<current script>", 3},  // not run
      {"var i\r\nfor i = 1 to 1E20\r\nnext", "fight.die", 2},  // script processing on line 2
      {"result = 1\r\nx = @foo(1)", "<current script>", 2},    // <script error>
      {"next", "<current script>", 1},
      {"result = 1\r\nend\r\nnext", "<current script>", 0},
      {"next", "=@foo(1)", 0},  // a one-line script is not the editor's
      {"next", "2d6", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.script);
    view.script = c.script;
    Roll(c.typed);
    EXPECT_EQ(view.errorLine, c.line);
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
  EXPECT_EQ(view.result, "<break>");
  EXPECT_EQ(view.eachResult, "BREAK: ESC key pressed or Pause 'Cancel' pressed.");
  ui.onPump = [](long) { runFlags.BreakRequested = true; };
  Roll("100d6");
  EXPECT_EQ(view.result, "<break>");
  EXPECT_EQ(view.eachResult, "<break>");
  EXPECT_EQ(view.clipboard, " rolls <break> on 100d6");
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
