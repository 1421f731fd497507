// The roll request and the die-value history.
#include "app/modGandrel.h"

#include <optional>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"
#include "dice/modDiceCalc.h"
#include "script/RunFlags.h"

namespace gandrel {

std::vector<std::string> DieHistory(1);
std::vector<std::string> AlwaysAddItems(1);

namespace {

// The view in force before a front end installs one: it shows nothing.
class DetachedView final : public MainView {
 public:
  std::string DieValueText() const override { return text_; }
  void SetDieValueText(const std::string& text) override { text_ = text; }
  void SelectAllDieValue() override {}
  void SetResultText(const std::string&) override {}
  void SetEachResultText(const std::string&) override {}
  void SetClipboardText(const std::string&) override {}
  void ClearDieList() override {}
  void AddDieListItem(const std::string&) override {}
  std::string ScriptText() const override { return ""; }

 private:
  std::string text_;
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

// What one request produced, before it is shown.
struct RollOutcome {
  std::string dieValue;
  bool isScript = false;
  std::string resultText;
  std::string logText;
  double value = 0;
};

const char* const kRollTooBig =
    "I'm sorry, but the die result generated is too big for me to handle.";
const char* const kRollAdvice =
    "If rolling a huge die, or number of dice, please use something smaller.";
const char* const kDieValueAdvice =
    "If entering a very long die value, please shorten it or roll it in parts.";
const char* const kResultTooBig =
    "I'm sorry, but the result calculated is too big for me to handle.";
const char* const kScriptsUnavailable = "Scripts are not available in this build.";
const char* const kToWindow = "~TOWIN~";

}  // namespace

void SetMainView(MainView* view) {
  currentView = view ? view : &detached;
}

MainView& View() {
  return *currentView;
}

// A script request: the script language is not part of this build, so every
// script ends as a script error that says so.
static void RunScriptRequest(RollOutcome& roll) {
  roll.isScript = true;
  roll.resultText = "<script error>";
  roll.logText = kScriptsUnavailable;
}

// An error of a request that reached the dice is told as a roll tells its
// own; one met before any die (a die value too long to work on) is no die
// result too big, and is told as the error it is.
static void ReportRollError(const RuntimeError& error, bool reachedDice) {
  if (reachedDice) {
    ShowErrorMessage(error, kRollTooBig, kRollAdvice);
  } else {
    ShowRuntimeErrorMessage(error, kDieValueAdvice);
  }
}

static void RollExpression(RollOutcome& roll) {
  roll.isScript = false;
  std::optional<RuntimeError> error;
  unsigned long long termsBefore = DiceTermsRolled();
  try {
    error = TrapRuntimeError([&] {
      ExpandDice(roll.dieValue);
      if (settings.AddDice) AddToHistory(roll.dieValue);
      View().SetDieValueText(roll.dieValue);
      roll.logText.clear();
      roll.value = Calc(roll.dieValue, roll.logText);
    });
  } catch (const BreakSignal&) {
    roll.dieValue = "<break>";
    return;
  }
  if (error) {
    ReportRollError(*error, DiceTermsRolled() != termsBefore);
    roll.dieValue = "<error>";
  }
}

static void Classify(RollOutcome& roll) {
  std::string lower = LCase(roll.dieValue);
  if (InStr(lower, ".die") > 0) {
    if (settings.AddDice) AddToHistory(roll.dieValue);
    RunScriptRequest(roll);
  } else if (roll.dieValue.empty()) {
    // Nothing to compute: the result shows 0.
  } else if (roll.dieValue == "<current script>") {
    RunScriptRequest(roll);
  } else if (roll.dieValue.front() == '=') {
    if (settings.AddDice) AddToHistory(roll.dieValue);
    RunScriptRequest(roll);
  } else {
    RollExpression(roll);
  }
}

static bool IsFailureMarker(const std::string& text) {
  return text == "<error>" || text == "<calc error>" || text == "<break>";
}

// The result label's text; the each-result text goes to the view.
static std::string Show(RollOutcome& roll) {
  if (IsFailureMarker(roll.dieValue)) {
    View().SetEachResultText(roll.dieValue);
    return roll.dieValue;
  }
  if (roll.isScript) {
    bool toWindow = Left(roll.resultText, 7) == kToWindow;
    if (toWindow) roll.resultText = Mid(roll.resultText, 8);
    View().SetEachResultText(roll.logText);
    if (toWindow) MsgBox(roll.resultText);
    return roll.resultText;
  }
  std::string number;
  if (TrapRuntimeError([&] { number = FormatNumber(roll.value); })) {
    MsgBox(kResultTooBig);
    View().SetEachResultText("<calc error>");
    return "<calc error>";
  }
  View().SetEachResultText(roll.logText);
  return number;
}

void RollDieValue() {
  BusyPointer busy;
  runFlags.BreakRequested = false;
  RollOutcome roll;
  roll.dieValue = Trim(View().DieValueText());
  if (Left(roll.dieValue, 1) == "@") {
    roll.dieValue = "=" + roll.dieValue;
    View().SetDieValueText(roll.dieValue);
  }
  Classify(roll);
  View().SelectAllDieValue();
  std::string result = Show(roll);
  View().SetResultText(result);
  View().SetClipboardText(" rolls " + result + " on " + View().DieValueText());
}

// ---- History ---------------------------------------------------------------

static long IndexIgnoringCase(const std::vector<std::string>& list, const std::string& value) {
  std::string wanted = LCase(value);
  for (size_t i = 1; i < list.size(); ++i)
    if (LCase(list[i]) == wanted) return static_cast<long>(i);
  return 0;
}

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

void AddToHistory(std::string& value) {
  long keepNum = settings.KeepNum;
  if (keepNum <= 0) return;
  if (DieHistory.empty()) DieHistory.emplace_back();
  if (settings.KeepAlways && IndexIgnoringCase(AlwaysAddItems, value) > 0) return;
  long pos = IndexIgnoringCase(DieHistory, value);
  if (pos == 0) {
    InsertNew(DieHistory, value, keepNum);
    if (settings.KeepAlways) WriteBackAlwaysAdd(DieHistory);
  } else {
    MoveEntry(DieHistory, pos, value);
  }
  View().ClearDieList();
  for (size_t i = 1; i < DieHistory.size(); ++i)
    View().AddDieListItem(DieHistory[i]);
  View().SetDieValueText(value);
}

}  // namespace gandrel
