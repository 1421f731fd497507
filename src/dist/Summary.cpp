#include "dist/Summary.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "calc/Markers.h"
#include "calc/NumberText.h"
#include "calc/RuntimeError.h"

namespace gandrel {

namespace {

// A text is numeric when it is a number written as results are written.
bool ReadAsResult(const std::string& text, double& value) {
  if (text.empty()) return false;
  bool same = false;
  TrapRuntimeError([&] {
    value = ReadNumber(text);
    same = FormatNumber(value) == text;
  });
  return same;
}

// Numbers ascending, then other texts, then the failure markers.
int Rank(const DistOutcome& o) {
  return o.numeric ? 0 : IsFailureText(o.text) ? 2 : 1;
}

bool Before(const DistOutcome& a, const DistOutcome& b) {
  if (Rank(a) != Rank(b)) return Rank(a) < Rank(b);
  if (a.numeric) return a.value < b.value;
  return a.text < b.text;
}

void Summarize(Distribution& dist) {
  DistSummary& s = dist.summary;
  double weighted = 0;
  size_t numeric = 0;
  for (const DistOutcome& o : dist.outcomes) {
    if (!o.numeric) {
      if (IsFailureText(o.text)) s.failure += o.probability;
      continue;
    }
    s.min = numeric == 0 ? o.value : s.min;
    s.max = o.value;
    ++numeric;
    s.numeric += o.probability;
    weighted += o.probability * o.value;
  }
  if (s.numeric <= 0) return;
  s.mean = weighted / s.numeric;
  double spread = 0, below = 0;
  bool medianFound = false;
  for (size_t i = 0; i < numeric; ++i) {
    const DistOutcome& o = dist.outcomes[i];
    spread += o.probability * (o.value - s.mean) * (o.value - s.mean);
    below += o.probability;
    // Half reached up to the rounding of the sum: the median of 1d20 is 10,
    // although twenty twentieths add up to a hair below one half at ten.
    if (!medianFound && below >= s.numeric / 2 * (1 - 1e-12)) {
      s.median = o.value;
      medianFound = true;
    }
  }
  s.sd = std::sqrt(spread / s.numeric);
}

void Cumulate(Distribution& dist) {
  size_t numeric = 0;
  while (numeric < dist.outcomes.size() && dist.outcomes[numeric].numeric)
    ++numeric;
  dist.atMost.assign(numeric, 0.0);
  dist.atLeast.assign(numeric, 0.0);
  double sum = 0;
  for (size_t i = 0; i < numeric; ++i)
    dist.atMost[i] = sum += dist.outcomes[i].probability;
  sum = 0;
  for (size_t i = numeric; i-- > 0;)
    dist.atLeast[i] = sum += dist.outcomes[i].probability;
}

}  // namespace

bool IsFailureText(const std::string& text) {
  return text.empty() || IsFailureMarker(text);
}

void FinishDistribution(const Outcomes& found, Distribution& dist) {
  dist.outcomes.clear();
  for (const auto& [text, p] : found.texts) {
    DistOutcome o;
    o.text = text;
    o.probability = p;
    o.numeric = ReadAsResult(text, o.value);
    dist.outcomes.push_back(std::move(o));
  }
  std::sort(dist.outcomes.begin(), dist.outcomes.end(), Before);
  dist.truncated = found.truncated;
  dist.summary = DistSummary{};
  Summarize(dist);
  Cumulate(dist);
}

Distribution DistributionOf(const std::vector<std::pair<std::string, double>>& results,
                            double truncated) {
  Outcomes found;
  for (const auto& [text, p] : results)
    found.Add(text, p);
  found.truncated = truncated;
  Distribution dist;
  FinishDistribution(found, dist);
  return dist;
}

double ProbabilityAtLeast(const Distribution& dist, double x) {
  for (size_t i = 0; i < dist.atLeast.size(); ++i)
    if (dist.outcomes[i].value >= x) return dist.atLeast[i];
  return 0;
}

double ProbabilityAtMost(const Distribution& dist, double x) {
  for (size_t i = dist.atMost.size(); i-- > 0;)
    if (dist.outcomes[i].value <= x) return dist.atMost[i];
  return 0;
}

DistComparison CompareDistributions(const Distribution& first, const Distribution& second) {
  DistComparison c;
  const size_t m = second.atMost.size();
  size_t j = 0;  // the first outcome of second not below the current value
  for (size_t i = 0; i < first.atMost.size(); ++i) {
    const DistOutcome& a = first.outcomes[i];
    while (j < m && second.outcomes[j].value < a.value)
      ++j;
    double below = j > 0 ? second.atMost[j - 1] : 0;
    double same = j < m && second.outcomes[j].value == a.value ? second.outcomes[j].probability : 0;
    double above = j < m ? second.atLeast[j] - same : 0;
    c.firstHigher += a.probability * below;
    c.equal += a.probability * same;
    c.secondHigher += a.probability * above;
  }
  return c;
}

}  // namespace gandrel
