// The caps (@cap, @lcap, @ucap) bound every term of a roll and leave the terms
// written out as a sum; the limits (@limit, @llimit, @ulimit) bound the total
// and leave one number.

#include <string>

#include "calc/EngineSettings.h"
#include "calc/NumberText.h"
#include "calc/modEvaluate.h"
#include "dice/modDiceCalc.h"
#include "functions/HandlerFrame.h"
#include "functions/TermList.h"
#include "functions/modScriptFunctions.h"

namespace gandrel {

namespace {

// Which sides a cap or limit bounds. Both takes two bounds, low then high;
// the others take one.
enum class Sides { Both, Lower, Upper };

struct Bounding {
  Sides sides;
  bool whole;     // the bound kept as a 16-bit whole number
  bool eachTerm;  // a cap; a limit bounds the total
  const char* traceName;
};

constexpr Bounding kCap{Sides::Both, false, true, "Cap("};
constexpr Bounding kLCap{Sides::Lower, true, true, "LCap("};
constexpr Bounding kUCap{Sides::Upper, true, true, "UCap("};
constexpr Bounding kLimit{Sides::Both, false, false, "Limit("};
constexpr Bounding kLLimit{Sides::Lower, false, false, "LLimit("};
constexpr Bounding kULimit{Sides::Upper, false, false, "ULimit("};

// Raises a term below low to low's text, then lowers one above high to
// high's text, reading the term again after the first step.
std::string CapTerm(std::string term, double low, double high, Sides sides) {
  if (sides != Sides::Upper && ReadNumber(term) < low) term = FormatNumber(low);
  if (sides != Sides::Lower && ReadNumber(term) > high) term = FormatNumber(high);
  return term;
}

double BoundTotal(double value, double low, double high, Sides sides) {
  if (sides != Sides::Upper && !(value >= low)) value = low;
  if (sides != Sides::Lower && value > high) value = high;
  return value;
}

// Rolls the dice text into single terms, bounds each and puts their sum in
// the call's place.
void CapTerms(FunctionCall& call, const Bounding& cap, double low, double high,
              const BoundedArgs& args) {
  ReplaceByTerms(call, args.dice, cap.traceName + args.Shown(","),
                 [&](std::vector<std::string>& terms) {
                   std::string capped;
                   for (size_t i = 1; i < terms.size(); ++i)
                     AppendTerm(capped, CapTerm(terms[i], low, high, cap.sides));
                   return capped;
                 });
}

// Rolls and calculates the dice text, bounds its total and puts that number in
// the call's place.
void LimitTotal(FunctionCall& call, const Bounding& limit, double low, double high,
                const BoundedArgs& args) {
  std::string dice = args.dice;
  ExpandAllDice(dice);
  ReplaceDice(dice, call.details);
  double value = Calc(dice, call.details);
  // The calculation's own detail ends without a line break.
  if (engineSettings.LongResults) call.details += kCrLf;
  call.BeginTrace(limit.traceName + args.Shown(", ") + FormatNumber(value) + ")=");
  value = BoundTotal(value, low, high, limit.sides);
  call.details += FormatNumber(value) + kCrLf;
  call.Finish(FormatNumber(value));
}

void BoundRoll(FunctionCall& call, const Bounding& bounding) {
  BoundedArgs args;
  if (!ReadBoundedArgs(call, bounding.sides == Sides::Both ? 2 : 1, bounding.whole, args)) return;
  const double low = bounding.sides == Sides::Upper ? 0 : args.bounds.front();
  const double high = bounding.sides == Sides::Lower ? 0 : args.bounds.back();
  (bounding.eachTerm ? CapTerms : LimitTotal)(call, bounding, low, high, args);
}

}  // namespace

void FuncCap(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@cap", line, details, store, [](FunctionCall& call) { BoundRoll(call, kCap); });
}

void FuncLCap(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@lcap", line, details, store, [](FunctionCall& call) { BoundRoll(call, kLCap); });
}

void FuncUCap(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@ucap", line, details, store, [](FunctionCall& call) { BoundRoll(call, kUCap); });
}

void FuncLimit(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@limit", line, details, store, [](FunctionCall& call) { BoundRoll(call, kLimit); });
}

void FuncLLimit(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@llimit", line, details, store, [](FunctionCall& call) { BoundRoll(call, kLLimit); });
}

void FuncULimit(std::string& line, std::string& details, const VarStore& store) {
  HandleCall("@ulimit", line, details, store, [](FunctionCall& call) { BoundRoll(call, kULimit); });
}

}  // namespace gandrel
