#include "dist/Enumerate.h"

#include <vector>

#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/NumberText.h"
#include "calc/RuntimeError.h"
#include "calc/modEvaluate.h"
#include "dice/DiceText.h"
#include "dice/DieLookup.h"
#include "dice/modDiceCalc.h"
#include "dist/TermDist.h"
#include "dist/Work.h"

namespace gandrel {

namespace {

constexpr long kLongestText = 32767;

// The template's text cut at its slots: one more piece than slots.
std::vector<std::string> Pieces(const std::string& text) {
  std::vector<std::string> pieces(1);
  for (char c : text) {
    if (c == kSlotMark) {
      pieces.emplace_back();
    } else {
      pieces.back() += c;
    }
  }
  return pieces;
}

// The longest text a combination can make.
double LongestFilled(const Template& tmpl, const std::vector<TextDist>& texts) {
  double length = static_cast<double>(tmpl.text.size());
  for (const TextDist& slot : texts) {
    size_t longest = 0;
    for (const auto& [text, p] : slot.texts)
      longest = std::max(longest, text.size());
    length += static_cast<double>(longest);
  }
  return length;
}

class Odometer {
 public:
  explicit Odometer(const std::vector<TextDist>& texts) : texts_(texts), digits_(texts.size(), 0) {}
  // Moves to the next combination; false after the last.
  bool Next() {
    for (size_t i = digits_.size(); i-- > 0;) {
      if (++digits_[i] < texts_[i].texts.size()) return true;
      digits_[i] = 0;
    }
    return false;
  }
  // The combination's text and probability; escaped when a slot holds an
  // escaped run-time error.
  std::string Fill(const std::vector<std::string>& pieces, double& p, bool& escaped) const {
    std::string text = pieces[0];
    p = 1;
    escaped = false;
    for (size_t i = 0; i < digits_.size(); ++i) {
      const auto& [slotText, q] = texts_[i].texts[digits_[i]];
      escaped = escaped || slotText == kEscapedError;
      text += slotText;
      text += pieces[i + 1];
      p *= q;
    }
    return text;
  }

 private:
  const std::vector<TextDist>& texts_;
  std::vector<size_t> digits_;
};

}  // namespace

std::string CalculatedText(const std::string& text, ResultMode mode) {
  std::string t = text;
  double value = 0;
  bool failed = false;
  if (t.find('"') != std::string::npos) {
    std::string details;
    if (TrapRuntimeError([&] { value = Calc(t, details); })) return kEscapedError;
    failed = t == kCalcErrorMarker;
    if (mode == ResultMode::Text) {
      t = Trim(t);
      std::erase(t, '"');
      return Trim(t);
    }
  } else {
    value = Evaluate(t);
    failed = !t.empty() && t[0] == '%';
  }
  if (failed) return mode == ResultMode::Number ? "0" : std::string(kCalcErrorMarker);
  return FormatNumber(value);
}

namespace {

// The texts each slot of a template can hold, their number of combinations,
// and the mass they lose: failed terms (counted only where asked) and what
// exploding terms leave out. Gives up past the budget.
struct Fillings {
  std::vector<TextDist> texts;
  double combinations = 1, error = 0, truncated = 0;
};

Fillings FillingsOf(const Template& tmpl, bool termsMayFail, Work& work) {
  Fillings f;
  for (const Slot& slot : tmpl.slots) {
    f.texts.push_back(SlotTexts(slot));
    f.combinations *= static_cast<double>(f.texts.back().texts.size());
    double error = termsMayFail && slot.kind == Slot::Kind::Term ? slot.values.error : 0;
    CombineLosses(f.error, f.truncated, error, f.texts.back().truncated);
  }
  if (!work.EvaluationsFit(f.combinations))
    GiveUp(NotExactReason::Budget, "more combinations than the budget allows");
  return f;
}

// Every combination written into the template, with its probability times p
// and whether a slot held kEscapedError.
void VisitFillings(
    const Template& tmpl, const Fillings& f, double p,
    const std::function<void(const std::string& text, double p, bool escaped)>& visit) {
  if (f.combinations == 0) return;
  const std::vector<std::string> pieces = Pieces(tmpl.text);
  Odometer odometer(f.texts);
  do {
    double q = 0;
    bool escaped = false;
    std::string text = odometer.Fill(pieces, q, escaped);
    visit(text, p * q, escaped);
  } while (odometer.Next());
}

}  // namespace

void EnumerateTemplate(const Template& tmpl, ResultMode mode, double p, Outcomes& out, Work& work) {
  const Fillings f = FillingsOf(tmpl, true, work);
  if (LongestFilled(tmpl, f.texts) > kLongestText)
    GiveUp(NotExactReason::Unsupported, "a text that may grow too long to calculate");
  if (f.error > 0) out.Add(CalculatedText(std::string(kErrorMarker), mode), p * f.error);
  out.truncated += p * f.truncated;
  if (f.combinations > 0) work.Expect(f.combinations);
  VisitFillings(tmpl, f, p, [&](const std::string& text, double q, bool escaped) {
    work.Evaluations(1);
    out.Add(escaped ? std::string(kEscapedError) : CalculatedText(text, mode), q);
  });
}

void ForEachFilling(const Template& tmpl, double p, Outcomes& out, Work& work,
                    const std::function<void(const std::string& text, double p)>& visit) {
  const Fillings f = FillingsOf(tmpl, false, work);
  out.truncated += p * f.truncated;
  VisitFillings(tmpl, f, p, [&](const std::string& text, double q, bool) { visit(text, q); });
}

namespace {

void RollFromFirstTerm(const std::string& text, ResultMode mode, double p, Outcomes& out,
                       TermCache& cache, Work& work) {
  if (Len(text) > kLongestText) {
    out.Add(kEscapedError, p);
    return;
  }
  std::string lower = LCase(text);
  long at = InStr(lower, "d");
  if (at == 0) {
    work.Evaluations(1);
    out.Add(CalculatedText(text, mode), p);
    return;
  }
  long start = 0, end = 0;
  FindRolledTerm(lower, at, start, end);
  const ValueDist& total = cache.Total(Mid(text, start, end - start + 1));
  if (total.error > 0) out.Add(CalculatedText(std::string(kErrorMarker), mode), p * total.error);
  out.truncated += p * total.truncated;
  const std::string head = Left(text, start - 1), tail = Mid(text, end + 1);
  for (size_t i = 0; i < total.Size(); ++i) {
    std::string next = head + NumberText(total.Value(i)) + tail;
    RollFromFirstTerm(next, mode, p * total.probs[i], out, cache, work);
  }
}

}  // namespace

void EnumerateRolling(const std::string& text, ResultMode mode, double p, Outcomes& out,
                      TermCache& cache, Work& work) {
  try {
    RollFromFirstTerm(text, mode, p, out, cache, work);
  } catch (const NotExactSignal& signal) {
    if (signal.why != NotExactReason::Budget) throw;
    GiveUp(NotExactReason::Dependent,
           "totals that feed later terms, with more combinations than the budget allows");
  }
}

}  // namespace gandrel
