#include "cli/CliRun.h"

#include <signal.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/RunFlags.h"
#include "calc/UserInterface.h"
#include "cli/CliDistribution.h"
#include "cli/CliInteractive.h"
#include "cli/CliJson.h"
#include "cli/CliScripts.h"
#include "dice/Random.h"

namespace gandrel::cli {

namespace {

volatile std::sig_atomic_t interrupts = 0;

extern "C" void OnInterrupt(int) {
  if (interrupts) {
    std::signal(SIGINT, SIG_DFL);
    std::raise(SIGINT);
    return;
  }
  interrupts = 1;
}

// The main window as the terminal keeps it: the texts of the last roll, and
// as its script editor the script file that the roll runs.
class TerminalView final : public MainView {
 public:
  std::string dieValue, result, eachResult, clipboard, script;
  std::vector<std::string> hints;

  std::string DieValueText() const override { return dieValue; }
  void SetDieValueText(const std::string& text) override { dieValue = text; }
  // The terminal shows no drop-down list; the history is kept by the shell.
  void ShowDieList(const std::vector<std::string>&, const std::string& text) override {
    dieValue = text;
  }
  void ShowRoll(const RollOutcome& outcome) override {
    dieValue = outcome.dieValueText;
    result = outcome.result;
    eachResult = outcome.eachResult;
    clipboard = outcome.clipboard;
    hints = outcome.hints;
  }
  std::string ScriptText() const override { return script; }
  void SetScriptText(const std::string&) override {}
  void ShowScriptState(const std::string&, bool) override {}
  std::string AskScriptFile(FileQuestion, const std::string&, const std::string&) override {
    return "";
  }
};

// Messages go to standard error; Ctrl-C reaches the roll as the break flag.
class TerminalUI final : public UserInterface {
 public:
  TerminalUI(FILE* out, FILE* err) : out_(out), err_(err) {}

  MsgAnswer ShowMessage(const std::string& text, MsgButtons buttons, MsgIcon,
                        const std::string&) override {
    std::fflush(out_);
    std::string line = "gandrel: " + UnixLines(text) + "\n";
    std::fwrite(line.data(), 1, line.size(), err_);
    std::fflush(err_);
    // Nobody can answer: a question is cancelled.
    return buttons == MsgButtons::Ok ? MsgAnswer::Ok : MsgAnswer::Cancel;
  }

  void ProcessEvents() override {
    if (interrupts) runFlags.BreakRequested = true;
  }

 private:
  FILE* out_;
  FILE* err_;
};

// Keeps the reason of the first failed write to out (a full disk); true once
// out has failed.
bool NoteWriteError(FILE* out, int& writeError) {
  if (writeError == 0 && std::ferror(out)) writeError = errno != 0 ? errno : EIO;
  return writeError != 0;
}

// Flushes out and returns status, or 1 after telling on err why out could not
// be written: rolls nobody can see must not pass for a success.
int FinishOutput(FILE* out, FILE* err, int writeError, int status) {
  if (std::fflush(out) != 0 && writeError == 0) writeError = errno != 0 ? errno : EIO;
  NoteWriteError(out, writeError);
  if (writeError == 0) return status;
  std::fprintf(err, "gandrel-cli: cannot write to standard output: %s\n",
               std::strerror(writeError));
  return 1;
}

class RollLoop {
 public:
  RollLoop(const CliOptions& options, FILE* out, TerminalView& view, TerminalWindows& windows)
      : options_(options),
        out_(out),
        outIsTerminal_(isatty(fileno(out)) == 1),
        view_(view),
        windows_(windows) {}

  // Rolls dieValue as often as asked; false once the run was interrupted or
  // its output could not be written.
  bool Roll(const std::string& dieValue) {
    for (long k = 0; k < options_.repeat; ++k) {
      windows_.StartRoll();
      view_.SetDieValueText(dieValue);
      if (LoadScript(dieValue)) RollDieValue();
      Print();
      if (IsFailureMarker(view_.result)) status = 1;
      if (interrupts) {
        status = 1;
        return false;
      }
      if (NoteWriteError(out_, writeError)) return false;
    }
    return true;
  }

  // The hints of each result go to err, a line each, after the result.
  void ShowHintsOn(FILE* err) { hintsTo_ = err; }
  // The terminal shows a Ctrl-C as "^C" where the caret stands: a result
  // that follows one begins on the next line of screen.
  void EndCtrlCLineOn(FILE* screen) { screen_ = screen; }

  int status = 0;
  int writeError = 0;  // the reason the output failed, 0 while it did not

 private:
  // A die value naming a script file runs the file: it is read into the
  // stand-in for the script editor. A file that cannot be read is reported
  // and gives an empty result.
  bool LoadScript(const std::string& dieValue) {
    if (!IsScriptFileName(dieValue)) return true;
    std::string name = Trim(dieValue), reason;
    if (ReadScriptFile(name, view_.script, reason)) return true;
    MsgBox("cannot read " + name + ": " + reason);
    view_.result = view_.eachResult = "";
    view_.hints.clear();
    view_.clipboard = " rolls  on " + view_.dieValue;
    status = 1;
    return false;
  }

