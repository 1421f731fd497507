#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <tuple>
#include <utility>

#include "calc/Pump.h"
#include "cli/CliDistribution.h"
#include "cli/CliFixture.h"
#include "cli/CliJson.h"

namespace gandrel::cli {
namespace {

namespace fs = std::filesystem;

// Options on their own: the last count wins; after "--", and when no letter
// follows "-", arguments are die values.
TEST(CliOptions, Parsing) {
  CliOptions o;
  ASSERT_EQ(ParseCliOptions({"-n7", "--repeat=2", "--seed=18446744073709551615", "--quiet",
                             "--help", "--config=/c", "-3+d6", "(2d6)", "-", "--", "-q", "--json"},
                            o),
            "");
  EXPECT_EQ(std::make_tuple(o.quiet, o.json, o.help, o.repeat, o.seed, o.configDir),
            std::make_tuple(true, false, true, 2L, 18446744073709551615ull, "/c"));
  EXPECT_EQ(o.dieValues, (Args{"-3+d6", "(2d6)", "-", "-q", "--json"}));
  CliOptions d;
  ASSERT_EQ(ParseCliOptions({"-D", "--samples=500"}, d), "");
  EXPECT_EQ(std::make_pair(d.distribution, d.samples), std::make_pair(true, 500L));
}

TEST(CliOptions, UsageErrors) {
  // The arguments and how the problem begins.
  const std::pair<Args, std::string> cases[] = {
      {{"-d6"}, "unknown option '-d6'"},
      {{"-n"}, "option '-n' needs a value"},
      {{"-n", "0"}, "'0' is not a repeat count"},
      {{"--repeat=2147483648"}, "'2147483648' is not a repeat count"},
      {{"-n", "+3"}, "'+3' is not a repeat count"},
      {{"--seed=18446744073709551616"}, "'18446744073709551616' is not a seed"},
      {{"--config="}, "option '--config' needs a folder"},
      {{"-D", "-n", "2"}, "option '-n' does not go with --distribution"},
      {{"--samples=1000000001"}, "'1000000001' is not a number of rolls"},
      {{"-Dx"}, "option '-D' takes no value"},
  };
  for (const auto& [args, problem] : cases) {
    CliOptions o;
    std::string error = ParseCliOptions(args, o);
    EXPECT_EQ(error.rfind(problem, 0), 0u) << args[0] << ": " << error;
  }
}

// Texts escaped, bad UTF-8 replaced; numbers that read back exactly.
TEST(CliJson, StringsAndNumbers) {
  const std::pair<std::string, std::string> cases[] = {
      {std::string("\"\\\0\x01\x1f\b\f\r\n\t\x7f", 11), R"("\"\\\u0000\u0001\u001f\b\f\r\n\t)"
                                                        "\x7f\""},
      {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8E\xB2",
       "\"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8E\xB2\""},
      {"\xFF\xC3(\xE0\x80\x80\xED\xA0\x80\xF4\x90\x80\x80\xC3",
       R"("\ufffd\ufffd(\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd")"},
  };
  for (const auto& [text, json] : cases)
    EXPECT_EQ(JsonString(text), json) << json;
  const std::pair<double, const char*> numbers[] = {
      {1.0 / 3, "0.33333333333333331"}, {1e-20, "9.9999999999999995e-21"}, {1.0 / 0.0, "null"}};
  for (const auto& [value, text] : numbers)
    EXPECT_EQ(JsonNumber(value), text);
}

TEST_F(CliRunTest, OutputAndStatus) {
  // The arguments, the standard input, the output and the exit status.
  const std::tuple<Args, std::string, std::string, int> cases[] = {
      {{"2+3", "-n", "2"}, "", "5\nCalc: 2+3=5\n5\nCalc: 2+3=5\n", 0},
      {{"-q", "2+3", "2+"}, "", "5\n<calc error>\n", 1},
      {{"-q"}, "2+3\r\n\n@x\n", "5\n0\n<script error>\n", 1},
      {{"--json", "1/4"},
       "",
       R"({"dieValue":"1/4","result":".25","details":"Calc: 1/4=.25","clipboard":" rolls .25 on 1/4"})"
       "\n",
       0},
      {{"--seed", "3", "4d6"}, "", "15\n4d6= +5+4+2+4= 15\nCalc: 15=15\n", 0},
      // Hints go to the JSON only (and to a person at a terminal).
      {{"--json", "1/(2-2)"},
       "",
       R"j({"dieValue":"1/(2-2)","result":"<calc error>","details":"<calc error>",)j"
       R"j("clipboard":" rolls <calc error> on 1/(2-2)","warnings":["Division by zero: the )j"
       R"j(number after \"/\" was 0."]})j"
       "\n",
       1},
  };
  for (const auto& [args, input, out, status] : cases) {
    CliOutcome o = Run(args, input);
    EXPECT_EQ(std::tie(o.out, o.status), std::make_tuple(out, status))
        << ::testing::PrintToString(args);
  }
}

