// gandrel-cli --distribution: the table, the JSON form, the exit status, and
// scripts estimated at the terminal without a prompt or a file written.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>
#include <vector>

#include "calc/Pump.h"
#include "cli/CliDistribution.h"
#include "cli/CliJson.h"
#include "cli/CliOptions.h"
#include "cli/CliRun.h"
#include "support/EngineFixture.h"

namespace gandrel::cli {
namespace {

namespace fs = std::filesystem;
using Args = std::vector<std::string>;

TEST(CliDistributionOptions, Parsing) {
  CliOptions o;
  ASSERT_EQ(ParseCliOptions({"-D", "--samples=500", "3d6"}, o), "");
  EXPECT_TRUE(o.distribution);
  EXPECT_EQ(o.samples, 500);
  CliOptions defaults;
  ASSERT_EQ(ParseCliOptions({"--distribution"}, defaults), "");
  EXPECT_EQ(defaults.samples, 1000000);
  const std::pair<Args, std::string> cases[] = {
      {{"-D", "-n", "2"}, "option '-n' does not go with --distribution"},
      {{"--samples", "0"}, "'0' is not a number of rolls"},
      {{"--samples=1000000001"}, "'1000000001' is not a number of rolls"},
      {{"-Dx"}, "option '-D' takes no value"},
  };
  for (const auto& [args, problem] : cases) {
    CliOptions options;
    std::string error = ParseCliOptions(args, options);
    EXPECT_EQ(error.rfind(problem, 0), 0u) << error;
  }
}

TEST(CliDistributionJson, Numbers) {
  const std::pair<double, const char*> cases[] = {
      {1, "1"},
      {0.25, "0.25"},
      {1.0 / 3, "0.33333333333333331"},
      {1e-20, "9.9999999999999995e-21"},
      {0.001, "0.001"},
      {-2.5, "-2.5"},
      {1.0 / 0.0, "null"},
  };
  for (const auto& [value, text] : cases)
    EXPECT_EQ(JsonNumber(value), text);
}

class CliDistributionTest : public testing::EngineTest {
 protected:
  struct Outcome {
    int status;
    std::string out, err;
  };

  void SetUp() override {
    EngineTest::SetUp();
    ClearInterrupts();
    config = fs::temp_directory_path() / ("gandrel-cli-dist-" + std::to_string(getpid()));
    fs::create_directories(config);
  }
  void TearDown() override {
    ClearInterrupts();
    fs::remove_all(config);
    EngineTest::TearDown();
  }

  Outcome Run(Args args, std::string input = "") {
    args.insert(args.begin(), {"--config", config.string(), "--distribution"});
    CliOptions options;
    EXPECT_EQ(ParseCliOptions(args, options), "");
    FILE* in = fmemopen(input.data(), input.size(), "r");
    char *outText = nullptr, *errText = nullptr;
    size_t outSize = 0, errSize = 0;
    FILE *out = open_memstream(&outText, &outSize), *err = open_memstream(&errText, &errSize);
    int status = RunCli(options, in, out, err);
    for (FILE* f : {in, out, err})
      std::fclose(f);
    Outcome o{status, outText, errText};
    std::free(outText);
    std::free(errText);
    return o;
  }

  std::string WriteScript(const std::string& name, const std::string& text) {
    std::string path = (config / name).string();
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  fs::path config;
};

TEST_F(CliDistributionTest, TableAndSummary) {
  Outcome o = Run({"2d2", "1d2/(1d2-1)"});
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
  EXPECT_EQ(o.err, "");
  EXPECT_EQ(o.status, 0);
  // Quiet: the tables only; die values from standard input.
  o = Run({"-q"}, "1d2\n2\n");
  EXPECT_EQ(o.out,
            "result  probability   at least    at most\n"
            "     1      50.000%   100.000%    50.000%\n"
            "     2      50.000%    50.000%   100.000%\n"
            "result  probability   at least    at most\n"
            "     2     100.000%   100.000%   100.000%\n");
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
    Outcome o = Run(args);
    EXPECT_EQ(o.out, out);
    EXPECT_EQ(o.status, status) << out;
  }
}

// A script is estimated from real rolls: its prompts take their defaults and
// nothing is asked, shown or written.
TEST_F(CliDistributionTest, ScriptsAreEstimatedWithoutPromptsOrFiles) {
  std::string written = (config / "written.txt").string();
  std::string script =
      WriteScript("fight.die",
                  "var hp\r\nhp = 7\r\nget hp, Hit points?\r\nopen window log\r\n"
                  "print log, hp\r\nopen file f, " +
                      written + "\r\nprint f, hp\r\npause\r\ndisplay\r\nresult = hp + 1d2\r\n");
  Outcome o = Run({"--json", "--samples", "400", "--seed", "5", script}, "12\n");
  EXPECT_EQ(o.out.rfind("{\"dieValue\":" + JsonString(script) +
                            R"j(,"method":"montecarlo","outcomes":[{"result":"8","p":)j",
                        0),
            0u)
      << o.out;
  EXPECT_NE(o.out.find(R"j({"result":"9","p":)j"), std::string::npos);
  EXPECT_NE(o.out.find(R"j(,"samples":400,"stderr":0.02)j"), std::string::npos) << o.out;
  EXPECT_EQ(o.err, "");
  EXPECT_EQ(o.status, 0);
  EXPECT_FALSE(fs::exists(written));
  // The same seed, the same estimate.
  EXPECT_EQ(Run({"--json", "--samples", "400", "--seed", "5", script}).out, o.out);

  o = Run({"--samples=50", script});
  EXPECT_EQ(
      o.out.rfind(script + ": estimated from 50 rolls (a script: only running it tells)\n", 0), 0u)
      << o.out;

  std::string missing = (config / "missing.die").string();
  o = Run({"--json", missing});
  EXPECT_EQ(o.out, "{\"dieValue\":" + JsonString(missing) + ",\"error\":" +
                       JsonString("cannot read " + missing + ": No such file or directory") +
                       "}\n");
  EXPECT_EQ(o.status, 1);
}

TEST_F(CliDistributionTest, DefinedDiceCount) {
  std::ofstream(config / "gandrel.def") << "define dfate = -1 to 1\r\n";
  Outcome o = Run({"-q", "1dfate"});
  EXPECT_EQ(o.out,
            "result  probability   at least    at most\n"
            "    -1      33.333%   100.000%    33.333%\n"
            "     0      33.333%    66.667%    66.667%\n"
            "     1      33.333%    33.333%   100.000%\n");
}

// Ctrl-C stops the estimate under way and the run.
TEST_F(CliDistributionTest, InterruptStops) {
  std::string script = WriteScript("loop.die", "result = 1d6");
  SetPumpEveryCall(true);
  NoteInterrupt();
  Outcome o = Run({script, "3d6"});
  EXPECT_EQ(o.out, script + ": not worked out: cancelled\n");
  EXPECT_EQ(o.status, 1);
}

}  // namespace
}  // namespace gandrel::cli
