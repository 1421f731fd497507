#include "cli/CliOptions.h"

#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>

namespace gandrel::cli {

namespace {

constexpr long kMaxRepeat = 2147483647;
constexpr long kMaxSamples = 1000000000;

struct OptionText {
  std::string name;   // "--seed", "-n"
  std::string value;  // the text after "=" or glued to a short option
  bool hasValue = false;
};

}  // namespace

static bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

static bool LooksLikeOption(std::string_view arg) {
  return arg.size() >= 2 && arg[0] == '-' && (arg[1] == '-' || IsLetter(arg[1]));
}

static OptionText SplitOption(const std::string& arg) {
  OptionText option;
  if (arg.rfind("--", 0) == 0) {
    size_t eq = arg.find('=');
    option.name = arg.substr(0, eq);
    if (eq != std::string::npos) {
      option.value = arg.substr(eq + 1);
      option.hasValue = true;
    }
  } else {
    option.name = arg.substr(0, 2);
    if (arg.size() > 2) {
      option.value = arg.substr(2);
      option.hasValue = true;
    }
  }
  return option;
}

// Only plain digits: no sign, no blank, nothing after them.
static bool ReadWhole(const std::string& text, uint64_t& value) {
  if (text.empty() || text[0] < '0' || text[0] > '9') return false;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size();
}

static std::string SetSeed(const std::string& text, CliOptions& options) {
  uint64_t seed;
  if (!ReadWhole(text, seed))
    return "'" + text + "' is not a seed: give a whole number from 0 to 18446744073709551615";
  options.seed = seed;
  return "";
}

// A count from 1 to most; what names it in the complaint.
static std::string SetCount(const std::string& text, long most, const char* what, long& count) {
  uint64_t read;
  if (!ReadWhole(text, read) || read < 1 || read > static_cast<uint64_t>(most))
    return "'" + text + "' is not " + what + ": give a whole number from 1 to " +
           std::to_string(most);
  count = static_cast<long>(read);
  return "";
}

std::string ParseCliOptions(const std::vector<std::string>& args, CliOptions& options) {
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (arg == "--") {
      options.dieValues.insert(options.dieValues.end(), args.begin() + static_cast<long>(i) + 1,
                               args.end());
      break;
    }
    if (!LooksLikeOption(arg)) {
      options.dieValues.push_back(arg);
      continue;
    }
    OptionText option = SplitOption(arg);
    const std::string& name = option.name;
    bool takesValue = name == "--seed" || name == "-n" || name == "--repeat" ||
                      name == "--config" || name == "--samples";
    bool isFlag = name == "-q" || name == "--quiet" || name == "--json" || name == "-h" ||
                  name == "--help" || name == "--version" || name == "-D" ||
                  name == "--distribution";
    if (!takesValue && !isFlag) {
      return "unknown option '" + arg + "' (write -- before a die value that begins with '-')";
    }
    if (isFlag && option.hasValue) return "option '" + name + "' takes no value";
    if (takesValue && !option.hasValue) {
      if (i + 1 >= args.size()) return "option '" + name + "' needs a value";
      option.value = args[++i];
    }
    std::string problem;
    if (name == "-q" || name == "--quiet") {
      options.quiet = true;
    } else if (name == "--json") {
      options.json = true;
    } else if (name == "-h" || name == "--help") {
      options.help = true;
    } else if (name == "--version") {
      options.version = true;
    } else if (name == "--seed") {
      problem = SetSeed(option.value, options);
    } else if (name == "-n" || name == "--repeat") {
      problem = SetCount(option.value, kMaxRepeat, "a repeat count", options.repeat);
    } else if (name == "-D" || name == "--distribution") {
      options.distribution = true;
    } else if (name == "--samples") {
      problem = SetCount(option.value, kMaxSamples, "a number of rolls", options.samples);
    } else {
      if (option.value.empty()) return "option '" + name + "' needs a folder";
      options.configDir = option.value;
    }
    if (!problem.empty()) return problem;
  }
  if (options.distribution && options.repeat != 1)
    return "option '-n' does not go with --distribution";
  return "";
}

std::string CliHelpText() {
  return "Usage: gandrel-cli [options] [DIE VALUE ...]\n"
         "Rolls each die value (3d6+2, d20, 4dfudge, 2d6>7, ...) and prints the result,\n"
         "then every die rolled. With no die value, reads die values from standard\n"
         "input, one per line. A die value naming a script file (FILE.die) runs the\n"
         "script: its prompts are written to standard error and answered from standard\n"
         "input (Enter, or the end of the input, takes the default), and the text of\n"
         "its output windows goes to standard output.\n"
         "\n"
         "Options:\n"
         "  -q, --quiet       print only the result lines\n"
         "      --json        print one JSON object per roll, with the keys \"dieValue\",\n"
         "                    \"result\", \"details\" and \"clipboard\"; \"warnings\" (what\n"
         "                    the result does not say by itself: text that was ignored,\n"
         "                    why a <calc error>) when there are any, and \"windows\"\n"
         "                    (each output window's name and text) when a script\n"
         "                    opened any\n"
         "      --seed N      reproducible rolls from the whole number N\n"
         "  -n, --repeat N    roll each die value N times\n"
         "      --config DIR  read gandrel.ini, gandrel.def and gandrel.dat from DIR\n"
         "  -D, --distribution\n"
         "                    print the distribution of each die value instead of a\n"
         "                    roll: every result, its probability, at least and at\n"
         "                    most, then the mean and the rest; exact when it can be\n"
         "                    worked out, otherwise estimated from real rolls (a\n"
         "                    script's prompts take their defaults, no file is\n"
         "                    written); with --json one object per die value\n"
         "      --samples N   estimate from at most N rolls (default 1000000)\n"
         "  -h, --help        show this help and exit\n"
         "      --version     show the version and exit\n"
         "\n"
         "Write -- before die values that begin with '-'. The settings and die types\n"
         "are those of the Gandrel window; gandrel-cli never writes gandrel.ini,\n"
         "gandrel.def, gandrel.dat or the window's other files.\n"
         "\n"
         "At a terminal, with no die value given, gandrel-cli prompts for die values:\n"
         "Up and Down recall earlier lines, Ctrl-R searches them, \"help\" tells what\n"
         "to type, \"quit\" or \"exit\" ends. Only there it keeps its own history file,\n"
         "gandrel-cli.history, in the settings folder (or the --config folder); if it\n"
         "cannot be written, gandrel-cli says so once and goes on without it. A\n"
         "result's warnings are shown under it, as \"hint:\" lines on standard error.\n"
         "Ctrl-C breaks the roll under way and comes back to the prompt; at the prompt\n"
         "it clears the line, and a second Ctrl-C at an empty prompt ends, as Ctrl-D\n"
         "does.\n"
         "\n"
         "Exit status: 0 when every roll gave a result, 1 when a roll ended in\n"
         "<error>, <calc error>, <script error> or <break> or a script file could not\n"
         "be read, 2 for a usage error. With --distribution, 1 when a die value can\n"
         "only end in those markers or its distribution could not be worked out.\n"
         "Rolling arguments or piped die values, Ctrl-C breaks the roll under way and\n"
         "stops; a second Ctrl-C ends at once.\n";
}

std::string CliVersionText() {
  return std::string("gandrel-cli ") + GANDREL_VERSION + "\n";
}

}  // namespace gandrel::cli
