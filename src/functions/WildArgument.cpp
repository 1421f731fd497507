#include "functions/WildArgument.h"

#include "dice/modDiceCalc.h"

namespace gandrel {

bool PrepareWildDice(FunctionCall& call, std::string& dice) {
  SubstituteVariables(call);
  dice = call.args;
  ExpandAllDice(dice);
  if (HoldsDice(dice)) return true;
  call.FailNoDice();
  return false;
}

bool HoldsDice(const std::string& text) {
  return text.find_first_of("dD") != std::string::npos;
}

}  // namespace gandrel
