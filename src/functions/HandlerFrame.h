// The frame that every "@" function handler follows.
//
// HandleCall cuts the call out of the line, runs the calls nested in its
// arguments, and then hands the call to the handler's body, all under the
// handler's run-time error trap. The body checks its commas, substitutes the
// variables, rolls, writes its trace and finishes the call with its result
// text. The helpers below are the steps that several bodies share.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/VarStore.h"

namespace gandrel {

// One call being handled: the line and details of ProcFunc, and the line cut
// around the call.
struct FunctionCall {
  std::string_view name;  // lower case, with its "@"
  std::string& line;
  std::string& details;
  const VarStore& store;
  std::string left;
  std::string args;
  std::string right;

  // The line becomes "<script error>" and the details the message.
  void Fail(const std::string& message);
  // The missing-comma error, with the function's usage on its second line.
  void FailMissingComma();
  // The "no dice" error of the wild-dice functions.
  void FailNoDice();
  // The call's place in the line takes the result: left & result & right.
  void Finish(const std::string& result);
  // Appends a trace line's head: the details indent, then head.
  void BeginTrace(const std::string& head);
};

using CallBody = void (*)(FunctionCall& call);

// The frame: cuts the first call of name out of the line, runs ProcFunc on its
// arguments (when that fails the line becomes "<script error>" and the inner
// message stays), then runs body. A run-time error anywhere in it makes the
// line "<script error>" and the details "Error: " & description, CR LF, the
// usage. BreakSignal passes through.
void HandleCall(std::string_view name, std::string& line, std::string& details,
                const VarStore& store, CallBody body);

// The function's name in upper case followed by its argument list, as the
// error messages show it: "@LIMIT(lower limit, upper limit, dieroll)".
std::string UsageText(std::string_view name);

// ReplaceVars on the call's arguments.
void SubstituteVariables(FunctionCall& call);

// The arguments of the functions that read bounds (or a count) before their
// dice text: @cap, @lcap, @ucap, @limit, @llimit, @ulimit, @best, @worst and
// @bestlist.
struct BoundedArgs {
  std::vector<double> bounds;  // in the order written
  std::string dice;            // the text after them
  // Each bound's number text followed by separator, as the traces show them.
  std::string Shown(const char* separator) const;
};

// The comma check on the arguments before substitution, ReplaceVars, and the
// text cut into the bounds and the dice. Two bounds need exactly two commas and
// the text cut at every comma (a list item that takes a comma away raises
// "Subscript out of range"); one bound needs a comma and the text cut at the
// first. A whole bound is the value of its text rounded half to even into 16
// bits ("Overflow" when it does not fit). False when the comma check failed
// the call.
bool ReadBoundedArgs(FunctionCall& call, int count, bool whole, BoundedArgs& args);

}  // namespace gandrel
