// @wilddice and @swwild: dice that explode one by one.
//
// A die explodes when its kind has more than one face value (highest above
// lowest) and it shows the highest: one more die of the same kind is rolled
// and added, for as long as the new die shows the highest. @wilddice lets every
// die explode. @swwild has one wild die, the first die of the first dice term
// that is not subtracted: it explodes, and when its first roll is the lowest
// face it and the highest other die of its term count 0.
//
// Each dice term's total goes in its place and the text is calculated, so
// constants, signs and operators around the terms keep their meaning. The
// trace writes each term as its dice: an exploded or wild die as its rolls in
// "[...]", a die that counts 0 in "{...}", a subtracted term's dice with "-".

#include <string>
#include <vector>

#include "calc/Basic.h"
#include "calc/EngineSettings.h"
#include "calc/Markers.h"
#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "dice/modDiceCalc.h"
#include "functions/HandlerFrame.h"
#include "functions/WildArgument.h"
#include "functions/modScriptFunctions.h"

namespace gandrel {

namespace {

enum class WildRule { EveryDie, FirstAddedDie };

// One die of a term's kind ("1" & the term from its "d") and its face bounds.
struct DieKind {
  std::string die;
  double hi = 0;
  double lo = 0;
};

enum class Shown { Plain, Bracketed, Removed };

struct RolledDie {
  std::vector<double> rolls;  // the first roll, then one per explosion
  Shown shown = Shown::Plain;
};

DieKind KindOfTerm(const std::string& term) {
  DieKind kind;
  kind.die = "1";
  kind.die += Mid(term, InStr(LCase(term), "d"));
  std::string probe = kind.die;
  kind.hi = GetMaxResult(probe);
  kind.lo = GetMinResult(probe);
  return kind;
}

// The number of dice of a term: the count before its "d", 1 when there is none.
double DiceCount(const std::string& term) {
  long d = InStr(LCase(term), "d");
  return d == 1 ? 1 : ReadNumber(Left(term, d - 1));
}

// One roll of one die; false when it failed (the roller has told the user).
bool RollOne(const DieKind& kind, std::vector<double>& rolls) {
  std::string die = kind.die, lines;
  double value = GetDieResult(die, lines);
  if (die == kErrorMarker) return false;
  rolls.push_back(value);
  return true;
}

bool RollDie(const DieKind& kind, bool mayExplode, RolledDie& die) {
  if (!RollOne(kind, die.rolls)) return false;
  if (!mayExplode || !(kind.hi > kind.lo)) return true;
  while (die.rolls.back() == kind.hi) {
    // A kind whose highest face keeps coming up ends only by the user's break.
    YieldCheckBreak();
    if (!RollOne(kind, die.rolls)) return false;
  }
  return true;
}

double DieValue(const RolledDie& die) {
  if (die.shown == Shown::Removed) return 0;
  double sum = 0;
  for (double roll : die.rolls)
    sum += roll;
  return sum;
}

// The wild die showed its lowest face first: it and the highest of the other
// dice of its term (the first of equals) count 0.
void TakeOutFailedWildDie(std::vector<RolledDie>& dice, const DieKind& kind) {
  if (dice.empty() || dice[0].rolls[0] != kind.lo) return;
  dice[0].shown = Shown::Removed;
  size_t highest = 0;
  for (size_t i = 1; i < dice.size(); ++i)
    if (highest == 0 || dice[i].rolls[0] > dice[highest].rolls[0]) highest = i;
  if (highest != 0) dice[highest].shown = Shown::Removed;
}

// "+" & value, or "-" & value when negated, a negative value's own sign folded in.
void AppendSigned(std::string& text, bool negated, std::string value) {
  if (!value.empty() && value[0] == '-') {
    negated = !negated;
    value.erase(0, 1);
  }
  text += negated ? '-' : '+';
  text += value;
}

std::string JoinRolls(const std::vector<double>& rolls) {
  std::string joined = FormatNumber(rolls[0]);
  for (size_t i = 1; i < rolls.size(); ++i)
    AppendSigned(joined, false, FormatNumber(rolls[i]));
  return joined;
}

std::string ShowDice(const std::vector<RolledDie>& dice, bool negated) {
  std::string shown;
  for (const RolledDie& die : dice) {
    if (die.shown == Shown::Plain) {
      AppendSigned(shown, negated, FormatNumber(die.rolls[0]));
      continue;
    }
    bool removed = die.shown == Shown::Removed;
    shown += negated ? '-' : '+';
    shown += removed ? '{' : '[';
    shown += JoinRolls(die.rolls);
    shown += removed ? '}' : ']';
  }
  return shown;
}

// The length of the run of signs (and blanks) that ends the text.
long SignRunLength(const std::string& text) {
  size_t keep = text.find_last_not_of("+- ");
  return Len(text) - (keep == std::string::npos ? 0 : static_cast<long>(keep) + 1);
}

// A term is subtracted when the signs right before it hold an odd number of "-".
bool IsSubtracted(const std::string& before) {
  long run = SignRunLength(before);
  long minus = 0;
  for (char c : Right(before, run))
    if (c == '-') ++minus;
  return minus % 2 == 1;
}

// The dice text with every term rolled by the rule: rolled holds each term's
// total in its place, shown each term's dice. False when a roll failed.
bool RollTerms(const std::string& dice, WildRule rule, std::string& rolled, std::string& shown) {
  bool wildPending = rule == WildRule::FirstAddedDie;
  std::string rest = dice, before, term, after;
  while (HoldsDice(rest)) {
    BreakOutDice(rest, before, term, after);
    const bool subtracted = IsSubtracted(before);
    const DieKind kind = KindOfTerm(term);
    const double count = DiceCount(term);
    const bool holdsWildDie = wildPending && !subtracted && count >= 1;
    std::vector<RolledDie> rolls;
    for (double i = 1; i <= count; ++i) {
      RolledDie die;
      bool wild = rule == WildRule::EveryDie || (holdsWildDie && i == 1);
      if (!RollDie(kind, wild, die)) return false;
      if (holdsWildDie && i == 1) die.shown = Shown::Bracketed;
      if (die.rolls.size() > 1) die.shown = Shown::Bracketed;
      rolls.push_back(std::move(die));
      YieldCheckBreak();
    }
    if (holdsWildDie) {
      TakeOutFailedWildDie(rolls, kind);
      wildPending = false;
    }
    double total = 0;
    for (const RolledDie& die : rolls)
      total += DieValue(die);
    rolled += before + FormatNumber(total);
    shown += Left(before, Len(before) - SignRunLength(before)) + ShowDice(rolls, subtracted);
    rest = after;
  }
  rolled += rest;
  shown += rest;
  return true;
}

void RollWild(FunctionCall& call, WildRule rule, const char* traceName) {
  std::string dice;
  if (!PrepareWildDice(call, dice)) return;
  std::string rolled, shown;
  if (!RollTerms(dice, rule, rolled, shown)) rolled = shown = std::string(kErrorMarker);
  // The dice written out are a per-die text: positions in it are 16-bit.
  Int16(Len(shown));
  double total = Calc(rolled, call.details);
  if (engineSettings.LongResults) call.details += kCrLf;
  call.BeginTrace(std::string(traceName) + dice + ")=(" + shown + ")=" + FormatNumber(total) +
                  kCrLf);
  call.Finish(FormatNumber(total));
}

}  // namespace

void FuncWildDice(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@wilddice", line, details, store,
             [](FunctionCall& call) { RollWild(call, WildRule::EveryDie, "WildDice("); });
}

void FuncSWWild(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@swwild", line, details, store,
             [](FunctionCall& call) { RollWild(call, WildRule::FirstAddedDie, "SWWild("); });
}

}  // namespace gandrel
