// Fits of many seeded rolls to exact distributions. The seeds are fixed, so
// each fit is the same on every run.
#include <algorithm>
#include <cmath>
#include <map>

#include "functions/FunctionRun.h"

namespace gandrel::testing {
namespace {

using Statistics = EngineTest;
using Roll = const std::vector<int>&;

// Stands for every total that the dice enumerated cannot tell exactly.
constexpr double kTail = 1e9;

// Rolls the line n times and fits the totals to the exact probabilities:
// chi-square compared with its 0.1% point (Wilson-Hilferty). Values expected
// fewer than 5 times share one cell with the tail and with every value that
// the probabilities leave out.
void ExpectFit(const char* line, const std::map<double, double>& exact) {
  SCOPED_TRACE(line);
  const long n = 20000;
  std::map<double, long> counts;
  for (long i = 0; i < n; ++i) {
    std::string text = line, details;
    ProcFunc(text, details, VarStore{});
    ++counts[Calc(text, details)];
  }
  double chi = 0, df = 0, rareP = 1, rareSeen = n;
  for (auto [value, prob] : exact) {
    if (prob * n < 5 || value == kTail) continue;
    chi += std::pow(counts[value] - prob * n, 2) / (prob * n);
    rareP -= prob;
    rareSeen -= counts[value];
    ++df;
  }
  if (rareP * n > 1e-6) {
    chi += std::pow(rareSeen - rareP * n, 2) / (rareP * n);
    ++df;
  } else {
    EXPECT_EQ(rareSeen, 0) << "values that cannot occur";
  }
  double a = 2 / (9 * --df);
  EXPECT_GT(df, 7);
  EXPECT_LT(chi, df * std::pow(1 - a + 3.0902 * std::sqrt(a), 3));
}

// The distribution of a value over all rolls of n d6.
template <class Value>
std::map<double, double> OverAllRolls(int n, Value value) {
  std::map<double, double> dist;
  std::vector<int> d(n, 1);
  for (int i = 0; i < n;) {
    dist[value(d)] += std::pow(1.0 / 6, n);
    for (i = 0; i < n && d[i] == 6; ++i)
      d[i] = 1;
    if (i < n) ++d[i];
  }
  return dist;
}

// The first four dice as one exploding d6: their sum up to the first face
// below 6, the tail when all four show 6.
double Exploding(Roll d) {
  double sum = 0;
  for (int i = 0; i < 4; ++i) {
    sum += d[i];
    if (d[i] < 6) return sum;
  }
  return kTail;
}

TEST_F(Statistics, RollsFollowTheirExactDistributions) {
  engineSettings.LongResults = false;
  SeedRandom(20240611);
  auto bestThree = [](Roll d) {
    return d[0] + d[1] + d[2] + d[3] - std::min({d[0], d[1], d[2], d[3]});
  };
  auto limited = [](Roll d) { return std::clamp(d[0] + d[1] + d[2], 6, 14); };
  auto capped = [](Roll d) {
    return std::clamp(d[0], 2, 5) + std::clamp(d[1], 2, 5) + std::clamp(d[2], 2, 5);
  };
  // A 1 on the wild die leaves the lower of the other two dice. From 27 up a
  // total may need more than four dice.
  auto wild = [](Roll d) {
    double total = d[0] == 1 ? std::min(d[4], d[5]) : Exploding(d) + d[4] + d[5];
    return total < 27 ? total : kTail;
  };
  ExpectFit("@best(3, 4d6)", OverAllRolls(4, bestThree));
  ExpectFit("@limit(6, 14, 3d6)", OverAllRolls(3, limited));
  ExpectFit("@cap(2, 5, 3d6)", OverAllRolls(3, capped));
  ExpectFit("@wilddice(1d6)", OverAllRolls(4, Exploding));
  ExpectFit("@swwild(3d6)", OverAllRolls(6, wild));
}

}  // namespace
}  // namespace gandrel::testing
