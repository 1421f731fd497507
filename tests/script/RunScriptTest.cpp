// The executor beyond what the script cases show: failure reports, lines
// that the tokenizer never makes, the run flags around a run, real files.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

#include "ScriptRunning.h"
#include "calc/EngineSettings.h"
#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "dice/Random.h"
#include "script/ScriptKeywords.h"
#include "script/modScript.h"
#include "support/EngineFixture.h"
#include "support/MemoryFiles.h"
#include "support/TempFolder.h"

namespace gandrel::testing {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

class RunScriptTest : public EngineTest {
 protected:
  ScriptOutcome RunLines(const Lines& lines) {
    ScriptOutcome outcome;
    RunScript(lines, outcome.result, outcome.log);
    return outcome;
  }
  MemoryFiles files;
};

const std::string kOpenFileError = "Error trying to open file.\r\nCheck your Open File line";

TEST_F(RunScriptTest, LinesTheTokenizerNeverMakes) {
  struct Case {
    Lines lines;
    std::string result, log;
  } cases[] = {
      // clang-format off
      {{"", "", T(ScriptCode::Other, "result = 3")},                 "3", ""},  // an empty line
      {{"", "result=5"},                                            "",  ""},  // "r": no code, as 0
      {{"", "x=1", T(ScriptCode::Other, "result = 5")},             "5", ""},
      {{"", T(ScriptCode::Goto, "-5")},                             "",
       "Error: Subscript out of range\r\nscript processing on line -4"},
      {{"", T(ScriptCode::Goto, "99999999999")},                    "",
       "Error: Overflow\r\nscript processing on line 1"},
      {{"", T(ScriptCode::Var, ""), T(ScriptCode::Other, "result = 6")},   "6", ""},
      {{"", T(ScriptCode::OpenWindow, ""), T(ScriptCode::Print, ", x")},   "", ""},
      // clang-format on
  };
  engineSettings.LongResults = false;
  for (const Case& c : cases) {
    ScriptOutcome outcome = RunLines(c.lines);
    EXPECT_EQ(std::pair(outcome.result, outcome.log), std::pair(c.result, c.log)) << c.lines[1];
  }
  EXPECT_TRUE(ui.outputs.empty());  // an empty window name opens nothing
}

TEST_F(RunScriptTest, RunFlagsAroundARun) {
  runFlags.LogOn = false;
  runFlags.BreakRequested = runFlags.BreakForced = true;  // left from before: forgotten
  Lines lines = ScriptLinesOf("breakoff\nlogon\nselect 1\nresult = 2\npause");
  std::string error;
  TokenizeScript(lines, error);
  std::vector<bool> running;
  SetPumpEveryCall(true);
  ui.onPump = [&](long) { running.push_back(runFlags.ScriptRunning); };
  EXPECT_EQ(RunLines(lines).result, "2");
  EXPECT_TRUE(!running.empty() && std::ranges::all_of(running, std::identity{}));
  EXPECT_EQ(
      std::tuple(runFlags.ScriptRunning, runFlags.BreakEnabled, runFlags.LogOn, runFlags.Paused),
      std::tuple(false, true, false, false));
  // The pause waited once, and was answered.
  EXPECT_EQ(std::tuple(ui.busyChanges, ui.waits), std::tuple(std::vector<bool>{true, false}, 1));
}

TEST_F(RunScriptTest, RunsItsOwnCopyOfTheLines) {
  Lines lines = {"", T(ScriptCode::Other, "x = 1"), T(ScriptCode::Other, "result = 2")};
  SetPumpEveryCall(true);
  ui.onPump = [&](long) { lines.assign(1, ""); };
  EXPECT_EQ(RunLines(lines).result, "2");
}

// TIME writes "hh:mm:ss" CR LF to the log.
TEST_F(RunScriptTest, TimeWritesTheClock) {
  ScriptOutcome outcome = RunScriptText("time\ntime");
  EXPECT_TRUE(std::regex_match(outcome.log, std::regex("(\\d\\d:\\d\\d:\\d\\d\r\n){2}")))
      << outcome.log;
}

// Opening an open window raises it. A window the user closed is gone:
// opening its name again opens a new one in the slot it had.
TEST_F(RunScriptTest, OpeningAWindowAgain) {
  RunScriptText("open window w\nopen window W\nprint w, 1");
  ASSERT_EQ(ui.outputs.size(), 1u);
  EXPECT_EQ(std::pair(ui.outputs[0]->raised, ui.outputs[0]->text), std::pair(1, std::string("1")));
  SetPumpEveryCall(true);
  ui.onPump = [&](long) {
    if (ui.outputs.size() > 1) ui.outputs[1]->open = false;  // the user closes it
  };
  RunScriptText("open window w\nprint w, 1\nopen window W\nprint w, 2");
  ASSERT_EQ(ui.outputs.size(), 3u);
  EXPECT_EQ(std::tuple(ui.outputs[1]->text, ui.outputs[2]->caption, ui.outputs[2]->text),
            std::tuple("", "Output Window 1: W", "2"));
}

TEST_F(RunScriptTest, FileErrorsAreReportedNotThrown) {
  files.failWrites = true;
  ScriptOutcome outcome = RunScriptText("open file f, x.txt\nresult = 1\nprint f, 2");
  EXPECT_EQ(outcome.result, "1");
  EXPECT_EQ(outcome.log, "Error: Device I/O error\r\nscript processing on line 3");
}

// Real files, in a folder of their own that is the current directory.
class RealFilesTest : public EngineTest {
 protected:
  void SetUp() override {
    EngineTest::SetUp();
    fs::create_directory(folder.Path("Sub"));
    fs::current_path(folder.path());
  }
  void TearDown() override {
    fs::current_path(start);
    EngineTest::TearDown();
  }
  fs::path start = fs::current_path();
  TempFolder folder;
};

TEST_F(RealFilesTest, AppendOverwriteAndFailures) {
  folder.Write("Sub/Log.TXT", "old\r\n");
  folder.Write("new.txt", "old");
  ScriptOutcome outcome = RunScriptText(
      "open file a, Sub\\Log.TXT\nprintnl a, 1 + 1\nprint a, \"x\"\n"
      "open file b, new.txt, over\nprintnl b, \"c\"\nresult = 1");
  EXPECT_EQ(outcome.result, "1");
  EXPECT_EQ(folder.Read("Sub/Log.TXT"), "old\r\n2\r\nx");
  EXPECT_EQ(folder.Read("new.txt"), "c\r\n");
  EXPECT_FALSE(fs::exists(folder.Path("sub/log.txt")));  // the path keeps its case
  // A pipe that nobody reads would hold the run for ever at its opening.
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  alarm(20);
  for (const char* path : {"Sub", "missing/x.txt", "pipe"}) {
    outcome = RunScriptText(std::string("open file a, ") + path);
    EXPECT_EQ(std::tuple(outcome.result, outcome.log), std::tuple("<script error>", kOpenFileError))
        << path;
  }
  alarm(0);
}

}  // namespace
}  // namespace gandrel::testing
