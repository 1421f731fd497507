// The per-die lists of the script functions: ExpandMinusSigns, BreakOutDice,
// ReplaceDice and GetDieType.
#include <string>

#include "calc/Basic.h"
#include "calc/EngineSettings.h"
#include "calc/RuntimeError.h"
#include "dice/DieLookup.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

// The position of the first "d" of a term; a text without one is no term.
static long FirstDie(const std::string& lower) {
  long p = InStr(lower, "d");
  if (p == 0) Raise(ErrNo::InvalidProcedureCall);
  return p;
}

void ExpandMinusSigns(std::string& expr) {
  expr = ReplaceAll(expr, "-", "+-");
}

void BreakOutDice(std::string& expr, std::string& before, std::string& term, std::string& after) {
  CheckTextLength(expr);
  std::string lower = LCase(expr);
  long p = FirstDie(lower);
  long start = DigitRunStart(lower, p);
  // Here a Define match decides and DefSeq is asked only without one; the
  // digits after "d" count only when no defined name stands there.
  long named = DefinedNameLengthAt(lower, p);
  long end = named > 0 ? p + named - 1 : DigitRunEnd(lower, p);
  std::string head = Trim(Left(expr, start - 1));
  std::string middle = Trim(Mid(expr, start, end - start + 1));
  std::string tail = Trim(Mid(expr, end + 1));
  before = std::move(head);
  term = std::move(middle);
  after = std::move(tail);
}

void ReplaceDice(std::string& expr, std::string& details) {
  while (InStr(LCase(expr), "d") > 0) {
    std::string before, term, after;
    BreakOutDice(expr, before, term, after);
    std::string dice, termDetails;
    LongGenDice(term, dice, termDetails);
    if (engineSettings.LongResults) details += termDetails;
    expr = Trim(before) + Trim(dice) + Trim(after);
  }
  expr = Trim(expr);
  if (Left(expr, 1) != "+") expr.insert(0, "+");
}

std::string GetDieType(std::string& die) {
  std::string t = LCase(Trim(die));
  CheckTextLength(t);
  long p = FirstDie(t);
  if (long r = FindRangeAt(t, p)) return dieTypes.Define[static_cast<size_t>(r)].Name;
  if (long s = FindListAt(t, p)) return dieTypes.DefSeq[static_cast<size_t>(s)].Name;
  return Mid(t, p + 1, DigitRunEnd(t, p) - p);
}

}  // namespace gandrel
