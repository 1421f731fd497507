// RollHints: what a result does not say by itself.
//
// The calculation reads text it does not know as nothing, gives a "d" with
// neither a size nor a type's name the default die, and fails as
// "<calc error>" without a word. The hints say so in the player's terms, and
// give Gandrel's way of writing what other rollers write as "4d6k3", "4d6!",
// "d%" or "4dF". They are worked out beside a roll, never inside it: the
// roll, its result, its details and its clipboard line are the same with and
// without them, and working them out rolls nothing and changes no setting,
// die type or history.
//
// The front ends show them as they are: the window under the result, the
// terminal's JSON output as its "warnings".
#pragma once

#include <string>
#include <vector>

#include "calc/modEvaluate.h"

namespace gandrel {

// The hints for the outcome of one Roll request, in the order to show them;
// empty when there is nothing to say.
//   dieValue  the die value as the user typed it, before the request gave its
//             bare dice the default die ("4dF", not "4d6F");
//   result    the result text the request worked out ("17", "<calc error>");
//   failure   what Calc said of its evaluation (Calc's overload with an
//             EvalFailure); with the default, a "<calc error>" gets no reason.
// The notation is read against the die types and the default die in force,
// as the roll read it, so the hints are worked out right after the roll.
// What gets hints: an expression, and a one-line script ("=...") without "@"
// and double quotes, which calculates its text the same way (its failures
// become a value, so they get no reason). Script files, "<current script>",
// lines with "@" or double quotes, and the results "<error>",
// "<script error>" and "<break>" get none.
std::vector<std::string> RollHints(const std::string& dieValue, const std::string& result,
                                   const EvalFailure& failure = {});

// At most this many hints are given for one roll.
inline constexpr size_t kMostHints = 6;

}  // namespace gandrel
