// Keeping the highest or lowest dice of a roll (@best, @worst), counted by
// how many dice show each value, never die by die: the values are walked from
// the first kept to the last, and at each value only how many dice of each
// kind show it is chosen, with its binomial weight. Once enough dice are
// placed, the rest only have to show values further down, which they do with
// a probability known at once. 10d10 takes a few thousand steps, not 10^10.
#pragma once

#include <cstdint>
#include <vector>

#include "dist/Template.h"
#include "dist/ValueDist.h"

namespace gandrel {

class Work;

// count dice that each show face (a constant is one die of one face). The
// faces of all groups share one scale.
struct DieGroup {
  ValueDist face;
  int64_t count = 0;
};

// The distribution of the sum of the k highest (lowest) dice of all groups.
// With no more dice than k, the sum of all of them; with k below 1, 0.
ValueDist KeptSum(const std::vector<DieGroup>& groups, int64_t k, bool highest, Work& work);

// The texts @best (@worst) leaves for k of the groups' dice: the kept values
// highest (lowest) first as a sum, "+6+5+4"; with no more dice than k, all of
// them in rolled order; signs folded. Each die's text is its value's.
TextDist KeptTexts(const std::vector<DieGroup>& groups, int64_t k, bool highest, Work& work);

// The texts of every roll of the groups' dice in rolled order written as a sum
// ("+3+5-2"), signs folded: what @cap leaves once its faces are capped.
TextDist SequenceTexts(const std::vector<DieGroup>& groups, Work& work);

}  // namespace gandrel
