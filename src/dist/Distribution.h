// The exact distribution of what a roll shows.
//
// ComputeDistribution takes a die value as the Roll button takes it and
// works out every text the result label can show and how likely each one is,
// by Gandrel's own rules: the dice terms read as the notation reads them,
// their totals written into the text and calculated by the real evaluator,
// the @ functions of a one-line script as their handlers roll them. Nothing
// is rolled; nothing is shown to the user (message boxes the evaluator would
// show are swallowed while the distribution is worked out).
//
// When the result cannot be worked out exactly within the budget (a script
// file, terms whose totals feed each other past the budget, too many
// combinations, an @ function in a context it cannot follow, a cancelled
// computation) the distribution says so: method NotExact with the reason, and
// no outcomes. The caller then estimates by rolling: the shell rolls the die
// value as the Roll button does and turns the counted results into the same
// form (DistributionOf), method MonteCarlo, keeping the reason the exact
// computation gave.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gandrel {

enum class DistMethod { Exact, MonteCarlo, NotExact };

enum class NotExactReason {
  None,
  Script,       // a script file or the current script: only running it tells
  Dependent,    // totals that feed later terms, past what can be followed
  Budget,       // more combinations or arithmetic than the budget allows
  Unsupported,  // an @ function or argument form that is not followed exactly
  NeverEnds,    // a roll that repeats for ever (@wild of 1d1)
  Cancelled,    // the progress hook asked to stop
};

struct DistOutcome {
  std::string text;      // what the result label shows: "11", "-.5", "<calc error>"
  bool numeric = false;  // the text is a number as results are written
  double value = 0;      // its value, when numeric
  double probability = 0;
};

// Over the numeric outcomes, weighted by their share of the numeric mass.
struct DistSummary {
  double mean = 0;
  double sd = 0;
  double min = 0;
  double max = 0;
  double median = 0;   // the smallest value reached by half of the numeric mass
  double numeric = 0;  // probability of a numeric result
  double failure = 0;  // probability of a marker: "<error>", "<calc error>", ...
};

struct Distribution {
  DistMethod method = DistMethod::NotExact;
  NotExactReason why = NotExactReason::None;
  std::string reason;  // for the user, when not exact
  // Numeric results ascending, then other texts, then the failure markers.
  std::vector<DistOutcome> outcomes;
  // Probability left out: exploding dice are followed only until what they
  // could still add is below the truncation; 0 when nothing was left out.
  double truncated = 0;
  DistSummary summary;
  // For each numeric outcome i (the first ones of outcomes): the probability
  // of a numeric result at least (at most) its value. Markers count as neither.
  std::vector<double> atLeast;
  std::vector<double> atMost;
  // An estimate by rolling: the rolls counted, and the standard error of the
  // mean (the numeric results' sample deviation over the root of their
  // number; 0 with fewer than two numeric results).
  long long samples = 0;
  double standardError = 0;
};

struct DistOptions {
  // How many texts the evaluator may be asked to calculate; the arithmetic
  // of convolutions is counted against it too, at a far lower rate.
  double budget = 1e7;
  // Exploding dice: followed until the probability left out is below this.
  double truncation = 1e-12;
  // Called every few thousand evaluations (and between long steps) with the
  // share of the work done so far; returning false cancels the computation.
  std::function<bool(double done)> progress;
};

// The distribution of the result a Roll of dieValue would show.
Distribution ComputeDistribution(std::string_view dieValue, const DistOptions& options = {});

// A distribution from result texts and their probabilities, such as the
// relative frequencies of an estimate by rolling: the outcomes ordered, the
// summary and the cumulative probabilities filled in, in the same form as an
// exact one. Equal texts are merged. The method is left NotExact, with no
// reason, for the caller to set.
Distribution DistributionOf(const std::vector<std::pair<std::string, double>>& results,
                            double truncated = 0);

// Probability that the roll shows a number >= x (<= x).
double ProbabilityAtLeast(const Distribution& dist, double x);
double ProbabilityAtMost(const Distribution& dist, double x);

// Two independent rolls compared: the probability that the first shows a
// higher number, the same number, a lower number. Rolls that show no number
// take part in none of the three.
struct DistComparison {
  double firstHigher = 0;
  double equal = 0;
  double secondHigher = 0;
};
DistComparison CompareDistributions(const Distribution& first, const Distribution& second);

}  // namespace gandrel
