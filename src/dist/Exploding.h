// Dice that explode: a die showing its highest face is rolled again and the
// new roll added, for as long as it shows the highest again. The sum has no
// end, so it is followed only to the depth where the probability of going
// deeper is at most a given share; that share is the distribution's
// truncated mass, never hidden.
#pragma once

#include <cstdint>

#include "dist/Template.h"
#include "dist/ValueDist.h"

namespace gandrel {

class Work;

// One die that explodes on hi when hi is above lo (hi and lo as the bounds of
// the die's kind give them); followed until at most leftOut is left out.
ValueDist ExplodingDie(const ValueDist& face, double hi, double lo, double leftOut);

// The total of @swwild's wild term: n dice, the first of them wild (it
// explodes on hi); when the wild die's first roll shows lo, it and the
// highest of the other dice count 0.
ValueDist WildTermTotal(const ValueDist& face, int64_t n, double hi, double lo, double leftOut,
                        Work& work);

// What @wild leaves: the whole roll's total again and again while it shows
// highest. texts are the calls' texts ("+12+12+7", signs folded), sums their
// sums in a plain sum, magnitude the largest sum of magnitudes a text holds.
// Gives up when the total always shows highest (the roll never ends).
struct RepeatedTotals {
  TextDist texts;
  ValueDist sums;
  double magnitude = 0;
};
RepeatedTotals RepeatWhileHighest(const ValueDist& total, double highest, double leftOut,
                                  Work& work);

}  // namespace gandrel