TEST_F(CliRunTest, MessagesAndInterrupts) {
  CliOutcome o = Run({"-q", std::string(40000, '1'), "2"});
  EXPECT_EQ(std::make_tuple(o.status, o.out, o.err),
            std::make_tuple(1, "<error>\n2\n",
                            "gandrel: I'm sorry, but the following error has occurred:\nOverflow"
                            "\n\nIf entering a very long die value, please shorten it or roll it "
                            "in parts.\n"));

  SetPumpEveryCall(true);
  NoteInterrupt();
  o = Run({"-q", "100d6", "2+2"});
  // The roll breaks and the run stops.
  EXPECT_EQ(std::make_tuple(o.out, o.status), std::make_tuple(std::string("<break>\n"), 1));
}

// A script with each kind of prompt and two output windows. Its answers come
// from standard input, after the die values when those come from there too.
const char* const kFightScript =
    "var hp\r\nvar choice\r\nhp = 7\r\nget hp, Hit points?\r\n"
    "list name weapons\r\nlistbegin weapons\r\nitem \"sword\"\r\nitem \"dagger\"\r\n"
    "item \"long bow\"\r\nlistend\r\nchoice = 2\r\npicklist weapons, choice, Your weapon?\r\n"
    "open window log\r\nopen window dice\r\nprint log, \"Hit points: \" hp\r\n"
    "printnl log, \", weapon \" choice\r\nprintnl dice, 2d1+1\r\nresult = hp * 10 + choice\r\n"
    "display\r\npause\r\nprint log, \"after pause\"\r\n";

TEST_F(CliRunTest, ScriptPromptsReadTheInputAndWindowsGoToTheOutput) {
  std::string script = config.Write("fight.die", kFightScript);
  const std::string listing =
      "Your weapon?\n  1. sword\n  2. dagger\n  3. long bow\n  0. Cancel\nChoice [2]: ";
  // The arguments, the standard input, the output and the standard error.
  const std::tuple<Args, std::string, std::string, std::string> cases[] = {
      {{script},
       "",
       "Hit points: 7, weapon 2\n3\n72\nafter pause\n72\n",
       "Hit points? [7]: \n" + listing + "\n"},
      {{"--json", script},
       "\n0\n",
       "{\"dieValue\":" + JsonString(script) +
           R"(,"result":"70","details":"","clipboard":" rolls 70 on )" + script +
           R"(","windows":{"log":"Hit points: 7, weapon 0\r\nafter pause","dice":"3\r\n"}})"
           "\n",
       "Hit points? [7]: \n" + listing + "0\n"},
      {{"-q"}, script + "\n9\n1\n2d1\n", "91\n91\n2\n", "Hit points? [7]: 9\n" + listing + "1\n"},
  };
  for (const auto& [args, input, out, err] : cases) {
    SCOPED_TRACE(input);
    CliOutcome o = Run(args, input);
    EXPECT_EQ(std::tie(o.out, o.err, o.status), std::make_tuple(out, err, 0));
  }
}

// A script file that cannot be read is reported and gives an empty result;
// the rolls after it go on.
TEST_F(CliRunTest, AScriptFileThatCannotBeRead) {
  std::string missing = config.Path("missing.DIE");
  CliOutcome o = Run({"-q", " " + missing + " ", "2"});
  EXPECT_EQ(std::make_tuple(o.status, o.out, o.err),
            std::make_tuple(1, std::string("\n2\n"),
                            "gandrel: cannot read " + missing + ": No such file or directory\n"));
  std::string folder = config.Path("folder.die");
  fs::create_directory(folder);
  o = Run({"--json", folder});
  EXPECT_EQ(std::make_tuple(o.out, o.err),
            std::make_tuple("{\"dieValue\":" + JsonString(folder) +
                                R"(,"result":"","details":"","clipboard":" rolls  on )" + folder +
                                "\"}\n",
                            "gandrel: cannot read " + folder + ": Is a directory\n"));
}

