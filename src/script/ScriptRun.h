// The state of one script run, and the command handlers that work on it.
//
// RunScript creates one ScriptRun, hands it by reference to every handler as
// its first argument, and drops it when the run ends. What stays shared in
// runFlags is what others must see or set while the run pumps events: the
// break request and the insisted break (windows), the pause (the pause
// window), the break switch (read by every dice loop), the log switch and
// the log indent (read by the "@" functions).
//
// Handlers take the line's operand by reference and may rewrite it. A
// handler that fails calls Fail: its operand becomes "<script error>", so
// does resultText, and the run stops. A handler that jumps sets pc to the
// line before the one to run next (the executor adds one after every line).
// RuntimeError and BreakSignal pass out of the handlers to the executor,
// which reports them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "calc/Basic.h"
#include "calc/VarStore.h"
#include "script/ScriptFiles.h"
#include "script/ScriptWindows.h"

namespace gandrel {

// One open FOR loop.
struct ForLoop {
  int32_t line = 0;  // the FOR line; NEXT goes on after it
  std::string name;  // the counter variable, lower case
  int32_t step = 0;
  int32_t limit = 0;
  bool stepNotNegative = true;
};

// An output window or a file under the script's name for it (lower case);
// a slot whose name is "" is free.
struct WindowSlot {
  std::unique_ptr<OutputWindow> window;
  std::string name;
};
struct FileSlot {
  std::unique_ptr<ScriptFile> file;
  std::string name;
};

struct ScriptRun {
  std::vector<std::string> lines;   // the run's own copy, 1-based
  VarStore store;                   // variables and lists
  std::vector<ForLoop> forStack;    // innermost last
  std::vector<double> selectStack;  // the value of each open SELECT, innermost last
  std::vector<WindowSlot> windows;  // slot n at index n - 1
  std::vector<FileSlot> files;
  int32_t pc = 0;           // the line being run
  bool skip = false;        // IF, CASE and CASEIS ask for their block to be skipped
  bool stopped = false;     // END, or a failure: no further line runs
  int32_t errorLine = 0;    // the line whose failure stopped the run; 0 when none did
  int16_t currentList = 0;  // the list that ITEM fills; 0 when none
  std::string resultText;
  std::string logText;
};

// ---- Shared by the handlers (ScriptRun.cpp) --------------------------------

// The line at pc failed: no further line runs, and the run reports where.
void StopOnError(ScriptRun& run);

// The command failed: text and resultText become "<script error>" and the
// run stops. With a log message, logText becomes it.
void Fail(ScriptRun& run, std::string& text);
void Fail(ScriptRun& run, std::string& text, std::string_view log);

// Variables, then dice outside quotes, then Calc with details starting empty.
// text is left as Calc leaves it.
double Calculate(ScriptRun& run, std::string& text, std::string& details);

// logText + LogPrefix + detail, then CR LF when LogOn.
void LogDetail(ScriptRun& run, std::string_view detail);

// The index of the variable of that (lower-case) name, 0 when none.
size_t FindVariable(const VarStore& store, std::string_view name);

// The index of a variable as GET looks it up: the name lower-cased and
// trimmed; when no variable has it, the name with variables substituted in
// all but its first character. 0 when neither exists; name is the last tried.
size_t FindPromptVariable(ScriptRun& run, std::string& name);

// The text with every double quote removed.
std::string WithoutQuotes(std::string_view text);

// ---- Control flow (ControlFlow.cpp) ----------------------------------------

void RunIf(ScriptRun& run, std::string& text);
void RunFor(ScriptRun& run, std::string& text);
void RunNext(ScriptRun& run);
void RunExitFor(ScriptRun& run);
void RunGoto(ScriptRun& run, std::string& text);
void RunSelect(ScriptRun& run, std::string& text);
void RunCase(ScriptRun& run, std::string& text);
void RunCaseIs(ScriptRun& run, std::string& text);
void RunExitSelect(ScriptRun& run);
void RunEndSelect(ScriptRun& run);

// ---- Variables and input (VariableCommands.cpp) ----------------------------

void RunAssignment(ScriptRun& run, std::string& text);
void RunVar(ScriptRun& run, std::string& text);
void RunGet(ScriptRun& run, std::string& text);
void RunDie(ScriptRun& run, std::string& text);
void RunDefine(ScriptRun& run, std::string& text);

// ---- Lists (ListCommands.cpp) ----------------------------------------------

void RunListName(ScriptRun& run, std::string& text);
void RunListBegin(ScriptRun& run, std::string& text);
void RunItem(ScriptRun& run, std::string& text);
void RunListEnd(ScriptRun& run);
void RunPickList(ScriptRun& run, std::string& text);

// ---- Output, log and files (OutputCommands.cpp) ----------------------------

void RunOpenWindow(ScriptRun& run, std::string& text);
void RunClearWindow(ScriptRun& run, std::string& text);
void RunCloseWindow(ScriptRun& run, std::string& text);
void RunOpenFile(ScriptRun& run, std::string& text);
void RunCloseFile(ScriptRun& run, std::string& text);
// PRINT (newline False) and PRINTNL (newline True).
void RunPrint(ScriptRun& run, std::string& text, bool newline);
void RunDisplay(ScriptRun& run);
void RunTime(ScriptRun& run);
// The end of a run: the first output window closes (the others stay on
// screen), every file is written out and closed; the slots are emptied.
void CloseRunOutputs(ScriptRun& run);

}  // namespace gandrel
