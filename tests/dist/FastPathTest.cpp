// The plain-sum fast path against the evaluator: many generated expressions,
// each worked out both ways.
#include <random>
#include <string>

#include "dice/modDiceCalc.h"
#include "dist/DistFixture.h"
#include "dist/Enumerate.h"
#include "dist/Expression.h"
#include "dist/TermDist.h"
#include "dist/Work.h"

namespace gandrel::testing {
namespace {

using FastPath = DistTest;

Shown ShownOf(const Outcomes& found) {
  return Shown(found.texts.begin(), found.texts.end());
}

// Mostly sums and differences of terms and constants, with now and then a
// form that must not be taken for one: doubled signs, adjacent items, other
// operators, exponents, leading zeros, fractions.
std::string Generate(std::mt19937& random) {
  static const char* const kItems[] = {
      "d6", "2d6", "3d4", "d10", "2dfate", "dfib", "2dhalf", "0d6",  "d0",     "4",
      "12", "0",   "007", "2.5", ".5",     "1E2",  "3d",     "10d2", "1dfate", "999999999999999"};
  static const char* const kJoins[] = {"+",  "-", "+", "-", " + ", " - ", "+-",
                                       "--", "",  " ", "*", "-+",  "<",   "+ -"};
  auto pick = [&](auto& table) {
    return table[std::uniform_int_distribution<size_t>(0, std::size(table) - 1)(random)];
  };
  std::string text;
  int leading = std::uniform_int_distribution<int>(0, 5)(random);
  if (leading == 0) text = "-";
  if (leading == 1) text = "+";
  int items = std::uniform_int_distribution<int>(1, 4)(random);
  for (int i = 0; i < items; ++i) {
    if (i > 0) text += pick(kJoins);
    text += pick(kItems);
  }
  return text;
}

TEST_F(FastPath, SameAsTheEvaluatorOnGeneratedExpressions) {
  std::mt19937 random(20240611);
  DistOptions options;
  Work work(options);
  int fast = 0, cases = 600;
  for (int i = 0; i < cases; ++i) {
    std::string text = Generate(random);
    SCOPED_TRACE(text);
    ExpandDice(text);
    TermCache cache(work);
    Template tmpl{text, {}};
    Outcomes quick, slow, rolled;
    try {
      // A total that joins the next count ("2dfate2d6") is no template.
      if (!FindTerms(tmpl, cache)) continue;
      quick = TemplateResults(tmpl, ResultMode::Roll, work);
      EnumerateTemplate(tmpl, ResultMode::Roll, 1, slow, work);
      EnumerateRolling(text, ResultMode::Roll, 1, rolled, cache, work);
      fast += PlainSum(tmpl, work).has_value();
    } catch (const NotExactSignal&) {
      continue;  // a die joined to a huge number: "d10999999999999999"
    }
    ExpectShown(ShownOf(quick), ShownOf(slow));
    ExpectShown(ShownOf(rolled), ShownOf(slow));
  }
  // Enough of them took the fast path for the comparison to mean something.
  EXPECT_TRUE(fast > cases / 4 && fast < cases * 3 / 4) << fast;
}

}  // namespace
}  // namespace gandrel::testing