// Every entry of a folder: its name, kind, size and time of change.
std::string Listing(const fs::path& folder) {
  std::string out;
  for (const auto& entry : fs::directory_iterator(folder)) {
    out += entry.path().filename().string() + " " +
           std::to_string(static_cast<int>(entry.symlink_status().type())) + " ";
    if (entry.is_regular_file()) out += std::to_string(entry.file_size()) + " ";
    out += std::to_string(entry.last_write_time().time_since_epoch().count()) + "\n";
  }
  return out;
}

// The settings folder is read, never written: nothing made, changed or
// deleted there, not an empty file (how a user asks for portable use), and a
// pipe is not waited for.
TEST_F(CliRunTest, ReadsButNeverWritesTheFiles) {
  // gandrel.ini, gandrel.def and gandrel.dat (nullptr: none, "": empty, as
  // missing files are to the reader, "|": a pipe), the arguments, the output
  // and the number of messages. Long results off: one line a roll.
  const std::tuple<const char*, const char*, const char*, Args, std::string, size_t> cases[] = {
      // clang-format off
      {"[Settings]\nLongResults=0\n", "define df = -1 to -1\n", nullptr, {"-n2", "4df"}, "-4\n-4\n", 0},
      {"",                            "",                       "",      {"-q", "2+3"},  "5\n",      0},
      {"|",                           "|",                      "|",     {"-q", "2+3"},  "5\n",      3},
      // clang-format on
  };
  for (const auto& [ini, def, dat, args, out, messages] : cases) {
    SCOPED_TRACE(out);
    for (auto [name, text] :
         {std::pair{"gandrel.ini", ini}, {"gandrel.def", def}, {"gandrel.dat", dat}}) {
      fs::remove(config.Path(name));
      if (text && std::string(text) == "|") {
        ASSERT_EQ(mkfifo(config.Path(name).c_str(), 0600), 0);
      } else if (text) {
        config.Write(name, text);
      }
    }
    std::string before = Listing(config.path());
    alarm(20);  // a start-up that waits on a pipe ends the test program
    CliOutcome o = Run(args);
    alarm(0);
    EXPECT_EQ(std::make_tuple(o.out, std::count(o.err.begin(), o.err.end(), '\n'),
                              Listing(config.path())),
              std::make_tuple(out, messages, before))
        << o.err;
  }
}

// The program itself: usage errors, help and version; rolls nobody can see
// are no success: a failed write of the output is told on standard error and
// ends the run, one that went on rolling into the full device included.
TEST(CliProgram, ExitStatus) {
  const std::string program = GANDREL_CLI_PROGRAM;
  testing::TempFolder empty;
  const std::string full = "timeout 60 " + program + " --config " + empty.path() + " ";
  const std::string noSpace =
      "gandrel-cli: cannot write to standard output: No space left on device\n";
  // The command, the exit status and the output.
  const std::tuple<std::string, int, std::string> cases[] = {
      {program + " --bogus 2>&1", 2,
       "gandrel-cli: unknown option '--bogus' (write -- before a die value that begins with "
       "'-'); see gandrel-cli --help\n"},
      {program + " -h | grep -c Usage:", 0, "1\n"},
      {program + " --config /nonexistent/x 2>&1", 2,
       "gandrel-cli: no such folder: /nonexistent/x\n"},
      // Standard error into the pipe, standard output to the full device.
      {full + "--version 2>&1 >/dev/full", 1, noSpace},
      {full + "-q -n 2147483647 d6 2>&1 >/dev/full", 1, noSpace},
  };
  for (const auto& [command, status, expected] : cases) {
    CliOutcome run = Shell(command);
    EXPECT_EQ(std::tie(run.status, run.out), std::make_tuple(status, expected)) << command;
  }
}

}  // namespace
}  // namespace gandrel::cli
