// A chi-square goodness-of-fit check of sampled values against an exact
// distribution, for the statistical tests of the rolling functions.
#pragma once

#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace gandrel::testing {

// The exact probability of each value below a cut-off; every value at or above
// it falls in one tail cell holding the rest of the probability.
struct Distribution {
  std::map<double, double> exact;
  double cutoff = INFINITY;
};

struct FitResult {
  double statistic = 0;
  double critical = 0;  // the 0.1% point for the cells' degrees of freedom
  int cells = 0;
};

// Cells whose expected count is below 5 are merged with their neighbours.
inline FitResult ChiSquareFit(const Distribution& dist, const std::map<double, long>& counts,
                              long samples) {
  struct Cell {
    double p = 0;
    long seen = 0;
  };
  std::vector<Cell> raw;
  double total = 0;
  for (auto [value, p] : dist.exact) {
    long seen = counts.count(value) ? counts.at(value) : 0;
    raw.push_back({p, seen});
    total += p;
  }
  long inTail = 0, outside = 0;
  for (auto [value, n] : counts) {
    if (value >= dist.cutoff)
      inTail += n;
    else if (!dist.exact.count(value))
      outside += n;  // a value that cannot occur
  }
  if (dist.cutoff != INFINITY) raw.push_back({1 - total, inTail});
  std::vector<Cell> cells;
  Cell pending;
  for (const Cell& c : raw) {
    pending.p += c.p;
    pending.seen += c.seen;
    if (pending.p * samples >= 5) {
      cells.push_back(pending);
      pending = Cell{};
    }
  }
  if (pending.p > 0 || pending.seen > 0) {
    if (cells.empty()) cells.push_back(Cell{});
    cells.back().p += pending.p;
    cells.back().seen += pending.seen;
  }
  FitResult fit;
  fit.cells = static_cast<int>(cells.size());
  for (const Cell& c : cells) {
    double expected = c.p * samples;
    fit.statistic += (c.seen - expected) * (c.seen - expected) / expected;
  }
  // A value outside the distribution fails the fit outright.
  if (outside > 0) fit.statistic = INFINITY;
  // Wilson-Hilferty: the chi-square quantile from the normal one (z at 0.1%).
  double df = fit.cells - 1, z = 3.0902;
  double a = 2.0 / (9.0 * df);
  fit.critical = df * std::pow(1 - a + z * std::sqrt(a), 3);
  return fit;
}

}  // namespace gandrel::testing
