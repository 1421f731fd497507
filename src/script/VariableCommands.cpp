// Assignments, VAR, GET, and the two commands that change the die types.
#include <string>

#include "calc/Basic.h"
#include "calc/EngineSettings.h"
#include "calc/Markers.h"
#include "calc/NumberText.h"
#include "calc/RunFlags.h"
#include "calc/modGRCalcs.h"
#include "dice/modDiceCalc.h"
#include "script/ScriptRun.h"
#include "script/ScriptWindows.h"

namespace gandrel {

namespace {

// What an assignment to `result` shows: quoted text as Calc left it, without
// its quotes, or the value.
std::string ResultText(const std::string& expression, bool quoted, double value) {
  if (quoted) return Trim(WithoutQuotes(Trim(expression)));
  return FormatNumber(value);
}

}  // namespace

void RunAssignment(ScriptRun& run, std::string& text) {
  std::string expression = text, name;
  SplitAssignment(expression, name);
  // The first character stays as written, so "x" itself is never replaced.
  std::string tail = Mid(name, 2);
  ReplaceVars(tail, run.store);
  const std::string target = LCase(Left(name, 1) + tail);
  ReplaceVars(expression, run.store);
  const bool quoted = expression.find('"') != std::string::npos;
  ExpandAllDice(expression);
  std::string details;
  double value = Calc(expression, details);
  if (runFlags.LogOn) {
    run.logText += runFlags.LogPrefix;
    run.logText += details;
    run.logText += kCrLf;
  }
  if (size_t variable = FindVariable(run.store, target)) {
    run.store.varValues[variable] = value;
  } else if (target == "result") {
    run.resultText = ResultText(expression, quoted, value);
  } else if (target == "winresult") {
    run.resultText = std::string(kToWindowMarker) + ResultText(expression, quoted, value);
  }
}

void RunVar(ScriptRun& run, std::string& text) {
  ReplaceVars(text, run.store);
  std::string name = LCase(text);
  if (size_t variable = FindVariable(run.store, name)) {
    run.store.varValues[variable] = 0;
    return;
  }
  run.store.varNames.push_back(std::move(name));
  run.store.varValues.push_back(0);
}

void RunGet(ScriptRun& run, std::string& text) {
  std::string name = text, prompt;
  size_t comma = text.find(',');
  if (comma != std::string::npos) {
    name = text.substr(0, comma);
    prompt = Trim(std::string_view(text).substr(comma + 1));
    ReplaceVars(prompt, run.store);
  } else {
    prompt = "Please enter a number for variable " + LCase(Trim(name));
  }
  size_t variable = FindPromptVariable(run, name);
  std::string defaultText = variable ? Trim(FormatNumber(run.store.varValues[variable])) : "";
  runFlags.InputValue = 0;
  Windows().GetNumber(prompt, defaultText);
  if (variable) run.store.varValues[variable] = runFlags.InputValue;
}

void RunDie(ScriptRun&, std::string& text) {
  engineSettings.DieType = text;
}

void RunDefine(ScriptRun&, std::string& text) {
  std::string statement = "define " + text;
  ParseDefine(statement);
}

}  // namespace gandrel
