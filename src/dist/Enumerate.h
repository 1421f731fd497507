// Working out a distribution the long way: every combination of totals
// written into the text and calculated by the real evaluator, each result
// text collected with the probability of its combination.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "dist/Template.h"

namespace gandrel {

class TermCache;
class Work;

// What the calculation of a text shows.
enum class ResultMode {
  Roll,    // the result label after a roll: the number, or "<calc error>"
  Number,  // the value written as a number, 0 when the calculation fails: a
           // one-line script's result, a piece before a quote, a function's argument
  Text,    // a one-line script's result when its expression holds a double
           // quote: the text Calc leaves (the pieces around the quoted
           // stretches replaced by their values), trimmed, quotes taken out;
           // "<calc error>" when the calculation fails
};

// Stands for a run-time error that escapes the calculation (a text grown past
// 32,767 characters while its dice are rolled). A roll then shows "<error>";
// a script stops without a result.
inline constexpr const char* kEscapedError = "\x02";

// The text that calculating text shows, by the engine itself: a text holding
// a double quote goes through Calc (which calculates the pieces around the
// quoted stretches), any other through Evaluate.
std::string CalculatedText(const std::string& text, ResultMode mode);

// Result texts and their probabilities, as they are found.
struct Outcomes {
  std::unordered_map<std::string, double> texts;
  double truncated = 0;
  void Add(const std::string& text, double p) { texts[text] += p; }
  // The one text that is always shown.
  static Outcomes Certain(std::string_view text) {
    Outcomes out;
    out.Add(std::string(text), 1);
    return out;
  }
};

// Every combination of the slots' texts written into the template and
// calculated, each weighted by p times its probability. A failed term makes
// the text "<error>"; a slot holding kEscapedError makes the result that. Gives up when the
// combinations pass the budget or a text could grow past 32,767 characters.
void EnumerateTemplate(const Template& tmpl, ResultMode mode, double p, Outcomes& out, Work& work);

// Every combination of the slots' texts written into the template, handed to
// visit with its probability times p; what the slots leave out goes to
// out.truncated. For slots that cannot fail (an @ function's). Gives up past
// the budget.
void ForEachFilling(const Template& tmpl, double p, Outcomes& out, Work& work,
                    const std::function<void(const std::string& text, double p)>& visit);

// The text rolled as GenerateAllDice rolls it, for terms that depend on what
// was written before them: the first term found in the text as it stands
// takes each of its totals in turn, and the rest of the text is rolled the
// same way from there. Past the budget it gives up, saying that the terms
// depend on each other.
void EnumerateRolling(const std::string& text, ResultMode mode, double p, Outcomes& out,
                      TermCache& cache, Work& work);

}  // namespace gandrel
