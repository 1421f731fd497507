#include "dist/ValueDist.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string_view>
#include <unordered_map>

#include "dist/Work.h"

namespace gandrel {

namespace {

// Sums whose values span at most this many whole numbers are accumulated in
// an array; sparser ones in a hash map.
constexpr int64_t kDenseSpan = int64_t{1} << 22;

// The masses of the sum of two independent parts.
void CombineMasses(const ValueDist& a, const ValueDist& b, ValueDist& out) {
  out.error = a.error;
  out.truncated = a.truncated;
  CombineLosses(out.error, out.truncated, b.error, b.truncated);
}

// Both parts contiguous: a plain convolution of the probability arrays.
ValueDist ConvolveContiguous(const ValueDist& a, const ValueDist& b) {
  ValueDist out;
  out.scale = a.scale;
  const size_t n = a.Size() + b.Size() - 1, nb = b.Size();
  out.probs.assign(n, 0.0);
  const double* pb = b.probs.data();
  for (size_t i = 0; i < a.Size(); ++i) {
    const double pa = a.probs[i];
    double* o = out.probs.data() + i;
    for (size_t j = 0; j < nb; ++j)
      o[j] += pa * pb[j];
  }
  out.values.resize(n);
  for (size_t k = 0; k < n; ++k)
    out.values[k] = a.values[0] + b.values[0] + static_cast<int64_t>(k);
  return out;
}

// Gaps in the values, but a span small enough for an array; each reachable
// sum is marked, so that one whose probability underflows stays a value.
ValueDist ConvolveDense(const ValueDist& a, const ValueDist& b, int64_t low, int64_t span) {
  std::vector<double> sums(static_cast<size_t>(span), 0.0);
  std::vector<char> reached(static_cast<size_t>(span), 0);
  for (size_t i = 0; i < a.Size(); ++i) {
    for (size_t j = 0; j < b.Size(); ++j) {
      auto k = static_cast<size_t>(a.values[i] + b.values[j] - low);
      sums[k] += a.probs[i] * b.probs[j];
      reached[k] = 1;
    }
  }
  ValueDist out;
  out.scale = a.scale;
  for (size_t k = 0; k < sums.size(); ++k) {
    if (!reached[k]) continue;
    out.values.push_back(low + static_cast<int64_t>(k));
    out.probs.push_back(sums[k]);
  }
  return out;
}

ValueDist ConvolveSparse(const ValueDist& a, const ValueDist& b) {
  std::unordered_map<int64_t, double> sums;
  for (size_t i = 0; i < a.Size(); ++i)
    for (size_t j = 0; j < b.Size(); ++j)
      sums[a.values[i] + b.values[j]] += a.probs[i] * b.probs[j];
  return FromPairs({sums.begin(), sums.end()}, a.scale);
}

bool IsUniform(const ValueDist& die) {
  for (double p : die.probs)
    if (p != die.probs[0]) return false;
  return die.truncated == 0 && die.Contiguous();
}

// n dice of k consecutive equally likely faces, one die at a time: a window
// of k over the previous sums, read off running sums. The distribution is
// symmetric, so only its lower half is computed, where the running sums are
// small and their differences keep their precision.
ValueDist UniformSum(const ValueDist& die, int64_t n, Work& work) {
  const auto k = static_cast<int64_t>(die.Size());
  work.Operations(static_cast<double>(n) * static_cast<double>(n) * static_cast<double>(k) / 4);
  std::vector<double> sums{1.0}, running, next;
  for (int64_t i = 1; i <= n; ++i) {
    const auto s = static_cast<int64_t>(sums.size()), s2 = s + k - 1;
    running.resize(static_cast<size_t>(s));
    double total = 0;
    for (int64_t j = 0; j < s; ++j)
      running[static_cast<size_t>(j)] = total += sums[static_cast<size_t>(j)];
    next.assign(static_cast<size_t>(s2), 0.0);
    for (int64_t j = 0; j <= (s2 - 1) / 2; ++j) {
      double upTo = running[static_cast<size_t>(std::min(j, s - 1))];
      double below = j - k >= 0 ? running[static_cast<size_t>(j - k)] : 0.0;
      next[static_cast<size_t>(j)] = next[static_cast<size_t>(s2 - 1 - j)] =
          (upTo - below) / static_cast<double>(k);
    }
    sums.swap(next);
  }
  ValueDist out;
  out.scale = die.scale;
  const double mass = std::pow(die.Mass(), static_cast<double>(n));
  out.values.resize(sums.size());
  out.probs.resize(sums.size());
  for (size_t j = 0; j < sums.size(); ++j) {
    out.values[j] = n * die.values[0] + static_cast<int64_t>(j);
    out.probs[j] = sums[j] * mass;
  }
  out.error = 1 - std::pow(1 - die.error, static_cast<double>(n));
  out.truncated = 0;  // a uniform die leaves nothing out
  return out;
}

}  // namespace

void CombineLosses(double& error, double& truncated, double e, double t) {
  truncated = truncated * (1 - e) + t * (1 - error) - truncated * t;
  error = error + e - error * e;
}

ValueDist ValueDist::Constant(int64_t value, int scale) {
  ValueDist dist;
  dist.scale = scale;
  dist.values = {value};
  dist.probs = {1.0};
  return dist;
}

double ValueDist::Value(size_t i) const {
  return static_cast<double>(values[i]) / PowerOfTen(scale);
}

bool ValueDist::Contiguous() const {
  return values.empty() ||
         values.back() - values.front() == static_cast<int64_t>(values.size()) - 1;
}

int64_t ValueDist::MaxAbs() const {
  if (values.empty()) return 0;
  return std::max(std::llabs(values.front()), std::llabs(values.back()));
}

double PowerOfTen(int scale) {
  static constexpr double kPowers[] = {1, 10, 100, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};
  return kPowers[scale];
}

int ScaleOf(double value) {
  if (!std::isfinite(value) || std::fabs(value) >= static_cast<double>(kExactLimit)) return -1;
  char buf[512];
  auto res = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed);
  std::string_view text(buf, static_cast<size_t>(res.ptr - buf));
  size_t point = text.find('.');
  int scale = point == std::string_view::npos ? 0 : static_cast<int>(text.size() - point - 1);
  int64_t scaled = 0;
  return scale <= kMaxScale && ToScaled(value, scale, scaled) ? scale : -1;
}

