// The command line of gandrel-cli: options, die values, help and version texts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace gandrel::cli {

struct CliOptions {
  bool quiet = false;  // only the result lines
  bool json = false;   // one JSON object per roll
  bool help = false;
  bool version = false;
  std::optional<uint64_t> seed;
  long repeat = 1;  // each die value this many times
  std::optional<std::string> configDir;
  // --distribution: the distribution of each die value instead of a roll,
  // estimated from this many rolls when it cannot be worked out exactly.
  bool distribution = false;
  long samples = 1000000;
  // From the arguments; none means: read them from standard input.
  std::vector<std::string> dieValues;
};

// Parses the arguments (without the program's name). Returns "" on success,
// otherwise the problem on one line. An argument that begins with "-" and then
// a letter or "-" is an option; any other argument ("-3+d6", "(2d6)") is a
// die value, and so is every argument after "--".
std::string ParseCliOptions(const std::vector<std::string>& args, CliOptions& options);

std::string CliHelpText();
std::string CliVersionText();

}  // namespace gandrel::cli
