// modEvaluate: the expression evaluator.
//
// Evaluate does not parse into a tree. It rewrites the text of the expression
// one operator at a time, replacing an operator and its two operands by the
// text of the result, level by level (^; * / \ MOD; + -; >= <= <>; > < =; | &),
// until only a number is left. Which characters belong to a number, how runs of
// signs fold, and when a rewrite is taken for the end all follow from that
// rewriting, and are the program's arithmetic.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace gandrel {

// Why an evaluation failed. The failure itself is what it always is (0 and
// "%" in front of the text); the fault only names its cause, for a front end
// that explains a "<calc error>" to the user.
enum class EvalFault : uint8_t {
  None,                  // it did not fail
  Empty,                 // nothing to work out: "", a sign alone, "()"
  UnpairedParentheses,   // the counts of "(" and ")" differ
  UnclosedParenthesis,   // as many of each, but a "(" is never closed (")1+2(")
  PercentInParentheses,  // a "%" in the text of a parenthesised part ("(5%)")
  OperatorFirst,         // an operator with nothing before it ("*5")
  OperatorLast,          // an operator with nothing after it ("5*")
  DivisionByZero,        // "/", "\" or MOD by a right operand of 0
  RunTimeError,          // an overflow or other run-time error, already shown in a message box
  RollFailed,            // (Calc only) a die could not be rolled, already shown in a message box
};

struct EvalFailure {
  EvalFault fault = EvalFault::None;
  // The operator of OperatorFirst, OperatorLast and DivisionByZero ("*",
  // "MOD", ...); empty for the others.
  std::string_view op;
};

// The value of the expression. On failure returns 0 and puts "%" in front of
// the caller's text; otherwise the text is left as it was. Overflows and other
// run-time errors are shown in a message box first.
double Evaluate(std::string& expression);
// The same, and failure says why it failed (EvalFault::None when it did not).
double Evaluate(std::string& expression, EvalFailure& failure);

// Folds runs of signs: every "++" to "+", then every "--" to "+", then every
// "-+" to "-", then every "+-" to "-"; each pass repeated until its pair is
// gone, the four passes run once ("+--" ends as "++").
void FoldSigns(std::string& text);

// text begins with "("; the 1-based position of the ")" that closes it, or 0.
int16_t FindCloseParen(std::string_view text);

// Forgets how deep evaluations are nested (tests start from nothing).
void ResetEvaluator();

}  // namespace gandrel
