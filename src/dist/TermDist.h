// One dice term ("3d6", "d20", "4dfate", "2dfib") as a roll reads it, and the
// distribution of its total.
//
// The term is read as GetDieResult reads it: trimmed and lower-cased, "1" put
// before a leading "d", the count is the number before the first "d", and the
// kind is the range type, else the list type, else the plain die whose size
// is the number after the "d". A count below 1 rolls nothing and a fractional
// count rolls its whole part. A plain die of size S shows 1 to the whole part
// of S with probability 1/S each, and one more with the fraction's share
// (d6.5 shows 7 half as often as each other face; d0 always shows 1). A list
// die shows each item with the same probability, so an item written twice
// comes up twice as often; an item that is no number shows 0, and one too
// large to read fails the roll when it comes up. A term that cannot be rolled
// at all (a range too wide, a list of more than 32,767 items) fails with
// probability 1.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "dist/ValueDist.h"

namespace gandrel {

class Work;

// A term cut into its dice: how many, and what one of them shows.
struct DieTerm {
  bool fails = false;  // the term cannot be rolled at all
  int64_t dice = 0;    // how many dice are rolled (the whole part of the count)
  ValueDist face;      // what one die shows
};

// Reads the term. Gives up (not exact) for a die of more faces than can be
// listed, a list item with too many decimals, or a count too large to follow.
DieTerm ReadDieTerm(std::string_view term);

// The distribution of the term's total: error 1 when it cannot be rolled.
ValueDist TermTotal(std::string_view term, Work& work);

// Term totals already worked out in one computation, by the term's text.
class TermCache {
 public:
  explicit TermCache(Work& work) : work_(work) {}
  const ValueDist& Total(const std::string& term);

 private:
  Work& work_;
  std::map<std::string, ValueDist> totals_;
};

}  // namespace gandrel
