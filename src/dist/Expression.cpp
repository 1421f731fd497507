#include "dist/Expression.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "calc/Markers.h"
#include "calc/NumberText.h"
#include "dice/QuoteCut.h"
#include "dist/TermDist.h"
#include "dist/Work.h"

namespace gandrel {

namespace {

// A plain sum's values as the texts the evaluator writes for them.
Outcomes SumResults(const ValueDist& sum, ResultMode mode) {
  Outcomes out;
  for (size_t i = 0; i < sum.Size(); ++i)
    out.Add(FormatNumber(sum.Value(i)), sum.probs[i]);
  if (sum.error > 0) out.Add(CalculatedText(std::string(kErrorMarker), mode), sum.error);
  out.truncated = sum.truncated;
  return out;
}

// A text cut as Calc cuts it: the stretches outside double quotes and the
// quoted ones (from a quote to the next, or to the end), alternating, an
// outside stretch first and last.
std::vector<std::string> QuoteCuts(const std::string& text) {
  std::vector<std::string> cuts;
  std::string rest = text;
  QuoteCut cut;
  while (CutAtQuote(rest, cut)) {
    cuts.push_back(std::move(cut.before));
    cuts.push_back(std::move(cut.quoted));
    rest = std::move(cut.after);
  }
  cuts.push_back(std::move(rest));
  return cuts;
}

}  // namespace

Outcomes TemplateResults(const Template& tmpl, ResultMode mode, Work& work) {
  if (auto sum = PlainSum(tmpl, work)) return SumResults(*sum, mode);
  Outcomes out;
  EnumerateTemplate(tmpl, mode, 1, out, work);
  return out;
}

Outcomes ExpressionResults(const std::string& expr, ResultMode mode, Work& work) {
  TermCache cache(work);
  Template tmpl{expr, {}};
  if (FindTerms(tmpl, cache)) return TemplateResults(tmpl, mode, work);
  Outcomes out;
  EnumerateRolling(expr, mode, 1, out, cache, work);
  return out;
}

ValueDist ValuesOfTexts(const Outcomes& found) {
  std::vector<std::pair<double, double>> values;
  int scale = 0;
  for (const auto& [text, p] : found.texts) {
    if (text == kEscapedError) GiveUp(NotExactReason::Unsupported, "a text too long to follow");
    double value = ReadNumber(text);
    int s = ScaleOf(value);
    if (s < 0) GiveUp(NotExactReason::Unsupported, "a total that cannot be kept exact");
    scale = std::max(scale, s);
    values.emplace_back(value, p);
  }
  std::vector<std::pair<int64_t, double>> pairs;
  for (const auto& [value, p] : values) {
    int64_t scaled = 0;
    if (!ToScaled(value, scale, scaled))
      GiveUp(NotExactReason::Unsupported, "a total that cannot be kept exact");
    pairs.emplace_back(scaled, p);
  }
  ValueDist dist = FromPairs(std::move(pairs), scale);
  dist.truncated = found.truncated;
  return dist;
}

Outcomes QuotedResults(const std::string& text, ResultMode mode, Work& work) {
  // Each outside stretch that is not empty becomes a slot holding the text
  // of its value; the quoted stretches stay as written.
  Template tmpl;
  std::vector<std::string> cuts = QuoteCuts(text);
  for (size_t i = 0; i < cuts.size(); ++i) {
    if (i % 2 == 1 || cuts[i].empty()) {
      tmpl.text += cuts[i];
      continue;
    }
    Outcomes piece = ExpressionResults(cuts[i], ResultMode::Number, work);
    Slot slot;
    slot.kind = Slot::Kind::Sum;  // its texts are given, not derived from values
    TextDist texts;
    texts.texts.assign(piece.texts.begin(), piece.texts.end());
    texts.truncated = piece.truncated;
    slot.texts = [texts] { return texts; };
    tmpl.slots.push_back(std::move(slot));
    tmpl.text += kSlotMark;
  }
  Outcomes out;
  EnumerateTemplate(tmpl, mode, 1, out, work);
  return out;
}

}  // namespace gandrel
