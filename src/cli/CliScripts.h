// The terminal's side of scripts: the script windows on standard input,
// output and error, and script files read from disk (the terminal has no
// script editor).
//
// Prompts (GET, PICKLIST, PAUSE) are written to the error stream and read
// their answers a line at a time from the input the die values come from:
// when die values are read from standard input, a prompt takes the next
// line of it. The end of the input always counts as pressing Enter. On a
// terminal a wrong pick is asked again and PAUSE waits for Enter; from a pipe
// a wrong pick is Cancel and PAUSE goes on at once. Ctrl-C during a prompt
// asks the script to break and leaves the answer as it was.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "script/ScriptWindows.h"

namespace gandrel::cli {

// The next line of in, without its line end (LF or CR LF); false at the end
// of the input or when reading failed (errno as the read left it).
bool ReadLine(FILE* in, std::string& line);

// The script a die value naming a script file runs: the file's lines as the
// script editor would hold them (ScriptFileLines: any line ends, a UTF-8
// byte-order mark skipped, Windows-1252 text read as such). False with the reason when the file
// cannot be read.
bool ReadScriptFile(const std::string& name, std::string& scriptText, std::string& reason);

struct TerminalWindowsSetup {
  FILE* in = stdin;          // the answers
  FILE* out = stdout;        // output-window text and DISPLAY
  FILE* err = stderr;        // the prompts
  bool interactive = false;  // in is a terminal
  bool echoWindows = true;   // output-window text goes to out as it is printed
  bool echoDisplay = true;   // DISPLAY prints the result on a line of its own
};

class TerminalWindows final : public ScriptWindows {
 public:
  // The text each window of a roll held last, by name.
  using WindowTexts = std::vector<std::pair<std::string, std::string>>;

  explicit TerminalWindows(const TerminalWindowsSetup& setup);

  // GET: "prompt [default]: ", then a line; empty or the end of the input
  // keeps the default.
  void GetNumber(const std::string& prompt, const std::string& defaultText) override;
  // PICKLIST: the prompt, the items numbered from 1, "0. Cancel", then
  // "Choice [k]: " and a number; empty or the end of the input picks item k
  // (the preselected one), 0 is Cancel.
  void PickItem(const std::string& prompt, const std::vector<std::string>& items,
                int16_t selected) override;
  void ShowPause() override;
  // A window that keeps its text (for WindowsOfRoll) and echoes it to out.
  std::unique_ptr<OutputWindow> OpenOutputWindow(const std::string& name,
                                                 const std::string& caption) override;
  void Display(const std::string& result, const std::string& log) override;

  // Forgets the windows of the roll before.
  void StartRoll();
  // Every window opened since StartRoll, in the order opened, with the text
  // it held last; a name opened again after it was closed gives the later
  // window's text.
  WindowTexts WindowsOfRoll() const;
  // Ends a line that echoed window text left open, so that what follows
  // begins on a line of its own.
  void FinishLine();

 private:
  struct Window;
  class Handle;

  // How reading an answer ended: a line (without its line end), the end of
  // the input (an empty line), or Ctrl-C (a break is asked for).
  enum class Read { Line, End, Break };

  void Echo(const std::string& text);
  void Prompt(const std::string& text);
  Read ReadAnswer(std::string& answer);
  void EndPromptLine(Read read, const std::string& answer);

  TerminalWindowsSetup setup_;
  std::vector<std::shared_ptr<Window>> windows_;
  bool outAtLineStart_ = true;
  bool outIsTerminal_;
};

}  // namespace gandrel::cli
