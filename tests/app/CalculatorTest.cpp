// The dice calculator as the front ends call it: the exact distributions
// against the real Roll request, the estimate from real rolls against the
// exact answers, and what an estimate must leave untouched.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <tuple>

#include "ShellFixture.h"
#include "app/Calculator.h"
#include "calc/EngineSettings.h"
#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "script/ScriptFiles.h"
#include "support/ForcedFaces.h"

namespace gandrel::testing {
namespace {

class CalculatorTest : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    std::string fate = "define dfate = -1 to 1";
    ParseDefine(fate);
  }
};

// What the Roll request itself shows and what the estimate's roller shows,
// every sequence of three faces forced on them.
Shown RequestedThrough(const std::string& dieValue, double* cut) {
  return EveryFaceSequence([&] { return WorkOutRoll(dieValue).result; }, 3, 9, cut);
}
Shown RepeatedThrough(const std::string& dieValue, double* cut) {
  RepeatedRoll roll(dieValue);
  return EveryFaceSequence([&] { return roll.Roll(); }, 3, 9, cut);
}

// The function-by-function cases are the distribution tests'; here what the
// request adds: trimming, "@" as a one-line script, quotes, the markers.
TEST_F(CalculatorTest, ExactOutcomesAreWhatTheRollRequestShows) {
  for (const char* dieValue : {"2d3+1d3", "1d3/(1d3-1)", "1d3*99999999999999999", "3dfate-1",
                               "\"x\"+1d3", "  2d3 ", "@best(3,4d3)", "= \"You rolled \" 1d3",
                               "=1d3/0 \"a\" 1d3-1", "=1/0", "@foo(1)", "=2*@wild(1d3)"}) {
    SCOPED_TRACE(dieValue);
    Distribution dist = ComputeDistribution(dieValue);
    ASSERT_EQ(dist.method, DistMethod::Exact) << dist.reason;
    for (auto through : {RequestedThrough, RepeatedThrough}) {
      double cut = 0;
      Shown shown = through(dieValue, &cut);
      ExpectShown(ShownOf(dist), shown, cut + 1e-12);
    }
  }
}

// Three rolls added up in a loop: the outcomes of the sum of three
// independent ones, each within four standard errors (a fair estimate strays
// further once in 16,000).
TEST_F(CalculatorTest, EstimatesAgreeWithTheExactAnswers) {
  CalculatorOptions options;
  options.rolls = 100000;
  view.script =
      "var sum\r\nvar i\r\nfor i = 1 to 3\r\nsum = sum + @best(3,4d6)\r\nnext\r\nresult = sum";
  Distribution estimate = EstimateDistribution("<current script>", options);
  Distribution exact = ComputeDistribution("=@best(3,4d6)+@best(3,4d6)+@best(3,4d6)");
  ASSERT_EQ(exact.method, DistMethod::Exact) << exact.reason;
  ASSERT_EQ(estimate.method, DistMethod::MonteCarlo) << estimate.reason;
  ASSERT_GT(estimate.standardError, 0);
  EXPECT_NEAR(estimate.summary.mean, exact.summary.mean, 4 * estimate.standardError);
  // The standard error is the deviation over the root of the rolls.
  EXPECT_NEAR(estimate.standardError * std::sqrt(static_cast<double>(estimate.samples)),
              exact.summary.sd, exact.summary.sd * 0.02);
  for (const DistOutcome& o : exact.outcomes) {
    double se = std::sqrt(o.probability * (1 - o.probability) / estimate.samples);
    EXPECT_NEAR(ShownOf(estimate)[o.text], o.probability, 4 * se + 1e-12) << o.text;
  }
}

// A roll that never ends is not rolled at all: CliDistribution's @wild(1d1).
TEST_F(CalculatorTest, ExactWhenItCanBeEstimatedOtherwise) {
  CalculatorOptions options;
  options.rolls = 2000;
  options.budget = 1000;
  EXPECT_EQ(CalculateDistribution("3d6+2", options).method, DistMethod::Exact);
  Distribution chained = CalculateDistribution("d10d10d10", options);
  EXPECT_EQ(std::make_tuple(chained.method, chained.why, chained.samples),
            std::make_tuple(DistMethod::MonteCarlo, NotExactReason::Dependent, 2000LL));
  view.script = "result = 2d6";
  Distribution script = CalculateDistribution("fight.die", options);
  EXPECT_EQ(MethodText(script), "estimated from 2000 rolls (a script: only running it tells)");
  EXPECT_EQ(std::make_pair(script.summary.min, script.summary.max), std::make_pair(2.0, 12.0));
  EXPECT_TRUE(ui.messages.empty());
}

