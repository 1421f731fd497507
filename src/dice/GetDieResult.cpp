// Rolling one dice term: GetDieResult, LongGetDieResults and LongGenDice.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "calc/Basic.h"
#include "calc/EngineSettings.h"
#include "calc/Markers.h"
#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"
#include "calc/modGRCalcs.h"
#include "dice/DiceText.h"
#include "dice/DieLookup.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "dice/modPARSER.h"

namespace gandrel {

namespace {

unsigned long long diceTermsRolled = 0;

// How a list type's items are cut apart: GetDieResult uses the token-list
// splitter, LongGetDieResults the text helper. Both keep empty items.
enum class ItemSplit { TokenList, SplitText };

// Rolls count dice, each showing face(r) for a fresh r, and returns their
// sum; with a list, appends each die to it. The loop variable is a double, so
// a fractional count rolls its whole part. Each die first yields, and a break
// requested meanwhile ends the roll.
template <class Face>
double RollEach(double count, const Face& face, DiceList* dice) {
  double total = 0;
  if (dice) {
    for (double i = 1; i <= count; i += 1) {
      YieldCheckBreak();
      double value = face(Rnd());
      dice->Add(value);
      total += value;
    }
  } else {
    for (double i = 1; i <= count; i += 1) {
      YieldCheckBreak();
      total += face(Rnd());
    }
  }
  return total;
}

// Below 2^53 every whole number is a double, and sums of whole numbers are
// exact. So when no die can show more than bound (in magnitude) and
// count * bound stays below 2^53, the double loop above computes the same
// numbers as a loop over whole numbers, which runs faster: its running total
// is an integer, not a double that each yield would have to spill.
constexpr double kExactWhole = 9007199254740992.0;

bool SumsStayExact(double count, double bound) {
  return count < kExactWhole && std::floor(std::max(count, 0.0)) * bound < kExactWhole;
}

template <class Face>
double RollWhole(double count, const Face& face, DiceList* dice) {
  const int64_t n = count >= 1 ? static_cast<int64_t>(count) : 0;
  int64_t total = 0;
  if (dice) {
    for (int64_t i = 0; i < n; ++i) {
      YieldCheckBreak();
      int64_t value = face(Rnd());
      dice->Add(value);
      total += value;
    }
  } else {
    for (int64_t i = 0; i < n; ++i) {
      YieldCheckBreak();
      total += face(Rnd());
    }
  }
  return static_cast<double>(total);
}

// floor(x) as a whole number, for |x| well below 2^63.
inline int64_t FloorWhole(double x) {
  int64_t t = static_cast<int64_t>(x);
  return t - (static_cast<double>(t) > x);
}

double RollRange(double count, int32_t lo, int32_t hi, DiceList* dice) {
  // The width is a 32-bit integer; a wider range cannot be rolled. It is
  // formed at the first die, so a count of 0 never meets it.
  int64_t width = int64_t{hi} - int64_t{lo} + 1;
  if (count >= 1 && width > INT32_MAX) Raise(ErrNo::Overflow);
  const double w = static_cast<double>(width), low = lo;
  double bound = std::max(std::fabs(low), std::fabs(static_cast<double>(hi))) + 1;
  if (SumsStayExact(count, bound))
    return RollWhole(
        count, [w, low](double r) { return FloorWhole(r * w + low); }, dice);
  return RollEach(
      count, [w, low](double r) { return std::floor(r * w + low); }, dice);
}

double RollPlain(double count, double size, DiceList* dice) {
  // r * size + 1 is at least 1 here, so truncation is its floor.
  if (size >= 0 && SumsStayExact(count, size + 1))
    return RollWhole(
        count, [size](double r) { return static_cast<int64_t>(r * size + 1); }, dice);
  return RollEach(
      count, [size](double r) { return std::floor(r * size + 1); }, dice);
}

// The items of a list type, read as numbers when first rolled (an item that
// is never rolled is never read, and so can never fail the roll).
class ListItems {
 public:
  ListItems(const std::string& listText, ItemSplit split) {
    if (split == ItemSplit::TokenList) {
      int16_t count = 0;
      ParseList(listText, ",", count, items_);
    } else {
      SplitText(listText, ',', items_);
    }
    values_.resize(items_.size());
    known_.resize(items_.size());
  }
  double Count() const { return static_cast<double>(items_.size() - 1); }
  double Value(size_t index) const {
    if (!known_[index]) {
      values_[index] = ReadNumber(items_[index]);
      known_[index] = 1;
    }
    return values_[index];
  }

