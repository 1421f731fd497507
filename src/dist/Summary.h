// From result texts to the distribution a caller reads: outcomes in their
// order, the summary, and the probabilities of "at least" and "at most".
#pragma once

#include <string>

#include "dist/Distribution.h"
#include "dist/Enumerate.h"

namespace gandrel {

// The marker texts a roll shows when it fails, and the empty result of a
// script that stopped before it set one.
bool IsFailureText(const std::string& text);

// Fills the outcomes, truncated mass, summary and cumulative probabilities
// of dist from the texts found. Leaves the method alone.
void FinishDistribution(const Outcomes& found, Distribution& dist);

}  // namespace gandrel
