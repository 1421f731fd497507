// gandrel-cli --distribution: the table, the JSON form, the exit status, and
// scripts estimated at the terminal without a prompt.
#include <string>
#include <tuple>

#include "calc/Pump.h"
#include "cli/CliFixture.h"
#include "cli/CliJson.h"

namespace gandrel::cli {
namespace {

// Every run here asks for the distributions.
class CliDistributionTest : public CliRunTest {
 protected:
  CliOutcome Run(Args args, std::string input = "") {
    args.insert(args.begin(), "--distribution");
    return CliRunTest::Run(args, input);
  }
};

TEST_F(CliDistributionTest, TableAndSummary) {
  CliOutcome o = Run({"2d2", "1d2/(1d2-1)"});
  EXPECT_EQ(o.out,
            "2d2: exact\n"
            "result  probability   at least    at most\n"
            "     2      25.000%   100.000%    25.000%\n"
            "     3      50.000%    75.000%    75.000%\n"
            "     4      25.000%    25.000%   100.000%\n"
            "mean 3, sd 0.707107, min 2, max 4, median 3\n"
            "failure 0%, truncated 0%\n"
            "\n"
            "1d2/(1d2-1): exact\n"
            "      result  probability   at least    at most\n"
            "           1      25.000%    50.000%    25.000%\n"
            "           2      25.000%    25.000%    50.000%\n"
            "<calc error>      50.000%\n"
            "mean 1.5, sd 0.5, min 1, max 2, median 1\n"
            "failure 50.000%, truncated 0%\n");
  EXPECT_EQ(std::make_tuple(o.err, o.status), std::make_tuple(std::string(), 0));
  // Quiet: the tables only; die values from standard input; the user's die
  // types count.
  config.Write("gandrel.def", "define dfate = -1 to 1\r\n");
  o = Run({"-q"}, "1dfate\n");
  EXPECT_EQ(o.out,
            "result  probability   at least    at most\n"
            "    -1      33.333%   100.000%    33.333%\n"
            "     0      33.333%    66.667%    66.667%\n"
            "     1      33.333%    33.333%   100.000%\n");
}

TEST_F(CliDistributionTest, JsonAndExitStatus) {
  // The arguments, the output and the exit status.
  const std::tuple<Args, std::string, int> cases[] = {
      {{"--json", "1d2/(1d2-1)"},
       R"j({"dieValue":"1d2/(1d2-1)","method":"exact","outcomes":[{"result":"1","p":0.25},)j"
       R"j({"result":"2","p":0.25},{"result":"<calc error>","p":0.5}],"mean":1.5,"sd":0.5,)j"
       R"j("min":1,"max":2,"median":1,"failure":0.5,"truncated":0})j"
       "\n",
       0},
      // Only failures: a bad die value, as for a roll.
      {{"--json", "@foo(1)"},
       R"j({"dieValue":"@foo(1)","method":"exact","outcomes":[{"result":"<script error>","p":1}],)j"
       R"j("mean":null,"sd":null,"min":null,"max":null,"median":null,"failure":1,"truncated":0})j"
       "\n",
       1},
      {{"--json", "@wild(1d1)", "2"},
       R"j({"dieValue":"@wild(1d1)","error":"a roll that always shows its highest total"})j"
       "\n"
       R"j({"dieValue":"2","method":"exact","outcomes":[{"result":"2","p":1}],"mean":2,"sd":0,)j"
       R"j("min":2,"max":2,"median":2,"failure":0,"truncated":0})j"
       "\n",
       1},
      {{"@wild(1d1)"},
       "@wild(1d1): not worked out: a roll that always shows its highest total\n",
       1},
  };
  for (const auto& [args, out, status] : cases) {
    CliOutcome o = Run(args);
    EXPECT_EQ(std::tie(o.out, o.status), std::make_tuple(out, status));
  }
}

// A script is estimated from real rolls: its prompts take their defaults and
// nothing is asked or shown. (That no file is written is the calculator's,
// CalculatorTest's AnEstimateTouchesNothing.)
TEST_F(CliDistributionTest, ScriptsAreEstimatedWithoutPrompts) {
  std::string script = config.Write("fight.die",
                                    "var hp\r\nhp = 7\r\nget hp, Hit points?\r\nopen window log\r\n"
                                    "print log, hp\r\npause\r\ndisplay\r\nresult = hp + 1d2\r\n");
  CliOutcome o = Run({"--json", "--samples", "400", "--seed", "5", script}, "12\n");
  EXPECT_EQ(o.out.rfind("{\"dieValue\":" + JsonString(script) +
                            R"j(,"method":"montecarlo","outcomes":[{"result":"8","p":)j",
                        0),
            0u)
      << o.out;
  EXPECT_NE(o.out.find(R"j({"result":"9","p":)j"), std::string::npos);
  EXPECT_NE(o.out.find(R"j(,"samples":400,"stderr":0.02)j"), std::string::npos) << o.out;
  EXPECT_EQ(std::make_tuple(o.err, o.status), std::make_tuple(std::string(), 0));
  // The same seed, the same estimate.
  EXPECT_EQ(Run({"--json", "--samples", "400", "--seed", "5", script}).out, o.out);

  std::string missing = config.Path("missing.die");
  o = Run({"--json", missing});
  EXPECT_EQ(std::make_tuple(o.out, o.status),
            std::make_tuple(
                "{\"dieValue\":" + JsonString(missing) + ",\"error\":" +
                    JsonString("cannot read " + missing + ": No such file or directory") + "}\n",
                1));
}

// Ctrl-C stops the estimate under way and the run.
TEST_F(CliDistributionTest, InterruptStops) {
  std::string script = config.Write("loop.die", "result = 1d6");
  SetPumpEveryCall(true);
  NoteInterrupt();
  CliOutcome o = Run({script, "3d6"});
  EXPECT_EQ(std::make_tuple(o.out, o.status),
            std::make_tuple(script + ": not worked out: cancelled\n", 1));
}

}  // namespace
}  // namespace gandrel::cli
