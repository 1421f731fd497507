// The dice calculator as the front ends call it: the exact distribution of a
// die value when it can be worked out, otherwise an estimate from real rolls.
//
// The estimate rolls the die value as the Roll button would (RepeatedRoll:
// the editor's script for a script file's name) and counts the texts the
// result label would show. For its length nothing reaches the user or the
// disk: every prompt takes its default and no window shows (the script
// windows' stand-in), OPEN FILE opens a file that keeps nothing, message
// boxes are swallowed, the history and the clipboard are not touched. Events
// still run (the front end's own ProcessEvents), so that the window stays
// responsive and Cancel, Escape or Ctrl-C reach the estimate; while they run
// the user's default die and die types are in force. A script's DIE and
// DEFINE last for one roll only (each roll starts from the user's), and the
// long-results listing is off (only the listing differs). Afterwards the
// front end's interfaces, the default die, the die types and the settings
// are as they were.
//
// Not to be called while a roll or a script runs.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "dist/Distribution.h"

namespace gandrel {

inline constexpr long kEstimateRolls = 1000000;

enum class CalculatorStep { Exact, Rolling };

struct CalculatorOptions {
  // How many texts the exact computation may calculate before it gives up.
  double budget = 1e7;
  // How many rolls an estimate makes at most.
  long rolls = kEstimateRolls;
  // Called now and then (at least every 50 ms or so of work, and at the end
  // of each step) with the step and the share of it done; returning false
  // stops the work. An estimate stopped early keeps the rolls made so far.
  std::function<bool(CalculatorStep step, double done)> progress;
};

// Exact when it is exact; otherwise, unless the exact computation was
// cancelled or the roll never ends, estimated by rolling (method MonteCarlo,
// with the exact computation's reason kept). An estimate cancelled before
// its first roll is NotExact with the reason Cancelled.
Distribution CalculateDistribution(const std::string& dieValue,
                                   const CalculatorOptions& options = {});

// The estimate alone, whatever the die value: up to options.rolls rolls.
// Also stops when the user asks for a break (Escape, Ctrl-C): the roll the
// break ended is not counted.
Distribution EstimateDistribution(const std::string& dieValue,
                                  const CalculatorOptions& options = {});

// ---- Texts for the front ends --------------------------------------------

// A probability as a percentage: "12.5%", "0.463%", "100%", and for tiny
// ones "1.29e-08%"; at most 4 significant digits, 3 decimals for the rest.
std::string PercentText(double p);

// A summary figure: at most 6 significant digits, "-" when there is no
// numeric result.
std::string FigureText(const Distribution& dist, double value);

// A number in 17 significant digits, which read back give the same double
// ("0.16666666666666666", "1e-20"): the probabilities of the CSV and of
// gandrel-cli's JSON.
std::string RoundTripText(double value);

// How the distribution was found, for the user: "exact", "estimated from
// 1000000 rolls (a script: only running it tells)", or why there is none.
std::string MethodText(const Distribution& dist);

// The outcomes of named distributions as CSV (RFC 4180, lines ended by CR
// LF): the header "die value,result,probability,at least,at most", then a
// line per outcome, in order; the cumulative columns empty for texts that
// are no number; probabilities with 17 significant digits.
std::string DistributionCsv(const std::vector<std::pair<std::string, Distribution>>& named);

}  // namespace gandrel
