// The highest and the lowest total a dice term can produce, without rolling.
#include <cmath>
#include <string>
#include <vector>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "calc/RuntimeError.h"
#include "calc/modGRCalcs.h"
#include "dice/DieLookup.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

namespace {

enum class Bound { Highest, Lowest };

// The largest (or smallest) item of a list type's items, read as numbers. The
// first item is the candidate; a later one replaces it only when strictly
// beyond it.
double ExtremeItem(const std::string& listText, Bound bound) {
  std::vector<std::string> items;
  SplitText(listText, ',', items);
  Yield();
  double extreme = ReadNumber(items[1]);
  for (size_t i = 2; i < items.size(); ++i) {
    Yield();
    double value = ReadNumber(items[i]);
    if (bound == Bound::Highest ? value > extreme : value < extreme) extreme = value;
  }
  return extreme;
}

double TermBound(const std::string& die, Bound bound) {
  std::string t = LCase(Trim(die));
  CheckTextLength(t);
  if (Left(t, 1) == "d") t = "1" + t;
  // A term without "d" has no count to read: "Invalid procedure call".
  long p = InStr(t, "d");
  double count = ReadNumber(Left(t, p - 1));
  double result;
  if (long r = FindRangeAt(t, p)) {
    const RangeType& type = dieTypes.Define[static_cast<size_t>(r)];
    result = count * (bound == Bound::Highest ? type.Hi : type.Lo);
  } else if (long s = FindListAt(t, p)) {
    result = count * ExtremeItem(dieTypes.DefSeq[static_cast<size_t>(s)].Dice, bound);
  } else {
    // Every plain die shows at least 1, whatever its size.
    result = bound == Bound::Highest ? count * ReadNumber(Mid(t, p + 1)) : count;
  }
  if (!std::isfinite(result)) Raise(ErrNo::Overflow);
  return result;
}

}  // namespace

double GetMaxResult(std::string& die) {
  return TermBound(die, Bound::Highest);
}

double GetMinResult(std::string& die) {
  return TermBound(die, Bound::Lowest);
}

}  // namespace gandrel
