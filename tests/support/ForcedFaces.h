// A roll made again and again with every sequence of faces forced on it, as
// the reference for the distributions: what it shows, and how likely.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "dist/Distribution.h"

namespace gandrel::testing {

// Result text -> probability.
using Shown = std::map<std::string, double>;

// What roll() shows over every sequence of draws: each draw a die of the
// given number of faces (FaceToRnd), the sequence's probability the product
// of 1/faces. A sequence is complete when the roll leaves one more scripted
// value unread. Sequences longer than maxDraws are cut off; their probability
// goes to cut.
Shown EveryFaceSequence(const std::function<std::string()>& roll, double faces, int maxDraws = 12,
                        double* cut = nullptr);

// A distribution's outcomes as such a table.
Shown ShownOf(const Distribution& dist);

// The two tables hold the same texts with probabilities within tolerance; a
// text on one side only may have a probability above 0 up to the tolerance.
void ExpectShown(const Shown& actual, const Shown& expected, double tolerance = 1e-12);

}  // namespace gandrel::testing
