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
// At each value, every choice of how many dice of each group show it is
// tried; a choice that reaches k dice ends its state at once.
template <class Keep>
class Walk {
 public:
  using Key = typename Keep::Key;
  using Keys = std::map<Key, double>;

  Walk(const std::vector<DieGroup>& groups, int64_t k, bool highest, Work& work)
      : groups_(groups),
        k_(k),
        work_(work),
        n_(groups.size()),
        scale_(groups.empty() ? 0 : groups[0].face.scale),
        order_(WalkOrder(groups, highest)),
        stride_(n_ + 1, 1),
        binomial_(MostDice(groups)) {
    for (size_t g = 0; g < n_; ++g) {
      stride_[g + 1] = stride_[g] * (groups[g].count + 1);
      if (static_cast<double>(stride_[g + 1]) > kMaxStates)
        GiveUp(NotExactReason::Budget, "too many kinds of dice to keep from");
    }
    // Each group's probability of each value, and of the values after it (summed
    // from the end, so that the last ones stay exact).
    at_.assign(n_, std::vector<double>(order_.size()));
    after_ = at_;
    for (size_t g = 0; g < n_; ++g) {
      double sum = 0;
      for (size_t i = order_.size(); i-- > 0;) {
        after_[g][i] = sum;
        sum += at_[g][i] = FaceProbability(groups[g].face, order_[i]);
      }
    }
  }

  Keys Run() {
    std::map<int64_t, Keys> states{{0, {{Keep::Start(), 1.0}}}};
    for (size_t i = 0; i < order_.size(); ++i) {
      std::map<int64_t, Keys> next;
      for (const auto& [state, keys] : states)
        Place(i, state, keys, next);
      states.swap(next);
    }
    // Fewer dice than k in all: the state with every die placed keeps them all.
    if (auto it = states.find(stride_[n_] - 1); it != states.end())
      for (const auto& [key, q] : it->second)
        done_[key] += q;
    return done_;
  }

 private:
  static int64_t MostDice(const std::vector<DieGroup>& groups) {
    int64_t most = 0;
    for (const DieGroup& g : groups)
      most = std::max(most, g.count);
    return most;
  }

  // Every choice of how many dice of each group show value i, from state.
  void Place(size_t i, int64_t state, const Keys& keys, std::map<int64_t, Keys>& next) {
    std::vector<int64_t> placed(n_), choice(n_, 0);
    int64_t total = 0;
    for (size_t g = 0; g < n_; ++g)
      total += placed[g] = state / stride_[g] % (groups_[g].count + 1);
    do {
      double w = 1;
      int64_t chosen = 0, to = state;
      for (size_t g = 0; g < n_; ++g) {
        w *= binomial_.Weight(groups_[g].count - placed[g], choice[g], at_[g][i]);
        chosen += choice[g];
        to += choice[g] * stride_[g];
      }
      const int64_t kept = std::min(total + chosen, k_) - total;
      work_.Operations(static_cast<double>(keys.size()));
      if (total + chosen < k_) {
        for (const auto& [key, q] : keys)
          next[to][Keep::Keep(key, order_[i], kept, scale_)] += q * w;
        continue;
      }
      double rest = 0;
      if (!Rest(i, placed, choice, rest)) continue;
      for (const auto& [key, q] : keys)
        done_[Keep::Keep(key, order_[i], kept, scale_)] += q * w * rest;
    } while (NextChoice(i, placed, choice));
  }

  // The probability that every die not yet placed shows a value after i;
  // false when a group has dice left but no values (a constant passed by).
  bool Rest(size_t i, const std::vector<int64_t>& placed, const std::vector<int64_t>& choice,
            double& rest) const {
    rest = 1;
    for (size_t g = 0; g < n_; ++g) {
      const int64_t left = groups_[g].count - placed[g] - choice[g];
      if (left > 0 && after_[g][i] <= 0) return false;
      rest *= std::pow(after_[g][i], static_cast<double>(left));
    }
    return true;
  }

  // The next choice: the first group that can take one more die of value i.
  bool NextChoice(size_t i, const std::vector<int64_t>& placed,
                  std::vector<int64_t>& choice) const {
    for (size_t g = 0; g < n_; ++g) {
      if (at_[g][i] > 0 && choice[g] < groups_[g].count - placed[g]) {
        ++choice[g];
        return true;
      }
      choice[g] = 0;
    }
    return false;
  }

  const std::vector<DieGroup>& groups_;
  const int64_t k_;
  Work& work_;
  const size_t n_;
  const int scale_;
  const std::vector<int64_t> order_;
  std::vector<int64_t> stride_;
  const Binomial binomial_;
  std::vector<std::vector<double>> at_, after_;
  Keys done_;
};

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
  auto done = Walk<SumKeep>(groups, k, highest, work).Run();
  return FromPairs({done.begin(), done.end()}, scale);
}

TextDist KeptTexts(const std::vector<DieGroup>& groups, int64_t k, bool highest, Work& work) {
  if (k <= 0 || groups.empty()) return TextDist{{{"", 1.0}}, 0};
  if (DiceCount(groups) <= k) return SequenceTexts(groups, work);
  return FoldedTexts(Walk<TextKeep>(groups, k, highest, work).Run());
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
