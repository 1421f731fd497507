#include "dist/Exploding.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/modEvaluate.h"
#include "dist/KeepDice.h"
#include "dist/Work.h"

namespace gandrel {

namespace {

// The index of value among the distribution's values, or -1.
long IndexOf(const ValueDist& dist, double value) {
  int64_t scaled = 0;
  if (!ToScaled(value, dist.scale, scaled)) return -1;
  auto it = std::lower_bound(dist.values.begin(), dist.values.end(), scaled);
  return it != dist.values.end() && *it == scaled ? it - dist.values.begin() : -1;
}

// More rounds than any budget would let through: a repeat probability a
// hair below 1 (a total that is almost always the highest) would need
// hundreds of millions.
constexpr double kMostRounds = 100000;

// How many rounds keep what is left out at most leftOut, for a repeat
// probability q below 1; gives up when that is more than kMostRounds.
int Depth(double q, double leftOut) {
  if (!(std::log(leftOut) / std::log(q) < kMostRounds))
    GiveUp(NotExactReason::Budget, "a roll that repeats too often to follow");
  int depth = 1;
  for (double left = q; left > leftOut; left *= q)
    ++depth;
  return depth;
}

}  // namespace

ValueDist ExplodingDie(const ValueDist& face, double hi, double lo, double leftOut) {
  long top = hi > lo ? IndexOf(face, hi) : -1;
  if (top < 0 || face.probs[static_cast<size_t>(top)] == 0) return face;
  const double q = face.probs[static_cast<size_t>(top)];
  const int depth = Depth(q, leftOut);
  const int64_t step = face.values[static_cast<size_t>(top)];
  CheckExact(face.MaxAbs() + static_cast<int64_t>(depth) * std::llabs(step));
  std::vector<std::pair<int64_t, double>> pairs;
  double reach = 1;  // the probability of getting to round j
  for (int j = 0; j < depth; ++j, reach *= q)
    for (size_t i = 0; i < face.Size(); ++i)
      if (static_cast<long>(i) != top)
        pairs.emplace_back(j * step + face.values[i], reach * face.probs[i]);
  ValueDist die = FromPairs(std::move(pairs), face.scale);
  die.truncated = reach;
  die.error = face.error * (1 - reach) / (1 - q);
  return die;
}

ValueDist WildTermTotal(const ValueDist& face, int64_t n, double hi, double lo, double leftOut,
                        Work& work) {
  const long low = IndexOf(face, lo);
  const double pLow = low >= 0 ? face.probs[static_cast<size_t>(low)] : 0;
  // The wild die failed: the lowest n-2 of the other n-1 dice are what is left.
  ValueDist failed = ValueDist::Constant(0, face.scale);
  if (pLow > 0 && n >= 3) failed = KeptSum({{face, n - 1}}, n - 2, false, work);
  if (pLow >= 1) return failed;
  // Otherwise the wild die's first roll is any other face, exploding on hi.
  const ValueDist again = ExplodingDie(face, hi, lo, leftOut);
  const long top = hi > lo ? IndexOf(face, hi) : -1;
  std::vector<std::pair<double, ValueDist>> firsts;
  for (size_t i = 0; i < face.Size(); ++i) {
    if (static_cast<long>(i) == low) continue;
    ValueDist shown = ValueDist::Constant(face.values[i], face.scale);
    if (static_cast<long>(i) == top) shown = Convolve(shown, again, work);
    firsts.emplace_back(face.probs[i] / (1 - pLow), std::move(shown));
  }
  ValueDist wild = Convolve(Mixed(firsts), SumOfCopies(face, n - 1, work), work);
  if (pLow == 0) return wild;
  return Mixed({{pLow, failed}, {1 - pLow, wild}});
}

RepeatedTotals RepeatWhileHighest(const ValueDist& total, double highest, double leftOut,
                                  Work& work) {
  const long top = IndexOf(total, highest);
  const double q = top >= 0 ? total.probs[static_cast<size_t>(top)] : 0;
  if (q >= 1) GiveUp(NotExactReason::NeverEnds, "a roll that always shows its highest total");
  const int depth = q > 0 ? Depth(q, leftOut) : 1;
  if (!work.EvaluationsFit(static_cast<double>(depth) * static_cast<double>(total.Size())))
    GiveUp(NotExactReason::Budget, "more repeated totals than the budget allows");
  const int64_t step = top >= 0 ? total.values[static_cast<size_t>(top)] : 0;
  CheckExact(total.MaxAbs() + static_cast<int64_t>(depth) * std::llabs(step));
  RepeatedTotals out;
  std::vector<std::pair<int64_t, double>> sums;
  std::string repeats;
  double reach = 1;
  for (int j = 0; j < depth; ++j, reach *= q) {
    for (size_t i = 0; i < total.Size(); ++i) {
      if (static_cast<long>(i) == top) continue;
      std::string text = repeats + "+" + Trim(FormatNumber(total.Value(i)));
      FoldSigns(text);
      out.texts.texts.emplace_back(std::move(text), reach * total.probs[i]);
      sums.emplace_back(j * step + total.values[i], reach * total.probs[i]);
    }
    if (top >= 0) repeats += "+" + Trim(FormatNumber(highest));
  }
  out.texts.truncated = reach;
  out.sums = FromPairs(std::move(sums), total.scale);
  out.sums.truncated = reach;
  out.magnitude = depth * static_cast<double>(total.MaxAbs()) / PowerOfTen(total.scale);
  return out;
}

}  // namespace gandrel
