// The "@" functions of script lines: best and worst dice, caps, limits and
// wild dice.
//
// ProcFunc finds every "@name(arguments)" call of a line and lets the
// function's handler replace the call by its result text. Every handler
// follows one frame: cut the call out of the line, run the calls nested in its
// arguments first, check the commas, substitute the script's variables, roll,
// add a trace line to the details and put the result in the call's place.
//
// Failures are marker texts, never exceptions: the line becomes exactly
// "<script error>" and the details text is replaced by the error message.
// A run-time error inside a handler (an unclosed "(", a number out of range,
// a per-die text longer than 32,767 characters) is reported the same way as
// "Error: " & description, CR LF, the function's usage.
//
// The one exception that passes through is BreakSignal: a roll that never
// ends (@wild of 1d1) stops when the user breaks, and the caller ends the run.
//
// The trace lines start with runFlags.LogPrefix; engineSettings.LongResults decides
// whether the rolls add their detail lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "calc/VarStore.h"

namespace gandrel {

// Replaces every function call of the line by its result, one call after the
// other from the left, and stops at the first failure. A position past
// 32,767 characters in the line raises "Overflow" to the caller.
void ProcFunc(std::string& line, std::string& details, const VarStore& store);

// Cuts the line around the first call of name (lower case, with its "@"):
// left and right are the trimmed texts around the call, args the trimmed
// text between its parentheses. The closing parenthesis is found by depth, so
// nested calls stay inside args. A "(" that is never closed, or a name that
// does not occur, raises "Invalid procedure call or argument".
void SplitFunctionCall(const std::string& line, const std::string& name, std::string& left,
                       std::string& args, std::string& right);

// True when name (lower case, with its "@", as ProcFunc cuts it from a line)
// is one of the functions above; the script editor colours such calls.
bool IsScriptFunction(std::string_view name);

// Removes the empty texts of a 1-based array (element 0 stays, as "").
void DropEmptyItems(std::vector<std::string>& items);

// Sorts a 1-based array of number texts ascending by their values: a comb
// sort (shrink factor 1.3) that never swaps equal values, so which of two
// equal texts comes first is fixed by the passes. Lets events run after
// each pass.
void SortByValue(std::vector<std::string>& items);

// The handlers. Each processes the first call of its own name in the line.

// @best(num, dieroll), @worst(num, dieroll): the num highest (lowest) terms
// of the roll, written out as a sum such as "+6+5+4".
void FuncBest(std::string& line, std::string& details, const VarStore& store);
void FuncWorst(std::string& line, std::string& details, const VarStore& store);
// @bestlist(num, listname): @best on the items of a script list.
void FuncBestList(std::string& line, std::string& details, const VarStore& store);

// @cap(low, high, dieroll), @lcap(low, dieroll), @ucap(high, dieroll): every
// term of the roll bounded, written out as a sum.
void FuncCap(std::string& line, std::string& details, const VarStore& store);
void FuncLCap(std::string& line, std::string& details, const VarStore& store);
void FuncUCap(std::string& line, std::string& details, const VarStore& store);

// @limit(low, high, dieroll), @llimit(low, dieroll), @ulimit(high, dieroll):
// the total of the roll bounded, as one number.
void FuncLimit(std::string& line, std::string& details, const VarStore& store);
void FuncLLimit(std::string& line, std::string& details, const VarStore& store);
void FuncULimit(std::string& line, std::string& details, const VarStore& store);

// @wild(dieroll): the whole roll again for as long as it totals its maximum;
// the call becomes "+" & each total.
void FuncWild(std::string& line, std::string& details, const VarStore& store);
// @swwild(dieroll): one wild die (the first die of the first added dice term)
// explodes on its highest face; its lowest face on the first roll takes it
// and the highest other die of its term out. The call becomes the total.
void FuncSWWild(std::string& line, std::string& details, const VarStore& store);
// @wilddice(dieroll): every die explodes on its highest face. The call
// becomes the total.
void FuncWildDice(std::string& line, std::string& details, const VarStore& store);

}  // namespace gandrel
