// Running gandrel-cli: the terminal's stand-in for the main window and for
// the user interface, the roll loop over the die values, and Ctrl-C. A die
// value naming a script file (".die" anywhere in it) runs that file; the
// script's prompts read from the same input as the die values (see
// CliScripts.h).
//
// Every die value goes through the shell's Roll request, with the settings,
// die types and history rules of the window; the settings and definitions
// files are read, never written.
#pragma once

#include <cstdio>

#include "cli/CliOptions.h"

namespace gandrel::cli {

// Performs the rolls the options ask for; die values come from in, one a
// line, when the options hold none. Writes the outcome of each roll to out and
// messages to err. Returns the exit status: 0 when every roll gave a result,
// 1 when a roll ended in "<error>", "<calc error>", "<script error>" or
// "<break>", a script file could not be read or the run was interrupted, and
// also when out could not be written (the rolls stop, and err says why), 2
// when the --config folder does not exist.
int RunCli(const CliOptions& options, FILE* in, FILE* out, FILE* err);

// Ctrl-C: the first asks the roll under way to break (the run stops after
// it); a second one ends the program at once.
void InstallInterruptHandler();
// What the first Ctrl-C does; the handler calls it.
void NoteInterrupt();
// Forgets an earlier Ctrl-C.
void ClearInterrupts();
// True once Ctrl-C was pressed.
bool Interrupted();

// The whole program: parses argv, prints help, version or the one-line usage
// error, or runs. Returns the exit status.
int CliMain(int argc, char** argv);

}  // namespace gandrel::cli
