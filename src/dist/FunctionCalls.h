// The @ function calls of a one-line script, as ProcFunc meets them: from the
// left, each call replaced by what its handler leaves. A call whose result
// depends on the dice becomes a slot of the line's template; a call whose
// result is fixed (no dice in it) is replaced by that text, worked out by the
// handler itself.
//
// Followed exactly: @best and @worst of a signed sum of dice terms and
// numbers (kept by counting, KeepDice.h), @bestlist (a one-line script has no
// lists), the caps and limits of such a sum, @wild, @wilddice and @swwild of
// any argument whose terms stand on their own (exploding dice followed to the
// truncation). Not followed (the computation gives up): calls inside a call's
// arguments, other argument forms, dice that can fail inside a function.
#pragma once

#include "dist/Template.h"

namespace gandrel {

class Work;

// Replaces the calls of line.text by slots or fixed texts, from the left.
// False when the line becomes "<script error>" whatever the dice show: "@"
// without "(", an unknown function, a missing comma, no dice for a wild
// function, an argument the handler cannot read.
bool ReplaceCalls(Template& line, Work& work);

}  // namespace gandrel
