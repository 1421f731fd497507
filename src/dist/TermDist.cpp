#include "dist/TermDist.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/RuntimeError.h"
#include "dice/DieLookup.h"
#include "dist/EngineAccess.h"
#include "dist/Work.h"

namespace gandrel {

namespace {

// The most faces one die may have for its distribution to be listed.
constexpr double kMaxFaces = 1e7;
// A list split into more items than this cannot be rolled.
constexpr size_t kMaxListItems = 32767;

void CheckFaces(double faces) {
  if (faces > kMaxFaces) GiveUp(NotExactReason::Budget, "a die with too many faces");
}

// Lo..Hi, each equally likely.
ValueDist RangeFace(int32_t lo, int32_t hi) {
  CheckFaces(static_cast<double>(hi) - lo + 1);
  ValueDist face;
  const double p = 1.0 / (static_cast<double>(hi) - lo + 1);
  for (int64_t v = lo; v <= hi; ++v) {
    face.values.push_back(v);
    face.probs.push_back(p);
  }
  return face;
}

// 1 to the whole part of size, 1/size each, and one more for the fraction.
ValueDist PlainFace(double size) {
  if (size < 0) GiveUp(NotExactReason::Unsupported, "a die of negative size");
  if (size == 0) return ValueDist::Constant(1);
  const double whole = std::floor(size), fraction = size - whole;
  CheckFaces(whole + 1);
  ValueDist face;
  for (int64_t v = 1; v <= static_cast<int64_t>(whole); ++v) {
    face.values.push_back(v);
    face.probs.push_back(1 / size);
  }
  if (fraction > 0) {
    face.values.push_back(static_cast<int64_t>(whole) + 1);
    face.probs.push_back(fraction / size);
  }
  return face;
}

// The items cut at every "," (empty ones kept); nothing when there are more
// than a roll can index.
std::optional<std::vector<std::string_view>> ListItems(std::string_view text) {
  std::vector<std::string_view> items;
  for (size_t from = 0;;) {
    size_t comma = text.find(',', from);
    items.push_back(text.substr(from, comma - from));
    if (items.size() > kMaxListItems) return std::nullopt;
    if (comma == std::string_view::npos) return items;
    from = comma + 1;
  }
}

// Each item equally likely, read as a number; an item too large to read is
// a failed roll when it comes up.
ValueDist ListFace(const std::vector<std::string_view>& items) {
  std::vector<double> values;
  double failing = 0;
  int scale = 0;
  for (std::string_view item : items) {
    double value = 0;
    if (TrapRuntimeError([&] { value = ReadNumber(item); })) {
      ++failing;
      continue;
    }
    int s = ScaleOf(value);
    if (s < 0) GiveUp(NotExactReason::Unsupported, "a list item that cannot be added up exactly");
    scale = std::max(scale, s);
    values.push_back(value);
  }
  const double p = 1.0 / static_cast<double>(items.size());
  std::vector<std::pair<int64_t, double>> pairs;
  for (double value : values) {
    int64_t scaled = 0;
    if (!ToScaled(value, scale, scaled))
      GiveUp(NotExactReason::Unsupported, "a list item that cannot be added up exactly");
    pairs.emplace_back(scaled, p);
  }
  ValueDist face = FromPairs(std::move(pairs), scale);
  face.error = failing * p;
  return face;
}

// A roll adds fractional items up in a double, and writes the total to 15
// digits. With totals of at most 12 digits and no more than 4,000 dice the
// rounding of that sum can never reach the digits written, so the exact
// decimal total is the text the roll shows.
void CheckFractionalTotal(const DieTerm& term) {
  if (term.face.scale == 0) return;
  double largest = static_cast<double>(term.face.MaxAbs()) * static_cast<double>(term.dice);
  if (term.dice > 4000 || largest >= 1e12)
    GiveUp(NotExactReason::Unsupported, "fractional totals too long to follow to 15 digits");
}

DieTerm Failing() {
  DieTerm term;
  term.fails = true;
  return term;
}

}  // namespace

DieTerm ReadDieTerm(std::string_view text) {
  std::string t = LCase(Trim(text));
  if (t.size() > 32767) return Failing();
  if (t.empty()) return DieTerm{};
  if (t[0] == 'd') t.insert(0, "1");
  long p = InStr(t, "d");
  if (p == 0) return Failing();
  double count = 0, size = 0;
  if (TrapRuntimeError([&] { count = ReadNumber(Left(t, p - 1)); })) return Failing();
  DieTerm term;
  if (count >= 1) {
    if (count > 1e15) GiveUp(NotExactReason::Budget, "too many dice");
    term.dice = static_cast<int64_t>(std::floor(count));
  }
  DefinedDie die;
  if (DefinedDieAt(t, p, die)) {
    if (die.isRange) {
      if (term.dice >= 1 && int64_t{die.hi} - die.lo + 1 > INT32_MAX) return Failing();
      if (term.dice >= 1) term.face = RangeFace(die.lo, die.hi);
      return term;
    }
    auto items = ListItems(die.items);
    if (!items) return Failing();
    if (term.dice >= 1) term.face = ListFace(*items);
    return term;
  }
  if (TrapRuntimeError([&] { size = ReadNumber(Mid(t, p + 1)); })) return Failing();
  if (term.dice >= 1) term.face = PlainFace(size);
  return term;
}

ValueDist TermTotal(std::string_view text, Work& work) {
  DieTerm term = ReadDieTerm(text);
  if (term.fails) {
    ValueDist failed;
    failed.error = 1;
    return failed;
  }
  if (term.dice == 0) return ValueDist::Constant(0);
  CheckFractionalTotal(term);
  return SumOfCopies(term.face, term.dice, work);
}

const ValueDist& TermCache::Total(const std::string& term) {
  std::string key = LCase(Trim(term));
  auto found = totals_.find(key);
  if (found != totals_.end()) return found->second;
  return totals_.emplace(key, TermTotal(term, work_)).first->second;
}

}  // namespace gandrel
