// The per-die lists that the best, worst and cap functions work on.
//
// A dice argument is rolled into a per-die text: every dice term replaced by
// its single results, signs folded ("3d6-2" may give "+4+1+6-2"). That text is
// then cut into its signed terms ("4", "1", "6", "-2"), which the functions
// sort, keep or bound one by one.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "functions/HandlerFrame.h"

namespace gandrel {

// ExpandAllDice, ReplaceDice (the terms' detail lines go to details), then
// the signs folded.
std::string PerDieText(std::string dice, std::string& details);

// The terms of a per-die text, 1-based, each with its own sign, no empty
// ones. Positions in the text are 16-bit: past 32,767 characters (after every
// "-" became "+-") it raises "Overflow".
std::vector<std::string> SplitTerms(std::string perDie);

// The terms written out as a sum, "+" before each: "+6+5+-2".
void AppendTerm(std::string& sum, const std::string& term);

// What the best, worst and cap functions do with a dice argument: it is rolled
// into its terms, sum writes out the terms to keep as a sum ("+6+5+4", signs
// folded afterwards), and that sum takes the call's place. The trace is head
// & the per-die text & ")=(" & the sum & ")", CR LF.
void ReplaceByTerms(FunctionCall& call, std::string dice, const std::string& head,
                    const std::function<std::string(std::vector<std::string>& terms)>& sum);

}  // namespace gandrel
