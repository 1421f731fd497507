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

struct Keeping {
  Keep keep;
  bool fromList;  // the dice text is the items of the list named
  const char* traceName;
};

constexpr Keeping kBest{Keep::Highest, false, "Best("};
constexpr Keeping kWorst{Keep::Lowest, false, "Worst("};
constexpr Keeping kBestList{Keep::Highest, true, "Best("};

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

// Rolls the dice text, keeps num of its terms and puts them in the call's place.
void KeepTerms(FunctionCall& call, const Keeping& keeping) {
  BoundedArgs args;
  if (!ReadBoundedArgs(call, 1, true, args)) return;
  const auto num = static_cast<int16_t>(args.bounds[0]);
  std::string dice =
      keeping.fromList ? ListDiceText(call.store, LCase(Trim(args.dice))) : args.dice;
  ReplaceByTerms(
      call, dice, keeping.traceName + args.Shown(","),
      [&](std::vector<std::string>& terms) { return KeptTerms(terms, num, keeping.keep); });
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
  HandleCall("@best", line, details, store, [](FunctionCall& call) { KeepTerms(call, kBest); });
}

void FuncWorst(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@worst", line, details, store, [](FunctionCall& call) { KeepTerms(call, kWorst); });
}

void FuncBestList(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@bestlist", line, details, store,
             [](FunctionCall& call) { KeepTerms(call, kBestList); });
}

}  // namespace gandrel
