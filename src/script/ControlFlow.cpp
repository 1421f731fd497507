// The commands that change which line runs next, and the block skips.
#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "calc/Basic.h"
#include "calc/EngineSettings.h"
#include "calc/Markers.h"
#include "calc/NumberText.h"
#include "calc/RunFlags.h"
#include "calc/modGRCalcs.h"
#include "dice/modDiceCalc.h"
#include "script/ScriptKeywords.h"
#include "script/ScriptRun.h"

namespace gandrel {

namespace {

constexpr std::string_view kForUsage = "FOR var = x TO y STEP stepval";

int32_t LastLine(const ScriptRun& run) {
  return static_cast<int32_t>(run.lines.size()) - 1;
}

// The line after pc that ends a block: an opener adds a level, a closer at
// level 0 ends the scan (deeper, it drops a level); with atCase, a CASE or
// CASEIS at level 0 ends it too. 0 when the scan runs off the end.
int32_t FindBlockEnd(const ScriptRun& run, ScriptCode opener, ScriptCode closer, bool atCase) {
  long depth = 0;
  for (auto i = static_cast<size_t>(run.pc) + 1; i < run.lines.size(); ++i) {
    ScriptCode code = CodeOf(run.lines[i]);
    if (code == opener) {
      ++depth;
    } else if (code == closer) {
      if (depth == 0) return static_cast<int32_t>(i);
      --depth;
    } else if (atCase && depth == 0 && (code == ScriptCode::Case || code == ScriptCode::CaseIs)) {
      return static_cast<int32_t>(i);
    }
  }
  return 0;
}

// The line found runs next; none found ends the run.
void SkipTo(ScriptRun& run, int32_t found) {
  run.pc = found > 0 ? found - 1 : LastLine(run);
}

bool BeginsWithCalc(const std::string& details) {
  return LCase(Left(details, 4)) == "calc";
}

// "Calc: 1=1=-1" reads "If : 1=1: True".
std::string IfDetail(std::string details) {
  if (!BeginsWithCalc(details)) return details;
  details.replace(0, 4, "If ");
  if (details.ends_with("= 0")) {
    details.replace(details.size() - 3, 3, ": False");
  } else if (details.ends_with("=0")) {
    details.replace(details.size() - 2, 2, ": False");
  } else if (details.ends_with("=-1")) {
    details.replace(details.size() - 3, 3, ": True");
  }
  return details;
}

// The value of a text whose variables are already substituted, rounded to
// a whole number (half to even).
int32_t WholeValue(std::string text) {
  ExpandAllDice(text);
  std::string details;
  return CLng(Calc(text, details));
}

// The value of a CASE item whose variables and dice are already expanded.
double ItemValue(std::string text) {
  std::string details;
  return Calc(text, details);
}

bool CaseMatches(const std::string& values, double value) {
  std::vector<std::string> items;
  SplitText(values, ',', items);
  for (size_t i = 1; i < items.size(); ++i) {
    const std::string& item = items[i];
    long to = InStr(item, " to ");
    if (to == 0) {
      if (ItemValue(item) == value) return true;
      continue;
    }
    double lo = ItemValue(Left(item, to - 1));
    double hi = ItemValue(Mid(item, to + 4));
    if (lo <= value && value <= hi) return true;
  }
  return false;
}

// The value a CASE compares with; 0 outside any SELECT.
double SelectValue(const ScriptRun& run) {
  return run.selectStack.empty() ? 0 : run.selectStack.back();
}

void SetIndent(long width) {
  runFlags.LogPrefix.assign(static_cast<size_t>(std::max(0L, width)), ' ');
}

std::string Answer(bool matched) {
  return matched ? ": Yes" : ": No";
}

}  // namespace

void RunIf(ScriptRun& run, std::string& text) {
  std::string details;
  double value = Calculate(run, text, details);
  LogDetail(run, IfDetail(details));
  run.skip = value != -1;
  if (run.skip) SkipTo(run, FindBlockEnd(run, ScriptCode::If, ScriptCode::EndIf, false));
}

void RunFor(ScriptRun& run, std::string& text) {
  std::string range = text, name;
  SplitAssignment(range, name);
  std::string tail = Mid(name, 2);
  ReplaceVars(tail, run.store);
  name = LCase(Trim(Left(name, 1) + tail));
  size_t counter = FindVariable(run.store, name);
  if (counter == 0) {
    return Fail(run, text,
                "Error: FOR counter variable " + name + " not created (use VAR)" +
                    std::string(kCrLf) + std::string(kForUsage));
  }
  ReplaceVars(range, run.store);
  long to = InStr(LCase(range), "to");
  if (to == 0)
    return Fail(run, text,
                "Error: Missing TO in FOR loop" + std::string(kCrLf) + std::string(kForUsage));
  ForLoop loop{run.pc, name};
  int32_t start = WholeValue(Trim(Left(range, to - 1)));
  std::string rest = Trim(Mid(range, to + 2));
  long step = InStr(LCase(rest), "step");
  if (step > 0) {
    loop.limit = WholeValue(Left(rest, step - 1));
    loop.step = WholeValue(Mid(rest, step + 4));
  } else {
    loop.limit = WholeValue(rest);
    loop.step = start < loop.limit ? 1 : -1;
  }
  loop.stepNotNegative = loop.step >= 0;
  Int16(static_cast<long>(run.forStack.size()) + 1);
  run.forStack.push_back(std::move(loop));
  run.store.varValues[counter] = start;
}

void RunNext(ScriptRun& run) {
  if (run.forStack.empty()) {
    run.resultText = kScriptErrorMarker;
    run.logText = "Error in the script" + std::string(kCrLf) + "NEXT without FOR";
    StopOnError(run);
    return;
  }
  const ForLoop& loop = run.forStack.back();
  // Variables are never removed, so the counter is always there.
  double& value = run.store.varValues[FindVariable(run.store, loop.name)];
  value += loop.step;
  bool ended = loop.stepNotNegative ? value > loop.limit : value < loop.limit;
  if (ended) {
    run.forStack.pop_back();
  } else {
    run.pc = loop.line;
  }
}

void RunExitFor(ScriptRun& run) {
  if (run.forStack.empty()) return;
  int32_t next = FindBlockEnd(run, ScriptCode::For, ScriptCode::Next, false);
  run.pc = next > 0 ? next : LastLine(run);
  run.forStack.pop_back();
}

void RunGoto(ScriptRun& run, std::string& text) {
  run.pc = std::min(CLng(ReadNumber(text)), LastLine(run));
}

void RunSelect(ScriptRun& run, std::string& text) {
  std::string details;
  double value = Calculate(run, text, details);
  if (BeginsWithCalc(details)) LogDetail(run, "Select: " + FormatNumber(value));
  Int16(static_cast<long>(run.selectStack.size()) + 1);
  SetIndent(Len(runFlags.LogPrefix) + engineSettings.MarginIncrement);
  run.selectStack.push_back(value);
}

void RunCase(ScriptRun& run, std::string& text) {
  const double value = SelectValue(run);
  bool matched = LCase(text) == "else";
  if (!matched) {
    ReplaceVars(text, run.store);
    ExpandAllDice(text);
    text = LCase(text);
    matched = CaseMatches(text, value);
  }
  run.skip = !matched;
  if (!run.selectStack.empty() && runFlags.LogOn)
    LogDetail(run, "Is: " + FormatNumber(value) + " = " + text + Answer(matched));
  if (run.skip) SkipTo(run, FindBlockEnd(run, ScriptCode::Select, ScriptCode::EndSelect, true));
}

void RunCaseIs(ScriptRun& run, std::string& text) {
  const double value = SelectValue(run);
  ReplaceVars(text, run.store);
  ExpandAllDice(text);
  std::string comparison = FormatNumber(value) + text, details;
  bool matched = Calc(comparison, details) == -1;
  run.skip = !matched;
  if (!run.selectStack.empty() && runFlags.LogOn && BeginsWithCalc(details))
    LogDetail(run, "Is: " + comparison + Answer(matched));
  if (run.skip) SkipTo(run, FindBlockEnd(run, ScriptCode::Select, ScriptCode::EndSelect, true));
}

void RunExitSelect(ScriptRun& run) {
  if (run.selectStack.empty()) return;
  SkipTo(run, FindBlockEnd(run, ScriptCode::Select, ScriptCode::EndSelect, false));
}

void RunEndSelect(ScriptRun& run) {
  if (run.selectStack.empty()) return;
  SetIndent(Len(runFlags.LogPrefix) - engineSettings.MarginIncrement);
  if (runFlags.LogOn) LogDetail(run, "End Select: " + FormatNumber(run.selectStack.back()));
  run.selectStack.pop_back();
  run.skip = false;
}

}  // namespace gandrel
