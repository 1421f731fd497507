#include "dist/FunctionCalls.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/RuntimeError.h"
#include "dice/DiceText.h"
#include "dice/modDiceCalc.h"
#include "dist/DiceArgument.h"
#include "dist/Enumerate.h"
#include "dist/Exploding.h"
#include "dist/Expression.h"
#include "dist/KeepDice.h"
#include "dist/TermDist.h"
#include "dist/Work.h"
#include "functions/HandlerFrame.h"
#include "functions/WildArgument.h"
#include "functions/modScriptFunctions.h"

namespace gandrel {

namespace {

enum class Family { Keep, KeepList, Cap, Limit, Wild, WildDice, SWWild };
enum class Sides { Both, Lower, Upper };

using Handler = void (*)(std::string& line, std::string& details, const VarStore& store);

// The functions ProcFunc knows, with what their handlers read.
struct Function {
  std::string_view name;
  Family family;
  Handler handler;
  Sides sides = Sides::Both;
  bool whole = false;    // the bound read as a 16-bit whole number
  bool highest = false;  // @best keeps the highest, @worst the lowest
};

const Function kFunctions[] = {
    {"@lcap", Family::Cap, FuncLCap, Sides::Lower, true},
    {"@ucap", Family::Cap, FuncUCap, Sides::Upper, true},
    {"@cap", Family::Cap, FuncCap, Sides::Both, false},
    {"@wild", Family::Wild, FuncWild},
    {"@swwild", Family::SWWild, FuncSWWild},
    {"@wilddice", Family::WildDice, FuncWildDice},
    {"@best", Family::Keep, FuncBest, Sides::Lower, true, true},
    {"@worst", Family::Keep, FuncWorst, Sides::Lower, true, false},
    {"@llimit", Family::Limit, FuncLLimit, Sides::Lower, false},
    {"@ulimit", Family::Limit, FuncULimit, Sides::Upper, false},
    {"@limit", Family::Limit, FuncLimit, Sides::Both, false},
    {"@bestlist", Family::KeepList, FuncBestList, Sides::Lower, true, true},
};

const Function* FindFunction(std::string_view name) {
  for (const Function& f : kFunctions)
    if (f.name == name) return &f;
  return nullptr;
}

// What one call comes to.
struct CallModel {
  enum class Kind { Fails, Fixed, Random } kind = Kind::Fails;
  std::string fixed;  // the text of a fixed call
  Slot slot;          // the slot of a random one
};

CallModel Fails() {
  return {};
}

CallModel Fixed(std::string text) {
  CallModel model;
  model.kind = CallModel::Kind::Fixed;
  model.fixed = std::move(text);
  return model;
}

CallModel Random(Slot slot) {
  CallModel model;
  model.kind = CallModel::Kind::Random;
  model.slot = std::move(slot);
  return model;
}

[[noreturn]] void NotFollowed(const Function& f) {
  GiveUp(NotExactReason::Unsupported,
         "an argument of " + std::string(f.name) + " that is not a sum of dice and numbers");
}

// A call without dice: the handler itself works out its text.
CallModel ByHandler(const Function& f, const std::string& args) {
  std::string line = std::string(f.name) + "(" + args + ")", details;
  const VarStore store;
  f.handler(line, details, store);
  return line == kScriptErrorMarker ? Fails() : Fixed(line);
}

bool HoldsDie(const std::string& text) {
  return text.find_first_of("dD") != std::string::npos;
}

// ---- Per-die functions: @best, @worst, the caps and the limits --------------

// The items of a sum as groups of dice of one scale, signs applied.
std::vector<DieGroup> Groups(const std::vector<DiceItem>& items) {
  int scale = 0;
  for (const DiceItem& item : items) {
    int s = item.isTerm ? item.term.face.scale : ScaleOf(item.constant);
    if (s < 0) GiveUp(NotExactReason::Unsupported, "a number that cannot be kept exact");
    scale = std::max(scale, s);
  }
  std::vector<DieGroup> groups;
  for (const DiceItem& item : items) {
    DieGroup g;
    if (item.isTerm) {
      if (item.term.dice == 0) continue;
      g = {Rescaled(item.term.face, scale), item.term.dice};
    } else {
      int64_t scaled = 0;
      ToScaled(item.constant, scale, scaled);
      g = {ValueDist::Constant(scaled, scale), 1};
    }
    if (item.subtracted) g.face = Negated(g.face);
    groups.push_back(std::move(g));
  }
  return groups;
}

// The largest sum of magnitudes of all the groups' dice.
double Magnitude(const std::vector<DieGroup>& groups) {
  double m = 0;
  for (const DieGroup& g : groups)
    m += static_cast<double>(g.count) * static_cast<double>(g.face.MaxAbs()) /
         PowerOfTen(g.face.scale);
  return m;
}

// The per-die text of a roll is held to 32,767 characters (every "-" counted
// twice once it becomes "+-"): beyond that the handler fails, sometimes.
void CheckPerDieLength(const std::vector<DieGroup>& groups, const std::string& dice) {
  double length = static_cast<double>(dice.size()) + 1;
  for (const DieGroup& g : groups) {
    size_t longest = 0;
    for (size_t i = 0; i < g.face.Size(); ++i)
      longest = std::max(longest, NumberText(g.face.Value(i)).size());
    length += static_cast<double>(g.count) * static_cast<double>(longest + 2);
  }
  if (2 * length > 32767) GiveUp(NotExactReason::Unsupported, "a per-die text too long to follow");
}

// The dice argument read as a sum; gives up when it is none.
std::vector<DieGroup> ReadGroups(const Function& f, std::string& dice, bool& writesValues) {
  ExpandAllDice(dice);
  std::vector<DiceItem> items;
  if (!ReadDiceItems(dice, items)) NotFollowed(f);
  writesValues = ItemsWriteTheirValues(dice, items);
  std::vector<DieGroup> groups = Groups(items);
  CheckPerDieLength(groups, dice);
  return groups;
}

Slot SumSlot(ValueDist values, double magnitude, std::function<TextDist()> texts) {
  Slot slot;
  slot.kind = Slot::Kind::Sum;
  slot.values = std::move(values);
  slot.magnitude = magnitude;
  slot.texts = std::move(texts);
  return slot;
}

[[noreturn]] void TextsNotFollowed(const Function& f) {
  GiveUp(NotExactReason::Unsupported,
         std::string(f.name) + " where its text matters and its argument is not written plainly");
}

CallModel KeepCall(const Function& f, const BoundedArgs& args, Work& work) {
  std::string dice = args.dice;
  bool writesValues = false;
  std::vector<DieGroup> groups = ReadGroups(f, dice, writesValues);
  const auto k = static_cast<int64_t>(args.bounds[0]);
  if (k <= 0 || groups.empty()) return Fixed("");
  const bool highest = f.highest;
  return Random(SumSlot(KeptSum(groups, k, highest, work), Magnitude(groups),
                        [groups, k, highest, writesValues, &f, &work] {
                          if (!writesValues) TextsNotFollowed(f);
                          return KeptTexts(groups, k, highest, work);
                        }));
}

// Each term raised to low, then lowered to high, as the cap's sides say.
int64_t Capped(int64_t v, int64_t low, int64_t high, Sides sides) {
  if (sides != Sides::Upper && v < low) v = low;
  if (sides != Sides::Lower && v > high) v = high;
  return v;
}

// The bounds at the groups' scale, the groups rescaled to the bounds' scale.
void ScaleBounds(const BoundedArgs& args, Sides sides, std::vector<DieGroup>& groups, int64_t& low,
                 int64_t& high) {
  int scale = groups.empty() ? 0 : groups[0].face.scale;
  for (double bound : args.bounds) {
    int s = ScaleOf(bound);
    if (s < 0) GiveUp(NotExactReason::Unsupported, "a bound that cannot be kept exact");
    scale = std::max(scale, s);
  }
  for (DieGroup& g : groups)
    g.face = Rescaled(g.face, scale);
  low = high = 0;
  if (sides != Sides::Upper) ToScaled(args.bounds.front(), scale, low);
  if (sides != Sides::Lower) ToScaled(args.bounds.back(), scale, high);
}

CallModel CapCall(const Function& f, const BoundedArgs& args, Work& work) {
  std::string dice = args.dice;
  bool writesValues = false;
  std::vector<DieGroup> groups = ReadGroups(f, dice, writesValues);
  if (groups.empty()) return Fixed("");
  int64_t low = 0, high = 0;
  ScaleBounds(args, f.sides, groups, low, high);
  ValueDist sum = ValueDist::Constant(0, groups[0].face.scale);
  for (DieGroup& g : groups) {
    g.face = Mapped(g.face, [&](int64_t v) { return Capped(v, low, high, f.sides); });
    sum = Convolve(sum, SumOfCopies(g.face, g.count, work), work);
  }
  return Random(SumSlot(std::move(sum), Magnitude(groups), [groups, writesValues, &f, &work] {
    if (!writesValues) TextsNotFollowed(f);
    return SequenceTexts(groups, work);
  }));
}

CallModel LimitCall(const Function& f, const BoundedArgs& args, Work& work) {
  std::string dice = args.dice;
  bool writesValues = false;
  std::vector<DieGroup> groups = ReadGroups(f, dice, writesValues);
  int64_t low = 0, high = 0;
  ScaleBounds(args, f.sides, groups, low, high);
  const int scale = groups.empty() ? 0 : groups[0].face.scale;
  // The per-die text is a plain sum: its calculation adds the dice up.
  if (!PlainDigits(Magnitude(groups), scale)) NotFollowed(f);
  ValueDist sum = ValueDist::Constant(0, scale);
  for (const DieGroup& g : groups)
    sum = Convolve(sum, SumOfCopies(g.face, g.count, work), work);
  Slot slot;
  slot.kind = Slot::Kind::Number;
  slot.values = Mapped(sum, [&](int64_t v) { return Capped(v, low, high, f.sides); });
  return Random(std::move(slot));
}

// ---- Wild dice ----------------------------------------------------------------

// Every term at its highest, a subtracted one at its lowest, calculated.
double HighestTotal(std::string text) {
  std::string before, term, after, details;
  while (HoldsDie(text)) {
    BreakOutDice(text, before, term, after);
    double bound = Right(before, 1) == "-" ? GetMinResult(term) : GetMaxResult(term);
    text = Trim(before) + "+" + Trim(FormatNumber(bound)) + Trim(after);
  }
  return Calc(text, details);
}

// A term is subtracted when the signs right before it hold an odd number of "-".
bool IsSubtracted(const std::string& before) {
  size_t keep = before.find_last_not_of("+- ");
  size_t from = keep == std::string::npos ? 0 : keep + 1;
  return std::count(before.begin() + static_cast<long>(from), before.end(), '-') % 2 == 1;
}

Slot NumberSlot(const Template& tmpl, Work& work) {
  Slot slot;
  slot.kind = Slot::Kind::Number;
  slot.values = ValuesOfTexts(TemplateResults(tmpl, ResultMode::Number, work));
  return slot;
}

void CheckTerm(const ValueDist& total) {
  if (total.error > 0) GiveUp(NotExactReason::Unsupported, "a die that can fail inside a function");
}

CallModel WildCall(const std::string& dice, Work& work) {
  Template tmpl;
  std::vector<std::string> terms, befores;
  if (!CutAtTerms(dice, true, tmpl, terms, befores))
    GiveUp(NotExactReason::Dependent, "@wild of terms that read the totals before them");
  TermCache cache(work);
  for (size_t i = 0; i < terms.size(); ++i) {
    tmpl.slots[i].values = cache.Total(terms[i]);
    CheckTerm(tmpl.slots[i].values);
  }
  const ValueDist total = NumberSlot(tmpl, work).values;
  double highest = 0;
  if (TrapRuntimeError([&] { highest = HighestTotal(dice); })) return Fails();
  RepeatedTotals repeated = RepeatWhileHighest(total, highest, work.Truncation(), work);
  TextDist texts = std::move(repeated.texts);
  return Random(SumSlot(std::move(repeated.sums), repeated.magnitude, [texts] { return texts; }));
}

// One die of a term's kind ("1" and the term from its "d"), its bounds and count.
struct WildTerm {
  ValueDist face;
  double hi = 0, lo = 0;
  int64_t dice = 0;
};

bool ReadWildTerm(const std::string& term, WildTerm& wild) {
  const long d = InStr(LCase(term), "d");
  std::string die = "1" + Mid(term, d);
  DieTerm one = ReadDieTerm(die);
  if (one.fails || one.face.error > 0)
    GiveUp(NotExactReason::Unsupported, "a die that can fail inside a function");
  wild.face = one.face;
  double count = d == 1 ? 1 : ReadNumber(Left(term, d - 1));
  if (count > 1e15) GiveUp(NotExactReason::Budget, "too many dice");
  wild.dice = count >= 1 ? static_cast<int64_t>(std::floor(count)) : 0;
  return !TrapRuntimeError([&] {
    std::string probe = die;
    wild.hi = GetMaxResult(probe);
    wild.lo = GetMinResult(probe);
  });
}

CallModel ExplodingCall(const std::string& dice, bool everyDie, Work& work) {
  Template tmpl;
  std::vector<std::string> terms, befores;
  CutAtTerms(dice, false, tmpl, terms, befores);
  std::vector<WildTerm> wild(terms.size());
  double exploding = 0;
  for (size_t i = 0; i < terms.size(); ++i) {
    if (!ReadWildTerm(terms[i], wild[i])) return Fails();
    exploding += everyDie ? static_cast<double>(wild[i].dice) : 0;
  }
  const double leftOut = work.Truncation() / std::max(exploding, 1.0);
  bool wildPending = !everyDie;
  for (size_t i = 0; i < terms.size(); ++i) {
    const WildTerm& w = wild[i];
    ValueDist& total = tmpl.slots[i].values;
    if (everyDie) {
      total = SumOfCopies(ExplodingDie(w.face, w.hi, w.lo, leftOut), w.dice, work);
    } else if (wildPending && !IsSubtracted(befores[i]) && w.dice >= 1) {
      total = WildTermTotal(w.face, w.dice, w.hi, w.lo, leftOut, work);
      wildPending = false;
    } else {
      total = SumOfCopies(w.face, w.dice, work);
    }
  }
  return Random(NumberSlot(tmpl, work));
}

// ---- The calls of a line ---------------------------------------------------------

CallModel ModelCall(const Function& f, const std::string& args, Work& work) {
  std::string line, details;
  const VarStore store;
  FunctionCall call{f.name, line, details, store, {}, args, {}};
  std::string dice;
  BoundedArgs bounded;
  bool wild =
      f.family == Family::Wild || f.family == Family::WildDice || f.family == Family::SWWild;
  bool ready = false;
  if (TrapRuntimeError([&] {
        ready = wild ? PrepareWildDice(call, dice)
                     : ReadBoundedArgs(call, f.sides == Sides::Both ? 2 : 1, f.whole, bounded);
      }))
    return Fails();
  if (!ready) return Fails();
  if (!wild) {
    dice = bounded.dice;
    ExpandAllDice(dice);
  }
  if (f.family == Family::KeepList || !HoldsDie(dice)) return ByHandler(f, args);
  switch (f.family) {
    case Family::Keep:
      return KeepCall(f, bounded, work);
    case Family::Cap:
      return CapCall(f, bounded, work);
    case Family::Limit:
      return LimitCall(f, bounded, work);
    case Family::Wild:
      return WildCall(dice, work);
    case Family::WildDice:
      return ExplodingCall(dice, true, work);
    case Family::SWWild:
      return ExplodingCall(dice, false, work);
    case Family::KeepList:
      break;
  }
  return ByHandler(f, args);
}

size_t SlotsBefore(const std::string& text) {
  return static_cast<size_t>(std::count(text.begin(), text.end(), kSlotMark));
}

}  // namespace

bool ReplaceCalls(Template& line, Work& work) {
  for (;;) {
    const long at = InStr(line.text, "@");
    if (at == 0) return true;
    const long open = InStr(at, line.text, "(");
    if (open == 0) return false;
    const Function* f = FindFunction(LCase(Trim(Mid(line.text, at, open - at))));
    if (!f) return false;
    std::string left, args, right;
    if (TrapRuntimeError(
            [&] { SplitFunctionCall(line.text, std::string(f->name), left, args, right); }))
      return false;
    if (args.find('@') != std::string::npos)
      GiveUp(NotExactReason::Unsupported, "a function call inside another");
    CallModel model = ModelCall(*f, args, work);
    if (model.kind == CallModel::Kind::Fails) return false;
    if (model.kind == CallModel::Kind::Fixed) {
      line.text = left + model.fixed + right;
      continue;
    }
    line.slots.insert(line.slots.begin() + static_cast<long>(SlotsBefore(left)),
                      std::move(model.slot));
    line.text = left + kSlotMark + right;
  }
}

}  // namespace gandrel
