// A distribution over numbers: the total of a dice term, the sum of several,
// the value an @ function leaves.
//
// Values are exact: each is a whole number over 10^scale. Scale 0 (whole
// numbers) is the rule; a list type with items such as 1.5 gives scale 1.
// Probabilities are doubles. Besides its values a distribution carries the
// probability that the roll fails ("<error>") and the probability left out
// (exploding dice are followed only so deep); values, error and truncated
// add up to 1. A value whose probability is too small for a double (the
// 1000 of 1000d6) is kept with probability 0: it can still be shown.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace gandrel {

class Work;

// Scaled values stay below this in magnitude, so that every sum of them is
// exact in a double as well.
inline constexpr int64_t kExactLimit = int64_t{1} << 53;
// The most decimals a value may have.
inline constexpr int kMaxScale = 6;

struct ValueDist {
  int scale = 0;
  std::vector<int64_t> values;  // ascending, distinct
  std::vector<double> probs;    // parallel to values
  double error = 0;
  double truncated = 0;

  static ValueDist Constant(int64_t value, int scale = 0);
  // The value of entry i as a double.
  double Value(size_t i) const;
  size_t Size() const { return values.size(); }
  // Every whole number from the first value to the last is a value.
  bool Contiguous() const;
  // The largest magnitude of a (scaled) value; 0 when empty.
  int64_t MaxAbs() const;
  // The probability of the values: 1 - error - truncated.
  double Mass() const { return 1 - error - truncated; }
};

// 10^scale.
double PowerOfTen(int scale);

// The fewest decimals that write value exactly (as its shortest text does),
// or -1 when that is more than kMaxScale or the value is too large.
int ScaleOf(double value);

// value * 10^scale as a whole number; false when it is not whole or too large.
bool ToScaled(double value, int scale, int64_t& scaled);

// The same distribution at a larger scale.
ValueDist Rescaled(const ValueDist& dist, int scale);

// Every value negated.
ValueDist Negated(const ValueDist& dist);

// The distribution of the sum of two independent parts. A failure of either is
// a failure of the sum; what either leaves out, the sum leaves out.
ValueDist Convolve(const ValueDist& a, const ValueDist& b, Work& work);

// The sum of n independent copies of one die.
ValueDist SumOfCopies(const ValueDist& die, int64_t n, Work& work);

// Each value v becomes f(v) (equal results merged); the masses stay.
ValueDist Mapped(const ValueDist& dist, const std::function<int64_t(int64_t)>& f);

// A distribution from (scaled value, probability) pairs in any order, equal
// values merged. Error and truncated are 0.
ValueDist FromPairs(std::vector<std::pair<int64_t, double>> pairs, int scale);

// The parts weighted and put together: each part's values, failures and
// losses in the share of its weight. The weights add up to 1.
ValueDist Mixed(const std::vector<std::pair<double, ValueDist>>& parts);

// Adds an independent part that fails with probability e and is left out
// with probability t to a whole that fails with error and is left out with
// truncated: a failure of either fails the whole, and what either leaves out
// and the other does not fail, the whole leaves out. Written so that small
// masses keep their precision.
void CombineLosses(double& error, double& truncated, double e, double t);

// Gives up (not exact) when a magnitude reaches kExactLimit.
void CheckExact(int64_t magnitude);

}  // namespace gandrel
