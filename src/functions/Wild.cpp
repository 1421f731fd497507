// @wild: the whole dice text rolled again for as long as it totals the
// highest total it can give; the call becomes "+" & each total.

#include <string>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "calc/modEvaluate.h"
#include "dice/modDiceCalc.h"
#include "functions/HandlerFrame.h"
#include "functions/WildArgument.h"
#include "functions/modScriptFunctions.h"

namespace gandrel {

namespace {

// Every dice term at its maximum, a subtracted one (a "-" right before it) at
// its minimum, and the text calculated. The calculation folds the "-+" that
// a subtracted term leaves.
double HighestTotal(std::string text, std::string& details) {
  std::string before, term, after;
  while (HoldsDice(text)) {
    BreakOutDice(text, before, term, after);
    double bound = Right(before, 1) == "-" ? GetMinResult(term) : GetMaxResult(term);
    text = Trim(before) + "+" + Trim(FormatNumber(bound)) + Trim(after);
  }
  return Calc(text, details);
}

// One roll of the whole dice text: each term rolled in its place, then the
// text calculated.
double RollTotal(const std::string& dice, std::string& details) {
  std::string text = dice, before, term, after;
  while (HoldsDice(text)) {
    BreakOutDice(text, before, term, after);
    GenerateAllDice(term, details);
    text = before + term + after;
  }
  text = Trim(text);
  return Calc(text, details);
}

}  // namespace

void FuncWild(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@wild", line, details, store, [](FunctionCall& call) {
    std::string dice;
    if (!PrepareWildDice(call, dice)) return;
    const double highest = HighestTotal(dice, call.details);
    std::string totals;
    for (;;) {
      double total = RollTotal(dice, call.details);
      totals += '+';
      totals += Trim(FormatNumber(total));
      if (total != highest) break;
      // A text whose every roll is its highest (1d1) never stops by itself.
      YieldCheckBreak();
    }
    FoldSigns(totals);
    call.BeginTrace("Wild(" + dice + ")=(" + totals + ")" + kCrLf);
    call.Finish(totals);
  });
}

}  // namespace gandrel
