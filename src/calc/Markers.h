// The marker texts that stand in for a result, and the fixed messages of a
// roll that fails.
//
// Callers test a result text against these instead of catching errors: a
// procedure that meets a failure writes its marker where the result would
// have gone, and shows a message when the failure is one the user must read.
#pragma once

#include <string_view>

#include "calc/Basic.h"

namespace gandrel {

// A roll failed (the die result was too big, or rolling met another error).
inline constexpr std::string_view kErrorMarker = "<error>";
// The evaluator could not work out the expression.
inline constexpr std::string_view kCalcErrorMarker = "<calc error>";
// A script command or an "@" function failed.
inline constexpr std::string_view kScriptErrorMarker = "<script error>";
// The user stopped a roll or a script.
inline constexpr std::string_view kBreakMarker = "<break>";
// In front of a script's result: show it in a message box as well.
inline constexpr std::string_view kToWindowMarker = "~TOWIN~";

// The die value that runs the script editor's script, the one the editor
// puts into the die-value box when it has no file.
inline constexpr std::string_view kCurrentScript = "<current script>";
// True when the die value names a script file: ".die" anywhere, in any case.
inline bool IsScriptFileName(std::string_view dieValue) {
  return InStr(LCase(dieValue), ".die") > 0;
}
// What PICKLIST asks when its line gives no prompt.
inline constexpr std::string_view kPickPrompt = "Please pick an item:";

inline constexpr std::string_view kRollTooBigMessage =
    "I'm sorry, but the die result generated is too big for me to handle.";
inline constexpr std::string_view kResultTooBigMessage =
    "I'm sorry, but the result calculated is too big for me to handle.";
// The last line of the message of any other run-time error: after a roll,
// and after a calculation.
inline constexpr std::string_view kRollingAdvice =
    "If rolling a huge die, or number of dice, please use something smaller.";
inline constexpr std::string_view kCalculatingAdvice =
    "If performing a complex calculation, please simplify or use smaller numbers.";
// ... and after a die value that failed before any die was rolled.
inline constexpr std::string_view kDieValueAdvice =
    "If entering a very long die value, please shorten it or roll it in parts.";

// True for the four markers that a result text can be instead of a value:
// "<error>", "<calc error>", "<script error>" and "<break>".
inline bool IsFailureMarker(std::string_view text) {
  return text == kErrorMarker || text == kCalcErrorMarker || text == kScriptErrorMarker ||
         text == kBreakMarker;
}

}  // namespace gandrel
