// The caps (@cap, @lcap, @ucap) bound every term of a roll and leave the terms
// written out as a sum; the limits (@limit, @llimit, @ulimit) bound the total
// and leave one number.

#include <string>

#include "app/Settings.h"
#include "calc/NumberText.h"
#include "calc/modEvaluate.h"
#include "dice/modDiceCalc.h"
#include "functions/HandlerFrame.h"
#include "functions/TermList.h"
#include "functions/modScriptFunctions.h"

namespace gandrel {

namespace {

// Which sides a cap or limit bounds.
enum class Sides { Both, Lower, Upper };

// Raises a term below low to low's text, then lowers one above high to
// high's text, reading the term again after the first step.
std::string CapTerm(std::string term, double low, double high, Sides sides) {
  if (sides != Sides::Upper && ReadNumber(term) < low) term = FormatNumber(low);
  if (sides != Sides::Lower && ReadNumber(term) > high) term = FormatNumber(high);
  return term;
}

// Rolls the dice text into single terms, bounds each and puts their sum in
// the call's place. traceHead is the trace name and the bounds, each followed
// by ",".
void CapTerms(FunctionCall& call, std::string dice, double low, double high, Sides sides,
              const std::string& traceHead) {
  dice = PerDieText(std::move(dice), call.details);
  call.BeginTrace(traceHead + dice + ")=");
  std::vector<std::string> terms = SplitTerms(dice);
  std::string capped;
  for (size_t i = 1; i < terms.size(); ++i)
    AppendTerm(capped, CapTerm(terms[i], low, high, sides));
  FoldSigns(capped);
  call.details += "(" + capped + ")" + kCrLf;
  call.Finish(capped);
}

double BoundTotal(double value, double low, double high, Sides sides) {
  if (sides != Sides::Upper && !(value >= low)) value = low;
  if (sides != Sides::Lower && value > high) value = high;
  return value;
}

// Rolls and calculates the dice text, bounds its total and puts that number in
// the call's place. traceHead is the trace name and the bounds, each followed
// by ", ".
void LimitTotal(FunctionCall& call, std::string dice, double low, double high, Sides sides,
                const std::string& traceHead) {
  ExpandAllDice(dice);
  ReplaceDice(dice, call.details);
  double value = Calc(dice, call.details);
  // The calculation's own detail ends without a line break.
  if (settings.LongResults) call.details += kCrLf;
  call.BeginTrace(traceHead + FormatNumber(value) + ")=");
  value = BoundTotal(value, low, high, sides);
  call.details += FormatNumber(value) + kCrLf;
  call.Finish(FormatNumber(value));
}

}  // namespace

void FuncCap(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@cap", line, details, store, [](FunctionCall& call) {
    if (!RequireTwoCommas(call)) return;
    SubstituteVariables(call);
    std::string low, high, dice;
    CutThreePieces(call.args, low, high, dice);
    double lowCap = ReadNumber(low), highCap = ReadNumber(high);
    CapTerms(call, dice, lowCap, highCap, Sides::Both,
             "Cap(" + FormatNumber(lowCap) + "," + FormatNumber(highCap) + ",");
  });
}

void FuncLCap(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@lcap", line, details, store, [](FunctionCall& call) {
    if (!RequireComma(call)) return;
    SubstituteVariables(call);
    std::string bound, dice;
    CutAtFirstComma(call.args, bound, dice);
    int16_t cap = WholeBound(bound);
    CapTerms(call, dice, cap, 0, Sides::Lower, "LCap(" + FormatNumber(cap) + ",");
  });
}

void FuncUCap(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@ucap", line, details, store, [](FunctionCall& call) {
    if (!RequireComma(call)) return;
    SubstituteVariables(call);
    std::string bound, dice;
    CutAtFirstComma(call.args, bound, dice);
    int16_t cap = WholeBound(bound);
    CapTerms(call, dice, 0, cap, Sides::Upper, "UCap(" + FormatNumber(cap) + ",");
  });
}

void FuncLimit(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@limit", line, details, store, [](FunctionCall& call) {
    if (!RequireTwoCommas(call)) return;
    SubstituteVariables(call);
    std::string low, high, dice;
    CutThreePieces(call.args, low, high, dice);
    double lower = ReadNumber(low), upper = ReadNumber(high);
    LimitTotal(call, dice, lower, upper, Sides::Both,
               "Limit(" + FormatNumber(lower) + ", " + FormatNumber(upper) + ", ");
  });
}

void FuncLLimit(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@llimit", line, details, store, [](FunctionCall& call) {
    if (!RequireComma(call)) return;
    SubstituteVariables(call);
    std::string bound, dice;
    CutAtFirstComma(call.args, bound, dice);
    double lower = ReadNumber(bound);
    LimitTotal(call, dice, lower, 0, Sides::Lower, "LLimit(" + FormatNumber(lower) + ", ");
  });
}

void FuncULimit(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@ulimit", line, details, store, [](FunctionCall& call) {
    if (!RequireComma(call)) return;
    SubstituteVariables(call);
    std::string bound, dice;
    CutAtFirstComma(call.args, bound, dice);
    double upper = ReadNumber(bound);
    LimitTotal(call, dice, 0, upper, Sides::Upper, "ULimit(" + FormatNumber(upper) + ", ");
  });
}

}  // namespace gandrel
