// modGandrel: the shell that both front ends share.
//
// The roll request (classify a die value, roll it or run it, show the result,
// the details and the clipboard line, keep the history), start-up and
// shut-down (settings and definitions files), and where those files live.
// Nothing here knows Qt or the terminal: the front end shows the outcome
// through a MainView, and messages through the engine's UserInterface.
#pragma once

#include <string>
#include <vector>

namespace gandrel {

// The main window as the shell sees it.
class MainView {
 public:
  virtual ~MainView() = default;
  virtual std::string DieValueText() const = 0;
  virtual void SetDieValueText(const std::string& text) = 0;
  // Selects the whole die-value text, so that typing replaces it.
  virtual void SelectAllDieValue() = 0;
  virtual void SetResultText(const std::string& text) = 0;
  virtual void SetEachResultText(const std::string& text) = 0;
  virtual void SetClipboardText(const std::string& text) = 0;
  // The drop-down list of the die-value box.
  virtual void ClearDieList() = 0;
  virtual void AddDieListItem(const std::string& item) = 0;
  // The script editor's text, lines ended by CR LF.
  virtual std::string ScriptText() const = 0;
};

// The history behind the die-value list and the always-add items; 1-based
// (element 0 unused).
extern std::vector<std::string> DieHistory;
extern std::vector<std::string> AlwaysAddItems;

// The view the shell works on (the window, the terminal, a test double).
void SetMainView(MainView* view);
MainView& View();

// One Roll request on the current die-value text.
void RollDieValue();

// Puts value into the history under the history settings and rebuilds the list.
void AddToHistory(std::string& value);

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
// Forgets the noted files (a new start).
void ForgetUnreadFiles();

// ---- Definitions files ---------------------------------------------------

// gandrel.def: define lines to ParseDefine, other lines to AlwaysAddItems
// unless already there (ignoring case). A missing file is skipped; one that is
// there but cannot be read is told about and noted (NoteUnreadFile).
void ReadDefinitions(const std::string& path);

// gandrel.dat, the older file, read only: lower-cased lines; "die=" sets the
// default die, define lines to ParseDefine, other lines appended to
// AlwaysAddItems and to the die-value list at once, duplicates and all.
void ReadOldDefinitions(const std::string& path);

// The text of gandrel.def for the die types and always-add items in memory.
std::string DefinitionsText();

// Rewrites gandrel.def whole; false when it could not be written or was not
// read at start-up (the user has been told).
bool SaveDefinitions(const std::string& path);

}  // namespace gandrel