// Prompts, windows, files, message boxes, the history, the clipboard, the
// default die and the die types: an estimate leaves them all as they were.
TEST_F(CalculatorTest, AnEstimateTouchesNothing) {
  std::string path = dir.Path("out.txt");
  view.script =
      "var x\r\nget x, How many?\r\nopen window w\r\nprint w, hello\r\n"
      "open file f, " +
      path +
      "\r\nprint f, x\r\npause\r\ndisplay\r\n"
      "winresult = 99\r\nresult = 1d + x\r\ndie 20\r\ndefine dnew = 7 to 7";
  engineSettings.DieType = "4";
  engineSettings.LongResults = true;
  runFlags.LogOn = true;
  DieHistory = OneBased("3d6 d20");
  RecordingUI::Output* none = nullptr;
  // Whatever runs while the estimate lets events run (a save as the window
  // closes) sees the user's default die and die types, not the script's.
  int seenScriptsState = 0;
  ui.onPump = [&](long) {
    seenScriptsState += engineSettings.DieType != "4" || dieTypes.Define.size() != 2;
  };
  SetPumpEveryCall(true);
  CalculatorOptions options;
  options.rolls = 300;
  Distribution dist = EstimateDistribution("<current script>", options);
  EXPECT_TRUE(ui.pumps > 300 && seenScriptsState == 0) << ui.pumps << " " << seenScriptsState;
  ui.onPump = nullptr;
  SetPumpEveryCall(false);
  ASSERT_EQ(dist.method, DistMethod::MonteCarlo);
  // Every roll starts with the user's default die, d4: DIE 20 lasts one roll.
  EXPECT_EQ(std::make_tuple(dist.summary.min, dist.summary.max, dist.samples),
            std::make_tuple(1.0, 4.0, 300LL));
  EXPECT_EQ(std::make_tuple(std::filesystem::exists(path), ui.shown.size(), ui.messages.size(),
                            view.clipboard, view.rolls, ui.OutputNamed("w"), DieHistory),
            std::make_tuple(false, 0u, 0u, "", 0, none, OneBased("3d6 d20")));
  // The settings as they were, and dfate the only range type.
  EXPECT_EQ(std::make_tuple(engineSettings.DieType, engineSettings.LongResults, runFlags.LogOn,
                            runFlags.ScriptRunning, dieTypes.Define.size()),
            std::make_tuple("4", true, true, false, 2u));
  // The interfaces are the test's again.
  EXPECT_TRUE(&UI() == &ui && &Windows() == &ui);
  // A script's own file layer: real files again.
  Roll("<current script>");
  EXPECT_TRUE(std::filesystem::exists(path));
}

TEST_F(CalculatorTest, CancelAndBreakStopAnEstimate) {
  CalculatorOptions options;
  options.rolls = 1000000;
  int asked = 0;
  options.progress = [&](CalculatorStep step, double done) {
    EXPECT_TRUE(step == CalculatorStep::Rolling && done > 0 && done < 1) << done;
    return ++asked < 2;
  };
  view.script = "var i\r\nfor i = 1 to 200\r\nnext\r\nresult = 1d6";
  Distribution stopped = EstimateDistribution("<current script>", options);
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(stopped.method, DistMethod::MonteCarlo);
  EXPECT_TRUE(stopped.samples > 0 && stopped.samples < 1000000) << stopped.samples;
  EXPECT_NEAR(stopped.atMost.back(), 1, 1e-12);

  // The user's break (Escape, Ctrl-C) ends the estimate, whether it comes
  // while the script is tokenized or during a roll; the roll it cut short is
  // not counted.
  options.progress = nullptr;
  options.rolls = 5000;
  ui.pumps = 0;
  SetPumpEveryCall(true);
  ui.onPump = [](long pump) {
    if (pump == 5) runFlags.BreakRequested = true;
  };
  Distribution broken = EstimateDistribution("<current script>", options);
  EXPECT_EQ(std::make_pair(broken.method, broken.why),
            std::make_pair(DistMethod::NotExact, NotExactReason::Cancelled));
  EXPECT_FALSE(runFlags.BreakRequested);
  ui.onPump = [](long pump) {
    if (pump == 1000) runFlags.BreakRequested = true;
  };
  ui.pumps = 0;
  Distribution later = EstimateDistribution("<current script>", options);
  EXPECT_TRUE(later.method == DistMethod::MonteCarlo && later.samples < 5000) << later.samples;
  EXPECT_EQ(ShownOf(later).count("<break>"), 0u);
}

TEST_F(CalculatorTest, Texts) {
  const std::pair<double, const char*> percents[] = {
      {0, "0%"}, {1.0 / 216, "0.463%"}, {0.00001, "0.001%"}, {1.29e-10, "1.29e-08%"}};
  for (const auto& [p, text] : percents)
    EXPECT_EQ(PercentText(p), text) << p;
  Distribution dist = ComputeDistribution("1d3/3");
  EXPECT_EQ(FigureText(dist, dist.summary.mean), "0.666667");
  EXPECT_EQ(FigureText(ComputeDistribution("@foo(1)"), 0), "-");

  EXPECT_EQ(DistributionCsv({{"1d2/(1d2-1)", ComputeDistribution("1d2/(1d2-1)")},
                             {"@best(1,1d1)", ComputeDistribution("@best(1,1d1)")},
                             {"=\"a,\"\"b\"", ComputeDistribution("=\"a,\"\"b\"")}}),
            "die value,result,probability,at least,at most\r\n"
            "1d2/(1d2-1),1,0.25,0.5,0.25\r\n"
            "1d2/(1d2-1),2,0.25,0.25,0.5\r\n"
            "1d2/(1d2-1),<calc error>,0.5,,\r\n"
            "\"@best(1,1d1)\",1,1,1,1\r\n"
            "\"=\"\"a,\"\"\"\"b\"\"\",\"a,0\",1,,\r\n");
}

}  // namespace
}  // namespace gandrel::testing
