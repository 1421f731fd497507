#include "dice/DieLookup.h"

#include "calc/Basic.h"
#include "calc/Pump.h"
#include "calc/RuntimeError.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

bool NameMatchesAt(std::string_view name, std::string_view lower, long p) {
  if (p < 1) Raise(ErrNo::InvalidProcedureCall);
  if (name.empty() || p - 1 + Len(name) > Len(lower)) return false;
  for (size_t i = 0; i < name.size(); ++i)
    if (LCaseChar(name[i]) != lower[static_cast<size_t>(p - 1) + i]) return false;
  return true;
}

template <class Table>
static long FindAt(const Table& table, std::string_view lower, long p) {
  for (size_t i = 1; i < table.size(); ++i)
    if (NameMatchesAt(table[i].Name, lower, p)) return static_cast<long>(i);
  return 0;
}

long FindRangeAt(std::string_view lower, long p) {
  return FindAt(dieTypes.Define, lower, p);
}

long FindListAt(std::string_view lower, long p) {
  return FindAt(dieTypes.DefSeq, lower, p);
}

long DefinedNameLengthAt(std::string_view lower, long p) {
  if (long r = FindRangeAt(lower, p)) return Len(dieTypes.Define[static_cast<size_t>(r)].Name);
  if (long s = FindListAt(lower, p)) return Len(dieTypes.DefSeq[static_cast<size_t>(s)].Name);
  return 0;
}

long DigitRunStart(std::string_view text, long p) {
  long start = p;
  while (start > 1 && IsDigit(text[static_cast<size_t>(start - 2)])) {
    Yield();
    --start;
  }
  return start;
}

long DigitRunEnd(std::string_view text, long p) {
  long end = p;
  while (end < Len(text) && IsDigit(text[static_cast<size_t>(end)])) {
    Yield();
    ++end;
  }
  return end;
}

void FindRolledTerm(std::string_view lower, long p, long& start, long& end) {
  start = DigitRunStart(lower, p);
  end = DigitRunEnd(lower, p);
  if (long r = FindRangeAt(lower, p))
    end = p + Len(dieTypes.Define[static_cast<size_t>(r)].Name) - 1;
  if (long s = FindListAt(lower, p))
    end = p + Len(dieTypes.DefSeq[static_cast<size_t>(s)].Name) - 1;
}

void CheckTextLength(std::string_view text) {
  Int16(Len(text));
}

}  // namespace gandrel
