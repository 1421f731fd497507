// modScript: the script language. A script's raw lines are tokenized in
// place, then run line by line.
//
// The module's files:
//   ScriptKeywords.h     the command codes, the keyword tables, one line's
//                        tokenizing and the GOTO check (the editor's view)
//   Tokenizer.cpp        TokenizeLine, ExpandTabs, TokenizeScript, the GOTO pass
//   ScriptRun.h          the state of one run and the command handlers
//   RunScript.cpp        the executor: start, the line loop, the dispatch,
//                        the error reports, the end of a run
//   ControlFlow.cpp      IF, FOR, NEXT, EXITFOR, GOTO, SELECT, CASE, CASEIS,
//                        EXITSELECT, ENDSELECT and the block skips
//   VariableCommands.cpp assignments, VAR, GET, DIE, DEFINE
//   ListCommands.cpp     LIST NAME, LISTBEGIN, ITEM, PICKLIST
//   OutputCommands.cpp   output windows, files, PRINT, PRINTNL, DISPLAY, TIME
//   ScriptFiles.h/.cpp   the file layer that OPEN FILE writes through
//   ScriptWindows.h/.cpp the prompts, the pause and the output windows
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace gandrel {

// Script text cut into its raw lines at every LF (a CR before it dropped):
// trailing blanks removed, a blank rest after the last line end left out,
// and one empty line always last. Element 0 is the first line.
std::vector<std::string> SplitScriptLines(std::string_view text);

// Every TAB of the line becomes one blank.
void ExpandTabs(std::string& line);

// Rewrites every raw line of lines (1-based; element 0 unused) into its
// tokenized form and turns each GOTO's label into the label's line number.
// Events are pumped once per line. The caller sets errorText to "". When a
// GOTO names a label that does not exist, a message box says "Label for GOTO
// not found at line " & the line, errorText becomes "<error>", and the lines
// after it are left as they were: the script must not run. Returns that
// GOTO's line, 0 when every GOTO found its label. Never raises.
int32_t TokenizeScript(std::vector<std::string>& lines, std::string& errorText);

// Runs tokenized lines (1-based; element 0 unused). The run works on its own
// copy, so the caller's lines may change while the run pumps events. The
// caller sets both texts to "" first. On return resultText holds what the
// script gave `result` or `winresult` (winresult's with "~TOWIN~" in front),
// or "<script error>" or "<break>", and logText the run's log.
//
// Shared state: runFlags.ScriptRunning is True for the length of the run;
// BreakRequested and BreakForced are cleared at its start; BREAKOFF clears
// runFlags.BreakEnabled, which every dice loop reads, and the run sets it
// back; LogOn is restored at the end; LogPrefix starts empty. DIE and DEFINE
// change the default die and the die types for good.
//
// The user reaches the run through the interfaces: the pump once per line
// (Yield), UI().WaitForEvents() while the pause window is up, Windows() for
// GET, PICKLIST, PAUSE, the output windows and DISPLAY, ScriptFiles() for
// OPEN FILE. Nothing is raised: a run-time error, a break and every failure
// end the run with their report. Must not be called while a run is under way.
//
// Returns the line whose failure stopped the run (a run-time error, "script
// processing on line " & that line, or a command or "@" call that gave
// "<script error>"), 0 when none did (END, the last line, a break).
int32_t RunScript(const std::vector<std::string>& lines, std::string& resultText,
                  std::string& logText);

}  // namespace gandrel
