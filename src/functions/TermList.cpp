#include "functions/TermList.h"

#include "calc/Basic.h"
#include "calc/modEvaluate.h"
#include "calc/modGRCalcs.h"
#include "dice/modDiceCalc.h"
#include "functions/modScriptFunctions.h"

namespace gandrel {

std::string PerDieText(std::string dice, std::string& details) {
  ExpandAllDice(dice);
  ReplaceDice(dice, details);
  FoldSigns(dice);
  return dice;
}

std::vector<std::string> SplitTerms(std::string perDie) {
  // Every "-" becomes "+-", so that a subtracted term stands alone with its sign.
  ExpandMinusSigns(perDie);
  Int16(Len(perDie));
  std::vector<std::string> terms;
  SplitText(perDie, '+', terms);
  DropEmptyItems(terms);
  return terms;
}

void AppendTerm(std::string& sum, const std::string& term) {
  sum += '+';
  sum += term;
}

void ReplaceByTerms(FunctionCall& call, std::string dice, const std::string& head,
                    const std::function<std::string(std::vector<std::string>& terms)>& sum) {
  dice = PerDieText(std::move(dice), call.details);
  call.BeginTrace(head + dice + ")=");
  std::vector<std::string> terms = SplitTerms(dice);
  std::string kept = sum(terms);
  FoldSigns(kept);
  call.details += "(" + kept + ")" + kCrLf;
  call.Finish(kept);
}

}  // namespace gandrel
