// Fuzzes the executor: the input's lines tokenized and, when every GOTO
// finds its label, run.
//
// The script windows answer every prompt at once (GET a number, PICKLIST
// the preselected item, PAUSE Continue); output windows and files keep
// nothing, and no real file is touched. Every yield pumps, and after a
// few thousand pumps the user insists on a break, which stops any script,
// BREAKOFF or not: no input runs for long.
//
// Checks: nothing crashes or throws; a pick list always has its
// preselected item; after the run the run flags are back (not running,
// breaking on, LogOn as before, no pause) and the log stays in bounds.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "ScriptInput.h"
#include "calc/EngineSettings.h"
#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "calc/UserInterface.h"
#include "dice/Random.h"
#include "script/EngineState.h"
#include "script/ScriptFiles.h"
#include "script/ScriptWindows.h"
#include "script/modScript.h"

namespace {

using namespace gandrel;

constexpr long kPumpsBeforeBreak = 3000;
// A log or a window text that grows past this is a finding of its own.
constexpr size_t kMaxText = size_t{1} << 26;

class InsistingInterface : public UserInterface {
 public:
  MsgAnswer ShowMessage(const std::string&, MsgButtons buttons, MsgIcon,
                        const std::string&) override {
    return buttons == MsgButtons::Ok ? MsgAnswer::Ok : MsgAnswer::Yes;
  }
  void ProcessEvents() override {
    if (++pumps == kPumpsBeforeBreak / 2) runFlags.BreakRequested = true;
    if (pumps >= kPumpsBeforeBreak) runFlags.BreakForced = true;
  }
  long pumps = 0;
};

class Answering final : public ScriptWindows {
 public:
  void GetNumber(const std::string&, const std::string& defaultText) override {
    runFlags.InputValue = EnteredNumber(defaultText) + 1;
  }
  void PickItem(const std::string&, const std::vector<std::string>& items,
                int16_t selected) override {
    if (selected < 1 || static_cast<size_t>(selected) > items.size()) std::abort();
    runFlags.PickIndex = selected;
  }
  void ShowPause() override {
    if (!runFlags.Paused) std::abort();
    runFlags.Paused = false;
    runFlags.PauseEnded = true;
  }
  std::unique_ptr<OutputWindow> OpenOutputWindow(const std::string& name,
                                                 const std::string&) override {
    if (name.empty()) std::abort();
    return DiscardingOutputWindow();
  }
  void Display(const std::string& result, const std::string& log) override {
    if (result.size() > kMaxText || log.size() > kMaxText) std::abort();
  }
};

// Paths that begin with "x" open; others fail, so both ways are taken.
class NoFiles final : public ScriptFileLayer {
 public:
  std::unique_ptr<ScriptFile> Open(const std::string& path, bool overwrite) override {
    if (path.empty()) std::abort();
    if (path.front() != 'x') return nullptr;
    return DiscardingScriptFiles().Open(path, overwrite);
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 4096) return 0;
  static Answering windows;
  static NoFiles files;
  InsistingInterface ui;
  ResetEngineState();
  SeedRandom(size);
  SetUI(&ui);
  SetScriptWindows(&windows);
  SetScriptFiles(&files);
  SetPumpEveryCall(true);
  runFlags.LogOn = size & 1;
  const bool logOnBefore = runFlags.LogOn;

  std::vector<std::string> lines = fuzzing::RawLines(data, size);
  std::string error, result, log;
  TokenizeScript(lines, error);
  if (error.empty()) RunScript(lines, result, log);

  if (runFlags.ScriptRunning || !runFlags.BreakEnabled || runFlags.Paused ||
      runFlags.LogOn != logOnBefore || log.size() > kMaxText)
    std::abort();
  SetUI(nullptr);
  SetScriptWindows(nullptr);
  SetScriptFiles(nullptr);
  ResetEngineState();
  return 0;
}
