#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "calc/RunFlags.h"
#include "cli/CliFixture.h"
#include "cli/CliRun.h"
#include "cli/CliScripts.h"

namespace gandrel::cli {
namespace {

using Items = std::vector<std::string>;

// The terminal's script windows over memory streams.
struct Terminal : MemoryStreams {
  explicit Terminal(std::string input, bool interactive = false) : MemoryStreams(std::move(input)) {
    windows = std::make_unique<TerminalWindows>(TerminalWindowsSetup{in, out, err, interactive});
  }
  std::unique_ptr<TerminalWindows> windows;
};

class TerminalWindowsTest : public testing::EngineTest {};

// From a pipe, the end of the input, an empty line and the Cancel choice
// are CliRunTest's ScriptPromptsReadTheInputAndWindowsGoToTheOutput cases.
TEST_F(TerminalWindowsTest, GetReadsALineAndEnterOrTheEndKeepsTheDefault) {
  // The input, whether it comes from a terminal, the default, what GET
  // stores and the standard error.
  const std::tuple<std::string, bool, std::string, double, std::string> cases[] = {
      {"   \r\n", false, "15", 15, "Hit points? [15]:    \n"},
      {"-3\r\n4\n", false, "15", -3, "Hit points? [15]: -3\n"},
      {"abc", false, "15", 0, "Hit points? [15]: abc\n"},
      {"7\n", true, "15", 7, "Hit points? [15]: "},  // the terminal shows the answer
      {"", true, "15", 15, "Hit points? [15]: \n"},
  };
  for (const auto& [input, interactive, defaultText, stored, err] : cases) {
    SCOPED_TRACE(input);
    Terminal terminal(input, interactive);
    runFlags.InputValue = 99;
    terminal.windows->GetNumber("Hit points?", defaultText);
    EXPECT_EQ(std::make_tuple(runFlags.InputValue, terminal.Err(), terminal.Out()),
              std::make_tuple(stored, err, ""));
  }
}

TEST_F(TerminalWindowsTest, PickListReadsAChoice) {
  // The input, whether it comes from a terminal, the preselected item and
  // what PICKLIST stores.
  const std::tuple<std::string, bool, int16_t, int16_t> cases[] = {
      {"\n", false, 2, 2},       {" 3 \n", false, 2, 3}, {"x\n1\n", false, 2, 0}, {"", false, 7, 0},
      {"x\n9\n1\n", true, 2, 1}, {"x\n", true, 2, 2},  // then the end of the input
  };
  for (const auto& [input, interactive, selected, stored] : cases) {
    SCOPED_TRACE(input + (interactive ? " (terminal)" : ""));
    Terminal terminal(input, interactive);
    runFlags.PickIndex = 99;
    terminal.windows->PickItem("Weapon?", {"sword", "dagger", "long bow"}, selected);
    EXPECT_EQ(runFlags.PickIndex, stored);
  }

  Terminal again("x\n11\n", true);
  again.windows->PickItem("", Items(10, "d"), 10);
  std::string err = again.Err();
  EXPECT_EQ(err.substr(0, 8), "\n   1. d");
  EXPECT_NE(err.find("\n  10. d\n   0. Cancel\nChoice [10]: Choice [10]: Choice [10]: \n"),
            std::string::npos)
      << err;
}

// Prompts take their answers line by line from the one input; a pause on a
// terminal takes one line. (From a pipe it takes none: CliRunTest's run that
// reads its die values after the script's answers.)
TEST_F(TerminalWindowsTest, PromptsShareTheInputAndPauseWaitsOnATerminal) {
  Terminal terminal("4\n\n5\n", true);
  terminal.windows->GetNumber("a", "1");
  EXPECT_EQ(runFlags.InputValue, 4);
  runFlags.Paused = true;
  terminal.windows->ShowPause();
  EXPECT_EQ(std::make_tuple(runFlags.Paused, runFlags.PauseEnded), std::make_tuple(false, true));
  terminal.windows->GetNumber("b", "1");
  EXPECT_EQ(std::make_tuple(runFlags.InputValue, runFlags.BreakRequested),
            std::make_tuple(5.0, false));
  EXPECT_NE(terminal.Err().find("Paused, please press Enter to continue with the script..."),
            std::string::npos);
}

TEST_F(TerminalWindowsTest, OutputWindowsEchoAsPrintedAndKeepTheirLastText) {
  Terminal terminal("");
  TerminalWindows& w = *terminal.windows;
  auto log = w.OpenOutputWindow("log", "Output Window 1: log");
  auto dice = w.OpenOutputWindow("dice", "Output Window 2: dice");
  log->Print("Round 1");
  dice->Print("4\r\n");
  log->Print(": 14\r\n\r\nend");
  w.Display("17", "the log");
  log->Clear();
  log->Print("kept");
  log->Close();
  log->Print(" not kept");
  dice->Clear();
  EXPECT_EQ(terminal.Out(), "Round 14\n: 14\n\nend\n17\nkept");
  w.FinishLine();
  w.FinishLine();
  EXPECT_EQ(terminal.Out(), "Round 14\n: 14\n\nend\n17\nkept\n");
  EXPECT_EQ(w.WindowsOfRoll(), (TerminalWindows::WindowTexts{{"log", "kept"}, {"dice", ""}}));
  w.OpenOutputWindow("log", "")->Print("two");  // a name opened again: the later window's
  EXPECT_EQ(w.WindowsOfRoll(), (TerminalWindows::WindowTexts{{"log", "two"}, {"dice", ""}}));

  w.StartRoll();
  EXPECT_TRUE(w.WindowsOfRoll().empty());
}

// Ctrl-C while a prompt waits: a break, and the answer stays as it was.
TEST_F(TerminalWindowsTest, CtrlCDuringAPromptIsABreak) {
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);
  MemoryStreams streams("");
  std::fclose(streams.in);
  streams.in = fdopen(fds[0], "r");  // an input that waits
  TerminalWindows windows({streams.in, streams.out, streams.err, false});
  ClearInterrupts();
  InstallInterruptHandler();
  pthread_t prompting = pthread_self();
  std::atomic<bool> answered = false, gaveUp = false;
  // Should the signal come before the prompt waits, the end of the input
  // ends the wait instead, and the test fails rather than hangs.
  std::thread user([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    pthread_kill(prompting, SIGINT);
    for (int i = 0; i < 200 && !answered; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    if ((gaveUp = !answered)) close(fds[1]);
  });
  runFlags.InputValue = 99;
  windows.GetNumber("Hit points?", "15");
  answered = true;
  user.join();
  if (!gaveUp) close(fds[1]);
  std::signal(SIGINT, SIG_DFL);
  EXPECT_EQ(
      std::make_tuple(gaveUp.load(), Interrupted(), runFlags.BreakRequested, runFlags.InputValue),
      std::make_tuple(false, true, true, 99.0));
  ClearInterrupts();
}

}  // namespace
}  // namespace gandrel::cli
