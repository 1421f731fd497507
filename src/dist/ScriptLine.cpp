#include "dist/ScriptLine.h"

#include <algorithm>
#include <string>

#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/RuntimeError.h"
#include "dice/modDiceCalc.h"
#include "dist/Expression.h"
#include "dist/FunctionCalls.h"
#include "dist/TermDist.h"
#include "dist/Work.h"

namespace gandrel {

namespace {

// Lines longer than this are not followed: their calculation could grow past
// what positions can count, and a script stopped by that has no result.
constexpr long kLongestLine = 16000;

// A "d" right before a slot takes the slot's digits for its size.
bool DieBeforeSlot(const std::string& text) {
  for (size_t i = 1; i < text.size(); ++i)
    if (text[i] == kSlotMark && (text[i - 1] == 'd' || text[i - 1] == 'D')) return true;
  return false;
}

// The expression holds a double quote: Calc works out the pieces around the
// quoted stretches and leaves the text with their values in place, which the
// result shows without its quotes.
Outcomes QuotedText(const Template& expr, Work& work) {
  Outcomes out;
  ForEachFilling(expr, 1, out, work, [&](const std::string& text, double p) {
    std::string expanded = text;
    if (TrapRuntimeError([&] { ExpandAllDice(expanded); })) {
      out.Add(kEscapedError, p);
      return;
    }
    Outcomes found = QuotedResults(expanded, ResultMode::Text, work);
    for (const auto& [shown, q] : found.texts)
      out.Add(shown, p * q);
    out.truncated += p * found.truncated;
  });
  return out;
}

// Each combination of the calls' texts, expanded and rolled on its own: for
// terms that read what the calls put in before them.
Outcomes RolledEach(const Template& expr, Work& work) {
  Outcomes out;
  TermCache cache(work);
  ForEachFilling(expr, 1, out, work, [&](const std::string& text, double p) {
    std::string expanded = text;
    if (TrapRuntimeError([&] { ExpandAllDice(expanded); })) {
      out.Add(kEscapedError, p);
      return;
    }
    EnumerateRolling(expanded, ResultMode::Number, p, out, cache, work);
  });
  return out;
}

Outcomes Calculated(Template expr, Work& work) {
  if (DieBeforeSlot(expr.text)) return RolledEach(expr, work);
  const Template calls = expr;
  if (TrapRuntimeError([&] { ExpandAllDice(expr.text); })) return Outcomes::Certain("");
  TermCache cache(work);
  if (!FindTerms(expr, cache)) return RolledEach(calls, work);
  return TemplateResults(expr, ResultMode::Number, work);
}

}  // namespace

Outcomes ScriptLineResults(const std::string& dieValue, Work& work) {
  Template line{"result" + dieValue, {}};
  if (Len(line.text) > kLongestLine)
    GiveUp(NotExactReason::Unsupported, "a line too long to follow");
  if (line.text.find('@') != std::string::npos && !ReplaceCalls(line, work))
    return Outcomes::Certain(kScriptErrorMarker);
  // The assignment's expression: the text after the first "=", trimmed.
  Template expr{Trim(line.text.substr(line.text.find('=') + 1)), line.slots};
  Outcomes out =
      expr.text.find('"') != std::string::npos ? QuotedText(expr, work) : Calculated(expr, work);
  // A run-time error stops the script before it sets its result.
  auto escaped = out.texts.find(kEscapedError);
  if (escaped != out.texts.end()) {
    double p = escaped->second;
    out.texts.erase(escaped);
    out.Add("", p);
  }
  return out;
}

}  // namespace gandrel