bool ToScaled(double value, int scale, int64_t& scaled) {
  double x = std::nearbyint(value * PowerOfTen(scale));
  if (!(std::fabs(x) < static_cast<double>(kExactLimit))) return false;
  if (x / PowerOfTen(scale) != value) return false;
  scaled = static_cast<int64_t>(x);
  return true;
}

void CheckExact(int64_t magnitude) {
  if (magnitude >= kExactLimit || magnitude <= -kExactLimit)
    GiveUp(NotExactReason::Unsupported, "totals too large to add up exactly");
}

ValueDist Rescaled(const ValueDist& dist, int scale) {
  if (scale == dist.scale) return dist;
  ValueDist out = dist;
  auto factor = static_cast<int64_t>(PowerOfTen(scale - dist.scale));
  CheckExact(dist.MaxAbs() >= kExactLimit / factor ? kExactLimit : dist.MaxAbs() * factor);
  for (int64_t& v : out.values)
    v *= factor;
  out.scale = scale;
  return out;
}

ValueDist Negated(const ValueDist& dist) {
  ValueDist out = dist;
  std::reverse(out.values.begin(), out.values.end());
  std::reverse(out.probs.begin(), out.probs.end());
  for (int64_t& v : out.values)
    v = -v;
  return out;
}

ValueDist Convolve(const ValueDist& a, const ValueDist& b, Work& work) {
  if (a.scale != b.scale) {
    int scale = std::max(a.scale, b.scale);
    return Convolve(Rescaled(a, scale), Rescaled(b, scale), work);
  }
  ValueDist out;
  out.scale = a.scale;
  if (!a.values.empty() && !b.values.empty()) {
    CheckExact(a.MaxAbs() + b.MaxAbs());
    work.Operations(static_cast<double>(a.Size()) * static_cast<double>(b.Size()));
    const int64_t low = a.values.front() + b.values.front();
    const int64_t span = a.values.back() + b.values.back() - low + 1;
    if (a.Contiguous() && b.Contiguous()) {
      out = ConvolveContiguous(a, b);
    } else if (span <=
               std::max<int64_t>(kDenseSpan, 4 * static_cast<int64_t>(a.Size() * b.Size()))) {
      out = ConvolveDense(a, b, low, span);
    } else {
      out = ConvolveSparse(a, b);
    }
  }
  CombineMasses(a, b, out);
  return out;
}

ValueDist SumOfCopies(const ValueDist& die, int64_t n, Work& work) {
  if (n <= 0) return ValueDist::Constant(0, die.scale);
  if (n == 1) return die;
  CheckExact(die.MaxAbs() >= kExactLimit / n ? kExactLimit : die.MaxAbs() * n);
  if (!die.values.empty() && IsUniform(die)) return UniformSum(die, n, work);
  ValueDist sum = ValueDist::Constant(0, die.scale), power = die;
  for (int64_t left = n;;) {
    if (left & 1) sum = Convolve(sum, power, work);
    left >>= 1;
    if (left == 0) break;
    power = Convolve(power, power, work);
  }
  return sum;
}

ValueDist Mapped(const ValueDist& dist, const std::function<int64_t(int64_t)>& f) {
  std::vector<std::pair<int64_t, double>> pairs;
  pairs.reserve(dist.Size());
  for (size_t i = 0; i < dist.Size(); ++i)
    pairs.emplace_back(f(dist.values[i]), dist.probs[i]);
  ValueDist out = FromPairs(std::move(pairs), dist.scale);
  out.error = dist.error;
  out.truncated = dist.truncated;
  return out;
}

ValueDist Mixed(const std::vector<std::pair<double, ValueDist>>& parts) {
  int scale = 0;
  for (const auto& [weight, part] : parts)
    scale = std::max(scale, part.scale);
  std::vector<std::pair<int64_t, double>> pairs;
  double error = 0, truncated = 0;
  for (const auto& [weight, part] : parts) {
    ValueDist scaled = Rescaled(part, scale);
    for (size_t i = 0; i < scaled.Size(); ++i)
      pairs.emplace_back(scaled.values[i], weight * scaled.probs[i]);
    error += weight * part.error;
    truncated += weight * part.truncated;
  }
  ValueDist out = FromPairs(std::move(pairs), scale);
  out.error = error;
  out.truncated = truncated;
  return out;
}

ValueDist FromPairs(std::vector<std::pair<int64_t, double>> pairs, int scale) {
  std::sort(pairs.begin(), pairs.end(),
            [](const auto& x, const auto& y) { return x.first < y.first; });
  ValueDist out;
  out.scale = scale;
  for (const auto& [value, p] : pairs) {
    if (!out.values.empty() && out.values.back() == value) {
      out.probs.back() += p;
    } else {
      out.values.push_back(value);
      out.probs.push_back(p);
    }
  }
  return out;
}

}  // namespace gandrel