  void Print() {
    if (screen_ != nullptr && interrupts) {
      std::fputs("\n", screen_);
      std::fflush(screen_);
    }
    text_.clear();
    windows_.FinishLine();
    if (options_.json) {
      text_ = "{\"dieValue\":" + JsonString(view_.dieValue) +
              ",\"result\":" + JsonString(view_.result) +
              ",\"details\":" + JsonString(view_.eachResult) +
              ",\"clipboard\":" + JsonString(view_.clipboard) + WarningsJson() + WindowsJson() +
              "}\n";
    } else {
      text_ = UnixLines(view_.result) + "\n";
      if (!options_.quiet && !view_.eachResult.empty()) {
        text_ += UnixLines(view_.eachResult);
        if (text_.back() != '\n') text_ += '\n';
      }
    }
    std::fwrite(text_.data(), 1, text_.size(), out_);
    if (outIsTerminal_) std::fflush(out_);
    if (hintsTo_ == nullptr || view_.hints.empty()) return;
    std::fflush(out_);
    for (const std::string& hint : view_.hints)
      std::fprintf(hintsTo_, "hint: %s\n", hint.c_str());
    std::fflush(hintsTo_);
  }

  // ',"warnings":[hint, ...]' when the result has hints (the window shows
  // them under the result).
  std::string WarningsJson() const {
    if (view_.hints.empty()) return "";
    std::string json = ",\"warnings\":[";
    for (size_t i = 0; i < view_.hints.size(); ++i) {
      if (i > 0) json += ',';
      json += JsonString(view_.hints[i]);
    }
    return json + "]";
  }

  // ',"windows":{name: text, ...}' when the roll opened output windows.
  std::string WindowsJson() const {
    TerminalWindows::WindowTexts windows = windows_.WindowsOfRoll();
    if (windows.empty()) return "";
    std::string json = ",\"windows\":{";
    for (size_t i = 0; i < windows.size(); ++i) {
      if (i > 0) json += ',';
      json += JsonString(windows[i].first) + ":" + JsonString(windows[i].second);
    }
    return json + "}";
  }

  const CliOptions& options_;
  FILE* out_;
  bool outIsTerminal_;
  TerminalView& view_;
  TerminalWindows& windows_;
  std::string text_;
  FILE* hintsTo_ = nullptr;
  FILE* screen_ = nullptr;
};

// Die values from a pipe or a file, a line each (a terminal has its own
// prompt: CliInteractive.h).
void ReadAndRoll(FILE* in, RollLoop& loop) {
  std::string line;
  while (ReadLine(in, line))
    if (!loop.Roll(line)) return;
  if (interrupts) loop.status = 1;
}

}  // namespace

void NoteInterrupt() {
  interrupts = 1;
}

bool Interrupted() {
  return interrupts != 0;
}

void ClearInterrupts() {
  interrupts = 0;
}

void InstallInterruptHandler() {
  struct sigaction action {};
  action.sa_handler = OnInterrupt;
  sigemptyset(&action.sa_mask);
  // No SA_RESTART: a Ctrl-C at the prompt ends the wait for input.
  action.sa_flags = 0;
  sigaction(SIGINT, &action, nullptr);
}

int RunCli(const CliOptions& options, FILE* in, FILE* out, FILE* err) {
  if (options.configDir) {
    std::error_code ec;
    if (!std::filesystem::is_directory(*options.configDir, ec)) {
      std::fprintf(err, "gandrel-cli: no such folder: %s\n", options.configDir->c_str());
      return 2;
    }
    SetAppDirectory(*options.configDir);
  } else {
    ChooseAppDirectory(ExecutableDirectory());
  }

  TerminalView view;
  TerminalUI ui(out, err);
  TerminalWindowsSetup setup;
  setup.in = in;
  setup.out = out;
  setup.err = err;
  setup.interactive = isatty(fileno(in)) == 1;
  setup.echoWindows = !options.quiet && !options.json;
  setup.echoDisplay = !options.json;
  TerminalWindows windows(setup);
  MainViewScope viewScope(&view);
  UIScope uiScope(&ui);
  ScriptWindowsScope windowsScope(&windows);
  StartUp();
  if (options.seed) SeedRandom(*options.seed);
  if (options.distribution)
    return FinishOutput(out, err, 0, PrintDistributions(options, in, out, err));

  RollLoop loop(options, out, view, windows);
  if (options.dieValues.empty() && setup.interactive) {
    // A person reads the hints as well.
    if (!options.quiet && !options.json) loop.ShowHintsOn(err);
    loop.EndCtrlCLineOn(isatty(fileno(out)) == 1 ? out : err);
    InteractiveSetup session{in, out, err, AppFile(kHistoryFileName)};
    RunInteractive(session, [&](const std::string& dieValue) { return loop.Roll(dieValue); });
  } else if (options.dieValues.empty()) {
    ReadAndRoll(in, loop);
  } else {
    for (const std::string& dieValue : options.dieValues)
      if (!loop.Roll(dieValue)) break;
  }
  return FinishOutput(out, err, loop.writeError, loop.status);
}

int CliMain(int argc, char** argv) {
  std::vector<std::string> args(argv + (argc > 0 ? 1 : 0), argv + argc);
  CliOptions options;
  std::string problem = ParseCliOptions(args, options);
  if (!problem.empty()) {
    std::fprintf(stderr, "gandrel-cli: %s; see gandrel-cli --help\n", problem.c_str());
    return 2;
  }
  if (options.help) {
    std::fputs(CliHelpText().c_str(), stdout);
    return FinishOutput(stdout, stderr, 0, 0);
  }
  if (options.version) {
    std::fputs(CliVersionText().c_str(), stdout);
    return FinishOutput(stdout, stderr, 0, 0);
  }
  // Many rolls into a pipe or a file: a large buffer, no flush per line.
  if (isatty(STDOUT_FILENO) != 1) std::setvbuf(stdout, nullptr, _IOFBF, 1 << 16);
  InstallInterruptHandler();
  return RunCli(options, stdin, stdout, stderr);
}

}  // namespace gandrel::cli
