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

// The value of the expression. On failure returns 0 and puts "%" in front of
// the caller's text; otherwise the text is left as it was. Overflows and other
// run-time errors are shown in a message box first.
double Evaluate(std::string& expression);

// Folds runs of signs: every "++" to "+", then every "--" to "+", then every
// "-+" to "-", then every "+-" to "-"; each pass repeated until its pair is
// gone, the four passes run once ("+--" ends as "++").
void FoldSigns(std::string& text);

// text begins with "("; the 1-based position of the ")" that closes it, or 0.
int16_t FindCloseParen(std::string_view text);

// Forgets how deep evaluations are nested (tests start from nothing).
void ResetEvaluator();

}  // namespace gandrel
