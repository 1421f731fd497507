// The results of calculating an expression whose dice are still in it: the
// plain-sum fast path when it applies, every combination otherwise.
#pragma once

#include <string>

#include "dist/Enumerate.h"
#include "dist/Template.h"
#include "dist/ValueDist.h"

namespace gandrel {

class Work;

// The texts calculating expr shows (GenerateAllDice, then the evaluator),
// with their probabilities. expr holds no double quote.
Outcomes ExpressionResults(const std::string& expr, ResultMode mode, Work& work);

// The texts of a template whose slots are all known: the plain sum's values
// written as numbers when it is one, every combination calculated otherwise.
Outcomes TemplateResults(const Template& tmpl, ResultMode mode, Work& work);

// The values of result texts written as numbers (a Number calculation's), as
// one distribution; gives up for a value that cannot be kept exact.
ValueDist ValuesOfTexts(const Outcomes& found);

// The texts that calculating text, which holds a double quote, shows (mode
// Roll: a roll's; mode Text: a one-line script's): every piece outside the
// quoted stretches calculated on its own, as Calc does, and the whole then
// calculated with those pieces in place.
Outcomes QuotedResults(const std::string& text, ResultMode mode, Work& work);

}  // namespace gandrel
