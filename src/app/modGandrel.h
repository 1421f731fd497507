// modGandrel: the shell that both front ends share.
//
// The roll request (classify a die value, roll it or run it, work out the
// result, the details and the clipboard line, keep the history), the script
// editor and its files, start-up and shut-down (settings and definitions
// files), and where those files live. Nothing here knows Qt or the terminal:
// the front end shows what the shell worked out through a MainView, and
// messages through the engine's UserInterface.
//
// The module's files: modGandrel.cpp (the roll request and the history),
// modGandrelScript.cpp (the script editor and script files),
// modGandrelSettings.cpp (start-up, gandrel.ini), modGandrelDefs.cpp
// (gandrel.def and gandrel.dat), modGandrelFiles.cpp (where the files live,
// reading and writing them).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "calc/Installed.h"
#include "calc/Markers.h"

namespace gandrel {

// What one Roll request shows, worked out whole before anything is shown.
struct RollOutcome {
  // The die-value box's text afterwards, shown all selected so that typing
  // replaces it.
  std::string dieValueText;
  // The drop-down list, when the request changed the history.
  bool listChanged = false;
  std::vector<std::string> dieList;
  std::string result;      // the result label
  std::string eachResult;  // the each-result box: every die, or a script's log
  std::string clipboard;   // " rolls " & result & " on " & the die value
  // The line of the editor's script that the tokenizer refused (a GOTO to a
  // missing label) or whose failure stopped the run ("script processing on
  // line", or a "<script error>"); 0 when there is none.
  int32_t scriptErrorLine = 0;
  // What the result does not say by itself (RollHints), worked out after
  // everything above and changing none of it; empty when there is nothing
  // to say.
  std::vector<std::string> hints;
};

// How the shell asks for a script file.
enum class FileQuestion { Open, Save };

// The main window as the shell sees it. The shell works out what changes;
// the view only shows it.
class MainView {
 public:
  virtual ~MainView() = default;

  // The die-value box's text as the user left it.
  virtual std::string DieValueText() const = 0;
  // Puts text into the die-value box; the list stays as it is.
  virtual void SetDieValueText(const std::string& text) = 0;
  // The drop-down list becomes entries and the box's text becomes text;
  // neither runs the pick handler.
  virtual void ShowDieList(const std::vector<std::string>& entries, const std::string& text) = 0;
  // The outcome of one Roll request, all at once.
  virtual void ShowRoll(const RollOutcome& outcome) = 0;

  // The script editor's text, lines ended by CR LF.
  virtual std::string ScriptText() const = 0;
  // Replaces the editor's text (a change of the text like any other).
  virtual void SetScriptText(const std::string& text) = 0;
  // The editor's caption ("Script", "Script -- name") and whether its text
  // changed since it was loaded, saved or cleared.
  virtual void ShowScriptState(const std::string& caption, bool modified) = 0;
  // Asks for a script file to open or to save, starting at initialPath;
  // "" when the user cancels.
  virtual std::string AskScriptFile(FileQuestion question, const std::string& title,
                                    const std::string& initialPath) = 0;
};

// The history behind the die-value list and the always-add items; 1-based
// (element 0 unused).
extern std::vector<std::string> DieHistory;
extern std::vector<std::string> AlwaysAddItems;

// The view the shell works on (the window, the terminal, a test double).
void SetMainView(MainView* view);
MainView& View();
// Installs one for the length of a block.
using MainViewScope = Installed<MainView, View, SetMainView>;

// ---- The Roll request --------------------------------------------------------

// One Roll request on the current die-value text: works out the outcome,
// shows it, and shows a script's "~TOWIN~" result in a message box as well.
// Does nothing while a script runs (runFlags.ScriptRunning).
void RollDieValue();

// What a Roll request on dieValue shows; the history is kept as a request
// keeps it. Nothing is shown. A break ends it as "<break>". While a script
// runs nothing is worked out: the outcome holds only the die value.
RollOutcome WorkOutRoll(const std::string& dieValue);

// A die value classified and made ready once, as the Roll request would (the
// editor's script split and tokenized, a one-line script built, an
// expression's default dice filled in), then rolled as often as wanted: each
// Roll() gives the text the result label would show. Nothing is shown and
// nothing is kept: no history, no die-value box, no clipboard, no message box
// for a "~TOWIN~" result. The engine's own messages still go to UI(), and a
// break asked for during a roll ends it as "<break>". The break flags are
// left for the caller to clear. For the calculator's estimate.
class RepeatedRoll {
 public:
  explicit RepeatedRoll(const std::string& dieValue);
  std::string Roll();
  // The script holds DIE or DEFINE: one roll may change what the next rolls.
  bool ChangesDieTypes() const { return changesDieTypes_; }

