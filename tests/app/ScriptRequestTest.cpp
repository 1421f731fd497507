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

TEST_F(ScriptRequestTest, TheEditorsScriptRuns) {
  view.script = "var x\r\nx = 3d6\r\nlogon\r\nresult = x + 1\r\n";
  ScriptRandom({FaceToRnd(6, 6), FaceToRnd(5, 6), FaceToRnd(4, 6), FaceToRnd(1, 6), FaceToRnd(1, 6),
                FaceToRnd(1, 6)});
  Roll("<current script>");
  EXPECT_EQ(view.result, "16");
  EXPECT_EQ(view.eachResult, "Calc: 15 + 1=16\r\n");
  EXPECT_EQ(view.clipboard, " rolls 16 on <current script>");
  // A script file's name runs the editor's script too, whatever its name.
  Roll("Combat.DIE");
  EXPECT_EQ(view.result, "4");
  EXPECT_EQ(DieHistory, OneBased("Combat.DIE"));
  EXPECT_EQ(ScriptLines.size(), 6u);  // 1-based, the empty END line last
}

TEST_F(ScriptRequestTest, OneLineScripts) {
  const struct {
    std::string typed, result;
  } cases[] = {
      {"=3d6+2", "13"},
      {"= \"You rolled \" 1d6", "You rolled 5"},
      {"=@foo(1)", "<script error>"},
  };
  ScriptRandom({FaceToRnd(4, 6), FaceToRnd(1, 6), FaceToRnd(6, 6), FaceToRnd(5, 6)});
  for (const auto& c : cases) {
    Roll(c.typed);
    EXPECT_EQ(view.result, c.result) << c.typed;
  }
  EXPECT_EQ(view.eachResult, "Error: function not found in line:\r\nresult=@foo(1)");
  EXPECT_EQ(ScriptLines, (Items{"", std::string(1, '\0') + "result=@foo(1)"}));
}

TEST_F(ScriptRequestTest, AGotoWithoutItsLabelRunsNothing) {
  view.script = "result = 1\r\ngoto nowhere";
  Roll("<current script>");
  EXPECT_EQ(view.result, "<error>");
  EXPECT_EQ(view.eachResult, "<error>");
  EXPECT_EQ(view.clipboard, " rolls <error> on <current script>");
  EXPECT_EQ(ui.Texts(), Items{"Label for GOTO not found at line 2"});
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

TEST_F(ScriptRequestTest, WinresultShowsInAMessageBoxToo) {
  view.script = "winresult = 6 * 7";
  Roll("<current script>");
  EXPECT_EQ(view.result, "42");
  EXPECT_EQ(ui.Texts(), Items{"42"});
}

TEST_F(ScriptRequestTest, EscapeBreaksTheScript) {
  view.script = "var i\r\nfor i = 1 to 10000\r\nnext\r\nresult = i";
  SetPumpEveryCall(true);
  ui.onPump = [](long pump) {
    if (pump == 5000) runFlags.BreakRequested = true;
  };
  Roll("<current script>");
  EXPECT_EQ(view.result, "<break>");
  EXPECT_EQ(view.eachResult, "BREAK: ESC key pressed or Pause 'Cancel' pressed.");
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
