// A one-line script, "=expression" (a die value beginning with "@" is made
// one first): the assignment "result =expression" as the script runs it.
// The @ function calls are replaced by what their handlers leave, from the
// left; the rest is expanded and calculated, and the result shows the value
// as a number, 0 when the calculation fails. When the expression holds a
// double quote the result is the text Calc leaves (the pieces around the
// quoted stretches replaced by their values), quotes taken out.
#pragma once

#include <string>

#include "dist/Enumerate.h"

namespace gandrel {

class Work;

// The result texts of the one-line script dieValue ("=..."), with their
// probabilities. A run-time error that stops the script leaves the result
// empty ("").
Outcomes ScriptLineResults(const std::string& dieValue, Work& work);

}  // namespace gandrel
