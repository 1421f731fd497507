// gandrel-cli at a terminal: the prompt's commands, the history file, and
// the program itself driven through a pseudo-terminal.
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/CliInteractive.h"
#include "support/TempFolder.h"

namespace gandrel::cli {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

TEST(CliInteractive, CommandsOfThePromptAndHistoryFileLines) {
  const std::pair<const char*, PromptCommand> cases[] = {{" HELP ", PromptCommand::Help},
                                                         {"quit", PromptCommand::Quit},
                                                         {"Exit", PromptCommand::Quit},
                                                         {"exit 2", PromptCommand::None}};
  for (const auto& [line, command] : cases)
    EXPECT_EQ(CommandOf(line), command) << line;
  // The history file: blank lines left out, the oldest lines dropped.
  EXPECT_EQ(HistoryLines("3d6\r\n\n  \n=@best(3,4d6)\nd20"),
            (Lines{"3d6", "=@best(3,4d6)", "d20"}));
  std::string many;
  for (int i = 0; i < kMostHistoryLines + 5; ++i)
    many += std::to_string(i) + "\n";
  Lines kept = HistoryLines(many);
  ASSERT_EQ(kept.size(), static_cast<size_t>(kMostHistoryLines));
  EXPECT_EQ(kept.front(), "5");  // the oldest go
}

// gandrel-cli on a pseudo-terminal, as a person at a terminal runs it.
class Session {
 public:
  explicit Session(const fs::path& config) {
    winsize size{};
    size.ws_row = 24;
    size.ws_col = 100;
    pid_ = forkpty(&master_, nullptr, nullptr, &size);
    if (pid_ == 0) {
      setenv("TERM", "xterm", 1);
      execl(GANDREL_CLI_PROGRAM, GANDREL_CLI_PROGRAM, "--config", config.c_str(),
            static_cast<char*>(nullptr));
      _exit(127);
    }
  }
  ~Session() {
    if (pid_ > 0 && !ended_) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
    if (master_ >= 0) close(master_);
  }

  bool Started() const { return pid_ > 0; }

  void Type(const std::string& keys) {
    ASSERT_EQ(write(master_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  // Reads the screen until text appears after what was waited for before;
  // false after ten seconds.
  bool WaitFor(const std::string& text) {
    auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (screen_.find(text, seen_) == std::string::npos) {
      if (std::chrono::steady_clock::now() > end || !ReadSome()) return false;
    }
    seen_ = screen_.find(text, seen_) + text.size();
    return true;
  }

  // Waits for the program to end; its exit status, or -1.
  int Wait() {
    for (int i = 0; i < 1000; ++i) {
      int status = 0;
      if (waitpid(pid_, &status, WNOHANG) == pid_) {
        ended_ = true;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      }
      if (!ReadSome()) usleep(10000);  // nothing more to read: the program is ending
    }
    return -1;
  }

  const std::string& Screen() const { return screen_; }

 private:
  bool ReadSome() {
    pollfd fd{master_, POLLIN, 0};
    if (poll(&fd, 1, 10) <= 0) return true;
    char buffer[4096];
    ssize_t n = read(master_, buffer, sizeof buffer);
    if (n <= 0) return false;
    screen_.append(buffer, static_cast<size_t>(n));
    return true;
  }

  pid_t pid_ = -1;
  int master_ = -1;
  bool ended_ = false;
  std::string screen_;
  size_t seen_ = 0;
};

size_t Count(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

const char* const kPrompt = "gandrel> ";
const char* const kUp = "\x1b[A";
const char* const kCtrlC = "\x03";

class CliTerminalTest : public ::testing::Test {
 protected:
  std::string History() const { return config.Read(kHistoryFileName); }
  // Types keys and Enter; true once shown, then the next prompt, are on the screen.
  static bool Enter(Session& s, const std::string& keys, const std::string& shown) {
    s.Type(keys + "\r");
    return s.WaitFor(shown) && s.WaitFor(kPrompt);
  }
  testing::TempFolder config;
  // A script that runs until it is broken.
  std::string loop = config.Write("loop.die", ":top\r\ngoto top\r\n");
};

TEST_F(CliTerminalTest, CtrlCBreaksBackToThePromptAndUpRecalls) {
  {
    Session s(config.path());
    ASSERT_TRUE(s.Started());
    ASSERT_TRUE(s.WaitFor(kPrompt));
    ASSERT_TRUE(Enter(s, "2+3", "Calc: 2+3=5"));
    // Ctrl-C breaks the roll once and comes back to the prompt.
    s.Type(loop + "\r");
    ASSERT_TRUE(s.WaitFor(loop));
    usleep(200000);
    s.Type(kCtrlC);
    ASSERT_TRUE(s.WaitFor("<break>") && s.WaitFor(kPrompt)) << s.Screen();
    EXPECT_EQ(Count(s.Screen(), "<break>"), 1u);
    // Up twice recalls the line before the last.
    ASSERT_TRUE(Enter(s, std::string(kUp) + kUp, "Calc: 2+3=5")) << s.Screen();
    // Ctrl-C clears a typed line, and a second one at the empty prompt ends.
    s.Type("4d6k3");
    ASSERT_TRUE(s.WaitFor("4d6k3"));
    s.Type(kCtrlC);
    ASSERT_TRUE(s.WaitFor("(To end, press Ctrl-C again or Ctrl-D, or type quit.)"));
    ASSERT_TRUE(s.WaitFor(kPrompt)) << s.Screen();
    s.Type(kCtrlC);
    EXPECT_EQ(s.Wait(), 1);  // a roll ended in <break>
    EXPECT_EQ(Count(s.Screen(), "Calc: 4d6"), 0u) << s.Screen();
  }
  EXPECT_EQ(History(), "2+3\n" + loop + "\n2+3\n");
  // The next session recalls the lines of the last; hints are shown, help
  // helps, and quit ends.
  Session s(config.path());
  ASSERT_TRUE(s.WaitFor(kPrompt));
  ASSERT_TRUE(Enter(s, kUp, "Calc: 2+3=5"));
  ASSERT_TRUE(Enter(s, "2d1k3", "hint: \"k3\" was ignored"));
  ASSERT_TRUE(Enter(s, "help", "Ctrl-R searches them"));
  s.Type("quit\r");
  EXPECT_EQ(s.Wait(), 0);
  EXPECT_EQ(History(), "2+3\n" + loop + "\n2+3\n2d1k3\nhelp\nquit\n");
}

// A history file that cannot be read is told about once and not written
// over; the session goes on, and Ctrl-D at the prompt ends it.
TEST_F(CliTerminalTest, AHistoryFileThatCannotBeRead) {
  fs::create_directory(config.Path(kHistoryFileName));  // a folder in its place
  Session s(config.path());
  ASSERT_TRUE(s.WaitFor(kPrompt));
  ASSERT_TRUE(Enter(s, "1+1\r2+2", "Calc: 2+2=4"));
  // The editor takes the terminal out of line mode right after the prompt:
  // a Ctrl-D before that would be the line mode's end of input, and lost.
  usleep(200000);
  s.Type("\x04");
  EXPECT_EQ(s.Wait(), 0) << s.Screen();
  EXPECT_EQ(Count(s.Screen(), "gandrel-cli: cannot"), 1u) << s.Screen();
  EXPECT_TRUE(fs::is_directory(config.Path(kHistoryFileName)));
}

}  // namespace
}  // namespace gandrel::cli
