// gandrel-cli at a terminal: die values typed at a prompt, with line editing
// and a history of earlier lines (libedit).
//
// Only when standard input is a terminal and the command line holds no die
// value; piped input is read as it always was (CliRun.cpp). Up and Down
// recall earlier lines, Ctrl-R searches them; "help" says what can be typed,
// "quit" or "exit" ends. Ctrl-C breaks the roll under way and comes back to
// the prompt ("<break>" is the roll's result); at the prompt it clears the
// line, and a second Ctrl-C at an empty prompt ends, as Ctrl-D does.
//
// The history is kept in its own file of the settings folder, one line a
// line, rewritten whole (a temporary file renamed over it) after each line
// typed; the settings and definitions files are never written. A history
// file that cannot be read is left as it is (and not written over), and
// one that cannot be written is told about once; the lines are still
// recalled for the length of the session.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace gandrel::cli {

// The history file's name in the settings folder.
inline constexpr const char* kHistoryFileName = "gandrel-cli.history";
// At most this many lines are kept.
inline constexpr int kMostHistoryLines = 1000;

struct InteractiveSetup {
  FILE* in = stdin;    // the terminal the lines are typed at
  FILE* out = stdout;  // results
  FILE* err = stderr;  // messages
  std::string historyFile;
};

// Rolls one die value and prints its outcome; false when the output can no
// longer be written (the session ends).
using RollLine = std::function<bool(const std::string& dieValue)>;

// Reads and rolls lines until the user ends the session.
void RunInteractive(const InteractiveSetup& setup, const RollLine& roll);

// What "help" prints.
std::string InteractiveHelpText(const std::string& historyFile);

// What a typed line is: a command of the prompt or a die value.
enum class PromptCommand { None, Help, Quit };
PromptCommand CommandOf(const std::string& line);

// The history file's lines, oldest first, without blank lines and at most
// the newest kMostHistoryLines; and its text for those lines.
std::vector<std::string> HistoryLines(const std::string& fileText);
std::string HistoryText(const std::vector<std::string>& lines);

}  // namespace gandrel::cli
