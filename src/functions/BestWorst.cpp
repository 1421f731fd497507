// @best, @worst and @bestlist: the highest or lowest terms of a roll.

#include <cmath>
#include <utility>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "calc/modEvaluate.h"
#include "functions/HandlerFrame.h"
#include "functions/TermList.h"
#include "functions/modScriptFunctions.h"

namespace gandrel {

namespace {

enum class Keep { Highest, Lowest };

// The terms to keep, written out as a sum: all of them in rolled order when
// there are no more than num, else the num highest (highest first) or the num
// lowest (lowest first).
std::string KeptTerms(std::vector<std::string>& terms, int16_t num, Keep keep) {
  const long count = Int16(static_cast<long>(terms.size()) - 1);
  std::string kept;
  if (count <= num) {
    for (long i = 1; i <= count; ++i)
      AppendTerm(kept, terms[i]);
    return kept;
  }
  SortByValue(terms);
  if (keep == Keep::Highest) {
    for (long i = count; i >= count - num + 1; --i)
      AppendTerm(kept, terms[i]);
  } else {
    for (long i = 1; i <= num; ++i)
      AppendTerm(kept, terms[i]);
  }
  return kept;
}

// Rolls the dice text, keeps num of its terms and puts them in the call's place.
void KeepTerms(FunctionCall& call, std::string dice, int16_t num, Keep keep,
               const char* traceName) {
  dice = PerDieText(std::move(dice), call.details);
  call.BeginTrace(traceName + FormatNumber(num) + "," + dice + ")=");
  std::vector<std::string> terms = SplitTerms(dice);
  std::string kept = KeptTerms(terms, num, keep);
  FoldSigns(kept);
  call.details += "(" + kept + ")" + kCrLf;
  call.Finish(kept);
}

void KeepFromRoll(FunctionCall& call, Keep keep, const char* traceName) {
  if (!RequireComma(call)) return;
  SubstituteVariables(call);
  std::string num, dice;
  CutAtFirstComma(call.args, num, dice);
  KeepTerms(call, dice, WholeBound(num), keep, traceName);
}

// The dice text of every list of that name: its items one after the other,
// nothing put between them (so items are expected to carry their signs).
std::string ListDiceText(const VarStore& store, const std::string& name) {
  std::string dice;
  for (size_t i = 1; i < store.listNames.size() && i < store.listItems.size(); ++i) {
    if (LCase(store.listNames[i]) != name) continue;
    for (char c : store.listItems[i])
      if (c != '\0') dice += c;
  }
  return dice;
}

}  // namespace

void SortByValue(std::vector<std::string>& items) {
  const long count = items.empty() ? 0 : Int16(static_cast<long>(items.size()) - 1);
  // A text's value never changes while it is sorted: read each one once and
  // move the values and a permutation of the texts together.
  std::vector<double> values(static_cast<size_t>(count) + 1);
  std::vector<long> order(static_cast<size_t>(count) + 1);
  for (long i = 1; i <= count; ++i) {
    values[i] = ReadNumber(items[i]);
    order[i] = i;
  }
  long gap = count;
  for (;;) {
    gap = static_cast<long>(std::floor(gap / 1.3));
    if (gap < 1) gap = 1;
    bool swapped = false;
    for (long i = 1; i + gap <= count; ++i) {
      // Written without a branch: whether two random dice swap cannot be
      // predicted, and a mispredicted jump costs more than both moves.
      const double a = values[i], b = values[i + gap];
      const long p = order[i], q = order[i + gap];
      const bool swap = b < a;
      values[i] = swap ? b : a;
      values[i + gap] = swap ? a : b;
      order[i] = swap ? q : p;
      order[i + gap] = swap ? p : q;
      swapped |= swap;
    }
    Yield();
    if (gap == 1 && !swapped) break;
  }
  std::vector<std::string> sorted(static_cast<size_t>(count) + 1);
  for (long i = 1; i <= count; ++i)
    sorted[i] = std::move(items[order[i]]);
  for (long i = 1; i <= count; ++i)
    items[i] = std::move(sorted[i]);
}

void FuncBest(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@best", line, details, store,
             [](FunctionCall& call) { KeepFromRoll(call, Keep::Highest, "Best("); });
}

void FuncWorst(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@worst", line, details, store,
             [](FunctionCall& call) { KeepFromRoll(call, Keep::Lowest, "Worst("); });
}

void FuncBestList(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@bestlist", line, details, store, [](FunctionCall& call) {
    if (!RequireComma(call)) return;
    SubstituteVariables(call);
    std::string num, listName;
    CutAtFirstComma(call.args, num, listName);
    int16_t kept = WholeBound(num);
    KeepTerms(call, ListDiceText(call.store, LCase(Trim(listName))), kept, Keep::Highest, "Best(");
  });
}

}  // namespace gandrel
