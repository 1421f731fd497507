// The script editor and script files: the editor's text as script lines,
// New, Load and Save, the modified state, and picking a script file from the
// die-value list.
#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "app/TextEncoding.h"
#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/RunFlags.h"
#include "calc/UserInterface.h"
#include "script/modScript.h"

namespace gandrel {

namespace fs = std::filesystem;

ScriptEditorState scriptEditor;
std::vector<std::string> ScriptLines(1);

namespace {

// The file that keeps the editor between runs: this first line, the file's
// full name, the modified flag, and the text after "Text:" as it stands.
const char* const kKeptEditorFile = "gandrel.script";
const char* const kKeptHeader =
    "; Gandrel's script editor as it was left, restored at the next start";

// The editor's caption and modified state, as they stand now.
void ShowEditorState() {
  const std::string& name = scriptEditor.ScriptFileName;
  View().ShowScriptState(name.empty() ? "Script" : "Script -- " + name, scriptEditor.Modified);
}

void MarkClean() {
  scriptEditor.Modified = false;
  ShowEditorState();
}

// A Yes/No/Cancel question about the script, as the program asks it.
MsgAnswer AskAboutScript(const std::string& question) {
  return UI().ShowMessage(question, MsgButtons::YesNoCancel, MsgIcon::Critical, kAppTitle);
}

// Before the editor's script is replaced: false when the user cancels.
bool OfferToSave(const std::string& question) {
  if (!scriptEditor.Modified) return true;
  MsgAnswer answer = AskAboutScript(question);
  if (answer == MsgAnswer::Cancel) return false;
  // A save dialog cancelled after Yes still lets the replacement go on.
  if (answer == MsgAnswer::Yes) SaveScriptAs();
  return true;
}

std::string CurrentDirectory() {
  std::error_code ec;
  fs::path current = fs::current_path(ec);
  return ec ? std::string() : current.string();
}

// Where the file dialogs start: the editor's file in the current directory.
std::string DialogStart() {
  const std::string& name = scriptEditor.ScriptFileName;
  fs::path start = CurrentDirectory();
  if (!name.empty()) start /= name;  // an absolute name replaces the folder
  return start.string();
}

// After a file was chosen in a dialog, its folder is the current directory.
void EnterFolderOf(const std::string& chosen) {
  fs::path folder = fs::path(chosen).parent_path();
  std::error_code ec;
  if (!folder.empty()) fs::current_path(folder, ec);
}

// The first entry of the history equal to name, exactly; 0 when none is.
long ExactEntry(const std::string& name) {
  for (size_t i = 1; i < DieHistory.size(); ++i)
    if (DieHistory[i] == name) return static_cast<long>(i);
  return 0;
}

// Loads file into the editor as its script; on failure everything stays.
bool LoadAsScript(const std::string& file) {
  std::string previous = scriptEditor.ScriptFileName;
  scriptEditor.ScriptFileName = file;
  if (!LoadScriptText()) {
    scriptEditor.ScriptFileName = previous;
    return false;
  }
  MarkClean();
  return true;
}

}  // namespace

std::string ScriptFileContents(const std::vector<std::string>& lines) {
  std::string contents;
  for (size_t i = 0; i < lines.size(); ++i) {
    std::string line = lines[i];
    if (i + 1 == lines.size()) {
      std::replace(line.begin(), line.end(), '\r', ' ');
      std::replace(line.begin(), line.end(), '\n', ' ');
      line = Trim(line);
    }
    contents += line + "\r\n";
  }
  return contents;
}

std::string JoinScriptLines(const std::vector<std::string>& lines) {
  std::string text;
  for (size_t i = 0; i < lines.size(); ++i) {
    if (i > 0) text += "\r\n";
    text += lines[i];
  }
  return text;
}

std::string ScriptNameFor(const std::string& path, const std::string& currentDir) {
  std::string name = Trim(path);
  size_t slash = name.rfind('/');
  if (slash == std::string::npos) return name;
  std::string folder = name.substr(0, slash);
  std::string current = currentDir;
  while (current.size() > 1 && current.back() == '/')
    current.pop_back();
  if (folder == current || (folder.empty() && current == "/")) return name.substr(slash + 1);
  return name;
}

std::string WithScriptExtension(const std::string& path) {
  size_t slash = path.rfind('/');
  size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
  return path.find('.', nameStart) == std::string::npos ? path + ".DIE" : path;
}

std::vector<std::string> ScriptFileLines(const std::string& content) {
  const std::string_view bom = "\xEF\xBB\xBF";
  std::string_view text = content;
  if (text.starts_with(bom)) text.remove_prefix(bom.size());
  // Scripts written on Windows in its own code page are read as they were meant.
  return SplitLines(IsUtf8(text) ? std::string(text) : Windows1252ToUtf8(text));
}

void SplitScriptText() {
  ScriptLines = SplitScriptLines(View().ScriptText());
  ScriptLines.insert(ScriptLines.begin(), std::string());
}

// ---- The editor's events -------------------------------------------------------

void ScriptTextChanged() {
  scriptEditor.Modified = true;
  ShowEditorState();
}

// While a script runs, its pumped events may reach the handlers below: the
// die value, the editor and its file stay as the run found them.

void ScriptEditorFocused() {
  if (runFlags.ScriptRunning) return;
  if (scriptEditor.ScriptFileName.empty() && View().DieValueText() != kCurrentScript)
    View().SetDieValueText(std::string(kCurrentScript));
}

void ScriptEditorClicked() {
  if (runFlags.ScriptRunning) return;
  const std::string& name = scriptEditor.ScriptFileName;
  if (name.empty()) View().SetDieValueText(std::string(kCurrentScript));
  if (!name.empty() && ExactEntry(name) > 0) View().SetDieValueText(name);
}

// ---- New, Load, Save ---------------------------------------------------------

void NewScript() {
  if (runFlags.ScriptRunning) return;
  if (!OfferToSave("Do you want to save the current script before clearing it?")) return;
  View().SetScriptText("");
  scriptEditor.ScriptFileName.clear();
  MarkClean();
}

void LoadScriptFile() {
  if (runFlags.ScriptRunning) return;
  if (!OfferToSave("Do you want to save the current script before loading a new one?")) return;
  std::string chosen = View().AskScriptFile(FileQuestion::Open, "Load Script", DialogStart());
  if (chosen.empty()) return;
  EnterFolderOf(chosen);
  if (!LoadAsScript(ScriptNameFor(chosen, CurrentDirectory()))) return;
  std::string listed = scriptEditor.ScriptFileName;
  AddToHistory(listed);
  // Picking the new entry loads the same file again, as a pick by hand would.
  if (long entry = ExactEntry(scriptEditor.ScriptFileName)) {
    View().SetDieValueText(DieHistory[entry]);
    PickDieValue(DieHistory[entry]);
  }
}

bool SaveScriptAs() {
  if (runFlags.ScriptRunning) return false;
  std::string chosen = View().AskScriptFile(FileQuestion::Save, "Save Script As", DialogStart());
  if (chosen.empty()) return false;
  std::string name = WithScriptExtension(Trim(chosen));
  if (!FileIsMissing(name)) {
    MsgAnswer answer = AskAboutScript(name + "\nThis script already exists. Overwrite it?");
    if (answer != MsgAnswer::Yes) return false;
  }
  EnterFolderOf(name);
  std::string previous = scriptEditor.ScriptFileName;
  scriptEditor.ScriptFileName = ScriptNameFor(name, CurrentDirectory());
  if (!SaveScriptText()) {
    scriptEditor.ScriptFileName = previous;
    ShowEditorState();
    return false;
  }
  MarkClean();
  std::string listed = scriptEditor.ScriptFileName;
  AddToHistory(listed);
  return true;
}

bool LoadScriptText() {
  const std::string& name = scriptEditor.ScriptFileName;
  std::string content, reason;
  if (!ReadTextFile(name, content, reason)) {
    UI().ShowMessage("Gandrel could not read the script " + name + ": " + reason, MsgButtons::Ok,
                     MsgIcon::Critical, kAppTitle);
    return false;
  }
  std::vector<std::string> lines = ScriptFileLines(content);
  View().SetScriptText(JoinScriptLines(lines));
  ScriptLines = lines;
  ScriptLines.insert(ScriptLines.begin(), std::string());
  ShowEditorState();
  return true;
}

bool SaveScriptText() {
  const std::string& name = scriptEditor.ScriptFileName;
  std::vector<std::string> lines = SplitScriptLines(View().ScriptText());
  std::string reason;
  if (!WriteTextFileAtomic(name, ScriptFileContents(lines), reason)) {
    UI().ShowMessage("Gandrel could not save the script " + name + ": " + reason, MsgButtons::Ok,
                     MsgIcon::Critical, kAppTitle);
    return false;
  }
  ScriptLines = lines;
  ScriptLines.insert(ScriptLines.begin(), std::string());
  // The editor shows what was saved: trailing blanks gone, a line end last.
  View().SetScriptText(JoinScriptLines(lines));
  ShowEditorState();
  return true;
}

// ---- Picking from the die-value list ----------------------------------------------

void PickDieValue(const std::string& entry) {
  if (runFlags.ScriptRunning) return;
  std::string picked = Trim(entry);
  if (!IsScriptFileName(picked)) {
    View().SetScriptText("");
    scriptEditor.ScriptFileName.clear();
    MarkClean();
    return;
  }
  // A file that is not there changes nothing.
  if (FileIsMissing(picked)) return;
  LoadAsScript(picked);
}

// ---- The editor kept between runs ---------------------------------------------

namespace {

struct KeptEditor {
  std::string file;  // the full name, "" when none
  bool modified = false;
  std::string text;
};

std::string KeptEditorText(const KeptEditor& kept) {
  return std::string(kKeptHeader) + "\r\nFile=" + kept.file +
         "\r\nModified=" + (kept.modified ? "-1" : "0") + "\r\nText:\r\n" + kept.text;
}

// The next line of content from at on, without its CR LF; false at the end.
bool NextLine(const std::string& content, size_t& at, std::string& line) {
  size_t end = content.find("\r\n", at);
  if (end == std::string::npos) return false;
  line = content.substr(at, end - at);
  at = end + 2;
  return true;
}

// False when content is not what KeptEditorText writes.
bool ReadKeptEditor(const std::string& content, KeptEditor& kept) {
  size_t at = 0;
  std::string header, file, modified, text;
  if (!NextLine(content, at, header) || header != kKeptHeader) return false;
  if (!NextLine(content, at, file) || !file.starts_with("File=")) return false;
  if (!NextLine(content, at, modified) || !modified.starts_with("Modified=")) return false;
  if (!NextLine(content, at, text) || text != "Text:") return false;
  kept.file = file.substr(5);
  kept.modified = modified.substr(9) != "0";
  kept.text = content.substr(at);
  return true;
}

std::string FullName(const std::string& name) {
  if (name.empty()) return name;
  std::error_code ec;
  fs::path full = fs::absolute(name, ec);
  return ec ? name : full.lexically_normal().string();
}

// Whether file still holds text, as loading it would show it.
bool FileHolds(const std::string& file, const std::string& text) {
  std::string content, reason;
  if (FileIsMissing(file) || !ReadTextFile(file, content, reason)) return text.empty();
  return JoinScriptLines(ScriptFileLines(content)) == text;
}

// The first name beside path, numbered, that nothing stands at (not even a
// link): "gandrel-1.script" for "gandrel.script"; "" when none of the first
// thousand is free.
std::string FreeNameBeside(const std::string& path) {
  fs::path named(path);
  std::string stem = named.stem().string(), extension = named.extension().string();
  for (int n = 1; n <= 1000; ++n) {
    fs::path candidate = named.parent_path() / (stem + "-" + std::to_string(n) + extension);
    std::error_code ec;
    if (fs::symlink_status(candidate, ec).type() == fs::file_type::not_found)
      return candidate.string();
  }
  return "";
}

}  // namespace

bool KeepScriptEditor() {
  std::string path = AppFile(kKeptEditorFile);
  KeptEditor kept;
  kept.file = FullName(scriptEditor.ScriptFileName);
  // A name that cannot be written on one line is not kept; the text is.
  if (kept.file.find_first_of("\r\n") != std::string::npos) kept.file.clear();
  kept.modified =
      scriptEditor.Modified || (kept.file.empty() && !scriptEditor.ScriptFileName.empty());
  kept.text = View().ScriptText();
  const std::string content = KeptEditorText(kept);
  std::string reason;
  const bool unread = FileWasUnread(path);
  if (!unread && WriteTextFileAtomic(path, content, reason)) return true;
  // What stands at path is kept as it is: the editor goes into a file of its own.
  std::string problem = unread
                            ? "Gandrel could not read " + path + " when it started"
                            : "Gandrel could not keep its script editor in " + path + ": " + reason;
  std::string beside = FreeNameBeside(path), besideReason = "no free name";
  if (!beside.empty() && WriteTextFileAtomic(beside, content, besideReason)) {
    MsgBox(problem + ", so it kept the script editor in " + beside +
           " instead. To have it back at the next start, put that file in the place of " +
           kKeptEditorFile + ".");
    return true;
  }
  MsgBox(problem + ", and could not keep the script editor beside it either: " + besideReason +
         ". Save the script before you close Gandrel.");
  return false;
}

void RestoreScriptEditor() {
  std::string path = AppFile(kKeptEditorFile), content, reason;
  if (FileIsMissing(path)) return;
  KeptEditor kept;
  bool read = ReadTextFile(path, content, reason);
  if (read && !ReadKeptEditor(content, kept)) {
    read = false;
    reason = "it is not a file Gandrel wrote";
  }
  if (!read) {
    MsgBox("Gandrel could not read its script editor from " + path + ": " + reason +
           ". The file is left as it is; the script editor of this run will be kept beside it.");
    NoteUnreadFile(path);
    return;
  }
  View().SetScriptText(kept.text);
  scriptEditor.ScriptFileName =
      kept.file.empty() ? std::string() : ScriptNameFor(kept.file, CurrentDirectory());
  scriptEditor.Modified = kept.modified || (!kept.file.empty() && !FileHolds(kept.file, kept.text));
  ShowEditorState();
}

}  // namespace gandrel
