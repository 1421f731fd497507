// The calculation entry: GenerateAllDice, Calc and CalcOutsideQuotes.
#include <string>
#include <string_view>
#include <vector>

#include "calc/Basic.h"
#include "calc/EngineSettings.h"
#include "calc/Markers.h"
#include "calc/modEvaluate.h"
#include "dice/DiceText.h"
#include "dice/DieLookup.h"
#include "dice/QuoteCut.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

namespace {

// Adds one term's detail line to the caller's details. A few megabytes for a
// big roll: moved when the details are still empty.
void AppendDetails(std::string& details, std::string& termDetails) {
  if (details.size() + termDetails.size() > maxDiceText * 2) Raise(ErrNo::OutOfMemory);
  if (details.empty()) {
    details = std::move(termDetails);
  } else {
    details += termDetails;
  }
}

// The value of a piece calculated on its own; its details are dropped.
double CalcPiece(std::string piece) {
  std::string dropped;
  return Calc(piece, dropped);
}

// Calc of a text that holds a double quote. Each piece before a quoted stretch
// is replaced by the text of its value; what follows the stretch is
// calculated as a text of its own (with quotes of its own, the same way
// again), and the text of that value takes its place. The nesting is
// unwound into a loop: all pieces are rolled first, in order, then the
// nested texts are evaluated from the innermost out.
std::string JoinCalculatedPieces(std::string_view text) {
  std::vector<QuoteCut> levels;
  std::string tail;
  QuoteCut cut;
  CutAtQuote(text, cut);
  for (;;) {
    if (!cut.before.empty()) cut.before = NumberText(CalcPiece(cut.before));
    levels.push_back(std::move(cut));
    std::string after = std::move(levels.back().after);
    if (after.empty()) break;
    if (after.find('"') == std::string::npos) {
      tail = NumberText(CalcPiece(std::move(after)));
      break;
    }
    // The nested Calc of what follows reseeds like every Calc.
    Randomize();
    CutAtQuote(after, cut);
  }
  for (size_t k = levels.size(); k-- > 1;) {
    std::string nested = levels[k].before + levels[k].quoted + tail;
    tail = NumberText(Evaluate(nested));
  }
  return levels[0].before + levels[0].quoted + tail;
}

// The trimmed text of the value of a stretch outside quotes.
std::string CalculatedText(std::string piece) {
  std::string dropped;
  GenerateAllDice(piece, dropped);
  return Trim(NumberText(Calc(piece, dropped)));
}

}  // namespace

void GenerateAllDice(std::string& expr, std::string& details) {
  CheckTextLength(expr);
  std::string lower = LCase(expr);
  long p = InStr(lower, "d");
  while (p > 0) {
    long start = 0, end = 0;
    FindRolledTerm(lower, p, start, end);
    std::string term = Mid(expr, start, end - start + 1);
    std::string termDetails;
    double total = GetDieResult(term, termDetails);
    if (term == kErrorMarker) {
      expr = kErrorMarker;
      return;
    }
    if (engineSettings.LongResults) AppendDetails(details, termDetails);
    std::string text = Trim(NumberText(total));
    size_t at = static_cast<size_t>(start - 1), length = static_cast<size_t>(end - start + 1);
    expr.replace(at, length, text);
    lower.replace(at, length, LCase(text));
    CheckTextLength(expr);
    // Nothing before the term holds a "d", and a number never does.
    p = InStr(start, lower, "d");
  }
}

double Calc(std::string& expr, std::string& details) {
  EvalFailure failure;
  return Calc(expr, details, failure);
}

double Calc(std::string& expr, std::string& details, EvalFailure& failure) {
  failure = {};
  Randomize();
  CheckTextLength(expr);
  if (expr.find('"') != std::string::npos) {
    expr = JoinCalculatedPieces(expr);
  } else {
    GenerateAllDice(expr, details);
  }
  // The evaluator gets a failed roll's "<error>" too, and fails on it.
  bool rollFailed = expr == kErrorMarker;
  double value = Evaluate(expr, failure);
  if (Left(expr, 1) == "%") {
    if (rollFailed) failure = {EvalFault::RollFailed, {}};
    expr = kCalcErrorMarker;
    return value;
  }
  if (engineSettings.LongResults) {
    details += "Calc: ";
    details += expr;
    details += '=';
    AppendNumberText(details, value);
  }
  return value;
}

void CalcOutsideQuotes(std::string& line) {
  CheckTextLength(line);
  // Stretches outside quotes become the text of their value; a blank-only
  // stretch after the last quoted one stays as it is.
  std::string rest = line, out;
  QuoteCut cut;
  for (;;) {
    if (!CutAtQuote(rest, cut)) {
      out += Trim(rest).empty() ? rest : CalculatedText(rest);
      break;
    }
    if (!Trim(cut.before).empty()) cut.before = CalculatedText(cut.before);
    out += cut.before;
    out += cut.quoted;
    if (Trim(cut.after).empty()) {
      out += cut.after;
      break;
    }
    rest = std::move(cut.after);
  }
  line = std::move(out);
}

}  // namespace gandrel
