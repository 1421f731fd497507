// What the command handlers share: failing, calculating, logging, finding
// variables.
#include "script/ScriptRun.h"

#include <algorithm>

#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/RunFlags.h"
#include "calc/modGRCalcs.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

void StopOnError(ScriptRun& run) {
  run.stopped = true;
  run.errorLine = run.pc;
}

void Fail(ScriptRun& run, std::string& text) {
  text = kScriptErrorMarker;
  run.resultText = kScriptErrorMarker;
  StopOnError(run);
}

void Fail(ScriptRun& run, std::string& text, std::string_view log) {
  Fail(run, text);
  run.logText = log;
}

double Calculate(ScriptRun& run, std::string& text, std::string& details) {
  ReplaceVars(text, run.store);
  ExpandAllDice(text);
  details.clear();
  return Calc(text, details);
}

void LogDetail(ScriptRun& run, std::string_view detail) {
  run.logText += runFlags.LogPrefix;
  run.logText += detail;
  if (runFlags.LogOn) run.logText += kCrLf;
}

size_t FindVariable(const VarStore& store, std::string_view name) {
  for (size_t i = 1; i < store.varNames.size(); ++i)
    if (store.varNames[i] == name) return i;
  return 0;
}

size_t FindPromptVariable(ScriptRun& run, std::string& name) {
  name = LCase(Trim(name));
  if (size_t found = FindVariable(run.store, name)) return found;
  if (name.empty()) return 0;
  std::string tail = name.substr(1);
  ReplaceVars(tail, run.store);
  name = LCase(name.substr(0, 1) + tail);
  return FindVariable(run.store, name);
}

std::string WithoutQuotes(std::string_view text) {
  std::string out(text);
  std::erase(out, '"');
  return out;
}

}  // namespace gandrel
