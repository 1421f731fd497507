#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "calc/Pump.h"
#include "cli/CliJson.h"
#include "cli/CliOptions.h"
#include "cli/CliRun.h"
#include "support/EngineFixture.h"

namespace gandrel::cli {
namespace {

namespace fs = std::filesystem;
using Args = std::vector<std::string>;

TEST(CliOptions, Parsing) {
  const auto none = std::nullopt;
  struct Case {
    Args args;
    bool quiet, json, help;
    long repeat;
    std::optional<uint64_t> seed;
    std::string config;
    Args dieValues;
  } cases[] = {
      // clang-format off
      {{}, false, false, false, 1, none, "", {}},
      {{"-q", "--json", "3d6", "d20"}, true, true, false, 1, none, "", {"3d6", "d20"}},
      {{"-n", "3", "--seed=42", "--config", "/c"}, false, false, false, 3, 42u, "/c", {}},
      {{"-n7", "--repeat=2", "--seed", "18446744073709551615"}, false, false, false, 2,
       18446744073709551615ull, "", {}},
      {{"-3+d6", "(2d6)", "-", "--", "-q", "--json"}, false, false, false, 1, none, "",
       {"-3+d6", "(2d6)", "-", "-q", "--json"}},
      {{"--help", "x"}, false, false, true, 1, none, "", {"x"}},
      // clang-format on
  };
  for (const Case& c : cases) {
    CliOptions o;
    std::string name = c.args.empty() ? "(none)" : c.args[0];
    EXPECT_EQ(ParseCliOptions(c.args, o), "") << name;
    EXPECT_EQ(std::make_tuple(o.quiet, o.json, o.help, o.repeat, o.seed == c.seed),
              std::make_tuple(c.quiet, c.json, c.help, c.repeat, true))
        << name;
    EXPECT_EQ(o.dieValues, c.dieValues) << name;
    EXPECT_EQ(o.configDir.value_or(""), c.config) << name;
  }
}

TEST(CliOptions, UsageErrors) {
  struct Case {
    Args args;
    std::string error;  // how the problem begins
  } cases[] = {
      // clang-format off
      {{"-d6"}, "unknown option '-d6'"},
      {{"--bogus"}, "unknown option '--bogus'"},
      {{"-n"}, "option '-n' needs a value"},
      {{"-n", "0"}, "'0' is not a repeat count"},
      {{"--repeat=2147483648"}, "'2147483648' is not a repeat count"},
      {{"-n", "+3"}, "'+3' is not a repeat count"},
      {{"--seed", "-1"}, "'-1' is not a seed"},
      {{"--seed=18446744073709551616"}, "'18446744073709551616' is not a seed"},
      {{"--quiet=yes"}, "option '--quiet' takes no value"},
      {{"--config="}, "option '--config' needs a folder"},
      // clang-format on
  };
  for (const Case& c : cases) {
    CliOptions o;
    std::string error = ParseCliOptions(c.args, o);
    EXPECT_EQ(error.rfind(c.error, 0), 0u) << c.args[0] << ": " << error;
  }
}

TEST(CliJson, Escaping) {
  struct Case {
    std::string text, json;
  } cases[] = {
      {"", R"("")"},
      {"3d6", R"("3d6")"},
      {"a\"b\\c", R"("a\"b\\c")"},
      {"x\r\ny\tz", R"("x\r\ny\tz")"},
      {std::string("\0\x01\x1f\b\f\x7f", 6), R"("\u0000\u0001\u001f\b\f)"
                                             "\x7f\""},
      {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8E\xB2",
       "\"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8E\xB2\""},
      {"\xFF\xC3(\xE0\x80\x80\xED\xA0\x80\xF4\x90\x80\x80\xC3",
       R"("\ufffd\ufffd(\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd")"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(JsonString(c.text), c.json) << c.json;
}

class CliRunTest : public testing::EngineTest {
 protected:
  struct Outcome {
    int status;
    std::string out, err;
  };

  void SetUp() override {
    EngineTest::SetUp();
    ClearInterrupts();
    config = fs::temp_directory_path() / ("gandrel-cli-" + std::to_string(getpid()));
    fs::create_directories(config);
  }
  void TearDown() override {
    ClearInterrupts();
    fs::remove_all(config);
    EngineTest::TearDown();
  }

  Outcome Run(Args args, const std::string& input = "") {
    args.insert(args.begin(), {"--config", config.string()});
    CliOptions options;
    EXPECT_EQ(ParseCliOptions(args, options), "");
    FILE* in = std::tmpfile();
    std::fputs(input.c_str(), in);
    std::rewind(in);
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

  void Write(const std::string& name, const std::string& text) {
    std::ofstream(config / name, std::ios::binary) << text;
  }

  fs::path config;
};

TEST_F(CliRunTest, OutputAndStatus) {
  struct Case {
    Args args;
    std::string input, out;
    int status;
  } cases[] = {
      {{"2+3", "-n", "2"}, "", "5\nCalc: 2+3=5\n5\nCalc: 2+3=5\n", 0},
      {{"-q", "2+3", "2+"}, "", "5\n<calc error>\n", 1},
      {{"-q"}, "2+3\r\n\n@x\n", "5\n0\n<script error>\n", 1},
      {{}, "a.die", "<script error>\nScripts are not available in this build.\n", 1},
      {{"--json", "1/4"},
       "",
       R"({"dieValue":"1/4","result":".25","details":"Calc: 1/4=.25","clipboard":" rolls .25 on 1/4"})"
       "\n",
       0},
      {{"--seed", "3", "d"}, "", "5\nd6= +5= 5\nCalc: 5=5\n", 0},
  };
  for (const Case& c : cases) {
    Outcome o = Run(c.args, c.input);
    EXPECT_EQ(o.out, c.out) << c.args.size();
    EXPECT_EQ(o.status, c.status) << c.out;
    EXPECT_EQ(o.err, "") << c.out;
  }
}

TEST_F(CliRunTest, SeedsMessagesAndInterrupts) {
  Args args{"--seed", "7", "-q", "-n", "20", "3d6"};
  std::string first = Run(args).out;
  EXPECT_EQ(Run(args).out, first);
  args[1] = "8";
  EXPECT_NE(Run(args).out, first);

  Outcome o = Run({"-q", std::string(40000, '1'), "2"});
  EXPECT_EQ(std::make_tuple(o.status, o.out, o.err),
            std::make_tuple(1, std::string("<error>\n2\n"),
                            std::string("gandrel: I'm sorry, but the die result generated is too "
                                        "big for me to handle.\n")));

  SetPumpEveryCall(true);
  NoteInterrupt();
  o = Run({"-q", "100d6", "2+2"});
  EXPECT_EQ(o.out, "<break>\n");  // the roll breaks and the run stops
  EXPECT_EQ(o.status, 1);
}

TEST_F(CliRunTest, ReadsButNeverWritesTheFiles) {
  Write("gandrel.def", "define fate = -1 to 1\n3d6\n");
  Write("gandrel.ini", "[Settings]\nLongResults=0\n");
  auto before = fs::last_write_time(config / "gandrel.def");
  Outcome o = Run({"--seed", "1", "-n", "30", "4dfate"});
  std::istringstream lines(o.out);
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    int value = std::atoi(line.c_str());
    EXPECT_TRUE(value >= -4 && value <= 4 && line != "") << line;
  }
  EXPECT_EQ(count, 30);  // long results off: one line a roll
  EXPECT_EQ(fs::last_write_time(config / "gandrel.def"), before);
  EXPECT_EQ(std::distance(fs::directory_iterator(config), fs::directory_iterator{}), 2);
}

// The program itself: usage errors, help and version.
TEST(CliProgram, ExitStatus) {
  struct Case {
    std::string args;
    int status;
    std::string out;
  } cases[] = {
      {"--version", 0, std::string("gandrel-cli ") + GANDREL_VERSION + "\n"},
      {"--bogus 2>&1", 2,
       "gandrel-cli: unknown option '--bogus' (write -- before a die value that begins with "
       "'-'); see gandrel-cli --help\n"},
      {"-h | grep -c Usage:", 0, "1\n"},
      {"--config /nonexistent/x 2>&1", 2, "gandrel-cli: no such folder: /nonexistent/x\n"},
  };
  for (const Case& c : cases) {
    FILE* pipe = popen((std::string(GANDREL_CLI_PROGRAM) + " " + c.args).c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string out;
    char buffer[256];
    while (std::fgets(buffer, sizeof buffer, pipe))
      out += buffer;
    int status = pclose(pipe);
    EXPECT_EQ(WEXITSTATUS(status), c.status) << c.args;
    EXPECT_EQ(out, c.out) << c.args;
  }
}

}  // namespace
}  // namespace gandrel::cli
