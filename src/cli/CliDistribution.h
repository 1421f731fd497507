// gandrel-cli --distribution: instead of a roll, the distribution of what a
// roll of each die value shows, worked out by the shell's calculator (exact
// when it can be, otherwise estimated from real rolls with every prompt at
// its default and no file written).
//
// As text, per die value: a line naming it and how it was found, a table of
// every result with its probability and the probabilities of at least and at
// most that result (percentages; texts that are no number listed last, with
// their probability only), and the summary. With --json, one object per die
// value on a line of its own:
//   {"dieValue":..., "method":"exact" or "montecarlo",
//    "outcomes":[{"result":..., "p":...}, ...], "mean", "sd", "min", "max",
//    "median", "failure", "truncated"[, "samples", "stderr"]}
// numbers with 17 significant digits, the summary figures null when no
// result is a number. A die value whose distribution cannot be worked out
// (a roll that never ends, Ctrl-C before anything was found, a script file
// that cannot be read) gives {"dieValue":..., "error":...}.
#pragma once

#include <cstdio>
#include <string>

#include "cli/CliJson.h"
#include "cli/CliOptions.h"
#include "dist/Distribution.h"

namespace gandrel::cli {

// The text for one die value; quiet leaves out the naming line and the
// summary.
std::string DistributionText(const std::string& dieValue, const Distribution& dist, bool quiet);

// The JSON object for one die value, with its line end.
std::string DistributionJson(const std::string& dieValue, const Distribution& dist);

// Prints the distribution of every die value of the options (read from in,
// one a line, when they hold none). The shell must have been started.
// Returns 0, or 1 when a die value can only show failure markers, its
// distribution could not be worked out, or Ctrl-C stopped the run.
int PrintDistributions(const CliOptions& options, FILE* in, FILE* out, FILE* err);

}  // namespace gandrel::cli
