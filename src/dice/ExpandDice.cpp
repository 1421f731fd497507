// Completing dice without a size: ExpandDice and ExpandAllDice.
#include <string>
#include <string_view>

#include "calc/Basic.h"
#include "calc/EngineSettings.h"
#include "calc/Pump.h"
#include "dice/DieLookup.h"
#include "dice/QuoteCut.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

// Gives the "d" at p the default die; returns the position right after the
// inserted text. A default die with its own letter ("d10", "dfudge") takes
// the place of the "d", a bare size ("6") goes right after it.
static long InsertDefaultDie(std::string& expr, std::string& lower, long p) {
  const std::string& type = engineSettings.DieType;
  size_t at = static_cast<size_t>(p - 1);
  if (LCase(Left(type, 1)) == "d") {
    expr.replace(at, 1, type);
    lower.replace(at, 1, LCase(type));
    CheckTextLength(expr);
    return p + Len(type);
  }
  expr.insert(at + 1, type);
  lower.insert(at + 1, LCase(type));
  CheckTextLength(expr);
  return p + 1 + Len(type);
}

void ExpandDice(std::string& expr) {
  CheckTextLength(expr);
  std::string lower = LCase(expr);
  long p = InStr(lower, "d");
  while (p >= 1) {
    Yield();
    long next = p + 1;
    bool sized = p + 1 <= Len(lower) && IsDigit(lower[static_cast<size_t>(p)]);
    if (!sized) {
      // The search goes on after a defined name, or after the inserted die.
      long named = DefinedNameLengthAt(lower, p);
      next = named > 0 ? p + named : InsertDefaultDie(expr, lower, p);
    }
    p = InStr(next, lower, "d");
  }
}

void ExpandAllDice(std::string& line) {
  CheckTextLength(line);
  // Every stretch from one double quote to the next (or to the end) is kept
  // as written; what lies between such stretches is expanded.
  std::string rest = line, out;
  QuoteCut cut;
  while (CutAtQuote(rest, cut)) {
    ExpandDice(cut.before);
    out += cut.before;
    out += cut.quoted;
    rest = std::move(cut.after);
  }
  ExpandDice(rest);
  out += rest;
  line = std::move(out);
}

}  // namespace gandrel
