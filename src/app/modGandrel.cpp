// The roll request and the die-value history.
#include "app/modGandrel.h"

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "app/RollHints.h"
#include "app/Settings.h"
#include "app/TextLists.h"
#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/NumberText.h"
#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"
#include "dice/modDiceCalc.h"
#include "script/ScriptKeywords.h"
#include "script/modScript.h"

namespace gandrel {

std::vector<std::string> DieHistory(1);
std::vector<std::string> AlwaysAddItems(1);

namespace {

// The view in force before a front end installs one: it shows nothing.
class DetachedView final : public MainView {
 public:
  std::string DieValueText() const override { return text_; }
  void SetDieValueText(const std::string& text) override { text_ = text; }
  void ShowDieList(const std::vector<std::string>&, const std::string& text) override {
    text_ = text;
  }
  void ShowRoll(const RollOutcome& outcome) override { text_ = outcome.dieValueText; }
  std::string ScriptText() const override { return script_; }
  void SetScriptText(const std::string& text) override { script_ = text; }
  void ShowScriptState(const std::string&, bool) override {}
  std::string AskScriptFile(FileQuestion, const std::string&, const std::string&) override {
    return "";
  }

 private:
  std::string text_, script_;
};

DetachedView detached;
MainView* currentView = &detached;

// The busy pointer for the length of a request, whatever way it ends.
class BusyPointer {
 public:
  BusyPointer() { UI().SetBusy(true); }
  ~BusyPointer() { UI().SetBusy(false); }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
};

// One request under way: the die value as the request rewrites it, what the
// die-value box holds, and what the request produced.
struct Request {
  std::string dieValue;
  std::string boxText;
  bool isScript = false;
  bool listChanged = false;
  std::string resultText;
  std::string logText;
  double value = 0;
  int32_t scriptErrorLine = 0;
  EvalFailure failure;  // why Calc's evaluation failed, for the hints
};

}  // namespace

void SetMainView(MainView* view) {
  currentView = view ? view : &detached;
}

MainView& View() {
  return *currentView;
}

// ---- History ---------------------------------------------------------------

// Entries 2..last take the values of the entries above them; value goes first.
static void PushOnTop(std::vector<std::string>& h, long last, const std::string& value) {
  for (long i = last; i >= 2; --i)
    h[i] = h[i - 1];
  h[1] = value;
}

// Entries first..last-1 take the values of the entries below them; value goes last.
static void PushAtBottom(std::vector<std::string>& h, long first, long last,
                         const std::string& value) {
  for (long i = first; i <= last - 1; ++i)
    h[i] = h[i + 1];
  h[last] = value;
}

// A new entry: the list grows while there is room, otherwise the entry at
// the far end from the new one drops out.
static void InsertNew(std::vector<std::string>& h, const std::string& value, long keepNum) {
  long count = static_cast<long>(h.size()) - 1;
  bool room = count < keepNum;
  if (room) {
    h.emplace_back();
    ++count;
  }
  long last = room ? count : keepNum;
  if (settings.NewFirst) {
    PushOnTop(h, last, value);
  } else {
    PushAtBottom(h, room ? count : 1, last, value);
  }
}

// The always-add items go back to their home places, so that the entry that
// left a full list was the oldest ordinary one. Places outside the list (the
// list may be shorter than the items after KeepNum was lowered) are skipped.
static void WriteBackAlwaysAdd(std::vector<std::string>& h) {
  long count = static_cast<long>(h.size()) - 1;
  long a = static_cast<long>(AlwaysAddItems.size()) - 1;
  for (long i = 1; i <= a; ++i) {
    long at = settings.NewFirst ? count - a + i : i;
    if (at >= 1 && at <= count) h[at] = AlwaysAddItems[i];
  }
}

// An entry already listed moves to the end where new entries go.
static void MoveEntry(std::vector<std::string>& h, long pos, const std::string& value) {
  long count = static_cast<long>(h.size()) - 1;
  if (settings.NewFirst) {
    PushOnTop(h, pos, value);
  } else {
    PushAtBottom(h, pos, count, value);
  }
}

// The history rules; true when the history changed (and the list must be
// rebuilt).
static bool UpdateHistory(const std::string& value) {
  long keepNum = settings.KeepNum;
  if (keepNum <= 0) return false;
  if (DieHistory.empty()) DieHistory.emplace_back();
  if (settings.KeepAlways && IndexIgnoringCase(AlwaysAddItems, value) > 0) return false;
  long pos = IndexIgnoringCase(DieHistory, value);
  if (pos == 0) {
    InsertNew(DieHistory, value, keepNum);
    if (settings.KeepAlways) WriteBackAlwaysAdd(DieHistory);
  } else {
    MoveEntry(DieHistory, pos, value);
  }
  return true;
}

std::vector<std::string> DieListEntries() {
  if (DieHistory.size() <= 1) return {};
  return std::vector<std::string>(DieHistory.begin() + 1, DieHistory.end());
}

void AddToHistory(std::string& value) {
  if (UpdateHistory(value)) View().ShowDieList(DieListEntries(), value);
}

// ---- The request -------------------------------------------------------------

// Inside a request the history's list is rebuilt once, with the outcome, and
// the die-value box takes the value as the history rules say.
static void KeepInHistory(Request& request, const std::string& value) {
  if (!settings.AddDice || !UpdateHistory(value)) return;
  request.listChanged = true;
  request.boxText = value;
}

// The editor's script (named by a script file's name, or "<current
// script>"): split into lines, tokenized, and run unless a GOTO names no
// label; then the tokenizer's "<error>" takes the die value's place.
static void RunEditorScript(Request& request) {
  request.isScript = true;
  SplitScriptText();
  std::string tokenError;
  request.scriptErrorLine = TokenizeScript(ScriptLines, tokenError);
  if (!tokenError.empty()) {
    request.dieValue = tokenError;
    return;
  }
  request.resultText.clear();
  request.logText.clear();
  request.scriptErrorLine = RunScript(ScriptLines, request.resultText, request.logText);
}

// A die value beginning with "=": the one line "result" & die value, built
// already tokenized (code 0, an assignment).
static std::vector<std::string> OneLineScript(const std::string& dieValue) {
  return {std::string(), std::string(1, '\0') + "result" + dieValue};
}

static void RunOneLineScript(Request& request) {
  request.isScript = true;
  ScriptLines = OneLineScript(request.dieValue);
  request.resultText.clear();
  request.logText.clear();
  RunScript(ScriptLines, request.resultText, request.logText);
}

// An error of a request that reached the dice is told as a roll tells its
// own; one met before any die (a die value too long to work on) is no die
// result too big, and is told as the error it is.
static void ReportRollError(const RuntimeError& error, bool reachedDice) {
  if (reachedDice) {
    ShowErrorMessage(error, kRollTooBigMessage, kRollingAdvice);
  } else {
    ShowRuntimeErrorMessage(error, kDieValueAdvice);
  }
}

// An expression: its default dice filled in and kept in the history (unless
// that was done before, expanded), then rolled and calculated.
static void RollExpression(Request& request, bool expanded = false) {
  request.isScript = false;
  std::optional<RuntimeError> error;
  unsigned long long termsBefore = DiceTermsRolled();
  try {
    error = TrapRuntimeError([&] {
      if (!expanded) {
        ExpandDice(request.dieValue);
        KeepInHistory(request, request.dieValue);
        request.boxText = request.dieValue;
      }
      request.logText.clear();
      request.value = Calc(request.dieValue, request.logText, request.failure);
    });
  } catch (const BreakSignal&) {
    request.dieValue = kBreakMarker;
    return;
  }
  if (error) {
    ReportRollError(*error, DiceTermsRolled() != termsBefore);
    request.dieValue = kErrorMarker;
  }
}

static void Classify(Request& request) {
  const std::string& dieValue = request.dieValue;
  if (IsScriptFileName(dieValue)) {
    KeepInHistory(request, dieValue);
    RunEditorScript(request);
  } else if (dieValue.empty()) {
    // Nothing to compute: the result shows 0.
  } else if (dieValue == kCurrentScript) {
    RunEditorScript(request);
  } else if (dieValue.front() == '=') {
    KeepInHistory(request, dieValue);
    RunOneLineScript(request);
  } else {
    RollExpression(request);
  }
}

// The result label's text and the each-result text; a "~TOWIN~" result also
// goes to toWindow.
static void Show(Request& request, RollOutcome& outcome, std::optional<std::string>& toWindow) {
  if (IsFailureMarker(request.dieValue)) {
    outcome.result = outcome.eachResult = request.dieValue;
    return;
  }
  if (request.isScript) {
    bool marked = Left(request.resultText, 7) == kToWindowMarker;
    if (marked) request.resultText = Mid(request.resultText, 8);
    outcome.result = request.resultText;
    outcome.eachResult = request.logText;
    if (marked) toWindow = request.resultText;
    return;
  }
  if (TrapRuntimeError([&] { outcome.result = FormatNumber(request.value); })) {
    MsgBox(std::string(kResultTooBigMessage));
    outcome.result = outcome.eachResult = kCalcErrorMarker;
    return;
  }
  outcome.eachResult = request.logText;
}

// The hints come last, from copies: whatever goes wrong in them costs the
// hints, never the roll.
static std::vector<std::string> HintsFor(const std::string& typed, const std::string& result,
                                         const EvalFailure& failure) {
  try {
    return RollHints(typed, result, failure);
  } catch (const std::exception&) {
    return {};
  } catch (const BreakSignal&) {
    return {};
  }
}

static RollOutcome WorkOut(const std::string& typed, std::optional<std::string>& toWindow) {
  runFlags.BreakRequested = false;
  runFlags.BreakForced = false;
  Request request;
  request.boxText = typed;
  request.dieValue = Trim(typed);
  if (Left(request.dieValue, 1) == "@") {
    request.dieValue = "=" + request.dieValue;
    request.boxText = request.dieValue;
  }
  Classify(request);
  RollOutcome outcome;
  Show(request, outcome, toWindow);
  outcome.dieValueText = request.boxText;
  outcome.listChanged = request.listChanged;
  outcome.scriptErrorLine = request.scriptErrorLine;
  if (request.listChanged) outcome.dieList = DieListEntries();
  outcome.clipboard = " rolls " + outcome.result + " on " + outcome.dieValueText;
  outcome.hints = HintsFor(typed, outcome.result, request.failure);
  return outcome;
}

// ---- One die value rolled many times ------------------------------------------

// What the result label shows for a request worked out to its end.
static std::string ResultShown(Request& request) {
  RollOutcome outcome;
  std::optional<std::string> toWindow;
  Show(request, outcome, toWindow);
  return outcome.result;
}

RepeatedRoll::RepeatedRoll(const std::string& dieValue) {
  Request request;
  request.dieValue = Trim(dieValue);
  if (Left(request.dieValue, 1) == "@") request.dieValue = "=" + request.dieValue;
  const std::string& value = request.dieValue;
  if (IsScriptFileName(value) || value == kCurrentScript) {
    request.isScript = true;
    SplitScriptText();
    lines_ = ScriptLines;
    std::string tokenError;
    TokenizeScript(lines_, tokenError);
    if (!tokenError.empty()) {
      request.dieValue = tokenError;
      text_ = ResultShown(request);
      return;
    }
    kind_ = Kind::Script;
    for (const std::string& line : lines_)
      changesDieTypes_ =
          changesDieTypes_ || CodeOf(line) == ScriptCode::Die || CodeOf(line) == ScriptCode::Define;
  } else if (value.empty()) {
    text_ = ResultShown(request);
  } else if (value.front() == '=') {
    kind_ = Kind::Script;
    lines_ = OneLineScript(value);
  } else if (TrapRuntimeError([&] { ExpandDice(request.dieValue); })) {
    text_ = kErrorMarker;
  } else {
    kind_ = Kind::Expression;
    text_ = request.dieValue;
  }
}

std::string RepeatedRoll::Roll() {
  Request request;
  switch (kind_) {
    case Kind::Fixed:
      return text_;
    case Kind::Script:
      request.isScript = true;
      RunScript(lines_, request.resultText, request.logText);
      break;
    case Kind::Expression:
      request.dieValue = text_;
      RollExpression(request, true);
      break;
  }
  return ResultShown(request);
}

RollOutcome WorkOutRoll(const std::string& dieValue) {
  if (runFlags.ScriptRunning) {
    RollOutcome untouched;
    untouched.dieValueText = dieValue;
    return untouched;
  }
  std::optional<std::string> toWindow;
  return WorkOut(dieValue, toWindow);
}

void RollDieValue() {
  // The running script pumps events: a Roll meanwhile does nothing.
  if (runFlags.ScriptRunning) return;
  BusyPointer busy;
  std::optional<std::string> toWindow;
  RollOutcome outcome = WorkOut(View().DieValueText(), toWindow);
  View().ShowRoll(outcome);
  if (toWindow) MsgBox(*toWindow);
}

}  // namespace gandrel