 private:
  enum class Kind { Fixed, Script, Expression };
  Kind kind_ = Kind::Fixed;
  std::string text_;                // the fixed result, or the expanded expression
  std::vector<std::string> lines_;  // the tokenized script, 1-based
  bool changesDieTypes_ = false;
};

// Puts value into the history under the history settings and, when the list
// changed, shows it with value in the box.
void AddToHistory(std::string& value);

// The history's entries, without the unused element 0.
std::vector<std::string> DieListEntries();

// ---- The script editor and script files --------------------------------------
//
// The editor's events, New, Load, Save and picking an entry do nothing while
// a script runs (runFlags.ScriptRunning): its pumped events may reach them.

// The editor's file and whether its text changed since it was loaded, saved
// or cleared. Names keep their letter case: Linux tells "A.DIE" from "a.die".
struct ScriptEditorState {
  std::string ScriptFileName;
  bool Modified = false;
};
extern ScriptEditorState scriptEditor;

// The lines of the script to run, 1-based: filled from the editor by
// SplitScriptText, tokenized in place and run.
extern std::vector<std::string> ScriptLines;

// ScriptLines = the editor's text as script lines (SplitScriptLines).
void SplitScriptText();

// The contents of a script file for those lines: each followed by CR LF, the
// last with its CR and LF made blanks and trimmed.
std::string ScriptFileContents(const std::vector<std::string>& lines);
// Lines joined by CR LF, with none after the last.
std::string JoinScriptLines(const std::vector<std::string>& lines);
// The name a chosen script file is known by: its bare name when it lies in
// currentDir, else the path as it stands; trimmed.
std::string ScriptNameFor(const std::string& path, const std::string& currentDir);
// path with ".DIE" appended when its file name (not its folder) holds no ".".
std::string WithScriptExtension(const std::string& path);
// The lines of a script file's contents, as the editor takes them: a UTF-8
// byte-order mark skipped, text that is not valid UTF-8 read as
// Windows-1252, lines ended by CR LF, LF or CR (the editor holds no CR
// inside a line), each line otherwise exactly as it stands.
std::vector<std::string> ScriptFileLines(const std::string& content);

// The editor's events: its text changed; it got the focus; it was clicked.
void ScriptTextChanged();
void ScriptEditorFocused();
void ScriptEditorClicked();

// The New button: asks whether to save a changed script first, then clears.
void NewScript();
// The Load button: asks whether to save a changed script first, asks for a
// file, loads it, lists it and picks it.
void LoadScriptFile();
// The Save button: asks for a name (".DIE" added when it has no "."), asks
// before replacing a file that is not empty, saves and lists it. False when
// the user cancelled or the file could not be written.
bool SaveScriptAs();
// The editor loaded from, or saved to, ScriptFileName. False when the file
// could not be read or written: the user has been told, and the editor and
// its state are as they were.
bool LoadScriptText();
bool SaveScriptText();

// The user picked an entry of the die-value list. An entry that names no
// script file clears the editor; one naming a script file that exists is
// loaded into it. Picking never rolls.
void PickDieValue(const std::string& entry);

// The editor as the user left it (its text, its file, whether it was
// changed) is kept between runs of the window in gandrel.script in the
// application's folder, so that closing never loses a script. The terminal
// front end neither reads nor writes it.
//
// KeepScriptEditor writes it, never a half-written file. A gandrel.script
// that could not be read at start-up (FileWasUnread) is never written over,
// and one that cannot be written fails: then the editor is kept in a new
// file beside it instead ("gandrel-1.script", "gandrel-2.script", ..., the
// first name that is free, in the same form), and the user is told where.
// False when it was kept nowhere; the user has been told.
bool KeepScriptEditor();
// RestoreScriptEditor puts the editor back at start-up. A file that is not
// in the current folder is named by its full path. A clean script whose file
// no longer holds its text comes back modified. No gandrel.script leaves the
// editor as it is; one that cannot be read, or was not written by Gandrel, is
// told about and noted (NoteUnreadFile).
void RestoreScriptEditor();

// ---- Start-up and shut-down ----------------------------------------------------

// Start-up: defaults, gandrel.dat, gandrel.ini and gandrel.def, the history
// filled with the always-add items, the die-value text set. The front end
// applies the settings to its window and makes the first roll afterwards.
void StartUp();
void LoadSettings();
// Writes gandrel.ini and gandrel.def (never half-written files), except one
// that could not be read (SkipUnreadFile). Returns false when a file was not
// written (the user has been told).
bool SaveSettings();

// The folder of gandrel.ini, gandrel.def and gandrel.dat.
std::string AppDirectory();
// Uses folder (made absolute) for all three files; no other gandrel.dat is read.
void SetAppDirectory(const std::string& folder);

// ---- Where the files live ------------------------------------------------

// The folder of the running program ("" when it cannot be found).
std::string ExecutableDirectory();

// What the front ends call at start with the executable's folder. The files
// live in $XDG_CONFIG_HOME/gandrel (default ~/.config/gandrel), made on the
// first save, unless the executable's folder already holds gandrel.ini or
// gandrel.def and is writable: then that folder is used (portable use). A
// gandrel.dat beside the executable is read when the chosen folder has none.
// Returns the folder chosen.
std::string ChooseAppDirectory(const std::string& exeDir);

// The full name of a file of the application's folder.
std::string AppFile(const std::string& name);

// The one gandrel.dat read at start-up: the application folder's, else (when
// that one is missing and ChooseAppDirectory chose another folder) the one
// beside the executable.
std::string OldDefinitionsFile();

// True when there is nothing to read at path: a name whose first "." is its
// first character, no file at all, or an empty file. Nothing is created or
// deleted. A folder, a pipe or a device is not missing: reading it fails.
bool FileIsMissing(const std::string& path);

// ---- Text files ----------------------------------------------------------

// Reads the whole file; on failure returns false with the reason. Only a
// regular file is opened, and never waited for (a pipe fails at once).
bool ReadTextFile(const std::string& path, std::string& content, std::string& reason);

// Writes content to a temporary file beside path and renames it over path, so
// that path is never half-written; makes the folder when it is missing. On
// failure returns false with the reason, and path is left as it was.
bool WriteTextFileAtomic(const std::string& path, const std::string& content, std::string& reason);

// Line breaks of any kind (CR LF, LF, CR) as LF: the engine's texts, which
// end their lines with CR LF, as a terminal or an editor box shows them.
std::string UnixLines(const std::string& text);

// The lines of a text, ended by CR LF, LF or CR; a leading UTF-8 byte-order
// mark is dropped. A last line without an ending counts; an ending at the very
// end does not start another line.
std::vector<std::string> SplitLines(const std::string& text);

// ---- Files that could not be read ----------------------------------------

// A settings or definitions file that is there but could not be read (no
// permission, too large, a folder or a pipe in its place) is never written
// over in this run: what it holds would be lost. Its reader notes it.
void NoteUnreadFile(const std::string& path);
// True when path was noted; the first call for it tells the user that this
// run's changes to it cannot be saved.
bool SkipUnreadFile(const std::string& path);
// True when path was noted; nobody is told.
bool FileWasUnread(const std::string& path);
// Forgets the noted files (a new start).
void ForgetUnreadFiles();

// ---- Definitions files ---------------------------------------------------

// gandrel.def: define lines to ParseDefine, other lines to AlwaysAddItems
// unless already there (ignoring case). A missing file is skipped; one that is
// there but cannot be read is told about and noted (NoteUnreadFile).
void ReadDefinitions(const std::string& path);

// gandrel.dat, the older file, read only: lower-cased lines; "die=" sets the
// default die, define lines to ParseDefine, other lines appended to
// AlwaysAddItems and to listed (what the die-value list shows at start-up),
// duplicates and all.
void ReadOldDefinitions(const std::string& path, std::vector<std::string>& listed);

// The text of gandrel.def for the die types and always-add items in memory.
std::string DefinitionsText();

// Rewrites gandrel.def whole; false when it could not be written or was not
// read at start-up (the user has been told).
bool SaveDefinitions(const std::string& path);

}  // namespace gandrel
