// The executor: the line loop, the dispatch on the command code, the reports
// of a break and of a run-time error, the start and the end of a run.
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "calc/Markers.h"
#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"
#include "functions/modScriptFunctions.h"
#include "script/ScriptKeywords.h"
#include "script/ScriptRun.h"
#include "script/ScriptWindows.h"
#include "script/modScript.h"

namespace gandrel {

namespace {

constexpr std::string_view kBreakLog = "BREAK: ESC key pressed or Pause 'Cancel' pressed.";

void ReportBreak(ScriptRun& run) {
  run.resultText = kBreakMarker;
  run.logText = kBreakLog;
}

// The run-time error of a line, with the line's number; resultText stays.
void ReportError(ScriptRun& run, const std::string& description) {
  run.errorLine = run.pc;
  run.logText = "Error: " + description;
  run.logText += kCrLf;
  run.logText += "script processing on line " + std::to_string(run.pc);
}

// Before each line: events, and the wait for the pause window. An insisted
// break is the way out when the pause window never goes.
void PumpBetweenLines() {
  Yield();
  while (runFlags.Paused && !runFlags.BreakForced)
    UI().WaitForEvents();
}

// Code 0, and every byte that is no command code: an assignment when the
// text holds "=", otherwise nothing.
void RunOther(ScriptRun& run, std::string& text) {
  if (text.find('=') != std::string::npos) RunAssignment(run, text);
}

void RunPause() {
  runFlags.Paused = true;
  Windows().ShowPause();
}

void Dispatch(ScriptRun& run, ScriptCode code, std::string& text) {
  switch (code) {
    // clang-format off
    case ScriptCode::Other:       RunOther(run, text); break;
    case ScriptCode::If:          RunIf(run, text); break;
    case ScriptCode::EndIf:       break;
    case ScriptCode::For:         RunFor(run, text); break;
    case ScriptCode::Next:        RunNext(run); break;
    case ScriptCode::ExitFor:     RunExitFor(run); break;
    case ScriptCode::Get:         RunGet(run, text); break;
    case ScriptCode::Var:         RunVar(run, text); break;
    case ScriptCode::Die:         RunDie(run, text); break;
    case ScriptCode::Goto:        RunGoto(run, text); break;
    case ScriptCode::Define:      RunDefine(run, text); break;
    case ScriptCode::Display:     RunDisplay(run); break;
    case ScriptCode::BreakOn:     runFlags.BreakEnabled = true; break;
    case ScriptCode::BreakOff:    runFlags.BreakEnabled = false; break;
    case ScriptCode::End:         run.stopped = true; break;
    case ScriptCode::Time:        RunTime(run); break;
    case ScriptCode::ClearLog:    run.logText.clear(); break;
    case ScriptCode::LogOn:       runFlags.LogOn = true; break;
    case ScriptCode::LogOff:      runFlags.LogOn = false; break;
    case ScriptCode::Select:      RunSelect(run, text); break;
    case ScriptCode::EndSelect:   RunEndSelect(run); break;
    case ScriptCode::Case:        RunCase(run, text); break;
    case ScriptCode::CaseIs:      RunCaseIs(run, text); break;
    case ScriptCode::ExitSelect:  RunExitSelect(run); break;
    case ScriptCode::ListBegin:   RunListBegin(run, text); break;
    case ScriptCode::ListEnd:     RunListEnd(run); break;
    case ScriptCode::ListName:    RunListName(run, text); break;
    case ScriptCode::Item:        RunItem(run, text); break;
    case ScriptCode::PickList:    RunPickList(run, text); break;
    case ScriptCode::OpenWindow:  RunOpenWindow(run, text); break;
    case ScriptCode::OpenFile:    RunOpenFile(run, text); break;
    case ScriptCode::CloseWindow: RunCloseWindow(run, text); break;
    case ScriptCode::CloseFile:   RunCloseFile(run, text); break;
    case ScriptCode::Echo:        break;
    case ScriptCode::Print:       RunPrint(run, text, false); break;
    case ScriptCode::PrintNl:     RunPrint(run, text, true); break;
    case ScriptCode::Pause:       RunPause(); break;
    case ScriptCode::ClearWindow: RunClearWindow(run, text); break;
    case ScriptCode::Nothing:     break;
      // clang-format on
  }
}

// The line at pc; a jump before the first line is a bad index.
const std::string& LineAt(const ScriptRun& run) {
  if (run.pc < 1) Raise(ErrNo::SubscriptOutOfRange);
  return run.lines[static_cast<size_t>(run.pc)];
}

// The "@" calls of the line first, then its command.
void RunLine(ScriptRun& run) {
  const std::string& line = LineAt(run);
  if (line.empty()) return;
  ScriptCode code = CodeOf(line);
  std::string text = line.substr(1);
  if (text.find('@') != std::string::npos) {
    ProcFunc(text, run.logText, run.store);
    if (text == kScriptErrorMarker) {
      run.resultText = kScriptErrorMarker;
      StopOnError(run);
      return;
    }
  }
  Dispatch(run, code, text);
}

// Runs the line at pc; false when it ended the run with a break or an error.
bool RunLineTrapped(ScriptRun& run) {
  try {
    std::optional<RuntimeError> error = TrapRuntimeError([&] { RunLine(run); });
    if (!error) return true;
    ReportError(run, error->Description());
  } catch (const BreakSignal&) {
    ReportBreak(run);
  } catch (const std::exception& e) {
    ReportError(run, e.what());
  }
  return false;
}

void RunLines(ScriptRun& run) {
  const auto last = static_cast<int32_t>(run.lines.size()) - 1;
  for (run.pc = 1; run.pc <= last; ++run.pc) {
    PumpBetweenLines();
    run.skip = false;
    if (BreakPending()) return ReportBreak(run);
    if (!RunLineTrapped(run) || run.stopped) return;
  }
}

void StartRun() {
  runFlags.BreakEnabled = true;
  runFlags.BreakRequested = false;
  runFlags.BreakForced = false;
  runFlags.LogPrefix.clear();
  runFlags.ScriptRunning = true;
  UI().SetBusy(true);
}

void EndRun(ScriptRun& run, bool logOnBefore) {
  CloseRunOutputs(run);
  UI().SetBusy(false);
  runFlags.LogOn = logOnBefore;
  runFlags.BreakEnabled = true;
  // A pause window left up by an insisted break holds no later run.
  runFlags.Paused = false;
  runFlags.ScriptRunning = false;
}

}  // namespace

int32_t RunScript(const std::vector<std::string>& lines, std::string& resultText,
                  std::string& logText) {
  ScriptRun run;
  run.lines = lines;
  if (run.lines.empty()) run.lines.emplace_back();
  run.resultText = std::move(resultText);
  run.logText = std::move(logText);
  const bool logOnBefore = runFlags.LogOn;
  StartRun();
  RunLines(run);
  EndRun(run, logOnBefore);
  resultText = std::move(run.resultText);
  logText = std::move(run.logText);
  return run.errorLine;
}

}  // namespace gandrel
