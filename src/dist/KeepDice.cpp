#include "dist/KeepDice.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <utility>

#include "calc/modEvaluate.h"
#include "dice/DiceText.h"
#include "dist/Work.h"

namespace gandrel {

namespace {

// Past this many states (dice placed of each kind) the walk is refused.
constexpr double kMaxStates = 1e6;

// Binomial weights C(n, c) p^c, exact for small n and through logarithms for
// large ones (where C(n, c) alone would overflow a double).
class Binomial {
 public:
  explicit Binomial(int64_t n) : logFactorial_(static_cast<size_t>(n) + 1, 0.0) {
    for (int64_t i = 1; i <= n; ++i)
      logFactorial_[static_cast<size_t>(i)] =
          logFactorial_[static_cast<size_t>(i - 1)] + std::log(static_cast<double>(i));
  }
  double Weight(int64_t n, int64_t c, double p) const {
    if (c == 0) return 1;
    if (n <= 50) {
      double w = 1;
      for (int64_t i = 0; i < c; ++i)
        w = w * static_cast<double>(n - i) / static_cast<double>(i + 1) * p;
      return w;
    }
    return std::exp(LogChoose(n, c) + static_cast<double>(c) * std::log(p));
  }

 private:
  double LogChoose(int64_t n, int64_t c) const {
    return logFactorial_[static_cast<size_t>(n)] - logFactorial_[static_cast<size_t>(c)] -
           logFactorial_[static_cast<size_t>(n - c)];
  }
  std::vector<double> logFactorial_;
};

// The values of all groups in the order they are met: highest first to keep
// the highest.
std::vector<int64_t> WalkOrder(const std::vector<DieGroup>& groups, bool highest) {
  std::vector<int64_t> values;
  for (const DieGroup& g : groups)
    values.insert(values.end(), g.face.values.begin(), g.face.values.end());
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
  if (highest) std::reverse(values.begin(), values.end());
  return values;
}

double FaceProbability(const ValueDist& face, int64_t value) {
  auto it = std::lower_bound(face.values.begin(), face.values.end(), value);
  return it != face.values.end() && *it == value ? face.probs[it - face.values.begin()] : 0;
}

// What the walk carries for each state: the kept sum, or the kept text.
struct SumKeep {
  using Key = int64_t;
  static Key Start() { return 0; }
  static Key Keep(Key key, int64_t value, int64_t times, int /*scale*/) {
    return key + value * times;
  }
};

struct TextKeep {
  using Key = std::string;
  static Key Start() { return {}; }
  static Key Keep(Key key, int64_t value, int64_t times, int scale) {
    std::string term = "+" + NumberText(static_cast<double>(value) / PowerOfTen(scale));
    for (int64_t i = 0; i < times; ++i)
      key += term;
    return key;
  }
};

// The walk. A state is how many dice of each group are placed, as one
// mixed-radix number; only states with fewer than k dice placed are carried.
template <class Keep>
std::map<typename Keep::Key, double> Walk(const std::vector<DieGroup>& groups, int64_t k,
                                          bool highest, Work& work) {
  using Key = typename Keep::Key;
  const size_t n = groups.size();
  const int scale = groups.empty() ? 0 : groups[0].face.scale;
  std::vector<int64_t> stride(n + 1, 1);
  int64_t most = 0;
  for (size_t g = 0; g < n; ++g) {
    stride[g + 1] = stride[g] * (groups[g].count + 1);
    most = std::max(most, groups[g].count);
    if (static_cast<double>(stride[g + 1]) > kMaxStates)
      GiveUp(NotExactReason::Budget, "too many kinds of dice to keep from");
  }
  const Binomial binomial(most);
  // Each group's probability of each value, and of the values after it, in
  // the walk's order (summed from the end, so that the last ones stay exact).
  const std::vector<int64_t> order = WalkOrder(groups, highest);
  std::vector<std::vector<double>> at(n, std::vector<double>(order.size())), after = at;
  for (size_t g = 0; g < n; ++g) {
    double sum = 0;
    for (size_t i = order.size(); i-- > 0;) {
      after[g][i] = sum;
      sum += at[g][i] = FaceProbability(groups[g].face, order[i]);
    }
  }

  std::map<Key, double> done;
  std::map<int64_t, std::map<Key, double>> states{{0, {{Keep::Start(), 1.0}}}};
  std::vector<int64_t> placed(n), choice(n);
  std::vector<double> p(n), beyond(n);
  for (size_t i = 0; i < order.size(); ++i) {
    const int64_t value = order[i];
    for (size_t g = 0; g < n; ++g) {
      p[g] = at[g][i];
      beyond[g] = after[g][i];
    }
    std::map<int64_t, std::map<Key, double>> next;
    for (const auto& [state, keys] : states) {
      int64_t total = 0;
      for (size_t g = 0; g < n; ++g) {
        placed[g] = state / stride[g] % (groups[g].count + 1);
        total += placed[g];
      }
      // Every choice of how many dice of each group show this value.
      std::fill(choice.begin(), choice.end(), 0);
      for (;;) {
        double w = 1;
        int64_t chosen = 0, to = state;
        for (size_t g = 0; g < n; ++g) {
          w *= binomial.Weight(groups[g].count - placed[g], choice[g], p[g]);
          chosen += choice[g];
          to += choice[g] * stride[g];
        }
        const int64_t kept = std::min(total + chosen, k) - total;
        double rest = 1;
        if (total + chosen >= k)
          for (size_t g = 0; g < n; ++g)
            rest *=
                std::pow(beyond[g], static_cast<double>(groups[g].count - placed[g] - choice[g]));
        work.Operations(static_cast<double>(keys.size()));
        for (const auto& [key, q] : keys) {
          Key kept_key = Keep::Keep(key, value, kept, scale);
          if (total + chosen >= k) {
            done[kept_key] += q * w * rest;
          } else {
            next[to][kept_key] += q * w;
          }
        }
        // The next choice: the first group that can take one more die.
        size_t g = 0;
        for (; g < n; ++g) {
          if (p[g] > 0 && choice[g] < groups[g].count - placed[g]) {
            ++choice[g];
            break;
          }
          choice[g] = 0;
        }
        if (g == n) break;
      }
    }
    states.swap(next);
  }
  // Fewer dice than k in all: the state with every die placed keeps them all.
  int64_t all = 0;
  for (size_t g = 0; g < n; ++g)
    all += groups[g].count * stride[g];
  if (auto it = states.find(all); it != states.end())
    for (const auto& [key, q] : it->second)
      done[key] += q;
  return done;
}

int64_t DiceCount(const std::vector<DieGroup>& groups) {
  int64_t count = 0;
  for (const DieGroup& g : groups)
    count += g.count;
  return count;
}

TextDist FoldedTexts(const std::map<std::string, double>& raw) {
  std::map<std::string, double> folded;
  for (const auto& [text, p] : raw) {
    std::string t = text;
    FoldSigns(t);
    folded[t] += p;
  }
  TextDist dist;
  dist.texts.assign(folded.begin(), folded.end());
  return dist;
}

}  // namespace

ValueDist KeptSum(const std::vector<DieGroup>& groups, int64_t k, bool highest, Work& work) {
  const int scale = groups.empty() ? 0 : groups[0].face.scale;
  if (k <= 0 || groups.empty()) return ValueDist::Constant(0, scale);
  auto done = Walk<SumKeep>(groups, k, highest, work);
  return FromPairs({done.begin(), done.end()}, scale);
}

TextDist KeptTexts(const std::vector<DieGroup>& groups, int64_t k, bool highest, Work& work) {
  if (k <= 0 || groups.empty()) return TextDist{{{"", 1.0}}, 0};
  if (DiceCount(groups) <= k) return SequenceTexts(groups, work);
  return FoldedTexts(Walk<TextKeep>(groups, k, highest, work));
}

TextDist SequenceTexts(const std::vector<DieGroup>& groups, Work& work) {
  double sequences = 1;
  for (const DieGroup& g : groups)
    sequences *= std::pow(static_cast<double>(g.face.Size()), static_cast<double>(g.count));
  if (!work.EvaluationsFit(sequences))
    GiveUp(NotExactReason::Budget, "more rolled orders than the budget allows");
  // Texts grow one die at a time; a die's faces are its group's.
  std::map<std::string, double> texts{{"", 1.0}};
  for (const DieGroup& g : groups) {
    for (int64_t d = 0; d < g.count; ++d) {
      std::map<std::string, double> next;
      for (const auto& [text, p] : texts)
        for (size_t i = 0; i < g.face.Size(); ++i)
          next[text + "+" + NumberText(g.face.Value(i))] += p * g.face.probs[i];
      work.Operations(static_cast<double>(next.size()));
      texts.swap(next);
    }
  }
  return FoldedTexts(texts);
}

}  // namespace gandrel
