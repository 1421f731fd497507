// What the three wild-dice functions (@wild, @swwild, @wilddice) share: their
// one argument made ready for rolling, and the test for dice left in a text.
#pragma once

#include <string>

#include "functions/HandlerFrame.h"

namespace gandrel {

// The call's argument with its variables substituted and bare "d"s given the
// default die. When it holds no dice the call fails with the "no dice" error
// and the result is false.
bool PrepareWildDice(FunctionCall& call, std::string& dice);

// True while the text holds a "d" (of either case): a dice term to roll.
bool HoldsDice(const std::string& text);

}  // namespace gandrel