 private:
  std::vector<std::string> items_;
  mutable std::vector<double> values_;
  mutable std::vector<char> known_;
};

double RollList(double count, const ListItems& items, DiceList* dice) {
  const double n = items.Count();
  return RollEach(
      count,
      [&items, n](double r) {
        return items.Value(static_cast<size_t>(CInt(std::floor(r * n + 1))));
      },
      dice);
}

// Rolls the term t (trimmed, lower-cased, with its count) and returns the total.
double RollTerm(const std::string& t, ItemSplit split, DiceList* dice) {
  long p = InStr(t, "d");
  double count = ReadNumber(Left(t, p - 1));
  double total;
  if (long r = FindRangeAt(t, p)) {
    const RangeType& type = dieTypes.Define[static_cast<size_t>(r)];
    total = RollRange(count, type.Lo, type.Hi, dice);
  } else if (long s = FindListAt(t, p)) {
    // A copy of the items: events run during the roll, and may redefine types.
    ListItems items(dieTypes.DefSeq[static_cast<size_t>(s)].Dice, split);
    total = RollList(count, items, dice);
  } else {
    total = RollPlain(count, ReadNumber(Mid(t, p + 1)), dice);
  }
  // A sum beyond the range of a double is a total too large.
  if (!std::isfinite(total)) Raise(ErrNo::Overflow);
  return total;
}

// "die= +4+1+6= 11" CR LF, put in front of what details holds.
void PutDetailLine(const std::string& die, const std::string& diceText, double total,
                   std::string& details) {
  std::string line;
  line.reserve(die.size() + diceText.size() + 32);
  line += die;
  line += "= ";
  line += diceText;
  line += "= ";
  AppendNumberText(line, total);
  line += "\r\n";
  if (details.empty()) {
    details = std::move(line);
  } else {
    details.insert(0, line);
  }
}

void ReportRollFailure(const RuntimeError& error) {
  ShowErrorMessage(error, kRollTooBigMessage, kRollingAdvice);
}

// The common steps of both rolling procedures. dice receives the list of
// single dice when wanted (always, or only with long results on).
double RollDieTerm(std::string& die, std::string& details, std::string* diceOut, ItemSplit split) {
  ++diceTermsRolled;
  double total = 0;
  auto error = TrapRuntimeError([&] {
    std::string t = LCase(Trim(die));
    CheckTextLength(t);
    if (t.empty()) return;
    if (t[0] == 'd') t = "1" + t;
    bool wantList = diceOut || engineSettings.LongResults;
    DiceList list;
    total = RollTerm(t, split, wantList ? &list : nullptr);
    if (engineSettings.LongResults) PutDetailLine(die, list.Text(), total, details);
    if (diceOut) *diceOut = std::move(list.Text());
  });
  if (error) {
    ReportRollFailure(*error);
    total = 0;
    die = kErrorMarker;
  }
  return total;
}

}  // namespace

unsigned long long DiceTermsRolled() {
  return diceTermsRolled;
}

double GetDieResult(std::string& die, std::string& details) {
  return RollDieTerm(die, details, nullptr, ItemSplit::TokenList);
}

double LongGetDieResults(std::string& die, std::string& dice, std::string& details) {
  dice.clear();
  return RollDieTerm(die, details, &dice, ItemSplit::SplitText);
}

void LongGenDice(const std::string& expr, std::string& dice, std::string& details) {
  dice.clear();
  CheckTextLength(expr);
  std::string lower = LCase(expr);
  long p = InStr(lower, "d");
  if (p == 0) return;
  long start = 0, end = 0;
  FindRolledTerm(lower, p, start, end);
  std::string term = Mid(expr, start, end - start + 1);
  std::string termDetails;
  LongGetDieResults(term, dice, termDetails);
  if (term == kErrorMarker) return;
  if (engineSettings.LongResults) details += termDetails;
}

}  // namespace gandrel
