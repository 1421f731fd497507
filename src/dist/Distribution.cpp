#include "dist/Distribution.h"

#include <new>
#include <string>

#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"
#include "dice/modDiceCalc.h"
#include "dist/Enumerate.h"
#include "dist/Expression.h"
#include "dist/ScriptLine.h"
#include "dist/Summary.h"
#include "dist/Work.h"

namespace gandrel {

namespace {

constexpr long kLongestText = 32767;

// The roll of an expression: ExpandDice, then Calc. A run-time error on the
// way (a text longer than 32,767 characters) shows "<error>".
Outcomes RollResults(std::string text, Work& work) {
  if (TrapRuntimeError([&] { ExpandDice(text); }) || Len(text) > kLongestText)
    return Outcomes::Certain(kErrorMarker);
  Outcomes found = text.find('"') != std::string::npos
                       ? QuotedResults(text, ResultMode::Roll, work)
                       : ExpressionResults(text, ResultMode::Roll, work);
  auto escaped = found.texts.find(kEscapedError);
  if (escaped != found.texts.end()) {
    double p = escaped->second;
    found.texts.erase(escaped);
    found.Add(std::string(kErrorMarker), p);
  }
  return found;
}

// The die value classified as the Roll button classifies it.
Outcomes ResultsOf(std::string_view dieValue, Work& work) {
  std::string value = Trim(dieValue);
  if (Left(value, 1) == "@") value.insert(0, "=");
  if (IsScriptFileName(value) || value == kCurrentScript)
    GiveUp(NotExactReason::Script, "a script: only running it tells");
  // The marks the computation writes into its own texts must not come in.
  if (value.find_first_of(std::string{kSlotMark} + kEscapedError) != std::string::npos)
    GiveUp(NotExactReason::Unsupported, "a control character that the calculator uses itself");
  if (value.empty()) return Outcomes::Certain("0");
  if (value[0] == '=') return ScriptLineResults(value, work);
  return RollResults(value, work);
}

}  // namespace

Distribution ComputeDistribution(std::string_view dieValue, const DistOptions& options) {
  Distribution dist;
  // While a distribution is worked out, the messages the evaluator and the
  // dice would show are swallowed (the silent stand-in answers them): a
  // combination that overflows is an outcome, not news for the user.
  UIScope quiet(nullptr);
  // The caller's hook runs with the caller's own interface in force.
  DistOptions own = options;
  if (options.progress) {
    own.progress = [&options, &quiet](double done) {
      UIScope caller(&quiet.Outer());
      return options.progress(done);
    };
  }
  Work work(own);
  try {
    Outcomes found = ResultsOf(dieValue, work);
    FinishDistribution(found, dist);
    dist.method = DistMethod::Exact;
  } catch (const NotExactSignal& signal) {
    dist.why = signal.why;
    dist.reason = signal.reason;
  } catch (const RuntimeError& error) {
    // Every run-time error a roll could meet is followed as an outcome; one
    // that reaches here comes from a form not followed, and is reported so.
    dist.why = NotExactReason::Unsupported;
    dist.reason = "a run-time error: " + error.Description();
  } catch (const std::bad_alloc&) {
    dist.why = NotExactReason::Budget;
    dist.reason = "more combinations than memory holds";
  } catch (const BreakSignal&) {
    dist.why = NotExactReason::Cancelled;
    dist.reason = "cancelled";
  }
  return dist;
}

}  // namespace gandrel
