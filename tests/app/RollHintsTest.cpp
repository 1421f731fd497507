#include <gtest/gtest.h>

#include <tuple>

#include "ShellFixture.h"
#include "app/RollHints.h"
#include "calc/Basic.h"
#include "calc/EngineSettings.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"

namespace gandrel::testing {
namespace {

class RollHintsTest : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    for (std::string s : {"define dfate = -1 to 1", "define dfib = 1,1,2,3,5", "define d8k = 1,2",
                          "define dw = -2147483648 to 2147483647"})
      ParseDefine(s);
  }

  // The hints of a Roll request on typed, which must be what RollHints says
  // with what Calc says of the same roll. The request is made twice from one
  // seed, once with the hints worked out again between it and the next
  // request: what the requests show must be the same.
  Items HintsOf(const std::string& typed) {
    // What two requests from the seed show and leave in the history.
    auto twoRequests = [&](bool hintsBetween) {
      DieHistory.assign(1, "");
      SeedRandom(11);
      RollOutcome first = WorkOutRoll(typed);
      if (hintsBetween) {
        EXPECT_EQ(RollHints(typed, first.result, FailureOf(typed)), first.hints);
      }
      RollOutcome second = WorkOutRoll(typed);
      return std::make_tuple(first.hints, first.result, first.eachResult, second.result,
                             second.eachResult, second.dieValueText, DieHistory);
    };
    const auto plain = twoRequests(false);
    EXPECT_EQ(twoRequests(true), plain);
    return std::get<0>(plain);
  }

  // What Calc says of the expression a request on typed calculates.
  static EvalFailure FailureOf(const std::string& typed) {
    std::string expr = Trim(typed), details;
    ExpandDice(expr);
    EvalFailure failure;
    SeedRandom(11);
    Calc(expr, details, failure);
    return failure;
  }
};

const std::string kUnknown = " was ignored: it is not a die, a number or an operator.";

TEST_F(RollHintsTest, DieValues) {
  const struct {
    const char* typed;
    Items hints;
  } cases[] = {
      {"4d6kh3+1", {"\"kh3\"" + kUnknown, "To keep the best 3 of 4d6, write @best(3,4d6)."}},
      {"2d20kl1", {"\"kl1\"" + kUnknown, "To keep the worst 1 of 2d20, write @worst(1,2d20)."}},
      {"4d6dl1",
       {"No die type is named \"dl1\": its \"d\" rolled the default die d6, and \"l1\" was "
        "ignored.",
        "To drop the lowest 1 of 4d6, write @best(3,4d6)."}},
      {"4d6!", {"\"!\"" + kUnknown, "For exploding dice write @wilddice(4d6)."}},
      {"2D% + 1",
       {"The \"D\" before \"%\" rolled the default die d6, and \"%\" was ignored.",
        "For a percentile die write 2d100."}},
      {"4dF",
       {"No die type is named \"dF\": its \"d\" rolled the default die d6, and \"F\" was ignored.",
        "For Fudge dice roll your die type dfate: 4dfate."}},
      {"4dfudge",
       {"No die type is named \"dfudge\": its \"d\" rolled the default die d6, and \"fudge\" was "
        "ignored."}},
      {"7 MOD 3",
       {"\"MOD 3\" was ignored: MOD does not work in a die value, as its \"D\" is rolled as a die.",
        "For the remainder of 7 by 3 write 7-3*(7\\3)."}},
      {"3d6x2", {"\"x2\"" + kUnknown, "For multiplication write \"*\": 3d6*2."}},
      {"{3d6}*2", {"\"{3d6}\"" + kUnknown, "For grouping write \"(\" and \")\"."}},
      {"2+abc-1e3", {"\"abc\"" + kUnknown, "\"e3\"" + kUnknown}},
      {"(1+2", {"The parentheses do not pair up: 1 \"(\" and 0 \")\"."}},
      {")1+2(", {"A \"(\" is never closed: a \")\" comes before its \"(\"."}},
      {"2d6*", {"\"*\" has nothing after it."}},
      {">=5", {"\">=\" has nothing before it."}},
      {"2*()", {"Nothing to calculate: parentheses with nothing between them, or a sign alone."}},
      {"1/(2-2)", {"Division by zero: the number after \"/\" was 0."}},
      {"(d%)",
       {"The \"d\" before \"%\" rolled the default die d6, and \"%\" was ignored.",
        "For a percentile die write d100.", "A \"%\" inside parentheses fails the calculation."}},
      {"=4d6k3", {"\"k3\"" + kUnknown, "To keep the best 3 of 4d6, write @best(3,4d6)."}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.typed);
    EXPECT_EQ(HintsOf(c.typed), c.hints);
  }
  // Nothing to say: known notation, a type that takes the text, a failure
  // already told, scripts and a quoted stretch.
  for (const char* typed : {"3d6+2*(1d4-1)>=1E3", "4dfate+2dfib+3d", "4d8k3", "1+1dw",
                            "@best(3,4d6k3)", "FOO.DIE", "2d6\"k\""})
    EXPECT_EQ(HintsOf(typed), Items{}) << typed;
}

// A one-line script calculates its text as an expression ("=4d6k3" above);
// its failures become a value, and it gets hints only without "@" and quotes.
TEST_F(RollHintsTest, OneLineScriptsAndTheDefaultDie) {
  EXPECT_EQ(std::make_tuple(RollHints("=(1+2", "0", {EvalFault::UnpairedParentheses, {}}),
                            RollHints("=@best(3,4d6)k", "17"), RollHints("=\"x\" k", "x")),
            std::make_tuple(Items{}, Items{}, Items{}));
  // The default die is read as the roll read it.
  engineSettings.DieType = "6w";
  EXPECT_EQ(RollHints("3d+1", "13"),
            Items{"The default die \"d6w\" does not roll: change it in Preferences."});
  EXPECT_EQ(RollHints("3d6+1", "13"), Items{});
  engineSettings.DieType = "dfate";
  EXPECT_EQ(RollHints("4dx", "2"),
            Items{"No die type is named \"dx\": its \"d\" rolled the default die dfate, and \"x\" "
                  "was ignored."});
}

// A few hints, the reason of a failure always among them; long texts are cut.
TEST_F(RollHintsTest, AtMostAFewHints) {
  EXPECT_EQ(RollHints("a+b+c+d+e+f+g+h", "0").size(), kMostHints);
  Items hints =
      RollHints("a+b+c+d+e+f+g+h+(1", "<calc error>", {EvalFault::UnpairedParentheses, {}});
  ASSERT_EQ(hints.size(), kMostHints);
  EXPECT_EQ(hints.back(), "The parentheses do not pair up: 1 \"(\" and 0 \")\".");
  EXPECT_EQ(RollHints(std::string(20000, 'x') + "+3d6", "11"),
            Items{"\"" + std::string(40, 'x') + "...\"" + kUnknown});
  std::string many;
  for (int i = 0; i < 3000; ++i)
    many += "1d6k1+";
  EXPECT_EQ(RollHints(many + "1", "5"),
            (Items{"\"k1\"" + kUnknown, "To keep the best 1 of 1d6, write @best(1,1d6)."}));
}

}  // namespace
}  // namespace gandrel::testing
